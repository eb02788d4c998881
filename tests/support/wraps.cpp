#include "support/wraps.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <mutex>
#include <unordered_set>

namespace {

std::array<std::atomic<int>, wraps::call_kinds> made;
std::array<std::atomic<int>, wraps::call_kinds> failing; // the number of the call that fails
std::atomic<int> sleepCount;
std::atomic<int> sleepSeconds;

std::atomic<int> libraries;
std::atomic<int> foreignBlocks;

std::mutex lock; // guards the blocks
std::unordered_set<const void *> blocks;

bool fails(wraps::Call kind) {
    return ++made[kind] == failing[kind];
}

void *taken(void *block) {
    const std::lock_guard guard(lock);
    if (block != nullptr) {
        blocks.insert(block);
    }
    return block;
}

// Before the block is freed: another thread may get the same address right after.
bool given(const void *block) {
    const std::lock_guard guard(lock);
    return blocks.erase(block) != 0;
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
    libraries = 0;
    foreignBlocks = 0;
    const std::lock_guard guard(lock);
    blocks.clear();
}

int calls(Call kind) {
    return made[kind];
}
int liveBlocks() {
    const std::lock_guard guard(lock);
    return static_cast<int>(blocks.size());
}
int openLibraries() {
    return libraries;
}
int foreignBlocksFreed() {
    return foreignBlocks;
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

// A block, or what a caller gets who finds no memory.
template <typename Allocate> void *allocated(Allocate allocate) {
    if (fails(wraps::Allocation)) {
        errno = ENOMEM;
        return nullptr;
    }
    return taken(allocate());
}

WRAPPED void *__wrap_malloc(std::size_t size) {
    return allocated([=] { return std::malloc(size); });
}

WRAPPED void *__wrap_calloc(std::size_t count, std::size_t size) {
    return allocated([=] { return std::calloc(count, size); });
}

WRAPPED void *__wrap_realloc(void *block, std::size_t size) {
    return allocated([=] {
        given(block);
        return std::realloc(block, size);
    });
}

WRAPPED void __wrap_free(void *block) {
    if (block != nullptr && !given(block)) {
        ++foreignBlocks;
    }
    std::free(block);
}

WRAPPED void *__wrap_dlopen(const char *path, int mode) {
    void *library = fails(wraps::Open) ? nullptr : dlopen(path, mode);
    libraries += library != nullptr;
    return library;
}

WRAPPED int __wrap_dlclose(void *library) {
    --libraries;
    return dlclose(library);
}

WRAPPED void *__wrap_dlsym(void *library, const char *name) {
    return fails(wraps::Symbol) ? nullptr : dlsym(library, name);
}

WRAPPED unsigned __wrap_sleep(unsigned seconds) {
    ++sleepCount;
    sleepSeconds += static_cast<int>(seconds);
    return 0;
}
