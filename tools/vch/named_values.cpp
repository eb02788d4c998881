#include "named_values.h"

#include <broker/broker.h>

namespace {

// The three objects differ only in their functions' names.
template <typename At> std::vector<NamedValue> collect(CMPICount count, At at) {
    std::vector<NamedValue> values;
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString *name = nullptr;
        const CMPIData value = at(i, &name);
        values.push_back({textOf(name), value});
    }
    return values;
}

} // namespace

std::vector<NamedValue> propertiesOf(const CMPIInstance *instance) {
    return collect(CMGetPropertyCount(instance, nullptr), [=](CMPICount i, CMPIString **name) {
        return CMGetPropertyAt(instance, i, name, nullptr);
    });
}

std::vector<NamedValue> keysOf(const CMPIObjectPath *path) {
    return collect(CMGetKeyCount(path, nullptr),
                   [=](CMPICount i, CMPIString **name) { return CMGetKeyAt(path, i, name, nullptr); });
}

std::vector<NamedValue> argumentsOf(const CMPIArgs *arguments) {
    return collect(CMGetArgCount(arguments, nullptr),
                   [=](CMPICount i, CMPIString **name) { return CMGetArgAt(arguments, i, name, nullptr); });
}

std::string textOf(const CMPIString *string) {
    const char *text = string == nullptr ? nullptr : CMGetCharsPtr(string, nullptr);
    return text == nullptr ? "" : text;
}

std::string textOf(const CMPIInstance *instance, const char *property) {
    return broker::textOfValue(CMGetProperty(instance, property, nullptr));
}
