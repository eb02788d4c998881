// Providers that the broker's tests run: one behaviour per class, found by the class's name.
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

#include <atomic>
#include <cstring>
#include <string>

extern "C" {
__attribute__((visibility("default"))) std::atomic<int> providersMade{0};
__attribute__((visibility("default"))) std::atomic<int> providersCleaned{0};
}

namespace {

constexpr CMPIStatus ok = {CMPI_RC_OK, nullptr};

struct Request {
    const CMPIBroker *broker;
    const CMPIContext *context;
    const CMPIResult *result;
    const CMPIObjectPath *path;
    const char **properties;
    const char *className;
};

CMPIStatus failure(const CMPIBroker *broker, CMPIrc rc, const std::string &text) {
    CMReturnWithChars(broker, rc, text.c_str());
}

CMPIObjectPath *newPath(const Request &r, const char *className, const char *id) {
    CMPIObjectPath *path =
        CMNewObjectPath(r.broker, CMGetCharPtr(CMGetNameSpace(r.path, nullptr)), className, nullptr);
    if (id != nullptr) {
        CMAddKey(path, "Id", id, CMPI_chars);
    }
    return path;
}

// An instance whose path has a key, and whose property has one; a null pointer leaves it out.
CMPIInstance *newInstance(const Request &r, const char *pathId, const char *propertyId) {
    CMPIInstance *instance = CMNewInstance(r.broker, newPath(r, r.className, pathId), nullptr);
    if (propertyId != nullptr) {
        CMSetProperty(instance, "Id", propertyId, CMPI_chars);
    }
    return instance;
}

std::string joined(const char **properties) {
    std::string all = properties == nullptr ? "all" : "";
    for (; properties != nullptr && *properties != nullptr; ++properties) {
        all += std::string(*properties) + ';';
    }
    return all;
}

// --- Things -------------------------------------------------------------------------------------------

// How many there are: the number that the test left in the context, or 3.
CMPIUint32 countOf(const Request &r) {
    CMPIStatus status = ok;
    const CMPIData data = CMGetContextEntry(r.context, "count", &status);
    return status.rc == CMPI_RC_OK ? data.value.uint32 : 3;
}

CMPIInstance *thing(const Request &r, CMPIUint32 number) {
    CMPIInstance *instance = newInstance(r, nullptr, ("thing " + std::to_string(number)).c_str());
    CMSetProperty(instance, "Number", &number, CMPI_uint32);
    CMSetProperty(instance, "Note", joined(r.properties).c_str(), CMPI_chars);
    return instance;
}

CMPIStatus things(const Request &r) {
    for (CMPIUint32 i = 0; i < countOf(r); ++i) {
        CMReturnInstance(r.result, thing(r, i));
    }
    return CMReturnDone(r.result);
}

CMPIStatus thingNames(const Request &r) {
    for (CMPIUint32 i = 0; i < countOf(r); ++i) {
        CMReturnObjectPath(r.result, newPath(r, r.className, ("thing " + std::to_string(i)).c_str()));
    }
    return ok;
}

CMPIStatus oneThing(const Request &r) {
    CMPIStatus status = ok;
    const CMPIData id = CMGetKey(r.path, "id", &status);
    if (status.rc != CMPI_RC_OK || std::strncmp(CMGetCharPtr(id.value.string), "thing ", 6)) {
        return failure(r.broker, CMPI_RC_ERR_NOT_FOUND, "no such thing");
    }
    return CMReturnInstance(r.result,
                            thing(r, static_cast<CMPIUint32>(std::stoul(CMGetCharPtr(id.value.string) + 6))));
}

// Says of which type the key Slot arrived.
CMPIStatus other(const Request &r) {
    const CMPIData slot = CMGetKey(r.path, "Slot", nullptr);
    CMPIInstance *instance = newInstance(r, nullptr, "other");
    const CMPIUint16 number = static_cast<CMPIUint16>(slot.value.uint64);
    CMSetProperty(instance, "Slot", &number, CMPI_uint16);
    const char *type = slot.type == CMPI_uint64 ? "uint64" : slot.type == CMPI_sint64 ? "sint64" : "else";
    CMSetProperty(instance, "KeyType", type, CMPI_chars);
    return CMReturnInstance(r.result, instance);
}

// --- Wrong ones ---------------------------------------------------------------------------------------

CMPIStatus undeclared(const Request &r) {
    CMPIInstance *instance = newInstance(r, nullptr, "one");
    CMSetProperty(instance, "Surprise", "text", CMPI_chars);
    CMReturnInstance(r.result, instance);
    return ok; // whatever the result says to it
}

CMPIStatus setWrongType(CMPIInstance *instance) {
    const CMPIUint32 value = 5;
    return CMSetProperty(instance, "Value", &value, CMPI_uint32);
}

// Only a client that wants the property notices.
CMPIStatus wrongType(const Request &r) {
    CMPIInstance *instance = newInstance(r, nullptr, "one");
    const bool isWanted = r.properties == nullptr || joined(r.properties).find("Value;") != std::string::npos;
    return isWanted ? setWrongType(instance) : CMReturnInstance(r.result, instance);
}

CMPIStatus wrongAndOn(const Request &r) {
    CMPIInstance *instance = newInstance(r, nullptr, "one");
    setWrongType(instance);
    return CMReturnInstance(r.result, instance);
}

CMPIStatus wrongClass(const Request &r) {
    return CMReturnInstance(r.result, CMNewInstance(r.broker, newPath(r, "T_Thing", nullptr), nullptr));
}

// An instance with a key in its path and one in its property.
template <const char *inPath, const char *inProperty> CMPIStatus keys(const Request &r) {
    return CMReturnInstance(r.result, newInstance(r, inPath, inProperty));
}
constexpr char none[] = "", one[] = "one", two[] = "two";

template <const char *id> CMPIStatus name(const Request &r) {
    return CMReturnObjectPath(r.result, newPath(r, r.className, id));
}

CMPIStatus nothing(const Request &) {
    return ok;
}

CMPIStatus failsAfterTwo(const Request &r) {
    CMReturnInstance(r.result, newInstance(r, nullptr, "one"));
    CMReturnInstance(r.result, newInstance(r, nullptr, "two"));
    return failure(r.broker, CMPI_RC_ERR_ACCESS_DENIED, "no more");
}

// --- Tables -------------------------------------------------------------------------------------------

struct Behaviour {
    const char *className;
    CMPIStatus (*enumerate)(const Request &);
    CMPIStatus (*names)(const Request &) = nullptr;
    CMPIStatus (*get)(const Request &) = nullptr;
};
constexpr Behaviour behaviours[] = {
    {"T_Thing", things, thingNames, oneThing},
    {"T_Named", things, thingNames, oneThing},
    {"T_Other", nullptr, nullptr, other},
    {"T_Undeclared", undeclared, nullptr, undeclared},
    {"T_WrongType", wrongType},
    {"T_WrongAndOn", wrongAndOn},
    {"T_Unfetchable", keys<nullptr, one>, name<one>},
    {"T_NoKey", keys<one, nullptr>, name<nullptr>, nothing},
    {"T_EmptyKey", keys<nullptr, none>},
    {"T_OtherKey", keys<one, two>},
    {"T_WrongClass", wrongClass},
    {"T_PathInstead", name<one>},
    {"T_FailsAfterTwo", failsAfterTwo},
    {"T_Link", nullptr},
    {"T_Silent", nullptr},
};

struct Provider {
    const CMPIBroker *broker;
    const Behaviour *behaviour;
};

template <typename MI> const Provider &providerOf(const MI *mi) {
    return *static_cast<const Provider *>(mi->hdl);
}

template <typename MI> CMPIStatus cleanUp(MI *mi, const CMPIContext *, CMPIBoolean terminating) {
    delete &providerOf(mi);
    delete mi;
    providersCleaned += terminating;
    return ok;
}

template <auto member>
CMPIStatus run(CMPIInstanceMI *mi, const CMPIContext *context, const CMPIResult *result,
               const CMPIObjectPath *path, const char **properties) {
    const auto &[broker, behaviour] = providerOf(mi);
    const Request r = {broker, context, result, path, properties, behaviour->className};
    return behaviour->*member == nullptr ? failure(broker, CMPI_RC_ERR_NOT_SUPPORTED, "not supported")
                                         : (behaviour->*member)(r);
}

CMPIStatus runNames(CMPIInstanceMI *mi, const CMPIContext *context, const CMPIResult *result,
                    const CMPIObjectPath *path) {
    return run<&Behaviour::names>(mi, context, result, path, nullptr);
}

// Takes the Note "good", and answers any other with the list of properties.
CMPIStatus modify(CMPIInstanceMI *mi, const CMPIContext *, const CMPIResult *, const CMPIObjectPath *,
                  const CMPIInstance *instance, const char **properties) {
    const CMPIData note = CMGetProperty(instance, "note", nullptr);
    const bool isGood = !CMIsNullValue(note) && !std::strcmp(CMGetCharPtr(note.value.string), "good");
    return isGood ? ok : failure(providerOf(mi).broker, CMPI_RC_ERR_INVALID_PARAMETER, joined(properties));
}

constexpr CMPIInstanceMIFT instanceTable = {CMPIVersion200,
                                            CMPIVersion200,
                                            "test",
                                            cleanUp<CMPIInstanceMI>,
                                            runNames,
                                            run<&Behaviour::enumerate>,
                                            run<&Behaviour::get>,
                                            nullptr,
                                            modify,
                                            nullptr,
                                            nullptr};

CMPIStatus invoke(CMPIMethodMI *mi, const CMPIContext *, const CMPIResult *result, const CMPIObjectPath *,
                  const char *method, const CMPIArgs *in, CMPIArgs *out) {
    const CMPIBroker *broker = providerOf(mi).broker;
    const std::string name = method;
    const CMPIUint32 zero = 0;
    if (name == "ReturnText") {
        return CMReturnData(result, "text", CMPI_chars), ok;
    }
    if (name == "OutUndeclared" || name == "OutWrongType") {
        CMAddArg(out, name == "OutUndeclared" ? "Surprise" : "Reply", &zero, CMPI_uint32);
    } else if (name == "Echo") {
        CMAddArg(out, "Reply", CMGetCharPtr(CMGetArg(in, "text", nullptr).value.string), CMPI_chars);
        CMPIArray *codes = CMNewArray(broker, 2, CMPI_uint16, nullptr);
        const CMPIUint16 code = 7;
        CMSetArrayElementAt(codes, 1, &code, CMPI_uint16);
        CMAddArg(out, "Codes", &codes, CMPI_uint16A);
    } else {
        return failure(broker, CMPI_RC_ERR_METHOD_NOT_FOUND, name);
    }
    return CMReturnData(result, &zero, CMPI_uint32);
}

constexpr CMPIMethodMIFT methodTable = {CMPIVersion200, CMPIVersion200, "test", cleanUp<CMPIMethodMI>,
                                        invoke};

// T_Link links each thing with the other of slot 7; T_Silent doesn't support the question.
CMPIStatus associatorNames(CMPIAssociationMI *mi, const CMPIContext *c, const CMPIResult *result,
                           const CMPIObjectPath *path, const char *associationClass, const char *,
                           const char *, const char *) {
    const auto &[broker, behaviour] = providerOf(mi);
    if (associationClass == nullptr || std::strcmp(behaviour->className, "T_Link") != 0) {
        return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    }
    CMPIObjectPath *found = newPath({broker, c, result, path, nullptr, "T_Link"}, "T_Other", "other");
    const CMPIUint64 slot = 7;
    CMAddKey(found, "Slot", &slot, CMPI_uint64);
    return CMReturnObjectPath(result, found);
}

constexpr CMPIAssociationMIFT associationTable = {
    CMPIVersion200, CMPIVersion200,  "test",  cleanUp<CMPIAssociationMI>,
    nullptr,        associatorNames, nullptr, nullptr};

template <typename MI, typename Table>
MI *create(const CMPIBroker *broker, const char *className, const Table *table, CMPIStatus *status) {
    for (const Behaviour &behaviour : behaviours) {
        if (std::strcmp(behaviour.className, className) == 0) {
            ++providersMade;
            return new MI{new Provider{broker, &behaviour}, table};
        }
    }
    *status = failure(broker, CMPI_RC_ERR_FAILED, "doesn't load today");
    return nullptr;
}

} // namespace

#define FACTORY extern "C" __attribute__((visibility("default")))

FACTORY CMPIInstanceMI *_Generic_Create_InstanceMI(const CMPIBroker *broker, const CMPIContext *,
                                                   const char *name, CMPIStatus *status) {
    // A class with its own factory must not come here.
    return create<CMPIInstanceMI>(broker, std::strcmp(name, "T_Named") ? name : "", &instanceTable, status);
}
FACTORY CMPIInstanceMI *T_Named_Create_InstanceMI(const CMPIBroker *broker, const CMPIContext *,
                                                  CMPIStatus *status) {
    return create<CMPIInstanceMI>(broker, "T_Named", &instanceTable, status);
}
FACTORY CMPIMethodMI *_Generic_Create_MethodMI(const CMPIBroker *broker, const CMPIContext *,
                                               const char *name, CMPIStatus *status) {
    return create<CMPIMethodMI>(broker, name, &methodTable, status);
}
FACTORY CMPIAssociationMI *_Generic_Create_AssociationMI(const CMPIBroker *broker, const CMPIContext *,
                                                         const char *name, CMPIStatus *status) {
    return create<CMPIAssociationMI>(broker, name, &associationTable, status);
}
