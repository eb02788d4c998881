// What every class operation needs: sessions and database handles, the raw IPMI command, the check of a
// request's object path, and the small list helpers.
//
// Operations give 0 on success and -1 on failure unless said otherwise. They never touch the status of a
// request, but for PH_OEM_CheckForValidObjectPath.
#pragma once

#include "Utilities/Export.h"
#include "Utilities/Text.h"

#include "libCIMBaseHooks.h"

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <cstddef>
#include <cstdint>

// The time-out that every back end gets.
constexpr int backend_timeout = 30;

// The size of the largest response to a raw command.
constexpr std::uint32_t response_limit = 61440;

// --- Sessions and handles

// Opens a session to the service processor's own command interface with what the OEM DB holds for it, in at
// most five attempts with a sleep of 5 seconds after each that fails. `session` is the caller's, zeroed, and
// is closed with PH_OEM_CloseIPMISession also when this fails. `trace` 0 suppresses all trace lines.
EXPORTED int PH_OEM_CreateIPMISession_Ex(IpmiSession *session, int trace);
EXPORTED int PH_OEM_CreateIPMISession(IpmiSession *session);

// Closes a session, also one that never opened. NULL gives -1.
EXPORTED int PH_OEM_CloseIPMISession(IpmiSession *session);

// Opens a session that acts for the client of the request: address and principal come from the request's
// context.
EXPORTED int PH_OEM_CreateAuthenticatedLocalSession(IpmiSession *session, const CMPIContext *ctx);

EXPORTED int PH_OEM_InitOEMDB(std::uint32_t *handle);
EXPORTED int PH_OEM_CloseOEMDB(std::uint32_t handle);
EXPORTED int PH_OEM_InitCoreDB(std::uint32_t *handle);
EXPORTED int PH_OEM_CloseCoreDB(std::uint32_t handle);

// Sends one command in a session of its own. `netFnLun` is the byte on the wire: net function in the high six
// bits. *responseLength is the size of `response` on entry and the number of bytes stored on return; the
// first is the completion code, which the caller tests: a response with a code other than 0 is still a
// success here.
EXPORTED int PH_OEM_SendIPMICommand(std::uint8_t netFnLun, std::uint8_t cmd, const std::uint8_t *request,
                                    std::uint32_t requestLength, std::uint8_t *response,
                                    std::uint32_t *responseLength);

// Net function and LUN of the commands that are sent: the chassis and storage commands of the IPMI standard,
// and those of this service processor, whose requests begin with the same three bytes.
constexpr std::uint8_t chassis_netfn = 0x00;
constexpr std::uint8_t storage_netfn = 0x28;
constexpr std::uint8_t oem_netfn = 0xB8;

// --- The request's object path

// Checks the keys of `cop` against `keyList` and stores the CMPIString of each in `keyValues`, in the order
// of the list; both have `keyCount` entries. The strings stay the path's. An integer key passes and leaves
// its entry NULL. On failure `status` tells the cause.
EXPORTED int PH_OEM_CheckForValidObjectPath(const CMPIBroker *broker, const CMPIObjectPath *cop,
                                            const char *const *keyList, CMPIString **keyValues, int keyCount,
                                            CMPIStatus *status);

// --- Lists

// 1 when the property is wanted: `properties` is NULL, or one of its entries equals `name` in any case.
// Otherwise 0.
EXPORTED int PH_OEM_ExistsInList(const char *const *properties, const char *name);

// The same without a call for the clients that want all properties, which nearly all are.
inline bool IsWanted(const char *const *properties, const char *name) {
    return properties == nullptr || PH_OEM_ExistsInList(properties, name) == 1;
}

// Splits a comma text into heap strings. *items gets an array of *count pointers, of which the last are NULL
// when tokens were empty; the caller frees each entry and the array. An empty text gives 0 with *items
// untouched. A text of more than 255 characters is refused: a cut would make another number of the last one.
EXPORTED int PH_OEM_GetArrayCount(const char *text, char ***items, std::uint16_t *count);

// New arrays from the list forms of the records, for the caller to CMRelease once the property is set: a
// value list that ends with a negative value, `max` strings `stride` bytes apart that end with an empty one,
// and pointers that end with NULL. NULL for an empty list or when the broker has no array. The lists of the
// first and the last must have their end mark.
EXPORTED CMPIArray *PH_OEM_Dup_uint16_Array(const CMPIBroker *broker, const std::int32_t *list);
EXPORTED CMPIArray *PH_OEM_Dup_const_string_Array(const CMPIBroker *broker, const char *base, int stride,
                                                  int max);
EXPORTED CMPIArray *PH_OEM_Dup_variable_string_Array(const CMPIBroker *broker, const char *const *list);

// The same for a list in a field of `max` entries, which may be full and then has no end mark.
CMPIArray *DupValueList(const CMPIBroker *broker, const std::int32_t *list, std::size_t max);
CMPIArray *DupPointerList(const CMPIBroker *broker, const char *const *list, std::size_t max);

// Puts the numbers of the comma text called `name` into a value list of `max` entries, each at its own
// position; an empty token leaves its entry as it was, and numbers behind the last entry are dropped. A
// failed split leaves the list as it is.
void FillValueList(const char *name, const char *text, std::int32_t *list, std::size_t max);

// The same for a comma text in a row's field, which may fill it without an end.
template <std::size_t N>
void FillValueList(const char *name, const char (&field)[N], std::int32_t *list, std::size_t max) {
    char copy[N + 1];
    FillValueList(name, EndedText(field, copy), list, max);
}

// --- Status

// Sets `rc` and the message.
void SetStatus(const CMPIBroker *broker, CMPIStatus *status, CMPIrc rc, const char *message);

// --- Association providers
//
// The four operations that the library doesn't support; each answers rc 7 with "CIM_ERR_NOT_SUPPORTED".
EXPORTED CMPIStatus PH_OEM_CreateInstance_Association(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                                      const CMPIResult *rslt, const CMPIObjectPath *cop,
                                                      const CMPIInstance *inst, const CMPIBroker *broker);
EXPORTED CMPIStatus PH_OEM_SetInstance_Association(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                                   const CMPIResult *rslt, const CMPIObjectPath *cop,
                                                   const CMPIInstance *inst, const char **properties,
                                                   const CMPIBroker *broker);
EXPORTED CMPIStatus PH_OEM_DeleteInstance_Association(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                                      const CMPIResult *rslt, const CMPIObjectPath *cop,
                                                      const CMPIBroker *broker);
EXPORTED CMPIStatus PH_OEM_ExecQuery_Association(CMPIInstanceMI *mi, const CMPIContext *ctx,
                                                 const CMPIResult *rslt, const CMPIObjectPath *cop,
                                                 const char *query, const char *lang,
                                                 const CMPIBroker *broker);
