#include "targets.h"

#include "failure.h"
#include "named_values.h"
#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

// "; did you mean X?" or nothing.
std::string suggestion(std::string_view text, const std::vector<std::string> &candidates) {
    const std::string nearest = closest(text, candidates);
    return nearest.empty() ? "" : fmt::format("; did you mean {}?", nearest);
}

// A class's name as a person may write it, without the prefix if it has one.
std::string_view shortName(std::string_view name) {
    const std::string_view prefix = classPrefix;
    const bool has = name.size() > prefix.size() && broker::sameName(name.substr(0, prefix.size()), prefix);
    return has ? name.substr(prefix.size()) : name;
}

} // namespace

const broker::Class &resolveClass(const broker::Broker &broker, std::string_view name) {
    if (const broker::Class *found = broker::classNamed(broker, name)) {
        return *found;
    }
    std::vector<std::string> candidates;
    for (const auto &known : broker::schemaOf(broker).classes) {
        candidates.emplace_back(shortName(known->name));
    }
    throw cimFailure(CMPI_RC_ERR_INVALID_CLASS,
                     fmt::format("there is no class {}{}; 'vch class find' lists all", name,
                                 suggestion(shortName(name), candidates)));
}

bool isGlob(std::string_view target) {
    return target.find_first_of("*?") != std::string_view::npos;
}

std::vector<const broker::Class *> findByName(const broker::Schema &schema, const std::string &glob) {
    std::vector<const broker::Class *> found;
    for (const auto &known : schema.classes) {
        if (broker::matchesGlob(known->name, glob) || broker::matchesGlob(shortName(known->name), glob)) {
            found.push_back(known.get());
        }
    }
    return found;
}

CMPIObjectPath *resolvePath(const Session &session, std::string_view text) {
    const std::string_view head = text.substr(0, text.find('.'));
    const std::string_view keys = text.substr(head.size());
    const size_t colon = head.rfind(':');
    std::string nameSpace = session.nameSpace;
    if (colon != std::string_view::npos) {
        nameSpace = head.substr(head.front() == '/' ? 1 : 0, colon - (head.front() == '/' ? 1 : 0));
    }
    const std::string_view className = colon == std::string_view::npos ? head : head.substr(colon + 1);
    const broker::Class &cls = resolveClass(*session.broker, className);

    std::string error;
    const std::string path = fmt::format("{}:{}{}", nameSpace, cls.name, keys);
    CMPIObjectPath *parsed = broker::parsePath(*session.request, path, error);
    if (parsed == nullptr) {
        throw Failure{
            UsageError,
            fmt::format("{}; a path is Class.Key=\"value\",..., in single quotes for the shell", error)};
    }
    return parsed;
}

CMPIObjectPath *resolveInstance(const Session &session, std::string_view text) {
    CMPIObjectPath *path = resolvePath(session, text);
    if (CMGetKeyCount(path, nullptr) > 0) {
        return path;
    }
    const broker::Answer answer = broker::enumerateInstanceNames(*session.request, path);
    if (answer.rc != CMPI_RC_OK) {
        throw cimFailure(answer.rc, answer.message);
    }
    const std::string className = textOf(CMGetClassName(path, nullptr));
    if (answer.paths.empty()) {
        throw cimFailure(CMPI_RC_ERR_NOT_FOUND, fmt::format("class {} has no instances", className));
    }
    if (answer.paths.size() == 1) {
        return answer.paths.front();
    }
    std::string message =
        fmt::format("class {} has {} instances, of which one must be named:", className, answer.paths.size());
    for (const CMPIObjectPath *one : answer.paths) {
        message += "\n  '" + printable(broker::textOfPath(one)) + "'";
    }
    throw Failure{UsageError, message};
}

const broker::Class &classOf(const Session &session, const CMPIObjectPath *path) {
    return resolveClass(*session.broker, textOf(CMGetClassName(path, nullptr)));
}

void requireProperties(const broker::Class &cls, const std::vector<std::string> &names) {
    const std::vector<const broker::Class *> classes = broker::withSubclasses(cls);
    std::vector<std::string> problems;
    for (const std::string &name : names) {
        const bool declared = std::any_of(classes.begin(), classes.end(), [&](const broker::Class *one) {
            return broker::findProperty(*one, name) != nullptr;
        });
        if (declared) {
            continue;
        }
        std::vector<std::string> candidates;
        for (const broker::Class *one : classes) {
            for (const broker::Property &property : one->properties) {
                candidates.push_back(property.name);
            }
        }
        problems.push_back(
            fmt::format("class {} has no property {}{}", cls.name, name, suggestion(name, candidates)));
    }
    if (!problems.empty()) {
        throw Failure{UsageError, joined(problems)};
    }
}

std::vector<Assignment> parseAssignments(const std::vector<std::string> &words) {
    std::vector<Assignment> assignments;
    for (const std::string &word : words) {
        const size_t sign = word.find('=');
        if (sign == std::string::npos || sign == 0) {
            throw Failure{UsageError, fmt::format("'{}' isn't of the form Name=value", word)};
        }
        const std::string name = word.substr(0, sign);
        auto known = std::find_if(assignments.begin(), assignments.end(),
                                  [&](const Assignment &one) { return broker::sameName(one.name, name); });
        if (known == assignments.end()) {
            known = assignments.insert(assignments.end(), {name, {}});
        }
        known->texts.push_back(word.substr(sign + 1));
    }
    return assignments;
}

CMPIData assignedValue(const Session &session, const broker::Feature &feature, const Assignment &assignment) {
    const bool isList = (feature.type & CMPI_ARRAY) != 0 && assignment.texts.size() == 1;
    CMPIData value = {};
    std::string error;
    if (!broker::parseValue(*session.request, feature.type,
                            isList ? split(assignment.texts.front(), ',') : assignment.texts, value, error)) {
        throw Failure{UsageError, fmt::format("{}: {}", feature.name, error)};
    }
    return value;
}
