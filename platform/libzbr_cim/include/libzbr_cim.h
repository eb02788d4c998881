/// Service processor library: configuration space, readings, single requests, and the getters that turn CMPI
/// values into plain ones.
///
/// Every function gives 0 on success and another value on failure unless its comment says otherwise. The
/// time-out is always 30.
#pragma once

#include <assert.h>
#include <cmpidt.h>
#include <stddef.h>
#include <stdint.h>

#include "libCIMBaseHooks.h"

#ifdef __cplusplus
extern "C" {
#endif

/// The result of `ZBR_CIM_GetConfigSpaceVariables` for an index past the end of a variable's list.
enum { ZBR_CIM_INDEX_PAST_END = 0x113 };

/// Opens a session that acts for the client of a CIM request.
int ZBR_CIM_CreateAuthenticatedLocalSession(IpmiSession *session, const char *remoteAddress,
                                            const char *principal, int timeout);

/// Reads a variable of the configuration space.
///
/// `*length` holds the size of `buffer` on entry and the number of bytes delivered on return. Numbers are
/// little-endian; texts come without an end. `*completionCode` gets the command's completion code. The index
/// of a variable that isn't a list is 0.
int ZBR_CIM_GetConfigSpaceVariables(IpmiSession *session, uint16_t id, uint8_t index, uint8_t *completionCode,
                                    void *buffer, uint16_t *length, int timeout);

/// Writes `length` bytes to a variable of the configuration space.
int ZBR_CIM_SetConfigSpaceVariables(IpmiSession *session, uint16_t id, uint8_t index, const void *value,
                                    int length, int timeout);

/// The raw reading of a threshold sensor. `status` and `state` may be NULL.
int ZBR_CIM_GetFullSensorReading(IpmiSession *session, uint8_t sensorNumber, uint8_t *status,
                                 uint8_t *reading, uint8_t *state, int timeout);

/// The state bits of a discrete sensor, offset 0 in bit 0. The zero is passed as it stands.
int ZBR_CIM_GetCompactSensorReading(IpmiSession *session, uint8_t sensorNumber, int zero, uint16_t *state,
                                    int timeout);

/// The speeds of a fan at its maximum: what it reached at the last fan test, and what it reached when it was
/// new. The result is 0 on failure and another value on success.
int ZBR_CIM_ReadMaximumSpeed(IpmiSession *session, uint8_t sensorNumber, uint32_t *measured,
                             uint32_t *reference, int timeout);

/// Reads the entry of a variable's list that belongs to the sensor with that number. `*size` is the value's
/// width in bytes.
int ZBR_CIM_GetCSVForSensor(IpmiSession *session, uint16_t id, uint8_t sensorNumber, void *value, int *size,
                            int timeout);

/// The state of the server's error LED.
int ZBR_CIM_GetErrorLED(IpmiSession *session, uint8_t *state, int timeout);

/// The state of one of the service processor's misc controls.
int ZBR_CIM_GetMiscControl(IpmiSession *session, uint8_t control, uint8_t *value, int timeout);

/// Whether the server is a blade, 0 or 1.
int ZBR_CIM_IsBladeSystem(IpmiSession *session, uint8_t *isBlade, int timeout);

/// A blade's times of powering on and off on a day, 0 being Sunday, in minutes since midnight; 0xFFFF is no
/// time.
int ZBR_CIM_GetPowerOnOffTime(IpmiSession *session, uint8_t day, uint16_t *on, uint16_t *off, int timeout);
int ZBR_CIM_SetPowerOnOffTime(IpmiSession *session, uint8_t day, uint16_t on, uint16_t off, int timeout);

/// Whether the BIOS recovery flash is set, 0 or 1.
int ZBR_CIM_GetBIOSRecoveryFlash(IpmiSession *session, uint8_t *value, int timeout);

/// Sets or clears the BIOS recovery flash.
int ZBR_CIM_SetBIOSRecoveryFlash(IpmiSession *session, uint8_t value, int timeout);

/// Sets the power-on hours counter to zero.
int ZBR_CIM_ResetPowerOnHours(IpmiSession *session, int timeout);

// Record logs

/// The state of the internal event log. Numbers are little-endian and not aligned; more may follow than is
/// known here.
typedef struct IelInfo {
    uint8_t reserved0[2];
    uint8_t MaximumEntries[2];
    uint8_t LastErase[4]; ///< seconds since 1970
    uint8_t Flags;        ///< bit 7: the log never overwrites
    uint8_t Entries[2];
    uint8_t reserved11[53];
} IelInfo;

static_assert(offsetof(IelInfo, MaximumEntries) == 2, "");
static_assert(offsetof(IelInfo, LastErase) == 4, "");
static_assert(offsetof(IelInfo, Flags) == 8, "");
static_assert(offsetof(IelInfo, Entries) == 9, "");

int ZBR_CIM_GetIELInfo(IpmiSession *session, IelInfo *info, int timeout);

/// What IPMI's Get SEL Allocation Info tells: the number of possible allocation units, their size in bytes,
/// how many of them are free, the size of the largest free block and of the largest record, both in units.
/// All but the first may be NULL.
int ZBR_CIM_GET_SEL_ALLOCATION_INFO(IpmiSession *session, uint16_t *units, uint16_t *unitSize,
                                    uint16_t *freeUnits, uint16_t *largestFree, uint8_t *largestRecord,
                                    int timeout);

/// Room for the languages of `ZBR_CIM_GetSupportedLanguages`.
enum { SUPPORTED_LANGUAGES_SIZE = 16 };

/// The codes of the languages that the texts of the system event log can be had in.
int ZBR_CIM_GetSupportedLanguages(IpmiSession *session, uint8_t *count, uint16_t *languages, int timeout);

/// The message of an entry of the system event log in a language. `*length` holds the size of `buffer` on
/// entry and the length of the text on return. The one is passed as it stands.
int ZBR_CIM_InterpretSELEntryAsText(IpmiSession *session, uint16_t recordId, uint16_t language, int one,
                                    char *buffer, uint16_t *length, int timeout);

/// The kinds of text that an error code has.
enum SelTextKind { SelTextResolutions = 2, SelTextSummary = 3, SelTextCauses = 4 };

/// A text for an error code in a language. Causes and resolutions come as a text list: a run of terminated
/// texts that an empty one ends. `*length` is as that of `ZBR_CIM_InterpretSELEntryAsText`.
int ZBR_CIM_GetSELTextFromErrCode(IpmiSession *session, uint32_t errorCode, int kind, uint16_t language,
                                  int one, char *buffer, uint16_t *length, int timeout);

// Getters. `out` gets a plain value of the asked type, by it:
//   integer, real, char16      its C type
//   CMPI_boolean               one byte
//   CMPI_dateTime              CMPIUint64, the microseconds of CMGetBinaryFormat
//   CMPI_string                const char *, which lives as long as the object that it was read from
//   CMPI_chars                 the text with its end, copied; `out` must have room for it
//   CMPI_ref, CMPI_instance    CMPIObjectPath *, CMPIInstance *
//   an array type              CMPIArray *
// A value that is null, absent or of another type is a failure and leaves `out` alone.

/// The value of a property.
int ZBR_CIM_GetValueFromInstance(const CMPIInstance *instance, const char *name, void *out, CMPIType type);

/// The value of an argument of a method.
int ZBR_CIM_GetValueFromArgs(const CMPIArgs *args, const char *name, void *out, CMPIType type);

/// The value that the data holds.
int ZBR_CIM_GetValueFromData(CMPIData data, void *out, CMPIType type);

/// The value of an entry of the request's context.
int ZBR_CIM_GetValueFromContext(const CMPIContext *context, const char *name, void *out, CMPIType type);

// Array getters. `*count` holds the number of elements that `out` has room for on entry and the number of
// elements delivered on return; an array that is longer is a failure. The type may be given with or without
// the array flag. Texts come as pointers for CMPI_string and CMPI_chars alike. A null element is a failure.

/// The elements of an array property.
int ZBR_CIM_GetArrayValueFromInstance(const CMPIInstance *instance, const char *name, void *out, int *count,
                                      CMPIType type);

/// The elements of an array argument of a method.
int ZBR_CIM_GetArrayValueFromArgs(const CMPIArgs *args, const char *name, void *out, int *count,
                                  CMPIType type);

/// The elements of the array that the data holds.
int ZBR_CIM_GetArrayValueFromData(CMPIData data, void *out, int *count, CMPIType type);

/// Makes `*value` of the plain value of that type at `source`: a number, real, char16 or boolean as its C
/// type; CMPI_chars the text itself; every other type a pointer to the CMPI object. A NULL source and a type
/// that isn't any of these give a value of zeros.
void ZBR_CIM_CreateCMPIValue(CMPIValue *value, const void *source, CMPIType type);

#ifdef __cplusplus
}
#endif
