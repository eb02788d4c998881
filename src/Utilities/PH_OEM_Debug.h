// The library's trace log: its descriptor, its trace line and the hooks that the diagnostic library calls
// back.
#pragma once

#include "Utilities/Export.h"

#include "libzbr_debug.h"

#include <atomic>
#include <cstdint>
#include <pthread.h>

// Levels of a trace line. Which levels are printed is the diagnostic library's business: it holds the mask.
enum TraceLevel : int {
    TraceFailure = 256,  // something went wrong, whether the client sees it or not
    TraceProgress = 512, // progress and information
};

// The trace descriptor. Its enable word starts at 1, its name at NULL until the first trace line binds it to
// the diagnostic library, which owns the last two words and may write the enable word at any time.
EXPORTED_DATA ZbrDebugDescriptor zbr_debug_oemcim;

// Held only while one of the two message queues is opened and the registration sent.
EXPORTED_DATA pthread_mutex_t ph_oem_notify_mutex;

// Writes one trace line, printf style. `file` is the path below src/. Binds the descriptor on its first use.
EXPORTED void zbr_debugout_oemcim(int level, const char *file, int line, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

[[gnu::always_inline]] inline bool TraceEnabled() {
    return std::atomic_ref(zbr_debug_oemcim.enable).load(std::memory_order_relaxed) != 0;
}

// A trace line with an origin other than its own: the shared frame speaks for the file of a class.
#define TRACE_FROM(file, line, level, ...)                                                                   \
    do {                                                                                                     \
        if (TraceEnabled()) {                                                                                \
            zbr_debugout_oemcim(level, file, line, __VA_ARGS__);                                             \
        }                                                                                                    \
    } while (false)

#define TRACE(level, ...) TRACE_FROM(__FILE__, __LINE__, level, __VA_ARGS__)
