#include "selfcheck.h"

#include "platform/sp/sp.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace selfcheck {

namespace {

struct Check {
    broker::Broker &broker;
    const broker::Client &client;
    const broker::Class &cls;
    std::vector<Finding> findings = {};
};

void report(Check &check, const std::string &property, const std::string &cause) {
    check.findings.push_back({check.cls.name, property, cause});
}

// --- Requests

using Names = std::vector<std::string>;
using Values = std::map<std::string, std::string>; // of an instance, by property

// What came of a request, in texts that outlive it.
struct Reply {
    CMPIrc rc;
    std::string message;
    Names paths;                             // sorted, those of instances as well
    std::map<std::string, Values> instances; // by path
};

std::string statusOf(const Reply &reply) {
    return "rc " + std::to_string(reply.rc) + (reply.message.empty() ? "" : " \"" + reply.message + '"');
}

Values valuesOf(const CMPIInstance *instance) {
    Values values;
    for (CMPICount i = 0; i < CMGetPropertyCount(instance, nullptr); ++i) {
        CMPIString *name = nullptr;
        const CMPIData value = CMGetPropertyAt(instance, i, &name, nullptr);
        values[CMGetCharsPtr(name, nullptr)] = broker::mofOfValue(value);
    }
    return values;
}

Reply replyOf(const broker::Answer &answer) {
    Reply reply{answer.rc, answer.message, {}, {}};
    for (const CMPIInstance *instance : answer.instances) {
        reply.paths.push_back(textOfPath(CMGetObjectPath(instance, nullptr)));
        reply.instances[reply.paths.back()] = valuesOf(instance);
    }
    for (const CMPIObjectPath *path : answer.paths) {
        reply.paths.push_back(textOfPath(path));
    }
    std::ranges::sort(reply.paths);
    return reply;
}

// Asks in a request of its own: `ask` gets the request and the path of that text.
template <typename Ask> Reply request(const Check &check, const std::string &pathText, Ask ask) {
    const broker::RequestPointer request = broker::beginRequest(check.broker, check.client);
    std::string error;
    const CMPIObjectPath *path = broker::parsePath(*request, pathText, error);
    return path == nullptr ? Reply{CMPI_RC_ERR_INVALID_PARAMETER, error, {}, {}}
                           : replyOf(ask(*request, path));
}

// A null `properties` means all.
Reply enumerate(const Check &check, const Names *properties = nullptr) {
    std::vector<const char *> list;
    for (size_t i = 0; properties != nullptr && i < properties->size(); ++i) {
        list.push_back((*properties)[i].c_str());
    }
    list.push_back(nullptr);
    return request(check, check.cls.name, [&](broker::Request &request, const CMPIObjectPath *path) {
        return broker::enumerateInstances(request, path, properties == nullptr ? nullptr : list.data());
    });
}

Reply enumerateNames(const Check &check) {
    return request(check, check.cls.name, broker::enumerateInstanceNames);
}

Reply get(const Check &check, const std::string &path) {
    return request(check, path, [](broker::Request &request, const CMPIObjectPath *parsed) {
        return broker::getInstance(request, parsed, nullptr);
    });
}

// --- What is compared

void compareValues(Check &check, const std::string &path, const Values &expected, const Values &found,
                   const std::string &operation) {
    const auto text = [](const Values &values, const std::string &property) {
        const auto at = values.find(property);
        return at == values.end() ? std::string("no value") : at->second;
    };
    Values both = expected;
    both.insert(found.begin(), found.end());
    for (const auto &[property, value] : both) {
        if (text(expected, property) != text(found, property)) {
            report(check, property,
                   std::string(operation)
                       .append(" gives ")
                       .append(text(found, property))
                       .append(" and not ")
                       .append(text(expected, property))
                       .append(" for ")
                       .append(path));
        }
    }
}

void comparePaths(Check &check, const Names &expected, const Names &found, const std::string &operation) {
    Names missing, surplus;
    std::ranges::set_difference(expected, found, std::back_inserter(missing));
    std::ranges::set_difference(found, expected, std::back_inserter(surplus));
    for (const std::string &path : missing) {
        report(check, "", std::string(operation).append(" misses ").append(path));
    }
    for (const std::string &path : surplus) {
        report(check, "",
               std::string(operation).append(" gives ").append(path).append(
                   ", which isn't among the instances"));
    }
}

// --- Checks

// Finds out by property lists which properties make the enumeration fail.
void reportFailure(Check &check, const Reply &failed) {
    const Names none;
    const size_t before = check.findings.size();
    if (enumerate(check, &none).rc == CMPI_RC_OK) {
        for (const broker::Property &property : check.cls.properties) {
            const Names one = {property.name};
            if (const Reply reply = enumerate(check, &one); reply.rc != CMPI_RC_OK) {
                report(check, property.name,
                       "enumerating this property alone fails: " + statusOf(reply) + ", declared " +
                           broker::textOfType(property.type));
            }
        }
    }
    if (check.findings.size() == before) {
        report(check, "", "enumerating instances fails: " + statusOf(failed));
    }
}

void checkAgain(Check &check, const Reply &instances) {
    const Reply again = enumerate(check);
    comparePaths(check, instances.paths, again.paths, "a second enumeration");
    for (const auto &[path, values] : again.instances) {
        if (const auto first = instances.instances.find(path); first != instances.instances.end()) {
            compareValues(check, path, first->second, values, "a second enumeration");
        }
    }
}

void checkNames(Check &check, const Reply &instances) {
    const Reply names = enumerateNames(check);
    if (names.rc != CMPI_RC_OK) {
        return report(check, "", "enumerating names fails: " + statusOf(names));
    }
    comparePaths(check, instances.paths, names.paths, "enumerating names");
    for (auto at = names.paths.begin();
         (at = std::ranges::adjacent_find(at, names.paths.end())) != names.paths.end(); ++at) {
        report(check, "", "two instances have the path " + *at);
    }
    for (const std::string &path : names.paths) {
        const Reply one = get(check, path);
        if (one.rc != CMPI_RC_OK) {
            report(check, "", path + " can't be fetched: " + statusOf(one));
        } else if (const auto all = instances.instances.find(path); all != instances.instances.end()) {
            compareValues(check, path, all->second, one.instances.begin()->second, "getting the instance");
        }
    }
}

// Enumerates with a list and expects those of the properties that `isWanted` says.
template <typename IsWanted>
void checkList(Check &check, const Reply &instances, const Names &list, const std::string &operation,
               IsWanted isWanted) {
    const Reply reply = enumerate(check, &list);
    if (reply.rc != CMPI_RC_OK) {
        return report(check, "", operation + " fails: " + statusOf(reply));
    }
    comparePaths(check, instances.paths, reply.paths, operation);
    for (const auto &[path, values] : reply.instances) {
        Values expected;
        if (const auto all = instances.instances.find(path); all != instances.instances.end()) {
            std::ranges::copy_if(all->second, std::inserter(expected, expected.end()),
                                 [&](const auto &value) { return isWanted(value.first); });
        }
        compareValues(check, path, expected, values, operation);
    }
}

std::string inOtherCase(std::string name) {
    for (char &c : name) {
        const auto letter = static_cast<unsigned char>(c);
        c = static_cast<char>(std::islower(letter) ? std::toupper(letter) : std::tolower(letter));
    }
    return name;
}

void checkLists(Check &check, const Reply &instances) {
    Names otherCase;
    for (const broker::Property &property : check.cls.properties) {
        otherCase.push_back(inOtherCase(property.name));
        checkList(check, instances, {property.name}, "a list of " + property.name,
                  [&](const std::string &name) { return name == property.name; });
    }
    const auto all = [](const std::string &) { return true; };
    const auto none = [](const std::string &) { return false; };
    checkList(check, instances, otherCase, "a list of all properties in another case", all);
    checkList(check, instances, {"NoSuchProperty"}, "a list of an unknown property", none);
    checkList(check, instances, {}, "an empty list", none);
}

// Calls of the back end, by function. The trace isn't one.
template <typename Ask> std::map<std::string, int> callsOf(Ask ask) {
    sp::start_journal();
    ask();
    sp::stop_journal();
    std::map<std::string, int> calls;
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        if (!std::string_view(entry.function).starts_with("zbr_debug")) {
            ++calls[entry.function];
        }
    }
    return calls;
}

void checkCost(Check &check) {
    auto ofInstances = callsOf([&] { enumerate(check); });
    for (const auto &[function, calls] : callsOf([&] { enumerateNames(check); })) {
        if (const int allowed = ofInstances[function]; calls > allowed) {
            report(check, "",
                   "enumerating names calls " + function + ' ' + std::to_string(calls) +
                       " times, enumerating instances " + std::to_string(allowed));
        }
    }
}

// What no class offers, and methods. Create and delete get no keys, so that nothing could be lost.
void checkRefusals(Check &check, const Reply &instances) {
    const std::string path = instances.paths.empty() ? check.cls.name : instances.paths.front();
    const broker::Association any = {};
    const struct {
        const char *operation;
        CMPIrc expected;
        Reply reply;
    } cases[] = {
        {"createInstance", CMPI_RC_ERR_NOT_SUPPORTED,
         request(check, check.cls.name,
                 [&](broker::Request &request, const CMPIObjectPath *cop) {
                     const CMPIInstance *instance =
                         CMNewInstance(broker::cmpiBroker(check.broker), cop, nullptr);
                     return broker::createInstance(request, cop, instance);
                 })},
        {"deleteInstance", CMPI_RC_ERR_NOT_SUPPORTED, request(check, check.cls.name, broker::deleteInstance)},
        {"associatorNames", CMPI_RC_ERR_NOT_SUPPORTED,
         request(check, path,
                 [&](broker::Request &request, const CMPIObjectPath *cop) {
                     return broker::associatorNames(request, cop, any);
                 })},
        {"referenceNames", CMPI_RC_ERR_NOT_SUPPORTED,
         request(check, path,
                 [&](broker::Request &request, const CMPIObjectPath *cop) {
                     return broker::referenceNames(request, cop, any);
                 })},
        {"invoking an unknown method",
         check.cls.methods.empty() ? CMPI_RC_ERR_NOT_SUPPORTED : CMPI_RC_ERR_METHOD_NOT_FOUND,
         request(check, path,
                 [&](broker::Request &request, const CMPIObjectPath *cop) {
                     const CMPIBroker *cmpi = broker::cmpiBroker(check.broker);
                     return broker::invokeMethod(request, cop, "NoSuchMethod", CMNewArgs(cmpi, nullptr),
                                                 CMNewArgs(cmpi, nullptr));
                 })},
    };
    for (const auto &[operation, expected, reply] : cases) {
        if (reply.rc != expected) {
            report(check, "",
                   std::string(operation) + " answers " + statusOf(reply) + " and not rc " +
                       std::to_string(expected));
        }
    }
}

} // namespace

std::string textOf(const Finding &finding) {
    return finding.className + (finding.property.empty() ? "" : '.' + finding.property) + ": " +
           finding.cause;
}

std::string textOfPath(const CMPIObjectPath *path) {
    std::vector<std::string> keys; // each as Name=value
    const std::string className = CMGetCharsPtr(CMGetClassName(path, nullptr), nullptr);
    for (CMPICount i = 0; i < CMGetKeyCount(path, nullptr); ++i) {
        CMPIString *name = nullptr;
        const CMPIData value = CMGetKeyAt(path, i, &name, nullptr);
        keys.push_back(CMGetCharsPtr(name, nullptr) + ('=' + broker::mofOfValue(value)));
    }
    std::ranges::sort(keys);
    std::string text = className;
    for (const std::string &key : keys) {
        text += (text.size() == className.size() ? '.' : ',') + key;
    }
    return text;
}

std::vector<const broker::Class *> classesToCheck(const broker::Broker &broker, const std::string &glob) {
    std::vector<const broker::Class *> classes = broker::findClasses(broker::schemaOf(broker), glob);
    std::erase_if(classes, [](const broker::Class *cls) { return cls->isAbstract; });
    return classes;
}

std::vector<Finding> check(broker::Broker &broker, const broker::Client &client, const broker::Class &cls) {
    Check check{broker, client, cls};
    const Reply instances = enumerate(check);
    if (instances.rc != CMPI_RC_OK) {
        reportFailure(check, instances);
        return check.findings;
    }
    checkAgain(check, instances);
    checkNames(check, instances);
    checkLists(check, instances);
    checkCost(check);
    checkRefusals(check, instances);
    return check.findings;
}

} // namespace selfcheck
