// What stands between flat records and CMPI values: arrays from rows, properties that may be null, DMTF
// date-times, comparison of paths, and instances of other classes through the broker. Nothing here holds a
// state.
//
// Operations give 0 on success and -1 on failure unless said otherwise.
#pragma once

#include "Utilities/Export.h"

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <cstddef>
#include <cstdint>
#include <ctime>

// Flags of PH_OEM_SetProperty and PH_OEM_SetPropertyArray.
enum PropertyFlags : int {
    PH_OEM_PROP_NULL = 1,       // set the property to null whatever the value is
    PH_OEM_PROP_INTERVAL = 2,   // the date-time is an interval
    PH_OEM_PROP_TERMINATED = 4, // `count` is a maximum: the list ends by itself
};

// The date-time of a record that stands for null; others are microseconds.
constexpr std::uint64_t null_datetime = ~std::uint64_t{0};

// A DMTF date-time's 25 characters and their NUL.
constexpr std::size_t datetime_text_size = 26;

// --- Arrays and properties

// A new array of `count` values that lie `stride` bytes apart in rows: uint8, uint16, sint32, uint64 and
// string arrays; the elements of any other stay null. A string array with the stride of a pointer takes the
// texts pointed at, with any other the texts in place. A count below 1 gives an empty array. NULL on failure.
EXPORTED CMPIArray *PH_OEM_NewArray(const CMPIBroker *broker, const void *data, int stride, int count,
                                    CMPIType type);

// Sets a wanted property. `value` points to a plain value of `type`: to the text itself for CMPI_chars, to a
// uint64 of microseconds for CMPI_dateTime; NULL makes the property null.
EXPORTED int PH_OEM_SetProperty(const CMPIBroker *broker, const CMPIInstance *inst, const char **properties,
                                const char *name, const void *value, CMPIType type, int flags);

// Sets a wanted array property from `count` values back to back. A string array takes pointers with a stride
// of 0 and else texts `stride` bytes apart. NULL data makes the property null; with PH_OEM_PROP_TERMINATED a
// uint16 array is a value list of int32.
EXPORTED int PH_OEM_SetPropertyArray(const CMPIBroker *broker, const CMPIInstance *inst,
                                     const char **properties, const char *name, const void *data, int count,
                                     CMPIType type, int flags, int stride);

// Bytes of an element in the data of PH_OEM_SetPropertyArray, a pointer's for texts; 0 for types that it
// refuses.
std::size_t ArrayElementSize(CMPIType arrayType);

// Fills a value for a later CMSetProperty or CMAddKey from the plain value at `source`, which gives 0 when it
// is NULL. 1 when assigned; 0 for a type other than chars, boolean and the integers but sint8 and sint64,
// with `value` left alone.
EXPORTED int PH_OEM_AssignProperty(CMPIValue *value, const void *source, CMPIType type);

// --- Date-times

// Microseconds of a date-time; all bits set for a null one.
EXPORTED int PH_OEM_GetDatetimeValueFromData(CMPIData data, std::uint64_t *out);

// The time that the text states as local time; the offset at its end isn't read. Always 0: a text that can't
// be read, or a time that doesn't fit time_t, gives the time 0, which the opposite direction refuses.
EXPORTED int PH_OEM_ConvertDMTFDateTimeFormatToUnixTime(const char *text, time_t *out);

// The time as a DMTF date-time in local time with its offset in minutes. `out` has room for 26 characters,
// and stays as it was for a time below 1, which gives -1.
EXPORTED int PH_OEM_ConvertUnixTimetoDMTFDateTimeFormat(time_t time, char *out);

// A new date-time; with PH_OEM_PROP_INTERVAL in `flags` it is an interval. NULL on failure.
CMPIDateTime *NewDateTime(const CMPIBroker *broker, std::uint64_t microseconds, int flags);

// --- Texts

// The field number `index`, from 0, of a comma-separated text. Its length, or -1 when there is none or it
// doesn't fit.
EXPORTED int PH_OEM_GetFruCustomField(const char *text, int index, char *out, int size);

// Six bytes as hexadecimal digits without separators when `separator` begins with a colon (13 characters with
// the NUL), four as a dotted address when it begins with a full stop (16 characters). Otherwise nothing is
// written.
EXPORTED void PH_OEM_ConvertIPorMACnumToStr(const std::uint8_t *bytes, int length, char *out,
                                            const char *separator);

// --- Objects

// strcmp of the two texts. A missing text is less than any other.
EXPORTED int PH_OEM_CompareString(const CMPIString *a, const CMPIString *b);

// 0 when namespace, class name and all keys, in any order, are equal to the letter; -1 otherwise. Only paths
// whose keys are strings are ever equal.
EXPORTED int PH_OEM_CompareObjectPath(const CMPIObjectPath *a, const CMPIObjectPath *b);

// All instances of the path's class, through the broker; NULL on failure.
EXPORTED CMPIArray *PH_OEM_GetInstArray(const CMPIBroker *broker, const CMPIContext *ctx,
                                        const CMPIObjectPath *path);

// The first of them; NULL on failure and when there is none.
EXPORTED CMPIInstance *PH_OEM_GetFirstInstance(const CMPIBroker *broker, const CMPIContext *ctx,
                                               const char *nameSpace, const char *className);
