// The broker's table of up-calls: what providers ask of each other. They share the memory of the request
// in which they are made; lists of properties narrow nothing here, as in CIM servers.
#include "routing.h"

namespace broker {

namespace {

CMPIStatus noRequest() {
    return {CMPI_RC_ERR_FAILED, nullptr};
}

// Routes an up-call of the calling thread's request; outside of a request it fails.
template <typename Route, typename... Arguments>
Outcome routed(Route route, const CMPIContext *context, const CMPIObjectPath *path, Arguments... arguments) {
    Request *request = currentRequest();
    if (request == nullptr) {
        return {.status = noRequest()};
    }
    return route(Call{*request, context, path}, arguments...);
}

template <typename Value> void store(CMPIStatus *status, const Value &value) {
    if (status != nullptr) {
        *status = value;
    }
}

CMPIEnumeration *enumerationOf(const Outcome &outcome, Form form, CMPIStatus *status) {
    store(status, outcome.status);
    if (outcome.status.rc != CMPI_RC_OK) {
        return nullptr;
    }
    const CMPIType type = form == Form::Names ? CMPI_ref : CMPI_instance;
    EnumerationObject *all = newEnumeration(currentRequest()->memory, type, outcome.items, outcome.count);
    if (all == nullptr) {
        setStatus(status, CMPI_RC_ERR_FAILED);
    }
    return all == nullptr ? nullptr : &all->cmpi;
}

// The only item of an answer; null with its status if there is none.
template <typename Object> decltype(Object::cmpi) *onlyItem(const Outcome &outcome, CMPIStatus *status) {
    store(status, outcome.status);
    return outcome.count == 0 ? nullptr : &static_cast<Object *>(outcome.items[0])->cmpi;
}

CMPIEnumeration *enumerateInstanceNames(const CMPIBroker *, const CMPIContext *context,
                                        const CMPIObjectPath *classPath, CMPIStatus *status) {
    const Outcome outcome = routed(routeEnumerate, context, classPath, Form::Names, nullptr);
    return enumerationOf(outcome, Form::Names, status);
}

CMPIInstance *getInstance(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                          const char **properties, CMPIStatus *status) {
    return onlyItem<InstanceObject>(routed(routeGet, context, path, properties), status);
}

CMPIObjectPath *createInstance(const CMPIBroker *, const CMPIContext *context,
                               const CMPIObjectPath *classPath, const CMPIInstance *instance,
                               CMPIStatus *status) {
    return onlyItem<PathObject>(routed(routeCreate, context, classPath, instance), status);
}

CMPIStatus modifyInstance(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                          const CMPIInstance *instance, const char **properties) {
    return routed(routeModify, context, path, instance, properties).status;
}

CMPIStatus deleteInstance(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path) {
    return routed(routeDelete, context, path).status;
}

CMPIEnumeration *enumerateInstances(const CMPIBroker *, const CMPIContext *context,
                                    const CMPIObjectPath *classPath, const char **properties,
                                    CMPIStatus *status) {
    const Outcome outcome = routed(routeEnumerate, context, classPath, Form::Instances, properties);
    return enumerationOf(outcome, Form::Instances, status);
}

CMPIEnumeration *associators(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                             const char *associationClass, const char *resultClass, const char *role,
                             const char *resultRole, const char **properties, CMPIStatus *status) {
    const Association filter = {associationClass, resultClass, role, resultRole};
    const Outcome outcome = routed(routeAssociators, context, path, Form::Instances, filter, properties);
    return enumerationOf(outcome, Form::Instances, status);
}

CMPIEnumeration *associatorNames(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                                 const char *associationClass, const char *resultClass, const char *role,
                                 const char *resultRole, CMPIStatus *status) {
    const Association filter = {associationClass, resultClass, role, resultRole};
    const Outcome outcome = routed(routeAssociators, context, path, Form::Names, filter, nullptr);
    return enumerationOf(outcome, Form::Names, status);
}

CMPIEnumeration *references(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                            const char *resultClass, const char *role, const char **properties,
                            CMPIStatus *status) {
    const Association filter = {.resultClass = resultClass, .role = role};
    const Outcome outcome = routed(routeReferences, context, path, Form::Instances, filter, properties);
    return enumerationOf(outcome, Form::Instances, status);
}

CMPIEnumeration *referenceNames(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                                const char *resultClass, const char *role, CMPIStatus *status) {
    const Association filter = {.resultClass = resultClass, .role = role};
    const Outcome outcome = routed(routeReferences, context, path, Form::Names, filter, nullptr);
    return enumerationOf(outcome, Form::Names, status);
}

CMPIData invokeMethod(const CMPIBroker *, const CMPIContext *context, const CMPIObjectPath *path,
                      const char *method, const CMPIArgs *in, CMPIArgs *out, CMPIStatus *status) {
    const Outcome outcome = routed(routeInvoke, context, path, method, in, out);
    store(status, outcome.status);
    return outcome.value;
}

// One property is a property list of one name.
CMPIStatus setProperty(const CMPIBroker *mb, const CMPIContext *context, const CMPIObjectPath *path,
                       const char *name, const CMPIValue *value, CMPIType type) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    if (path == nullptr || name == nullptr) {
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    }
    CMPIInstance *instance = CMNewInstance(mb, path, &status);
    if (status.rc == CMPI_RC_OK) {
        status = CMSetProperty(instance, name, value, type);
    }
    const char *properties[] = {name, nullptr};
    return status.rc == CMPI_RC_OK ? modifyInstance(mb, context, path, instance, properties) : status;
}

CMPIData getProperty(const CMPIBroker *mb, const CMPIContext *context, const CMPIObjectPath *path,
                     const char *name, CMPIStatus *status) {
    const char *properties[] = {name, nullptr};
    const CMPIInstance *instance = getInstance(mb, context, path, properties, status);
    return instance == nullptr ? notFoundData() : CMGetProperty(instance, name, status);
}

// --- Not served ---------------------------------------------------------------------------------------

CMPIStatus deliverIndication(const CMPIBroker *, const CMPIContext *, const char *, const CMPIInstance *) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIEnumeration *execQuery(const CMPIBroker *, const CMPIContext *, const CMPIObjectPath *, const char *,
                           const char *, CMPIStatus *status) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

} // namespace

const CMPIBrokerFT upcallTable = {
    .brokerCapabilities = 0,
    .brokerVersion = CMPIVersion200,
    .brokerName = "embedded CMPI broker",
    .prepareAttachThread = prepareAttachThread,
    .attachThread = attachThread,
    .detachThread = detachThread,
    .deliverIndication = deliverIndication,
    .enumerateInstanceNames = enumerateInstanceNames,
    .getInstance = getInstance,
    .createInstance = createInstance,
    .modifyInstance = modifyInstance,
    .deleteInstance = deleteInstance,
    .execQuery = execQuery,
    .enumerateInstances = enumerateInstances,
    .associators = associators,
    .associatorNames = associatorNames,
    .references = references,
    .referenceNames = referenceNames,
    .invokeMethod = invokeMethod,
    .setProperty = setProperty,
    .getProperty = getProperty,
};

} // namespace broker
