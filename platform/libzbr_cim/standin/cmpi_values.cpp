#include <cmpimacs.h>

#include <cstring>
#include <utility>

#include "libzbr_cim.h"
#include "standin.h"

using namespace sp;

namespace {

constexpr int Failed = 1;
constexpr CMPIValueState NoValue = CMPI_nullValue | CMPI_notFound | CMPI_badValue;

/// Bytes of a plain value as the caller holds it; 0 for a type that has no plain value.
constexpr std::pair<CMPIType, size_t> plain_sizes[] = {
    {CMPI_boolean, 1}, {CMPI_char16, 2}, {CMPI_real32, 4}, {CMPI_real64, 8},
    {CMPI_uint8, 1},   {CMPI_uint16, 2}, {CMPI_uint32, 4}, {CMPI_uint64, 8},
    {CMPI_sint8, 1},   {CMPI_sint16, 2}, {CMPI_sint32, 4}, {CMPI_sint64, 8},
};

size_t plain_size(CMPIType type) {
    for (const auto &[plain, size] : plain_sizes) {
        if (plain == type) {
            return size;
        }
    }
    return 0;
}

bool is_text(CMPIType type) {
    return type == CMPI_string || type == CMPI_chars;
}

template <class T> int store(void *out, T value) {
    memcpy(out, &value, sizeof value);
    return 0;
}

/// The same for a pointer to an object, which has to be there.
int store_object(void *out, const void *object) {
    return object != nullptr ? store(out, reinterpret_cast<uintptr_t>(object)) : Failed;
}

int store_text(const CMPIData &data, void *out, CMPIType type) {
    const char *text = nullptr;
    if (data.type == CMPI_chars) {
        text = data.value.chars;
    } else if (data.type == CMPI_string && data.value.string != nullptr) {
        text = CMGetCharPtr(data.value.string);
    }
    if (text == nullptr) {
        return Failed;
    }
    if (type == CMPI_string) {
        return store(out, text);
    }
    memcpy(out, text, strlen(text) + 1);
    return 0;
}

int store_date_time(const CMPIDateTime *date_time, void *out) {
    if (date_time == nullptr) {
        return Failed;
    }
    CMPIStatus status{};
    const CMPIUint64 microseconds = CMGetBinaryFormat(date_time, &status);
    return status.rc == CMPI_RC_OK ? store(out, microseconds) : Failed;
}

/// The value that data holds, in the form of the asked type.
int store_value(const CMPIData &data, void *out, CMPIType type) {
    if (out == nullptr || (data.state & NoValue) != 0) {
        return Failed;
    }
    if (is_text(type)) {
        return store_text(data, out, type);
    }
    if (data.type != type) {
        return Failed;
    }
    if ((type & CMPI_ARRAY) != 0) {
        return store_object(out, data.value.array);
    }
    switch (type) {
    case CMPI_dateTime: return store_date_time(data.value.dateTime, out);
    case CMPI_ref: return store_object(out, data.value.ref);
    case CMPI_instance: return store_object(out, data.value.inst);
    default: break;
    }
    const size_t size = plain_size(type);
    if (size == 0) {
        return Failed;
    }
    memcpy(out, &data.value, size);
    return 0;
}

/// The elements of the array that data holds. All are looked at before the first is stored.
int store_elements(const CMPIData &data, void *out, int *count, CMPIType type) {
    CMPIType element = type & static_cast<CMPIType>(~CMPI_ARRAY);
    CMPIType held = data.type & static_cast<CMPIType>(~CMPI_ARRAY);
    if (is_text(element)) {
        element = CMPI_string;
    }
    if (is_text(held)) {
        held = CMPI_string;
    }
    if (out == nullptr || count == nullptr || (data.state & NoValue) != 0 || (data.type & CMPI_ARRAY) == 0 ||
        held != element || data.value.array == nullptr) {
        return Failed;
    }

    CMPIStatus status{};
    const CMPICount size = CMGetArrayCount(data.value.array, &status);
    if (status.rc != CMPI_RC_OK || *count < 0 || size > static_cast<CMPICount>(*count)) {
        return Failed;
    }
    size_t stride = plain_size(element);
    if (stride == 0) {
        stride = element == CMPI_dateTime ? sizeof(CMPIUint64) : sizeof(void *);
    }
    for (const bool keep : {false, true}) {
        for (CMPICount i = 0; i < size; ++i) {
            uint64_t value = 0;
            const CMPIData at = CMGetArrayElementAt(data.value.array, i, &status);
            if (status.rc != CMPI_RC_OK || store_value(at, &value, element) != 0) {
                return Failed;
            }
            if (keep) {
                memcpy(static_cast<char *>(out) + i * stride, &value, stride);
            }
        }
    }
    *count = static_cast<int>(size);
    return 0;
}

/// Data of a property, argument or context entry; its state says that there is none.
constexpr CMPIData no_data = {CMPI_null, CMPI_notFound, {}};

CMPIData checked(const CMPIData &data, const CMPIStatus &status) {
    return status.rc == CMPI_RC_OK ? data : no_data;
}

CMPIData property(const CMPIInstance *instance, const char *name) {
    CMPIStatus status{};
    return instance != nullptr && name != nullptr ? checked(CMGetProperty(instance, name, &status), status)
                                                  : no_data;
}

CMPIData argument(const CMPIArgs *args, const char *name) {
    CMPIStatus status{};
    return args != nullptr && name != nullptr ? checked(CMGetArg(args, name, &status), status) : no_data;
}

CMPIData entry(const CMPIContext *context, const char *name) {
    CMPIStatus status{};
    return context != nullptr && name != nullptr ? checked(CMGetContextEntry(context, name, &status), status)
                                                 : no_data;
}

} // namespace

int ZBR_CIM_GetValueFromInstance(const CMPIInstance *instance, const char *name, void *out, CMPIType type) {
    return call("ZBR_CIM_GetValueFromInstance", {name, Hex{type}},
                [&] { return store_value(property(instance, name), out, type); });
}

int ZBR_CIM_GetValueFromArgs(const CMPIArgs *args, const char *name, void *out, CMPIType type) {
    return call("ZBR_CIM_GetValueFromArgs", {name, Hex{type}},
                [&] { return store_value(argument(args, name), out, type); });
}

int ZBR_CIM_GetValueFromData(CMPIData data, void *out, CMPIType type) {
    return call("ZBR_CIM_GetValueFromData", {Hex{type}}, [&] { return store_value(data, out, type); });
}

int ZBR_CIM_GetValueFromContext(const CMPIContext *context, const char *name, void *out, CMPIType type) {
    return call("ZBR_CIM_GetValueFromContext", {name, Hex{type}},
                [&] { return store_value(entry(context, name), out, type); });
}

int ZBR_CIM_GetArrayValueFromInstance(const CMPIInstance *instance, const char *name, void *out, int *count,
                                      CMPIType type) {
    return call("ZBR_CIM_GetArrayValueFromInstance", {name, Hex{type}},
                [&] { return store_elements(property(instance, name), out, count, type); });
}

int ZBR_CIM_GetArrayValueFromArgs(const CMPIArgs *args, const char *name, void *out, int *count,
                                  CMPIType type) {
    return call("ZBR_CIM_GetArrayValueFromArgs", {name, Hex{type}},
                [&] { return store_elements(argument(args, name), out, count, type); });
}

int ZBR_CIM_GetArrayValueFromData(CMPIData data, void *out, int *count, CMPIType type) {
    return call("ZBR_CIM_GetArrayValueFromData", {Hex{type}},
                [&] { return store_elements(data, out, count, type); });
}

void ZBR_CIM_CreateCMPIValue(CMPIValue *value, const void *source, CMPIType type) {
    if (value == nullptr) {
        return;
    }
    *value = {};
    call("ZBR_CIM_CreateCMPIValue", {Hex{type}}, [&] {
        if (source == nullptr) {
            return;
        }
        if (type == CMPI_chars) {
            value->chars = static_cast<char *>(const_cast<void *>(source));
        } else if (const size_t size = plain_size(type)) {
            memcpy(value, source, size);
        } else if (type >= CMPI_ENC) {
            value->ref =
                *static_cast<CMPIObjectPath *const *>(source); // in the place of every pointer to an object
        }
    });
}
