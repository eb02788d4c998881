#include "operation.h"

#include "server.h"
#include "target.h"

#include <array>
#include <iterator>
#include <string>
#include <vector>

namespace {

struct NamedType {
    std::string_view name;
    CMPIType type;
};
constexpr NamedType types[] = {
    {"boolean", CMPI_boolean}, {"uint8", CMPI_uint8},       {"uint16", CMPI_uint16}, {"uint32", CMPI_uint32},
    {"uint64", CMPI_uint64},   {"sint8", CMPI_sint8},       {"sint16", CMPI_sint16}, {"sint32", CMPI_sint32},
    {"sint64", CMPI_sint64},   {"datetime", CMPI_dateTime}, {"real32", CMPI_real32}, {"real64", CMPI_real64},
    {"ref", CMPI_ref},
};

CMPIType typeNamed(std::string_view name) {
    const bool isArray = name.ends_with("[]");
    if (isArray) {
        name.remove_suffix(2);
    }
    CMPIType type = CMPI_string;
    for (const NamedType &known : types) {
        if (known.name == name) {
            type = known.type;
        }
    }
    return static_cast<CMPIType>(isArray ? type | CMPI_ARRAY : type);
}

struct NamedValue {
    std::string name;
    CMPIData value;
};

// "TYPE NAME=VALUE"
NamedValue valueIn(broker::Request &request, std::string_view rest) {
    const CMPIType type = typeNamed(take(rest, ' '));
    NamedValue named{std::string(take(rest, '=')), {type, CMPI_nullValue, {}}};
    std::vector<std::string> texts;
    if ((type & CMPI_ARRAY) == 0) {
        texts.emplace_back(rest);
    }
    while ((type & CMPI_ARRAY) != 0 && !rest.empty()) {
        texts.emplace_back(take(rest, '|'));
    }
    std::string error;
    if (!broker::parseValue(request, type, texts, named.value, error)) {
        require(!error.empty(), "a value is refused with a cause", named.name);
        named.value = {type, CMPI_nullValue, {}};
    }
    return named;
}

struct Operation {
    broker::Request &request;
    CMPIObjectPath *path;
    const char *method;
    const std::vector<NamedValue> &values;
    broker::PropertyList properties;
};

broker::Answer get(const Operation &operation) {
    return broker::getInstance(operation.request, operation.path, operation.properties);
}
broker::Answer names(const Operation &operation) {
    return broker::enumerateInstanceNames(operation.request, operation.path);
}
broker::Answer enumerate(const Operation &operation) {
    return broker::enumerateInstances(operation.request, operation.path, operation.properties);
}
broker::Answer modify(const Operation &operation) {
    CMPIInstance *instance = CMNewInstance(broker::cmpiBroker(theBroker()), operation.path, nullptr);
    if (instance == nullptr) { // of an abstract class, or with a namespace that isn't served
        return {};
    }
    for (const auto &[name, value] : operation.values) {
        broker::setProperty(instance, name.c_str(), value);
    }
    return broker::modifyInstance(operation.request, operation.path, instance, operation.properties);
}
broker::Answer invoke(const Operation &operation) {
    CMPIArgs *in = CMNewArgs(broker::cmpiBroker(theBroker()), nullptr);
    CMPIArgs *out = CMNewArgs(broker::cmpiBroker(theBroker()), nullptr);
    for (const auto &[name, value] : operation.values) {
        broker::addArgument(in, name.c_str(), value);
    }
    return broker::invokeMethod(operation.request, operation.path, operation.method, in, out);
}

struct Verb {
    std::string_view name;
    broker::Answer (*run)(const Operation &operation);
    bool changes = false;
};
constexpr Verb verbs[] = {
    {"gi", get}, {"ein", names}, {"ei", enumerate}, {"mi", modify, true}, {"im", invoke, true},
};

const Verb &verbNamed(std::string_view name) {
    for (const Verb &verb : verbs) {
        if (verb.name == name) {
            return verb;
        }
    }
    return verbs[0];
}

// All that a client can read of an answer.
void requireSound(const broker::Answer &answer, const broker::Class &cls) {
    const std::size_t count = answer.instances.size() + answer.paths.size();
    require(answer.rc == CMPI_RC_OK || count == 0, "a failure has no instances", answer.message);
    for (const CMPIObjectPath *path : answer.paths) {
        require(!broker::textOfPath(path).empty(), "a path has a text", cls.name);
    }
    for (const CMPIInstance *instance : answer.instances) {
        require(broker::mofOfInstance(instance).starts_with("instance of "), "an instance has a text",
                cls.name);
    }
    broker::textOfValue(answer.value);
}

} // namespace

bool run(std::string_view text) {
    std::string_view head = take(text, '\n');
    const Verb &verb = verbNamed(take(head, ' '));
    const std::string method(head);
    std::string_view className = take(text, '\n');
    std::string nameSpace = broker::nameSpaceOf(theBroker());
    if (className.find(':') != std::string_view::npos) {
        nameSpace = take(className, ':');
    }
    const broker::Class *cls = broker::classNamed(theBroker(), className);
    if (cls == nullptr) {
        return false;
    }
    {
        const broker::RequestPointer request = beginRequest();
        CMPIObjectPath *path =
            CMNewObjectPath(broker::cmpiBroker(theBroker()), nameSpace.c_str(), cls->name.c_str(), nullptr);
        require(path != nullptr, "a path of a declared class", cls->name);
        std::vector<NamedValue> values;
        std::vector<std::string> properties;
        while (!text.empty()) {
            std::string_view line = take(text, '\n');
            const std::string_view kind = take(line, ' ');
            if (kind == "k") {
                const NamedValue key = valueIn(*request, line);
                CMAddKey(path, key.name.c_str(),
                         (key.value.state & CMPI_nullValue) != 0 ? nullptr : &key.value.value,
                         key.value.type);
            } else if (kind == "v") {
                values.push_back(valueIn(*request, line));
            } else if (kind == "p") {
                properties.emplace_back(line);
            }
        }
        std::vector<const char *> list;
        list.reserve(properties.size() + 1);
        for (const std::string &name : properties) {
            list.push_back(name.c_str());
        }
        list.push_back(nullptr);
        const Operation operation{*request, path, method.c_str(), values,
                                  properties.empty() ? nullptr : list.data()};
        requireSound(verb.run(operation), *cls);
    }
    requireNothingLeft();
    return true;
}

bool asksForChange(std::string_view text) {
    std::string_view head = take(text, '\n');
    return verbNamed(take(head, ' ')).changes;
}
