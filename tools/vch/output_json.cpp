#include "named_values.h"
#include "output.h"
#include "overview.h"
#include "text.h"

#include <broker/broker.h>

#include <nlohmann/json.hpp>

#include <cmath>

namespace {

using Json = nlohmann::ordered_json;

// JSON has no infinity and no "not a number".
Json real(double number) {
    return std::isfinite(number) ? Json(number) : Json(nullptr);
}

Json json(const CMPIData &data) {
    if (CMIsNullValue(data)) {
        return nullptr;
    }
    if (CMIsArray(data)) {
        Json array = Json::array();
        for (const CMPIData &element : broker::elementsOf(data)) {
            array.push_back(json(element));
        }
        return array;
    }
    switch (data.type) {
    case CMPI_boolean: return data.value.boolean != 0;
    case CMPI_char16: return data.value.char16;
    case CMPI_uint8: return data.value.uint8;
    case CMPI_uint16: return data.value.uint16;
    case CMPI_uint32: return data.value.uint32;
    case CMPI_uint64: return data.value.uint64;
    case CMPI_sint8: return data.value.sint8;
    case CMPI_sint16: return data.value.sint16;
    case CMPI_sint32: return data.value.sint32;
    case CMPI_sint64: return data.value.sint64;
    case CMPI_real32: return real(data.value.real32);
    case CMPI_real64: return real(data.value.real64);
    case CMPI_ref: return validUtf8(broker::textOfPath(data.value.ref, true));
    default: return validUtf8(broker::textOfValue(data));
    }
}

Json object(const std::vector<NamedValue> &values) {
    Json members = Json::object();
    for (const NamedValue &named : values) {
        members[validUtf8(named.name)] = json(named.value);
    }
    return members;
}

Json pathText(const CMPIObjectPath *path) {
    return validUtf8(broker::textOfPath(path, true));
}

std::string printed(const Json &document) {
    return document.dump(2) + "\n";
}

std::string instances(const std::vector<CMPIInstance *> &list) {
    Json array = Json::array();
    for (const CMPIInstance *instance : list) {
        const CMPIObjectPath *path = CMGetObjectPath(instance, nullptr);
        array.push_back({{"class", textOf(CMGetClassName(path, nullptr))},
                         {"path", pathText(path)},
                         {"properties", object(propertiesOf(instance))}});
    }
    return printed(array);
}

std::string paths(const std::vector<CMPIObjectPath *> &list) {
    Json array = Json::array();
    for (const CMPIObjectPath *path : list) {
        array.push_back(pathText(path));
    }
    return printed(array);
}

std::string methodResult(const MethodResult &result) {
    return printed({{"method", result.method},
                    {"returnValue", json(result.returnValue)},
                    {"parameters", object(argumentsOf(result.outParameters))}});
}

// {"Key": true, "ValueMap": ["0", "1"], "Description": "..."}
Json qualifiers(const std::vector<broker::Qualifier> &list) {
    Json members = Json::object();
    for (const broker::Qualifier &qualifier : list) {
        Json values = Json::array();
        for (const std::string &value : qualifier.values) {
            values.push_back(validUtf8(value));
        }
        const size_t count = qualifier.values.size();
        members[qualifier.name] = count == 0 ? Json(true) : count == 1 ? values[0] : values;
    }
    return members;
}

Json feature(const broker::Feature &declared) {
    Json members = {{"name", declared.name}, {"type", broker::textOfType(declared.type)}};
    if (!declared.referenceClass.empty()) {
        members["referenceClass"] = declared.referenceClass;
    }
    members["qualifiers"] = qualifiers(declared.qualifiers);
    return members;
}

Json method(const broker::Method &declared) {
    Json members = feature(declared);
    members["parameters"] = Json::array();
    for (const broker::Parameter &parameter : declared.parameters) {
        Json one = feature(parameter);
        one["in"] = parameter.isIn;
        one["out"] = parameter.isOut;
        members["parameters"].push_back(one);
    }
    return members;
}

std::string classes(const std::vector<const broker::Class *> &list) {
    Json array = Json::array();
    for (const broker::Class *declared : list) {
        Json one = {{"class", declared->name},
                    {"superclass",
                     declared->superclass == nullptr ? Json(nullptr) : Json(declared->superclass->name)},
                    {"abstract", declared->isAbstract},
                    {"association", declared->isAssociation},
                    {"qualifiers", qualifiers(declared->qualifiers)},
                    {"properties", Json::array()},
                    {"methods", Json::array()}};
        for (const broker::Property &property : declared->properties) {
            Json member = feature(property);
            member["key"] = property.isKey;
            member["origin"] = property.origin;
            one["properties"].push_back(member);
        }
        for (const broker::Method &declaredMethod : declared->methods) {
            one["methods"].push_back(method(declaredMethod));
        }
        array.push_back(one);
    }
    return printed(array);
}

std::string classNames(const std::vector<const broker::Class *> &list) {
    Json array = Json::array();
    for (const broker::Class *declared : list) {
        array.push_back(declared->name);
    }
    return printed(array);
}

std::string counts(const std::vector<InstanceCount> &list) {
    Json array = Json::array();
    for (const InstanceCount &one : list) {
        array.push_back({{"class", one.countedClass->name}, {"count", one.instances}});
    }
    return printed(array);
}

// An array of instances for each section, or an object that says why there is none.
std::string overview(const std::vector<OverviewAnswer> &answers) {
    Json document = Json::object();
    for (const OverviewAnswer &answer : answers) {
        if (!answer.error.empty()) {
            document[answer.section->name] = {{"error", validUtf8(answer.error)}};
            continue;
        }
        document[answer.section->name] = Json::array();
        for (const CMPIInstance *instance : answer.instances) {
            document[answer.section->name].push_back(object(propertiesOf(instance)));
        }
    }
    return printed(document);
}

} // namespace

const OutputFormat jsonOutput = {"json",  instances,  paths,  methodResult,
                                 classes, classNames, counts, overview};
