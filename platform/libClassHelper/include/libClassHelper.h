/// Base helper library. It is opened at run time, so this header has function types instead of declarations:
/// each is named as the symbol with `Function` behind it.
#pragma once

#include <assert.h>
#include <cmpidt.h>
#include <stddef.h>
#include <stdint.h>

#include "libcorestore.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Names of properties and, in a list of changes, their new values.
typedef struct ModifiablePropertyList {
    struct {
        char name[64];
        CMPIData data;
    } entries[64];
    int32_t count; ///< number of used entries
} ModifiablePropertyList;

/// Room for the names of refused properties.
enum { REFUSED_PROPERTIES_SIZE = 256 };

/// Room for a system name.
enum { SYSTEM_NAME_SIZE = 256 };

/// One protocol service of the service processor.
typedef struct ProtocolServiceRecord {
    char SystemCreationClassName[256];
    char CreationClassName[256];
    char SystemName[256];
    char Name[256];
    uint16_t Protocol;
    char OtherProtocol[64];
    char ElementName[64];
    uint16_t MaxConnections;
    uint16_t RequestedState;
    uint16_t EnabledState;
    uint16_t HealthState;
    int32_t OperationalStatus[32]; ///< ended by a negative value
} ProtocolServiceRecord;

static_assert(offsetof(ProtocolServiceRecord, CreationClassName) == 256, "");
static_assert(offsetof(ProtocolServiceRecord, SystemName) == 512, "");
static_assert(offsetof(ProtocolServiceRecord, Name) == 768, "");
static_assert(offsetof(ProtocolServiceRecord, Protocol) == 1024, "");
static_assert(offsetof(ProtocolServiceRecord, OtherProtocol) == 1026, "");
static_assert(offsetof(ProtocolServiceRecord, ElementName) == 1090, "");
static_assert(offsetof(ProtocolServiceRecord, MaxConnections) == 1154, "");
static_assert(offsetof(ProtocolServiceRecord, RequestedState) == 1156, "");
static_assert(offsetof(ProtocolServiceRecord, EnabledState) == 1158, "");
static_assert(offsetof(ProtocolServiceRecord, HealthState) == 1160, "");
static_assert(offsetof(ProtocolServiceRecord, OperationalStatus) == 1164, "");
static_assert(sizeof(ProtocolServiceRecord) == 1292, "");

/// One TCP endpoint of the service processor.
typedef struct TCPProtocolEndpointRow {
    char SystemCreationClassName[256];
    char CreationClassName[256];
    char SystemName[256];
    char Name[256];
    char NameFormat[64];
    char ElementName[64];
    uint16_t ProtocolIFType;
    uint32_t PortNumber;
    uint16_t EnabledState;
} TCPProtocolEndpointRow;

static_assert(offsetof(TCPProtocolEndpointRow, CreationClassName) == 256, "");
static_assert(offsetof(TCPProtocolEndpointRow, SystemName) == 512, "");
static_assert(offsetof(TCPProtocolEndpointRow, Name) == 768, "");
static_assert(offsetof(TCPProtocolEndpointRow, NameFormat) == 1024, "");
static_assert(offsetof(TCPProtocolEndpointRow, ElementName) == 1088, "");
static_assert(offsetof(TCPProtocolEndpointRow, ProtocolIFType) == 1152, "");
static_assert(offsetof(TCPProtocolEndpointRow, PortNumber) == 1156, "");
static_assert(offsetof(TCPProtocolEndpointRow, EnabledState) == 1160, "");
static_assert(sizeof(TCPProtocolEndpointRow) == 1164, "");

/// The server itself. The strings in the two pointer lists are the row's own.
typedef struct HostComputerSystemRow {
    int32_t Dedicated[4]; ///< ended by a negative value
    char Name[256];
    char CreationClassName[256];
    char *OtherIdentifyingInfo[4];
    char *IdentifyingDescriptions[4];
    uint16_t EnabledState;
    uint16_t RequestedState;
    int32_t OperationalStatus[4]; ///< ended by a negative value
    uint16_t HealthState;
    char ElementName[128];
    char PrimaryOwnerContact[256];
} HostComputerSystemRow;

static_assert(offsetof(HostComputerSystemRow, Dedicated) == 0, "");
static_assert(offsetof(HostComputerSystemRow, Name) == 16, "");
static_assert(offsetof(HostComputerSystemRow, CreationClassName) == 272, "");
static_assert(offsetof(HostComputerSystemRow, OtherIdentifyingInfo) == 528, "");
#if UINTPTR_MAX == UINT32_MAX
static_assert(offsetof(HostComputerSystemRow, IdentifyingDescriptions) == 544, "");
static_assert(offsetof(HostComputerSystemRow, EnabledState) == 560, "");
static_assert(offsetof(HostComputerSystemRow, RequestedState) == 562, "");
static_assert(offsetof(HostComputerSystemRow, OperationalStatus) == 564, "");
static_assert(offsetof(HostComputerSystemRow, HealthState) == 580, "");
static_assert(offsetof(HostComputerSystemRow, ElementName) == 582, "");
static_assert(offsetof(HostComputerSystemRow, PrimaryOwnerContact) == 710, "");
static_assert(sizeof(HostComputerSystemRow) == 968, "");
#endif

/// Sorts what a client wants to change.
///
/// `defaults` names the properties that may change and `properties` is the client's list, or NULL.
/// `currentInstance` may be NULL. `changes` gets name and new value of each property to be applied; `refused`
/// (`REFUSED_PROPERTIES_SIZE` characters, zeroed) the names of those that may not change. 0 when the work
/// could be done.
typedef int getModifiablePropertiesFunction(const CMPIInstance *newInstance,
                                            const CMPIInstance *currentInstance, const char **properties,
                                            const ModifiablePropertyList *defaults,
                                            ModifiablePropertyList *changes, char *refused);

/// Stores the service processor's system name (`SYSTEM_NAME_SIZE` characters). -1 on failure.
typedef int PH_GetSPSystemNameFunction(char *name);

/// Stores the host system's name (`SYSTEM_NAME_SIZE` characters). -1 on failure.
typedef int PH_GetHostSystemNameFunction(char *name);

/// Gives the rows of all host systems, which the caller hands back to `PH_Clean_HostComputerSystem`. With
/// `namesOnly` only the keys, `CreationClassName` and `Name`, are filled. 0, or -1 on failure.
typedef int PH_Enum_All_HostComputerSystemFunction(HostComputerSystemRow **rows, int *count, int namesOnly);

/// Frees rows of `PH_Enum_All_HostComputerSystem` with the strings in them. Harmless on NULL.
typedef void PH_Clean_HostComputerSystemFunction(HostComputerSystemRow *rows, int count);

/// Brings the host system into the state that the argument `RequestedState` asks for.
///
/// `keyValues` are the path's keys, `CreationClassName` and `Name`. On success it gives the method's return
/// value with CMReturnData and a result of 0; CMReturnDone is left to the caller. Otherwise nothing is
/// returned and `*status` says why.
typedef int PH_HostRequestStateChangeFunction(const CMPIBroker *broker, const CMPIResult *result,
                                              const CMPIObjectPath *path, const CMPIArgs *in, CMPIArgs *out,
                                              CMPIString *const *keyValues, CMPIStatus *status);

/// Fills all fields of the record but the four keys from the Core DB row. -1 on failure.
typedef int PH_Fill_ProtocolServiceFunction(ProtocolServiceRecord *record, const ProtocolServiceRow *row);

#ifdef __cplusplus
}
#endif
