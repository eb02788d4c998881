#include "Utilities/PH_OEM_Values.h"

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Debug.h"
#include "Utilities/PH_OEM_Utilities.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

template <typename T> T ValueAt(const void *place) {
    T value; // a field of a row may be unaligned
    std::memcpy(&value, place, sizeof value);
    return value;
}

CMPIType ElementType(CMPIType arrayType) {
    return static_cast<CMPIType>(arrayType & ~CMPI_ARRAY);
}

const CMPIValue *AsValue(const void *value) {
    return static_cast<const CMPIValue *>(value);
}

const char *MessageText(const CMPIStatus &status) {
    const char *text = status.msg == nullptr ? nullptr : CMGetCharsPtr(status.msg, nullptr);
    return text == nullptr ? "" : text;
}

constexpr std::size_t has_end = SIZE_MAX;

// Sets element `i` to a string; a missing text leaves the element null. A text in place ends with its `limit`
// bytes, of which up to 512 are taken then.
void SetTextElement(const CMPIBroker *broker, CMPIArray *array, CMPICount i, const char *text,
                    std::size_t limit = has_end) {
    if (text == nullptr) {
        return;
    }
    char ended[512 + 1];
    if (limit != has_end && strnlen(text, limit) == limit) {
        CopyBounded(ended, sizeof ended, text, limit);
        text = ended;
    }
    CMPIString *string = CMNewString(broker, text, nullptr);
    if (string != nullptr) {
        CMSetArrayElementAt(array, i, AsValue(&string), CMPI_string);
    }
}

} // namespace

CMPIDateTime *NewDateTime(const CMPIBroker *broker, std::uint64_t microseconds, int flags) {
    return CMNewDateTimeFromBinary(broker, microseconds, (flags & PH_OEM_PROP_INTERVAL) != 0 ? 1 : 0,
                                   nullptr);
}

// --- Arrays and properties

CMPIArray *PH_OEM_NewArray(const CMPIBroker *broker, const void *data, int stride, int count, CMPIType type) {
    const CMPICount size = count < 1 || data == nullptr ? 0 : static_cast<CMPICount>(count);
    const CMPIType elementType = ElementType(type);
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = CMNewArray(broker, size, elementType, &st);
    if (st.rc != CMPI_RC_OK || array == nullptr) {
        return nullptr;
    }
    const char *place = static_cast<const char *>(data);
    for (CMPICount i = 0; i < size; ++i, place += stride) {
        CMPIValue value{};
        switch (type) {
        case CMPI_uint8A: value.uint8 = ValueAt<CMPIUint8>(place); break;
        case CMPI_uint16A: value.uint16 = ValueAt<CMPIUint16>(place); break;
        case CMPI_sint32A: value.sint32 = ValueAt<CMPISint32>(place); break;
        case CMPI_uint64A: value.uint64 = ValueAt<CMPIUint64>(place); break;
        case CMPI_stringA:
            static_cast<std::size_t>(stride) == sizeof(char *)
                ? SetTextElement(broker, array, i, ValueAt<const char *>(place))
                : SetTextElement(broker, array, i, place, static_cast<std::size_t>(stride));
            continue;
        default: continue;
        }
        CMSetArrayElementAt(array, i, &value, elementType);
    }
    return array;
}

std::size_t ArrayElementSize(CMPIType arrayType) {
    switch (arrayType) {
    case CMPI_booleanA:
    case CMPI_uint8A:
    case CMPI_sint8A: return 1;
    case CMPI_uint16A:
    case CMPI_sint16A: return 2;
    case CMPI_uint32A:
    case CMPI_sint32A: return 4;
    case CMPI_uint64A:
    case CMPI_sint64A:
    case CMPI_dateTimeA: return 8;
    case CMPI_stringA: return sizeof(char *);
    default: return 0;
    }
}

namespace {

// A new array of `count` elements that lie back to back; texts in place lie `stride` bytes apart.
CMPIArray *ph_oem_create_array(const CMPIBroker *broker, const void *data, int count, CMPIType type,
                               int flags, int stride) {
    const std::size_t size = ArrayElementSize(type);
    if (size == 0) {
        TRACE(TraceFailure, "Not supported type(%d)", type);
        return nullptr;
    }
    const CMPICount elements = count < 0 ? 0 : static_cast<CMPICount>(count);
    const CMPIType elementType = ElementType(type);
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = CMNewArray(broker, elements, elementType, &st);
    if (st.rc != CMPI_RC_OK || array == nullptr) {
        TRACE(TraceFailure, "Failed to create an array (status=%d,%s)", st.rc, MessageText(st));
        return nullptr;
    }
    const bool inPlace = type == CMPI_stringA && stride != 0;
    const std::size_t step = inPlace ? static_cast<std::size_t>(stride) : size;
    const char *place = static_cast<const char *>(data);
    for (CMPICount i = 0; i < elements; ++i, place += step) {
        if (type == CMPI_stringA) {
            inPlace ? SetTextElement(broker, array, i, place, step)
                    : SetTextElement(broker, array, i, ValueAt<const char *>(place));
            continue;
        }
        CMPIValue value{};
        if (type == CMPI_dateTimeA) {
            value.dateTime = NewDateTime(broker, ValueAt<std::uint64_t>(place), flags);
            if (value.dateTime == nullptr) {
                continue;
            }
        } else {
            ZBR_CIM_CreateCMPIValue(&value, place, elementType);
        }
        CMSetArrayElementAt(array, i, &value, elementType);
    }
    return array;
}

int SetAndTrace(const CMPIInstance *inst, const char *name, const CMPIValue *value, CMPIType type) {
    const CMPIStatus st = CMSetProperty(inst, name, value, type);
    if (st.rc != CMPI_RC_OK) {
        TRACE(TraceFailure, "Failed to set a property value for %s (status=%d,%s)", name, st.rc,
              MessageText(st));
        return -1;
    }
    return 0;
}

} // namespace

int PH_OEM_SetProperty(const CMPIBroker *broker, const CMPIInstance *inst, const char **properties,
                       const char *name, const void *value, CMPIType type, int flags) {
    if (!IsWanted(properties, name)) {
        return 0;
    }
    if (value == nullptr || (flags & PH_OEM_PROP_NULL) != 0) {
        return SetAndTrace(inst, name, nullptr, type);
    }
    if (type == CMPI_chars) {
        return SetAndTrace(inst, name, AsValue(value), type);
    }
    CMPIValue converted{};
    if (type == CMPI_dateTime) {
        const auto microseconds = ValueAt<std::uint64_t>(value);
        if (microseconds == null_datetime) {
            return SetAndTrace(inst, name, nullptr, type);
        }
        converted.dateTime = NewDateTime(broker, microseconds, flags);
        if (converted.dateTime == nullptr) {
            TRACE(TraceFailure, "Failed to create a date-time for %s", name);
            return -1;
        }
    } else {
        ZBR_CIM_CreateCMPIValue(&converted, value, type);
    }
    return SetAndTrace(inst, name, &converted, type);
}

namespace {

// The length of a list that ends by itself, `count` at most.
template <typename Ends> int LengthOfList(int count, Ends ends) {
    int length = 0;
    while (length < count && !ends(length)) {
        ++length;
    }
    return length;
}

// A uint16 array of a value list.
CMPIArray *ArrayOfValueList(const CMPIBroker *broker, const std::int32_t *list, int count, int flags) {
    const auto at = [=](int i) { return ValueAt<std::int32_t>(list + i); };
    const int length = LengthOfList(count, [=](int i) { return at(i) < 0; });
    const Block<std::uint16_t> values{static_cast<std::uint16_t *>(
        std::malloc((static_cast<std::size_t>(length) + 1) * sizeof(std::uint16_t)))};
    if (values == nullptr) {
        TRACE(TraceFailure, "memory allocation failed");
        return nullptr;
    }
    for (int i = 0; i < length; ++i) {
        values.get()[i] = static_cast<std::uint16_t>(at(i));
    }
    return ph_oem_create_array(broker, values.get(), length, CMPI_uint16A, flags, 0);
}

int LengthOfTextList(const void *data, int count, int stride) {
    const char *texts = static_cast<const char *>(data);
    if (stride == 0) {
        return LengthOfList(count, [=](int i) {
            return ValueAt<const char *>(texts + static_cast<std::size_t>(i) * sizeof(char *)) == nullptr;
        });
    }
    return LengthOfList(count, [=](int i) { return texts[static_cast<std::ptrdiff_t>(stride) * i] == '\0'; });
}

} // namespace

int PH_OEM_SetPropertyArray(const CMPIBroker *broker, const CMPIInstance *inst, const char **properties,
                            const char *name, const void *data, int count, CMPIType type, int flags,
                            int stride) {
    if (!IsWanted(properties, name)) {
        return 0;
    }
    if (data == nullptr || (flags & PH_OEM_PROP_NULL) != 0) {
        return SetAndTrace(inst, name, nullptr, type);
    }
    const bool endsByItself = (flags & PH_OEM_PROP_TERMINATED) != 0;
    CMPIArray *array = nullptr;
    if (endsByItself && type == CMPI_uint16A) {
        array = ArrayOfValueList(broker, static_cast<const std::int32_t *>(data), count, flags);
    } else {
        const int length =
            endsByItself && type == CMPI_stringA ? LengthOfTextList(data, count, stride) : count;
        array = ph_oem_create_array(broker, data, length, type, flags, stride);
    }
    if (array == nullptr) {
        TRACE(TraceFailure, "Failed to create CMPI array for %s", name);
        return -1;
    }
    return SetAndTrace(inst, name, AsValue(&array), type);
}

int PH_OEM_AssignProperty(CMPIValue *value, const void *source, CMPIType type) {
    if (value == nullptr) {
        return 0;
    }
    const auto assign = [&](auto &member) {
        member = source == nullptr ? 0 : ValueAt<std::remove_reference_t<decltype(member)>>(source);
        return 1;
    };
    switch (type) {
    case CMPI_chars: value->chars = static_cast<char *>(const_cast<void *>(source)); return 1;
    case CMPI_uint8: return assign(value->uint8);
    case CMPI_uint16: return assign(value->uint16);
    case CMPI_sint16: return assign(value->sint16);
    case CMPI_uint32: return assign(value->uint32);
    case CMPI_sint32: return assign(value->sint32);
    case CMPI_uint64: return assign(value->uint64);
    case CMPI_boolean: return assign(value->boolean);
    default: return 0;
    }
}

// --- Date-times

int PH_OEM_GetDatetimeValueFromData(CMPIData data, std::uint64_t *out) {
    if (data.type != CMPI_dateTime) {
        return -1;
    }
    if (CMIsNullValue(data) || data.value.dateTime == nullptr) {
        *out = null_datetime;
        return 0;
    }
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    const CMPIUint64 microseconds = CMGetBinaryFormat(data.value.dateTime, &st);
    if (st.rc != CMPI_RC_OK) {
        return -1;
    }
    *out = microseconds;
    return 0;
}

int PH_OEM_ConvertDMTFDateTimeFormatToUnixTime(const char *text, time_t *out) {
    constexpr int fields = 6;
    tm broken{};
    *out = 0;
    if (text == nullptr ||
        std::sscanf(text, "%4d%2d%2d%2d%2d%2d.000000", &broken.tm_year, &broken.tm_mon, &broken.tm_mday,
                    &broken.tm_hour, &broken.tm_min, &broken.tm_sec) != fields) {
        return 0;
    }
    broken.tm_year -= 1900;
    broken.tm_mon -= 1;
    broken.tm_isdst = -1; // the text doesn't say; the zone's own rules do
    if (const time_t time = mktime(&broken); time != -1) {
        *out = time;
    }
    return 0;
}

int PH_OEM_ConvertUnixTimetoDMTFDateTimeFormat(time_t time, char *out) {
    constexpr int last_year = 9999 - 1900; // a date-time has four digits for it
    tm broken{};
    char local[32];
    char zone[16];
    tzset(); // localtime_r doesn't look whether the zone was changed
    if (time < 1 || out == nullptr || localtime_r(&time, &broken) == nullptr || broken.tm_year > last_year ||
        strftime(local, sizeof local, "%Y%m%d%H%M%S.000000", &broken) == 0) {
        return -1;
    }
    zone[strftime(zone, sizeof zone - 1, "%z", &broken)] = '\0';
    const long hhmm = std::strtol(zone, nullptr, 10);
    const long minutes = hhmm % 100 + (hhmm / 100) * 60;
    const bool east = zone[0] == '+';
    std::snprintf(out, datetime_text_size, east ? "%s+%03ld" : "%s-%03ld", local, east ? minutes : -minutes);
    return 0;
}

// --- Texts

int PH_OEM_GetFruCustomField(const char *text, int index, char *out, int size) {
    if (text == nullptr || index < 0 || out == nullptr || size <= 0) {
        TRACE(TraceFailure, "PH_OEM_GetFruCustomField failed. invalid parameter");
        return -1;
    }
    for (; index > 0; --index) {
        text = std::strchr(text, ',');
        if (text == nullptr) {
            TRACE(TraceFailure, "PH_OEM_GetFruCustomField failed. custom field is not found");
            return -1;
        }
        ++text;
    }
    const std::size_t length = std::strcspn(text, ",");
    if (length >= static_cast<std::size_t>(size)) {
        TRACE(TraceFailure,
              "PH_OEM_GetFruCustomField failed. buffer is too short. length of custom field = %d",
              static_cast<int>(length));
        return -1;
    }
    std::memset(out, 0, static_cast<std::size_t>(size));
    std::memcpy(out, text, length);
    return static_cast<int>(length);
}

void PH_OEM_ConvertIPorMACnumToStr(const std::uint8_t *bytes, int, char *out, const char *separator) {
    if (bytes == nullptr || out == nullptr || separator == nullptr) {
        return;
    }
    if (*separator == ':') {
        std::snprintf(out, 13, "%02X%02X%02X%02X%02X%02X", bytes[0], bytes[1], bytes[2], bytes[3], bytes[4],
                      bytes[5]);
    } else if (*separator == '.') {
        std::snprintf(out, 16, "%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
    }
}

// --- Objects

int PH_OEM_CompareString(const CMPIString *a, const CMPIString *b) {
    const char *textA = a == nullptr ? nullptr : CMGetCharsPtr(a, nullptr);
    const char *textB = b == nullptr ? nullptr : CMGetCharsPtr(b, nullptr);
    if (textA == nullptr || textB == nullptr) {
        return (textA != nullptr) - (textB != nullptr);
    }
    return std::strcmp(textA, textB);
}

namespace {

bool SameText(const CMPIString *a, const CMPIString *b) {
    return a != nullptr && b != nullptr && PH_OEM_CompareString(a, b) == 0;
}

// A text of a path, the namespace or the class name; both must be there and equal.
template <typename Read> bool TextsEqual(const CMPIObjectPath *a, const CMPIObjectPath *b, Read read) {
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    const CMPIString *textA = read(a, &st);
    if (st.rc != CMPI_RC_OK) {
        return false;
    }
    const CMPIString *textB = read(b, &st);
    return st.rc == CMPI_RC_OK && SameText(textA, textB);
}

// Whether the path has a key of that name and value; both must be strings.
bool HasKey(const CMPIObjectPath *path, CMPICount keyCount, const CMPIString *name, const CMPIData &key) {
    for (CMPICount i = 0; i < keyCount; ++i) {
        CMPIStatus st = {CMPI_RC_OK, nullptr};
        CMPIString *otherName = nullptr;
        const CMPIData other = CMGetKeyAt(path, i, &otherName, &st);
        if (st.rc != CMPI_RC_OK) {
            return false;
        }
        if (!SameText(name, otherName)) {
            continue;
        }
        if (key.type != CMPI_string || other.type != CMPI_string) {
            return false;
        }
        if (SameText(key.value.string, other.value.string)) {
            return true;
        }
    }
    return false;
}

} // namespace

int PH_OEM_CompareObjectPath(const CMPIObjectPath *a, const CMPIObjectPath *b) {
    if (a == nullptr || b == nullptr) {
        return -1;
    }
    const auto nameSpace = [](const CMPIObjectPath *path, CMPIStatus *st) {
        return CMGetNameSpace(path, st);
    };
    const auto className = [](const CMPIObjectPath *path, CMPIStatus *st) {
        return CMGetClassName(path, st);
    };
    if (!TextsEqual(a, b, nameSpace) || !TextsEqual(a, b, className)) {
        return -1;
    }
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    const CMPICount keyCount = CMGetKeyCount(a, &st);
    if (st.rc != CMPI_RC_OK || keyCount != CMGetKeyCount(b, &st) || st.rc != CMPI_RC_OK) {
        return -1;
    }
    for (CMPICount i = 0; i < keyCount; ++i) {
        CMPIString *name = nullptr;
        const CMPIData key = CMGetKeyAt(a, i, &name, &st);
        if (st.rc != CMPI_RC_OK || !HasKey(b, keyCount, name, key)) {
            return -1;
        }
    }
    return 0;
}

CMPIArray *PH_OEM_GetInstArray(const CMPIBroker *broker, const CMPIContext *ctx, const CMPIObjectPath *path) {
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIEnumeration *instances = CBEnumInstances(broker, ctx, path, nullptr, &st);
    if (st.rc != CMPI_RC_OK) {
        TRACE(TraceFailure, "Enumeration Instances failed: %s", MessageText(st));
        return nullptr;
    }
    return instances == nullptr ? nullptr : CMToArray(instances, nullptr);
}

CMPIInstance *PH_OEM_GetFirstInstance(const CMPIBroker *broker, const CMPIContext *ctx, const char *nameSpace,
                                      const char *className) {
    const CMPIObjectPath *path = CMNewObjectPath(broker, nameSpace, className, nullptr);
    if (path == nullptr) {
        TRACE(TraceFailure, "Create objectpath failed");
        return nullptr;
    }
    const CMPIArray *instances = PH_OEM_GetInstArray(broker, ctx, path);
    if (instances == nullptr) {
        TRACE(TraceFailure, "Get instance array failed");
        return nullptr;
    }
    if (const CMPICount count = CMGetArrayCount(instances, nullptr); count < 1) {
        TRACE(TraceFailure, "Unexpected number of instance: %d", static_cast<int>(count));
        return nullptr;
    }
    return CMGetArrayElementAt(instances, 0, nullptr).value.inst;
}
