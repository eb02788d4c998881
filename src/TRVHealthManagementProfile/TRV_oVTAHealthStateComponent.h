#pragma once

#include "Utilities/ClassFrame.h"

// A node of the server's health tree.
struct HealthStateComponentRecord {
    char InstanceID[256]; // the names from the system down to the node, with '-' between them
    char SystemCreationClassName[256];
    char SystemName[256];
    char Caption[256];
    std::uint8_t CSSState; // 0 to 5, as GELState
    char Description[256];
    char ElementName[256];
    std::uint8_t GELState;
    std::uint16_t HealthState; // 0, 5, 10 or 20
    std::uint8_t IsCSS;
    std::uint8_t IsLeaf;
    char Name[256];
    char Parent[256]; // empty for the system
    std::uint8_t PhysicalLED;
};

// Where a node stands in the tree.
enum HealthLevel { SystemLevel, SubsystemLevel, ComponentLevel, InstanceLevel };

// What a record is filled with: the keys alone, or all of it, in an Enum or in a Get.
enum HealthFillMode { FillAll = 0, FillKeys = 1, FillOne = 2 };

// Fills a zeroed record. The names are those from the system down to the node's level; others aren't read and
// may be NULL. A state is an index into `stateTexts`, which may be NULL; one that has no text is unknown.
void PH_OEM_Fill_HealthStateComponent(HealthStateComponentRecord *record, int level, const char *system,
                                      const char *subsystem, const char *component, const char *instance,
                                      std::uint32_t healthIndex, std::uint32_t gelIndex,
                                      std::uint32_t cssIndex, int physicalLED, int isCSS, int mode,
                                      std::uint32_t stateCount, const char *const *stateTexts);

// Makes the one record that the keys, in the order of the key list, name. *records is a block for
// PH_OEM_Clean_HealthStateComponent and *count 1. 0; -1 with no record when there is no such node or it can't
// be read. Whether the keys besides InstanceID are right is left to the search.
int PH_OEM_Get_HealthStateComponent_Instance(HealthStateComponentRecord **records, int *count,
                                             CMPIString *const *keyValues);

DECLARE_CLASS(HealthStateComponent);
