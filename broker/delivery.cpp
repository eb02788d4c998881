// What providers deliver, held against the declared classes. A CIM server drops or garbles what its
// schema doesn't know, or crashes later; here it is an error that names the fault.
#include "objects.h"

#include <algorithm>

namespace broker {

namespace {

std::string quoted(const std::string &name) {
    return '"' + name + '"';
}

std::string faultOfClass(const Class *cls, const StringObject &name, const Class *expected) {
    if (cls == nullptr) {
        return "the provider answered with class " + quoted(CMGetCharPtr(&name.cmpi)) +
               ", which isn't declared";
    }
    if (expected != nullptr && !isA(*cls, *expected)) {
        return "the provider answered with class " + cls->name + " where " + expected->name +
               " was asked for";
    }
    return {};
}

bool isMissing(const CMPIData *value) {
    if (value == nullptr || CMIsNullValue(*value)) {
        return true;
    }
    return value->type == CMPI_string && *CMGetCharPtr(value->value.string) == '\0';
}

// A number in a path may have any integer type: CIM servers don't keep which.
bool fitsKey(const CMPIData &value, const Property &key) {
    return value.type == key.type || (isInteger(value.type) && isInteger(key.type)) ||
           (key.type == CMPI_dateTime && value.type == CMPI_string);
}

std::string faultOfKeys(const NamedValues &keys, const Class &cls) {
    for (const size_t index : cls.keys) {
        const Property &key = cls.properties[index];
        const NamedValue *value = findValue(keys, key.name);
        if (isMissing(value == nullptr ? nullptr : &value->data)) {
            return "class " + cls.name + ": the object path's key " + key.name + " is missing or empty";
        }
        if (!fitsKey(value->data, key)) {
            return "class " + cls.name + ": the object path's key " + key.name + " is of type " +
                   textOfType(value->data.type) + ", declared " + textOfType(key.type);
        }
    }
    for (CMPICount i = 0; i < keys.count; ++i) {
        const Property *property = findProperty(cls, keys.values[i].name);
        if (property == nullptr || !property->isKey) {
            return "class " + cls.name + ": the object path has a key " + keys.values[i].name +
                   " that isn't declared as one";
        }
    }
    return {};
}

} // namespace

std::string faultOfInstance(const InstanceBody &body, const Class *expected) {
    const Class &cls = *body.layout->cls;
    if (expected != nullptr && !isA(cls, *expected)) {
        return faultOfClass(&cls, *body.path->className, expected);
    }
    if (body.hasUndeclared) {
        for (uint32_t s = 0; s < std::min(body.capacity, body.layout->count); ++s) {
            if (body.values[s].type != CMPI_null && body.layout->slots[s].property == nullptr) {
                return "class " + cls.name + " declares no property " + body.layout->slots[s].name;
            }
        }
    }
    if (body.refusedSlot != noSlot) { // a provider that doesn't look at the status may go on
        const Slot &slot = body.layout->slots[body.refusedSlot];
        return "class " + cls.name + ": the property " + slot.name + " was set with type " +
               textOfType(body.refusedType) + ", declared " + textOfType(slot.property->type);
    }
    for (size_t k = 0; k < cls.keys.size(); ++k) {
        if (isMissing(keyValueOf(body, k))) {
            return "class " + cls.name + ": the key property " + cls.properties[cls.keys[k]].name +
                   " is missing or empty";
        }
    }
    const NamedValues &keys = body.path->keys;
    if (keys.count == 0) {
        return {}; // the path takes its keys from the properties
    }
    if (std::string fault = faultOfKeys(keys, cls); !fault.empty()) {
        return fault;
    }
    for (CMPICount i = 0; i < keys.count; ++i) {
        if (!equalValues(keys.values[i].data, *valueOf(body, keys.values[i].name))) {
            return "class " + cls.name + ": the key " + keys.values[i].name +
                   " of the object path differs from the property";
        }
    }
    return {};
}

std::string faultOfPath(const PathBody &body, const Class *expected) {
    std::string fault = faultOfClass(body.cls, *body.className, expected);
    return fault.empty() ? faultOfKeys(body.keys, *body.cls) : fault;
}

std::string faultOfReturnValue(const CMPIData &value, const Method *method) {
    if (method == nullptr || value.type == method->type) {
        return {};
    }
    return "method " + method->name + " returned a value of type " + textOfType(value.type) + ", declared " +
           textOfType(method->type);
}

std::string faultOfOutArguments(const NamedValues &arguments, const Class &cls, const Method *method) {
    for (CMPICount i = 0; method != nullptr && i < arguments.count; ++i) {
        const auto &[name, data] = arguments.values[i];
        const Parameter *parameter = findParameter(*method, name);
        const std::string where = "class " + cls.name + ", method " + method->name;
        if (parameter == nullptr || !parameter->isOut) {
            return where + " declares no out parameter " + name;
        }
        if (!fits(data.type, *parameter)) {
            return where + ": the out parameter " + name + " is of type " + textOfType(data.type) +
                   ", declared " + textOfType(parameter->type);
        }
    }
    return {};
}

} // namespace broker
