#include <cmpimacs.h>
#include <strings.h>

#include <cstring>

#include "libClassHelper.h"
#include "standin.h"

using namespace sp;

extern "C" {
getModifiablePropertiesFunction getModifiableProperties;
}

namespace {

bool same_values(const CMPIData &a, const CMPIData &b);

bool same_texts(const CMPIString *a, const CMPIString *b) {
    const char *left = a != nullptr ? CMGetCharPtr(a) : nullptr;
    const char *right = b != nullptr ? CMGetCharPtr(b) : nullptr;
    return left == nullptr || right == nullptr ? left == right : strcmp(left, right) == 0;
}

bool same_date_times(const CMPIDateTime *a, const CMPIDateTime *b) {
    return a != nullptr && b != nullptr && CMIsInterval(a, nullptr) == CMIsInterval(b, nullptr) &&
           CMGetBinaryFormat(a, nullptr) == CMGetBinaryFormat(b, nullptr);
}

bool same_arrays(const CMPIArray *a, const CMPIArray *b) {
    const CMPICount size = CMGetArrayCount(a, nullptr);
    if (size != CMGetArrayCount(b, nullptr)) {
        return false;
    }
    for (CMPICount i = 0; i < size; ++i) {
        if (!same_values(CMGetArrayElementAt(a, i, nullptr), CMGetArrayElementAt(b, i, nullptr))) {
            return false;
        }
    }
    return true;
}

/// Whether two values are surely the same; values of different types never are.
bool same_values(const CMPIData &a, const CMPIData &b) {
    if (CMIsNullValue(a) || CMIsNullValue(b)) {
        return CMIsNullValue(a) == CMIsNullValue(b);
    }
    if (a.type != b.type) {
        return false;
    }
    if (CMIsArray(a)) {
        return same_arrays(a.value.array, b.value.array);
    }
    switch (a.type) {
    case CMPI_string: return same_texts(a.value.string, b.value.string);
    case CMPI_dateTime: return same_date_times(a.value.dateTime, b.value.dateTime);
    case CMPI_ref:
        return same_texts(CMObjectPathToString(a.value.ref, nullptr),
                          CMObjectPathToString(b.value.ref, nullptr));
    case CMPI_boolean: return (a.value.boolean != 0) == (b.value.boolean != 0);
    case CMPI_uint8:
    case CMPI_sint8: return a.value.uint8 == b.value.uint8;
    case CMPI_char16:
    case CMPI_uint16:
    case CMPI_sint16: return a.value.uint16 == b.value.uint16;
    case CMPI_uint32:
    case CMPI_sint32: return a.value.uint32 == b.value.uint32;
    case CMPI_uint64:
    case CMPI_sint64: return a.value.uint64 == b.value.uint64;
    case CMPI_real32: return a.value.real32 == b.value.real32;
    case CMPI_real64: return a.value.real64 == b.value.real64;
    default: return false;
    }
}

/// A property's value; false when the instance has no such property.
bool get_property(const CMPIInstance *instance, const char *name, CMPIData *data) {
    CMPIStatus status{};
    *data = CMGetProperty(instance, name, &status);
    return status.rc == CMPI_RC_OK && (data->state & CMPI_notFound) == 0;
}

/// Whether the instance is called so: the name is one of its keys, and the key has that value.
bool is_own_key(const CMPIInstance *instance, const char *name, const CMPIData &value) {
    CMPIStatus status{};
    const CMPIObjectPath *path = CMGetObjectPath(instance, &status);
    if (path == nullptr || status.rc != CMPI_RC_OK) {
        return false;
    }
    const CMPIData key = CMGetKey(path, name, &status);
    return status.rc == CMPI_RC_OK && same_values(key, value);
}

/// The entry of a list that has the name, in whatever case.
template <class List> auto find_entry(List *list, const char *name) -> decltype(&list->entries[0]) {
    for (int32_t i = 0; i < list->count; ++i) {
        if (strncasecmp(list->entries[i].name, name, sizeof list->entries[i].name) == 0) {
            return &list->entries[i];
        }
    }
    return nullptr;
}

/// Adds a name to the refused ones, as far as there is room, with a comma between two.
void refuse(char *refused, const char *name) {
    const size_t length = strlen(refused);
    snprintf(refused + length, REFUSED_PROPERTIES_SIZE - length, "%s%s", length > 0 ? ", " : "", name);
}

struct Request {
    const CMPIInstance *new_instance;
    const CMPIInstance *current_instance;
    const ModifiablePropertyList *defaults;
    ModifiablePropertyList *changes;
    char *refused;
};

/// Sorts one property with its new value: nothing to do, a change under the default list's spelling, or
/// refused.
void sort(const Request &request, const char *name, const CMPIData &value) {
    CMPIData current;
    if (is_own_key(request.new_instance, name, value) ||
        (request.current_instance != nullptr && get_property(request.current_instance, name, &current) &&
         same_values(value, current))) {
        return;
    }
    const auto *modifiable = find_entry(request.defaults, name);
    if (modifiable == nullptr) {
        return refuse(request.refused, name);
    }
    if (find_entry(request.changes, name) != nullptr) {
        return; // the client's list names it twice
    }
    auto &change = request.changes->entries[request.changes->count++];
    memcpy(change.name, modifiable->name, sizeof change.name);
    change.data = value;
}

/// With a list of properties, those are what the client wants to change, also to null.
void sort_listed(const Request &request, const char **properties) {
    for (; *properties != nullptr; ++properties) {
        CMPIData value;
        if (!get_property(request.new_instance, *properties, &value)) {
            value = {CMPI_null, CMPI_nullValue, {}};
        }
        sort(request, *properties, value);
    }
}

/// Without one, they are the properties that have a value.
int sort_all(const Request &request) {
    CMPIStatus status{};
    const CMPICount count = CMGetPropertyCount(request.new_instance, &status);
    for (CMPICount i = 0; i < count && status.rc == CMPI_RC_OK; ++i) {
        CMPIString *name = nullptr;
        const CMPIData value = CMGetPropertyAt(request.new_instance, i, &name, &status);
        const char *text = name != nullptr ? CMGetCharPtr(name) : nullptr;
        if (status.rc == CMPI_RC_OK && text != nullptr && !CMIsNullValue(value)) {
            sort(request, text, value);
        }
    }
    return status.rc == CMPI_RC_OK ? 0 : -1;
}

} // namespace

int getModifiableProperties(const CMPIInstance *newInstance, const CMPIInstance *currentInstance,
                            const char **properties, const ModifiablePropertyList *defaults,
                            ModifiablePropertyList *changes, char *refused) {
    return call("getModifiableProperties", {properties != nullptr ? "listed" : "all"}, [&] {
        if (newInstance == nullptr || defaults == nullptr || changes == nullptr || refused == nullptr) {
            return -1;
        }
        const Request request{newInstance, currentInstance, defaults, changes, refused};
        if (properties == nullptr) {
            return sort_all(request);
        }
        sort_listed(request, properties);
        return 0;
    });
}
