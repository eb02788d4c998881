// Providers that the broker's tests run: one behaviour per class, found by the class's name.
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

#include <atomic>
#include <cstring>
#include <pthread.h>
#include <string>

extern "C" {
__attribute__((visibility("default"))) std::atomic<int> providersMade{0};
__attribute__((visibility("default"))) std::atomic<int> providersCleaned{0};
}

namespace {

struct Request {
    const CMPIBroker *broker;
    const CMPIContext *context;
    const CMPIResult *result;
    const CMPIObjectPath *path;
    const char **properties;
    const char *className;
};

CMPIStatus status(CMPIrc rc) {
    return {rc, nullptr};
}

CMPIStatus failure(const Request &r, CMPIrc rc, const char *text) {
    CMReturnWithChars(r.broker, rc, text);
}

CMPIObjectPath *newPath(const Request &r, const char *className, const char *id) {
    CMPIObjectPath *path =
        CMNewObjectPath(r.broker, CMGetCharPtr(CMGetNameSpace(r.path, nullptr)), className, nullptr);
    if (id != nullptr) {
        CMAddKey(path, "Id", id, CMPI_chars);
    }
    return path;
}

CMPIInstance *newInstance(const Request &r, const char *className, const char *id) {
    CMPIInstance *instance = CMNewInstance(r.broker, newPath(r, className, nullptr), nullptr);
    if (id != nullptr) {
        CMSetProperty(instance, "Id", id, CMPI_chars);
    }
    return instance;
}

// A number that the test left in the context.
CMPIUint32 asked(const Request &r, const char *name, CMPIUint32 otherwise) {
    CMPIStatus st = status(CMPI_RC_OK);
    const CMPIData data = CMGetContextEntry(r.context, name, &st);
    return st.rc == CMPI_RC_OK ? data.value.uint32 : otherwise;
}

std::string joined(const char **properties) {
    std::string all = properties == nullptr ? "all" : "";
    for (; properties != nullptr && *properties != nullptr; ++properties) {
        all += std::string(*properties) + ';';
    }
    return all;
}

CMPIInstance *thing(const Request &r, CMPIUint32 number) {
    CMPIInstance *instance = newInstance(r, r.className, ("thing " + std::to_string(number)).c_str());
    CMSetProperty(instance, "Number", &number, CMPI_uint32);
    CMSetProperty(instance, "Note", joined(r.properties).c_str(), CMPI_chars);
    return instance;
}

CMPIStatus things(const Request &r) {
    const CMPIUint32 count = asked(r, "count", 3);
    for (CMPIUint32 i = 0; i < count; ++i) {
        CMReturnInstance(r.result, thing(r, i));
    }
    CMReturnDone(r.result);
    return status(CMPI_RC_OK);
}

CMPIStatus thingNames(const Request &r) {
    for (CMPIUint32 i = 0; i < asked(r, "count", 3); ++i) {
        CMReturnObjectPath(r.result, newPath(r, r.className, ("thing " + std::to_string(i)).c_str()));
    }
    return status(CMPI_RC_OK);
}

CMPIStatus oneThing(const Request &r) {
    CMPIStatus st = status(CMPI_RC_OK);
    const CMPIData id = CMGetKey(r.path, "id", &st);
    if (st.rc != CMPI_RC_OK || id.type != CMPI_string ||
        std::strncmp(CMGetCharPtr(id.value.string), "thing ", 6)) {
        return failure(r, CMPI_RC_ERR_NOT_FOUND, "no such thing");
    }
    CMReturnInstance(r.result,
                     thing(r, static_cast<CMPIUint32>(std::stoul(CMGetCharPtr(id.value.string) + 6))));
    return status(CMPI_RC_OK);
}

// Says of which type the key Slot arrived.
CMPIStatus other(const Request &r) {
    const CMPIData slot = CMGetKey(r.path, "Slot", nullptr);
    CMPIInstance *instance = newInstance(r, r.className, "other");
    const CMPIUint16 number = static_cast<CMPIUint16>(slot.value.uint64);
    CMSetProperty(instance, "Slot", &number, CMPI_uint16);
    const char *type = slot.type == CMPI_uint64 ? "uint64" : slot.type == CMPI_sint64 ? "sint64" : "else";
    CMSetProperty(instance, "KeyType", type, CMPI_chars);
    CMReturnInstance(r.result, instance);
    return status(CMPI_RC_OK);
}

// Counts the things by up-calls: all at once, then each by its name, which is an up-call as well.
CMPIUint32 countThings(const Request &r) {
    CMPIStatus st = status(CMPI_RC_OK);
    CMPIObjectPath *path = newPath(r, "T_Thing", nullptr);
    CMPIEnumeration *all = CBEnumInstances(r.broker, r.context, path, nullptr, &st);
    CMPIArray *array = st.rc == CMPI_RC_OK ? CMToArray(all, &st) : nullptr;
    const CMPICount count = array == nullptr ? 0 : CMGetArrayCount(array, nullptr);
    CMPIUint32 found = 0;
    CMPIEnumeration *names = CBEnumInstanceNames(r.broker, r.context, path, &st);
    while (st.rc == CMPI_RC_OK && CMHasNext(names, nullptr)) {
        const CMPIData name = CMGetNext(names, nullptr);
        found += CBGetInstance(r.broker, r.context, name.value.ref, nullptr, &st) != nullptr;
    }
    return found == count ? found : 0;
}

CMPIStatus asking(const Request &r) {
    const CMPIUint32 found = countThings(r);
    CMPIInstance *instance = newInstance(r, r.className, "asked");
    CMSetProperty(instance, "Found", &found, CMPI_uint32);
    CMReturnInstance(r.result, instance);
    return status(CMPI_RC_OK);
}

// Has a thread of its own ask.
struct Work {
    Request request;
    CMPIContext *context;
    CMPIUint32 found;
    CMPIrc attached, detached;
};

void *work(void *argument) {
    Work &w = *static_cast<Work *>(argument);
    w.attached = CBAttachThread(w.request.broker, w.context).rc;
    Request inThread = w.request;
    inThread.context = w.context;
    w.found = countThings(inThread);
    w.detached = CBDetachThread(w.request.broker, w.context).rc;
    return nullptr;
}

CMPIStatus threaded(const Request &r) {
    Work w = {r, CBPrepareAttachThread(r.broker, r.context), 0, CMPI_RC_ERROR, CMPI_RC_ERROR};
    const CMPIBrokerExtFT &services = *r.broker->xft;
    void *thread = services.newThread(work, &w, 0);
    services.joinThread(thread, nullptr);
    if (w.attached != CMPI_RC_OK || w.detached != CMPI_RC_OK) {
        return failure(r, CMPI_RC_ERR_FAILED, "the thread can't attach");
    }
    CMPIInstance *instance = newInstance(r, r.className, "asked");
    CMSetProperty(instance, "Found", &w.found, CMPI_uint32);
    CMReturnInstance(r.result, instance);
    return status(CMPI_RC_OK);
}

// --- Wrong ones ---------------------------------------------------------------------------------------

CMPIStatus undeclared(const Request &r) {
    CMPIInstance *instance = newInstance(r, r.className, "one");
    CMSetProperty(instance, "Surprise", "text", CMPI_chars);
    CMReturnInstance(r.result, instance);
    return status(CMPI_RC_OK);
}

bool isWanted(const Request &r, const char *property) {
    const char **wanted = r.properties;
    while (wanted != nullptr && *wanted != nullptr && std::strcmp(*wanted, property) != 0) {
        ++wanted;
    }
    return wanted == nullptr || *wanted != nullptr;
}

// Only a client that wants the property notices.
CMPIStatus wrongType(const Request &r) {
    CMPIInstance *instance = newInstance(r, r.className, "one");
    const CMPIUint32 value = 5;
    if (isWanted(r, "Value")) {
        return CMSetProperty(instance, "Value", &value, CMPI_uint32);
    }
    return CMReturnInstance(r.result, instance);
}

CMPIStatus wrongAndOn(const Request &r) {
    CMPIInstance *instance = newInstance(r, r.className, "one");
    const CMPIUint32 value = 5;
    CMSetProperty(instance, "Value", &value, CMPI_uint32);
    return CMReturnInstance(r.result, instance);
}

CMPIStatus rightOne(const Request &r) {
    return CMReturnInstance(r.result, newInstance(r, r.className, "one"));
}

CMPIStatus rightName(const Request &r) {
    return CMReturnObjectPath(r.result, newPath(r, r.className, "one"));
}

CMPIStatus withKey(const Request &r, const char *pathId, const char *propertyId) {
    CMPIInstance *instance = CMNewInstance(r.broker, newPath(r, r.className, pathId), nullptr);
    if (propertyId != nullptr) {
        CMSetProperty(instance, "Id", propertyId, CMPI_chars);
    }
    CMReturnInstance(r.result, instance);
    return status(CMPI_RC_OK);
}

CMPIStatus noKey(const Request &r) {
    return withKey(r, "one", nullptr);
}
CMPIStatus emptyKey(const Request &r) {
    return withKey(r, nullptr, "");
}
CMPIStatus otherKey(const Request &r) {
    return withKey(r, "one", "two");
}

CMPIStatus noKeyName(const Request &r) {
    CMReturnObjectPath(r.result, newPath(r, r.className, nullptr));
    return status(CMPI_RC_OK);
}

CMPIStatus wrongClass(const Request &r) {
    CMReturnInstance(r.result, newInstance(r, "T_Thing", "one"));
    return status(CMPI_RC_OK);
}

CMPIStatus pathInstead(const Request &r) {
    CMReturnObjectPath(r.result, newPath(r, r.className, "one"));
    return status(CMPI_RC_OK);
}

CMPIStatus failsAfterTwo(const Request &r) {
    CMReturnInstance(r.result, newInstance(r, r.className, "one"));
    CMReturnInstance(r.result, newInstance(r, r.className, "two"));
    return failure(r, CMPI_RC_ERR_ACCESS_DENIED, "no more");
}

// --- Tables -------------------------------------------------------------------------------------------

struct Behaviour {
    const char *className;
    CMPIStatus (*enumerate)(const Request &);
    CMPIStatus (*names)(const Request &);
    CMPIStatus (*get)(const Request &);
};
constexpr Behaviour behaviours[] = {
    {"T_Thing", things, thingNames, oneThing},
    {"T_Named", things, thingNames, oneThing},
    {"T_Other", nullptr, nullptr, other},
    {"T_Asking", asking, nullptr, nullptr},
    {"T_Threaded", threaded, nullptr, nullptr},
    {"T_Undeclared", undeclared, nullptr, undeclared},
    {"T_WrongType", wrongType, nullptr, nullptr},
    {"T_WrongAndOn", wrongAndOn, nullptr, nullptr},
    {"T_NoKey", noKey, noKeyName, nullptr},
    {"T_EmptyKey", emptyKey, nullptr, nullptr},
    {"T_OtherKey", otherKey, nullptr, nullptr},
    {"T_WrongClass", wrongClass, nullptr, nullptr},
    {"T_PathInstead", pathInstead, nullptr, pathInstead},
    {"T_FailsAfterTwo", failsAfterTwo, nullptr, nullptr},
    {"T_Unfetchable", rightOne, rightName, nullptr},
    {"T_Link", nullptr, nullptr, nullptr},
    {"T_Silent", nullptr, nullptr, nullptr},
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
    return status(CMPI_RC_OK);
}

CMPIStatus run(CMPIStatus (*function)(const Request &), CMPIInstanceMI *mi, const CMPIContext *context,
               const CMPIResult *result, const CMPIObjectPath *path, const char **properties) {
    const Provider &p = providerOf(mi);
    const Request r = {p.broker, context, result, path, properties, p.behaviour->className};
    return function == nullptr ? failure(r, CMPI_RC_ERR_NOT_SUPPORTED, "not supported") : function(r);
}

CMPIStatus enumerateNames(CMPIInstanceMI *mi, const CMPIContext *c, const CMPIResult *r,
                          const CMPIObjectPath *p) {
    return run(providerOf(mi).behaviour->names, mi, c, r, p, nullptr);
}
CMPIStatus enumerate(CMPIInstanceMI *mi, const CMPIContext *c, const CMPIResult *r, const CMPIObjectPath *p,
                     const char **properties) {
    return run(providerOf(mi).behaviour->enumerate, mi, c, r, p, properties);
}
CMPIStatus get(CMPIInstanceMI *mi, const CMPIContext *c, const CMPIResult *r, const CMPIObjectPath *p,
               const char **properties) {
    return run(providerOf(mi).behaviour->get, mi, c, r, p, properties);
}

// Answers with the list of properties and the value of Note, as its message.
CMPIStatus modify(CMPIInstanceMI *mi, const CMPIContext *, const CMPIResult *, const CMPIObjectPath *,
                  const CMPIInstance *instance, const char **properties) {
    CMPIStatus st = status(CMPI_RC_OK);
    const CMPIData note = CMGetProperty(instance, "note", &st);
    if (st.rc == CMPI_RC_OK && !CMIsNullValue(note) &&
        !std::strcmp(CMGetCharPtr(note.value.string), "good")) {
        return status(CMPI_RC_OK);
    }
    CMReturnWithChars(providerOf(mi).broker, CMPI_RC_ERR_INVALID_PARAMETER, joined(properties).c_str());
}

constexpr CMPIInstanceMIFT instanceTable = {CMPIVersion200, CMPIVersion200, "test", cleanUp<CMPIInstanceMI>,
                                            enumerateNames, enumerate,      get,    nullptr,
                                            modify,         nullptr,        nullptr};

CMPIStatus invoke(CMPIMethodMI *mi, const CMPIContext *, const CMPIResult *result, const CMPIObjectPath *,
                  const char *method, const CMPIArgs *in, CMPIArgs *out) {
    const CMPIBroker *broker = providerOf(mi).broker;
    const std::string name = method;
    const CMPIUint32 zero = 0;
    if (name == "ReturnText") {
        return CMReturnData(result, "text", CMPI_chars), status(CMPI_RC_OK);
    }
    if (name == "OutUndeclared" || name == "OutWrongType") {
        CMAddArg(out, name == "OutUndeclared" ? "Surprise" : "Reply", &zero, CMPI_uint32);
    } else if (name != "Echo") {
        CMReturnWithChars(broker, CMPI_RC_ERR_METHOD_NOT_FOUND, method);
    }
    if (name == "Echo") {
        const CMPIData text = CMGetArg(in, "text", nullptr);
        CMAddArg(out, "Reply", CMGetCharPtr(text.value.string), CMPI_chars);
        CMPIArray *codes = CMNewArray(broker, 2, CMPI_uint16, nullptr);
        const CMPIUint16 code = 7;
        CMSetArrayElementAt(codes, 1, &code, CMPI_uint16);
        CMAddArg(out, "Codes", &codes, CMPI_uint16A);
    }
    CMReturnData(result, &zero, CMPI_uint32);
    return status(CMPI_RC_OK);
}

constexpr CMPIMethodMIFT methodTable = {CMPIVersion200, CMPIVersion200, "test", cleanUp<CMPIMethodMI>,
                                        invoke};

// T_Link links each thing with the other of slot 7; T_Silent doesn't support the question.
CMPIStatus associatorNames(CMPIAssociationMI *mi, const CMPIContext *c, const CMPIResult *result,
                           const CMPIObjectPath *path, const char *associationClass, const char *,
                           const char *, const char *) {
    const Provider &p = providerOf(mi);
    if (associationClass == nullptr || std::strcmp(p.behaviour->className, "T_Link") != 0) {
        return status(CMPI_RC_ERR_NOT_SUPPORTED);
    }
    const Request r = {p.broker, c, result, path, nullptr, "T_Link"};
    CMPIObjectPath *otherPath = newPath(r, "T_Other", "other");
    const CMPIUint64 slot = 7;
    CMAddKey(otherPath, "Slot", &slot, CMPI_uint64);
    CMReturnObjectPath(result, otherPath);
    return status(CMPI_RC_OK);
}

constexpr CMPIAssociationMIFT associationTable = {
    CMPIVersion200, CMPIVersion200,  "test",  cleanUp<CMPIAssociationMI>,
    nullptr,        associatorNames, nullptr, nullptr};

template <typename MI, typename Table>
MI *create(const CMPIBroker *broker, const char *className, const Table *table, CMPIStatus *st) {
    for (const Behaviour &behaviour : behaviours) {
        if (std::strcmp(behaviour.className, className) == 0) {
            ++providersMade;
            return new MI{new Provider{broker, &behaviour}, table};
        }
    }
    st->rc = CMPI_RC_ERR_FAILED;
    st->msg = CMNewString(broker, "doesn't load today", nullptr);
    return nullptr;
}

} // namespace

#define FACTORY extern "C" __attribute__((visibility("default")))

FACTORY CMPIInstanceMI *_Generic_Create_InstanceMI(const CMPIBroker *broker, const CMPIContext *,
                                                   const char *name, CMPIStatus *st) {
    // A class with its own factory must not come here.
    return create<CMPIInstanceMI>(broker, std::strcmp(name, "T_Named") ? name : "", &instanceTable, st);
}
FACTORY CMPIInstanceMI *T_Named_Create_InstanceMI(const CMPIBroker *broker, const CMPIContext *,
                                                  CMPIStatus *st) {
    return create<CMPIInstanceMI>(broker, "T_Named", &instanceTable, st);
}
FACTORY CMPIMethodMI *_Generic_Create_MethodMI(const CMPIBroker *broker, const CMPIContext *,
                                               const char *name, CMPIStatus *st) {
    return create<CMPIMethodMI>(broker, name, &methodTable, st);
}
FACTORY CMPIAssociationMI *_Generic_Create_AssociationMI(const CMPIBroker *broker, const CMPIContext *,
                                                         const char *name, CMPIStatus *st) {
    return create<CMPIAssociationMI>(broker, name, &associationTable, st);
}
