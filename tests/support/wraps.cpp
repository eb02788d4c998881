#include "support/wraps.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>

namespace {

std::array<std::atomic<int>, wraps::call_kinds> made;
std::array<std::atomic<int>, wraps::call_kinds> failing; // the number of the call that fails
std::atomic<int> sleepCount;
std::atomic<int> sleepSeconds;

bool fails(wraps::Call kind) {
    return ++made[kind] == failing[kind];
}

} // namespace

namespace wraps {

void fail(Call kind, int nth) {
    failing[kind] = nth == 0 ? 0 : made[kind] + nth;
}

void reset() {
    for (int kind = 0; kind < call_kinds; ++kind) {
        made[static_cast<std::size_t>(kind)] = 0;
        failing[static_cast<std::size_t>(kind)] = 0;
    }
    sleepCount = 0;
    sleepSeconds = 0;
}

int calls(Call kind) {
    return made[kind];
}
int sleeps() {
    return sleepCount;
}
int secondsSlept() {
    return sleepSeconds;
}

} // namespace wraps

// The names that the linker puts in place of the wrapped ones.
#define WRAPPED extern "C" __attribute__((visibility("default")))

WRAPPED void *__wrap_malloc(std::size_t size) {
    if (fails(wraps::Allocation)) {
        errno = ENOMEM;
        return nullptr;
    }
    return std::malloc(size);
}

WRAPPED void *__wrap_calloc(std::size_t count, std::size_t size) {
    if (fails(wraps::Allocation)) {
        errno = ENOMEM;
        return nullptr;
    }
    return std::calloc(count, size);
}

WRAPPED void *__wrap_realloc(void *block, std::size_t size) {
    if (fails(wraps::Allocation)) {
        errno = ENOMEM;
        return nullptr;
    }
    return std::realloc(block, size);
}

WRAPPED void *__wrap_dlopen(const char *path, int mode) {
    return fails(wraps::Open) ? nullptr : dlopen(path, mode);
}

WRAPPED void *__wrap_dlsym(void *library, const char *name) {
    return fails(wraps::Symbol) ? nullptr : dlsym(library, name);
}

WRAPPED unsigned __wrap_sleep(unsigned seconds) {
    ++sleepCount;
    sleepSeconds += static_cast<int>(seconds);
    return 0;
}
