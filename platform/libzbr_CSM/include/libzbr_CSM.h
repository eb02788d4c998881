/// Component status library: the server's health as a tree of the system, its subsystems, their components
/// and the instances of a component.
///
/// Every function gives 0 on success; with any other result it has stored nothing. Names and lists of ids are
/// heap blocks for `free`, text arrays go to `CSM_FreeMem`. A node has three states, which are indexes into
/// the array of texts that comes with the node; an index that isn't below the count stands for no state.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Starts the library. Called before the tree is read; harmless when it is started already.
int CSM_Init(void);

/// The system, with the ids of its subsystems.
int CSM_GetSystemStatus(char **name, uint32_t *subsystemCount, uint32_t **subsystemIds, uint32_t *healthIndex,
                        uint32_t *gelIndex, uint32_t *cssIndex, uint32_t *stateCount, char ***stateTexts);

/// A subsystem, with the ids of its components.
int CSM_GetSubsystemStatus(uint32_t id, char **name, uint32_t *componentCount, uint32_t **componentIds,
                           uint32_t *healthIndex, uint32_t *gelIndex, uint32_t *cssIndex,
                           uint32_t *stateCount, char ***stateTexts);

/// A component, with the number of its instances.
int CSM_GetComponentStatus(uint32_t id, char **name, uint32_t *instanceCount, uint32_t *healthIndex,
                           uint32_t *gelIndex, uint32_t *cssIndex, uint32_t *stateCount, char ***stateTexts);

/// An instance of a component, from 0. Its attributes are two parallel arrays of texts.
int CSM_GetComponentInstanceStatus(uint32_t id, uint32_t index, uint32_t *healthIndex, uint32_t *gelIndex,
                                   uint32_t *cssIndex, uint32_t *stateCount, char ***stateTexts,
                                   uint32_t *attributeCount, char ***attributeNames, char ***attributeValues);

/// Frees a text array. Harmless on NULL.
int CSM_FreeMem(char **array, uint32_t count);

#ifdef __cplusplus
}
#endif
