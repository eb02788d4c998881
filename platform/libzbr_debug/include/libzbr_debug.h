/// Diagnostic library: trace lines of every component, with a mask that can be changed while it runs.
#pragma once

#include <assert.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A component's trace descriptor. The component tests `enable` before each line; the last two words belong
/// to the diagnostic library.
typedef struct ZbrDebugDescriptor {
    uint32_t enable; ///< not 0: tracing is on
    const char *name;
    uintptr_t private_data[2];
} ZbrDebugDescriptor;

static_assert(sizeof(void *) != 4 || sizeof(ZbrDebugDescriptor) == 16, "");
static_assert(offsetof(ZbrDebugDescriptor, name) == sizeof(void *), "");

/// Trace levels; the mask is made of the same bits.
enum { ZBR_DEBUG_FAILURE = 256, ZBR_DEBUG_PROGRESS = 512 };

/// Binds a descriptor to the library. The first binding calls `zbr_debughook_init` and reads the mask.
void zbr_debuginit(ZbrDebugDescriptor *descriptor);

/// Writes a line when the mask has its level. The two zeros are passed as they stand.
void zbr_debugvout(ZbrDebugDescriptor *descriptor, int level, const char *file, int line, const char *format,
                   int zero1, int zero2, va_list arguments);

/// Reads the mask again.
void zbr_debugmaskreconfig(void);

// Hooks that the diagnostic library calls in the component.

/// Called once, when the library starts. The result isn't looked at.
int zbr_debughook_init(void);

/// Reads a variable of the configuration space into `buffer` of `length` bytes and stores the number of bytes
/// delivered. 0 on success.
int zbr_debughook_readconfig(uint16_t id, uint8_t index, void *buffer, int length, uint16_t *returned);

#ifdef __cplusplus
}
#endif
