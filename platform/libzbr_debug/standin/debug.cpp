#include "libzbr_debug.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "standin.h"

using namespace sp;

// The hooks live in the component, which may be loaded without them.
#pragma weak zbr_debughook_init
#pragma weak zbr_debughook_readconfig

namespace {

constexpr int Nowhere = -1, Syslog = -2; // destinations that are no file descriptor

// Trace sites read these without a lock.
std::atomic<int> destination = Nowhere;
std::atomic<uint32_t> mask = ZBR_DEBUG_FAILURE;

// Held only while descriptors and destination are looked after, never while a hook runs: a hook may trace.
std::mutex lock;
// Never destroyed: the notification thread may reload the mask while the process ends.
auto &descriptors = *new std::vector<ZbrDebugDescriptor *>;
bool started = false;
std::string destination_name;

/// Takes the destination from VCH_TRACE: "stderr", "syslog" or a file's path. A file that can't be opened is
/// said once on standard error and gets nothing.
void take_destination() {
    const char *text = getenv("VCH_TRACE");
    const std::string name = text != nullptr ? text : "";
    if (name == destination_name) {
        return;
    }
    destination_name = name;
    int next = Nowhere;
    if (name == "stderr") {
        next = STDERR_FILENO;
    } else if (name == "syslog") {
        next = Syslog;
    } else if (!name.empty() && (next = open(text, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0640)) < 0) {
        fprintf(stderr,
                "VCH_TRACE: '%s' can't be opened: %s; name a file that can be written, stderr or syslog\n",
                text, strerror(errno));
    }
    // The file of before stays open: another thread may be writing to it.
    destination = next < 0 && next != Syslog ? Nowhere : next;
}

/// A descriptor's name, which its library may be storing right now.
const char *name_of(ZbrDebugDescriptor *descriptor) {
    return descriptor == nullptr ? nullptr : std::atomic_ref(descriptor->name).load();
}

/// Tells all components whether a line of theirs can be written at all.
void enable_descriptors() {
    const std::lock_guard guard(lock);
    const uint32_t enable = destination != Nowhere && mask != 0;
    for (ZbrDebugDescriptor *descriptor : descriptors) {
        std::atomic_ref(descriptor->enable).store(enable, std::memory_order_relaxed);
    }
}

/// Reads the mask from the configuration space; a failed read leaves it as it is.
void read_mask() {
    uint8_t bytes[2] = {};
    uint16_t returned = 0;
    if (zbr_debughook_readconfig != nullptr &&
        zbr_debughook_readconfig(trace_mask_variable, 0, bytes, sizeof bytes, &returned) == 0 &&
        returned == sizeof bytes) {
        mask = static_cast<uint32_t>(bytes[0] | bytes[1] << 8);
    }
    enable_descriptors();
}

const char *level_word(int level) {
    switch (level) {
    case ZBR_DEBUG_FAILURE: return "failure";
    case ZBR_DEBUG_PROGRESS: return "progress";
    default: return "trace";
    }
}

/// A line of text in a buffer of fixed size; what doesn't fit is left out.
struct Line {
    char text[2048];
    size_t length = 0;

    void append(const char *format, ...) __attribute__((format(printf, 2, 3)));
    void append_arguments(const char *format, va_list arguments) __attribute__((format(printf, 2, 0)));
};

void Line::append_arguments(const char *format, va_list arguments) {
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the analyzer loses sight of the caller's va_start
    const int written = vsnprintf(text + length, sizeof text - length, format, arguments);
    if (written > 0) {
        length = std::min(length + static_cast<size_t>(written), sizeof text - 1);
    }
}

void Line::append(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    append_arguments(format, arguments);
    va_end(arguments);
}

/// Takes ends of line and other control characters out of what begins at `from`, so that one call is one
/// line.
void make_one_line(Line &line, size_t from) {
    while (line.length > from && line.text[line.length - 1] == '\n') {
        --line.length;
    }
    std::replace_if(
        line.text + from, line.text + line.length,
        [](char character) { return static_cast<unsigned char>(character) < ' ' || character == 0x7F; }, ' ');
}

void append_time(Line &line) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    tm local;
    localtime_r(&now.tv_sec, &local);
    char text[32];
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    line.append("%s.%03d %d ", text, static_cast<int>(now.tv_nsec / 1000000), static_cast<int>(getpid()));
}

} // namespace

void zbr_debuginit(ZbrDebugDescriptor *descriptor) {
    bool first = false;
    bool traces = false;
    call("zbr_debuginit", {name_of(descriptor)}, [&] {
        if (descriptor == nullptr) {
            return;
        }
        const std::lock_guard guard(lock);
        take_destination();
        if (std::ranges::find(descriptors, descriptor) == descriptors.end()) {
            descriptors.push_back(descriptor);
        }
        first = !std::exchange(started, true);
        traces = destination != Nowhere;
    });
    // Behind the call: what the hooks do is the component's own doing.
    if (first && zbr_debughook_init != nullptr) {
        zbr_debughook_init();
    }
    if (traces) {
        read_mask();
    } else {
        enable_descriptors();
    }
}

void zbr_debugvout(ZbrDebugDescriptor *descriptor, int level, const char *file, int line, const char *format,
                   int, int, va_list arguments) {
    call("zbr_debugvout", {level, file, line}, [&] {
        const int out = destination;
        if (out == Nowhere || (mask & static_cast<uint32_t>(level)) == 0 || format == nullptr) {
            return;
        }
        Line whole;
        if (out != Syslog) {
            append_time(whole);
        }
        const char *name = name_of(descriptor);
        whole.append("%s %s %s:%d: ", name != nullptr ? name : "-", level_word(level),
                     file != nullptr ? file : "-", line);
        const size_t start = whole.length;
        whole.append_arguments(format, arguments);
        make_one_line(whole, start);
        if (out == Syslog) {
            whole.text[whole.length] = '\0';
            syslog(level == ZBR_DEBUG_FAILURE ? LOG_ERR : LOG_INFO, "%s", whole.text);
            return;
        }
        whole.text[whole.length++] = '\n';
        // A trace that can't be written has nobody to tell.
        [[maybe_unused]] const ssize_t written = write(out, whole.text, whole.length);
    });
}

void zbr_debugmaskreconfig(void) {
    call("zbr_debugmaskreconfig", {}, [] {});
    read_mask();
}
