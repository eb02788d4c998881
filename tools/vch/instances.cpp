#include "instances.h"

#include "failure.h"
#include "named_values.h"
#include "session.h"
#include "targets.h"
#include "text.h"

#include <fmt/format.h>

#include <cstdio>

namespace {

// A property list as the broker takes it: pointers into `options`, and a null at the end.
std::vector<const char *> wanted(const std::vector<std::string> &names) {
    std::vector<const char *> list;
    list.reserve(names.size() + 1);
    for (const std::string &name : names) {
        list.push_back(name.c_str());
    }
    list.push_back(nullptr);
    return list;
}

// Runs a request that takes a property list, checked against the class.
template <typename Request>
broker::Answer withPropertyList(const InstanceOptions &options, const broker::Class &cls, Request request) {
    if (!options.propertyList) {
        return succeeded(request(nullptr));
    }
    requireProperties(cls, *options.propertyList);
    const std::vector<const char *> list = wanted(*options.propertyList);
    return succeeded(request(list.data()));
}

void print(const std::string &text) {
    fmt::print("{}", text);
}

template <typename Declared> std::vector<std::string> namesOf(const std::vector<Declared> &features) {
    std::vector<std::string> names;
    names.reserve(features.size());
    for (const Declared &feature : features) {
        names.push_back(feature.name);
    }
    return names;
}

// The declared feature of a name that was typed; `what` tells which kind it is and whose.
template <typename Declared>
const Declared &requireFeature(const Declared *found, const std::string &name,
                               const std::vector<Declared> &all, const std::string &what) {
    if (found != nullptr) {
        return *found;
    }
    const std::string nearest = closest(name, namesOf(all));
    throw Failure{UsageError, fmt::format("{} {}{}", what, name,
                                          nearest.empty() ? "" : fmt::format("; did you mean {}?", nearest))};
}

CMPIData nullOf(CMPIType type) {
    CMPIData value = {};
    value.type = type;
    value.state = CMPI_nullValue;
    return value;
}

void requireSet(const CMPIStatus &status, const std::string &name) {
    if (status.rc != CMPI_RC_OK) {
        throw cimFailure(status.rc, fmt::format("{}: {}", name, textOf(status.msg)));
    }
}

} // namespace

void enumerateInstances(const InstanceOptions &options) {
    const Session session = openSession(options.request);
    const CMPIObjectPath *path = resolvePath(session, options.target);
    if (CMGetKeyCount(path, nullptr) > 0) {
        throw Failure{UsageError, "a class is enumerated, not an instance; 'vch instance get' takes a path"};
    }
    if (options.namesOnly) {
        print(options.format->paths(succeeded(broker::enumerateInstanceNames(*session.request, path)).paths));
        return;
    }
    const broker::Answer answer =
        withPropertyList(options, classOf(session, path), [&](broker::PropertyList properties) {
            return broker::enumerateInstances(*session.request, path, properties);
        });
    print(options.format->instances(answer.instances));
}

void getInstance(const InstanceOptions &options) {
    const Session session = openSession(options.request);
    const CMPIObjectPath *path = resolveInstance(session, options.target);
    const broker::Answer answer =
        withPropertyList(options, classOf(session, path), [&](broker::PropertyList properties) {
            return broker::getInstance(*session.request, path, properties);
        });
    print(options.format->instances(answer.instances));
}

void countInstances(const InstanceOptions &options) {
    if (options.format->counts == nullptr) {
        throw noFormFailure(options.format->name, "counts");
    }
    const Session session = openSession(options.request);
    const broker::Schema &schema = broker::schemaOf(*session.broker);
    const std::string glob = options.target.empty() ? "*" : options.target;
    const bool several = isGlob(glob);
    std::vector<const broker::Class *> classes;
    if (several) {
        classes = findByName(schema, glob);
    } else {
        classes.push_back(&resolveClass(*session.broker, options.target));
    }

    std::vector<InstanceCount> counts;
    std::string failures;
    for (const broker::Class *cls : classes) {
        if (several && (cls->isAbstract || !broker::matchesGlob(cls->name, servedClasses))) {
            continue; // its instances are those of its subclasses
        }
        const CMPIObjectPath *path = resolvePath(session, cls->name);
        const broker::Answer answer = broker::enumerateInstanceNames(*session.request, path);
        if (answer.rc == CMPI_RC_OK) {
            counts.push_back({cls, answer.paths.size()});
        } else if (!several) {
            throw cimFailure(answer.rc, answer.message);
        } else {
            failures += fmt::format("\n  {}: {}", cls->name, cimFailure(answer.rc, answer.message).message);
        }
    }
    print(options.format->counts(counts));
    if (!failures.empty()) {
        throw Failure{CimError, "not every class could be counted:" + failures};
    }
}

void modifyInstance(const InstanceOptions &options) {
    const std::vector<Assignment> assignments = parseAssignments(options.assignments);
    const Session session = openSession(options.request);
    const CMPIObjectPath *classPath = resolvePath(session, options.target);
    const broker::Class &cls = classOf(session, classPath);

    // All that is typed is checked before the service processor is asked anything.
    std::vector<NamedValue> changes;
    const auto declared = [&](const std::string &name) -> const broker::Property & {
        return requireFeature(broker::findProperty(cls, name), name, cls.properties,
                              fmt::format("class {} has no property", cls.name));
    };
    for (const Assignment &assignment : assignments) {
        const broker::Property &property = declared(assignment.name);
        changes.push_back({property.name, assignedValue(session, property, assignment)});
    }
    for (const std::string &name : options.nulls) {
        changes.push_back({declared(name).name, nullOf(declared(name).type)});
    }
    if (changes.empty()) {
        throw Failure{UsageError, "nothing to change: give Name=value, or --null Name"};
    }

    const CMPIObjectPath *path = resolveInstance(session, options.target);
    const CMPIInstance *instance = CMNewInstance(broker::cmpiBroker(*session.broker), path, nullptr);
    std::vector<std::string> names;
    for (const NamedValue &change : changes) {
        requireSet(
            broker::setProperty(const_cast<CMPIInstance *>(instance), change.name.c_str(), change.value),
            change.name);
        names.push_back(change.name);
    }
    // Without a list a property that isn't there is no change, and neither is one that has the value already.
    // A NULL is told from an absent property only by a list that names it.
    const std::vector<const char *> list = wanted(names);
    succeeded(broker::modifyInstance(*session.request, path, instance,
                                     options.nulls.empty() ? nullptr : list.data()));
}

void invokeMethod(const InstanceOptions &options) {
    const std::vector<Assignment> assignments = parseAssignments(options.assignments);
    const Session session = openSession(options.request);
    const CMPIBroker *cmpi = broker::cmpiBroker(*session.broker);
    const broker::Class &cls = classOf(session, resolvePath(session, options.target));
    const broker::Method *method = broker::findMethod(cls, options.method);
    if (method == nullptr) {
        throw cimFailure(CMPI_RC_ERR_METHOD_NOT_FOUND,
                         cls.methods.empty() ? fmt::format("class {} has no methods", cls.name)
                                             : fmt::format("class {} has no method {}; it has {}", cls.name,
                                                           options.method, joined(namesOf(cls.methods))));
    }
    CMPIArgs *in = CMNewArgs(cmpi, nullptr);
    CMPIArgs *out = CMNewArgs(cmpi, nullptr);
    const auto add = [&](const std::string &name, const auto &valueOf) {
        const broker::Parameter &parameter =
            requireFeature(broker::findParameter(*method, name), name, method->parameters,
                           fmt::format("method {} has no parameter", method->name));
        if (!parameter.isIn) {
            throw Failure{UsageError,
                          fmt::format("{} is an output parameter of {}", parameter.name, method->name)};
        }
        requireSet(broker::addArgument(in, parameter.name.c_str(), valueOf(parameter)), parameter.name);
    };
    for (const Assignment &assignment : assignments) {
        add(assignment.name,
            [&](const broker::Feature &feature) { return assignedValue(session, feature, assignment); });
    }
    for (const std::string &name : options.nulls) {
        add(name, [](const broker::Feature &feature) { return nullOf(feature.type); });
    }

    const CMPIObjectPath *path = resolveInstance(session, options.target);
    broker::Answer answer =
        succeeded(broker::invokeMethod(*session.request, path, method->name.c_str(), in, out));
    if (CMIsNullValue(answer.value)) {
        answer.value.type = method->type;
    }
    print(options.format->methodResult({method->name, answer.value, out}));
}
