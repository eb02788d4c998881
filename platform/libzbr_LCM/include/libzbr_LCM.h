/// Agent parameter store: what the agent in the host's operating system tells the service processor.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// One parameter.
typedef struct LCMParameterEntry {
    uint8_t reserved0[12];
    uint32_t Status; ///< good up to 1
    uint8_t reserved16[536];
    void *Value; ///< a text with its end, or a number's bytes, the lowest first; may be NULL
} LCMParameterEntry;

static_assert(offsetof(LCMParameterEntry, Status) == 12, "");
static_assert(offsetof(LCMParameterEntry, Value) == 552, "");

/// Connects to the store. -1 when no agent is connected.
int OpenMTLIConnection(void);

/// Reads a parameter: a table of `*entries` entries for `LCMParamDb_destroyParameterTable`. Without the
/// parameter the table is NULL and the count 0. The zero and the -1 are passed as they stand.
LCMParameterEntry *LCMParam_update(int zero, const char *group, const char *name, int minusOne, int *entries);

/// Frees a table with its values and sets it to NULL. Harmless on a NULL table.
void LCMParamDb_destroyParameterTable(LCMParameterEntry **table, int entries);

#ifdef __cplusplus
}
#endif
