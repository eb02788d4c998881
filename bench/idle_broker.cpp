#include "idle_broker.h"

#include "calls.h"

#include <array>
#include <string>

namespace bench {

namespace {

constexpr CMPIStatus ok = {CMPI_RC_OK, nullptr};
constexpr const void *handle = &ok; // of objects that hold nothing

// The keys of the request's path, as strings of CMPI whose handle is the text.
struct RequestKeys {
    std::array<CMPIString, 4> names, values;
    CMPICount count;
};
RequestKeys request_keys;

std::string TextOf(const CMPIValue *value, CMPIType type) {
    if (value == nullptr) {
        return "null";
    }
    if (type == CMPI_chars) {
        return '"' + std::string(reinterpret_cast<const char *>(value)) + '"';
    }
    switch (type) {
    case CMPI_boolean:
    case CMPI_uint8: return std::to_string(value->uint8);
    case CMPI_uint16: return std::to_string(value->uint16);
    case CMPI_uint32: return std::to_string(value->uint32);
    case CMPI_uint64: return std::to_string(value->uint64);
    case CMPI_sint32: return std::to_string(value->sint32);
    case CMPI_string: return '"' + std::string(static_cast<const char *>(value->string->hdl)) + '"';
    default: return "object"; // recorded when it was made
    }
}

// All that a provider may call, once plainly and once recorded.
template <bool recorded> struct Tables {
    template <typename... Values> static void Call(const char *format, Values... values) {
        if constexpr (recorded) {
            Record(format, values...);
        }
    }

    // --- Strings, arrays, date-times

    static const char *GetCharPtr(const CMPIString *string, CMPIStatus *) {
        Call("GetCharPtr %s", static_cast<const char *>(string->hdl));
        return static_cast<const char *>(string->hdl);
    }
    static CMPIStatus ReleaseArray(CMPIArray *) {
        Call("Release array");
        return ok;
    }
    static CMPIStatus SetElementAt(const CMPIArray *, CMPICount index, const CMPIValue *value,
                                   CMPIType type) {
        if constexpr (recorded) {
            Record("SetElementAt %u %x %s", index, type, TextOf(value, type).c_str());
        }
        return ok;
    }

    // --- Instances and paths

    static CMPIStatus SetProperty(const CMPIInstance *, const char *name, const CMPIValue *value,
                                  CMPIType type) {
        if constexpr (recorded) {
            Record("SetProperty %s %x %s", name, type, TextOf(value, type).c_str());
        }
        return ok;
    }
    static CMPIStatus AddKey(const CMPIObjectPath *, const char *name, const CMPIValue *value,
                             const CMPIType type) {
        if constexpr (recorded) {
            Record("AddKey %s %x %s", name, type, TextOf(value, type).c_str());
        }
        return ok;
    }
    static CMPIString *GetNameSpace(const CMPIObjectPath *, CMPIStatus *) {
        Call("GetNameSpace");
        return &name_space;
    }
    static CMPICount GetKeyCount(const CMPIObjectPath *, CMPIStatus *) {
        Call("GetKeyCount");
        return request_keys.count;
    }
    static CMPIData GetKeyAt(const CMPIObjectPath *, CMPICount index, CMPIString **name, CMPIStatus *) {
        Call("GetKeyAt %u", index);
        *name = &request_keys.names[index];
        CMPIData data = {CMPI_string, CMPI_keyValue, {}};
        data.value.string = &request_keys.values[index];
        return data;
    }

    // --- Results

    static CMPIStatus ReturnInstance(const CMPIResult *, const CMPIInstance *) {
        Call("ReturnInstance");
        return ok;
    }
    static CMPIStatus ReturnObjectPath(const CMPIResult *, const CMPIObjectPath *) {
        Call("ReturnObjectPath");
        return ok;
    }

    // --- What the broker makes

    static CMPIInstance *NewInstance(const CMPIBroker *, const CMPIObjectPath *, CMPIStatus *) {
        Call("NewInstance");
        return &instance;
    }
    static CMPIObjectPath *NewObjectPath(const CMPIBroker *, const char *nameSpace, const char *className,
                                         CMPIStatus *) {
        Call("NewObjectPath %s %s", nameSpace, className);
        return &path;
    }
    static CMPIString *NewString(const CMPIBroker *, const char *text, CMPIStatus *) {
        Call("NewString %s", text);
        string.hdl = text;
        return &string;
    }
    static CMPIArray *NewArray(const CMPIBroker *, CMPICount size, CMPIType type, CMPIStatus *status) {
        Call("NewArray %u %x", size, type);
        if (status != nullptr) {
            *status = ok;
        }
        return &array;
    }
    static CMPIDateTime *NewDateTimeFromBinary(const CMPIBroker *, CMPIUint64 time, CMPIBoolean interval,
                                               CMPIStatus *) {
        Call("NewDateTimeFromBinary %llu %d", time, interval);
        return &date_time;
    }

    // --- The tables, without what no operation calls, and the objects

    static inline CMPIStringFT string_table = [] {
        CMPIStringFT table{};
        table.getCharPtr = GetCharPtr;
        return table;
    }();
    static inline CMPIArrayFT array_table = [] {
        CMPIArrayFT table{};
        table.release = ReleaseArray;
        table.setElementAt = SetElementAt;
        return table;
    }();
    static inline CMPIInstanceFT instance_table = [] {
        CMPIInstanceFT table{};
        table.setProperty = SetProperty;
        return table;
    }();
    static inline CMPIObjectPathFT path_table = [] {
        CMPIObjectPathFT table{};
        table.getNameSpace = GetNameSpace;
        table.addKey = AddKey;
        table.getKeyAt = GetKeyAt;
        table.getKeyCount = GetKeyCount;
        return table;
    }();
    static inline CMPIResultFT result_table = [] {
        CMPIResultFT table{};
        table.returnInstance = ReturnInstance;
        table.returnObjectPath = ReturnObjectPath;
        return table;
    }();
    static inline CMPIBrokerEncFT creation_table = [] {
        CMPIBrokerEncFT table{};
        table.newInstance = NewInstance;
        table.newObjectPath = NewObjectPath;
        table.newString = NewString;
        table.newArray = NewArray;
        table.newDateTimeFromBinary = NewDateTimeFromBinary;
        return table;
    }();

    static inline CMPIString name_space = {"root/cimv2", &string_table};
    static inline CMPIString string = {"", &string_table};
    static inline CMPIArray array = {handle, &array_table};
    static inline CMPIDateTime date_time = {handle, nullptr};
    static inline CMPIInstance instance = {handle, &instance_table};
    static inline CMPIObjectPath path = {handle, &path_table};
    static inline CMPIResult result = {handle, &result_table};
    static inline CMPIBroker broker = {handle, nullptr, &creation_table, nullptr, nullptr};

    static IdleRequest NewRequest(std::span<const PathKey> keys) {
        request_keys.count = 0;
        for (const PathKey &key : keys) {
            request_keys.names.at(request_keys.count) = {key.name, &string_table};
            request_keys.values.at(request_keys.count) = {key.value, &string_table};
            ++request_keys.count;
        }
        return {&broker, nullptr, &path, &result};
    }
};

} // namespace

IdleRequest NewIdleRequest(std::span<const PathKey> keys, bool recorded) {
    return recorded ? Tables<true>::NewRequest(keys) : Tables<false>::NewRequest(keys);
}

} // namespace bench
