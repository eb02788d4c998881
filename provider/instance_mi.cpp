// The instance MI: each request goes to the class library's function of the class that the object path names.
//
// The library sets only the properties that the request's list names, besides the keys. So no property filter
// is put on the instances: the module never holds one, and a filter would need every class's keys a second
// time.

#include "mi.h"

namespace {

using Read = void(const CMPIBroker *, const CMPIContext *, const CMPIObjectPath *, const char **properties,
                  const CMPIResult *, CMPIStatus *);
using ReadNames = void(const CMPIBroker *, const CMPIContext *, const CMPIObjectPath *, const CMPIResult *,
                       CMPIStatus *);
using Modify = CMPIStatus(const CMPIBroker *, void *handle, const CMPIContext *, const CMPIObjectPath *,
                          const CMPIInstance *, const char **properties);

constexpr Operation get = {Scope::Class, "PH_OEM_GI_", "getInstance"};
constexpr Operation enumerate = {Scope::Class, "PH_OEM_EI_", "enumerateInstances"};
constexpr Operation enumerateNames = {Scope::Class, "PH_OEM_EIN_", "enumerateInstanceNames"};
constexpr Operation modify = {Scope::Class, "PH_OEM_MI_", "modifyInstance"};

// What no class does. The library answers for all of them, with the operations that it has for associations.
using CreateAny = CMPIStatus(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                             const CMPIObjectPath *, const CMPIInstance *, const CMPIBroker *);
using ModifyAssociation = CMPIStatus(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                                     const CMPIObjectPath *, const CMPIInstance *, const char **properties,
                                     const CMPIBroker *);
using DeleteAny = CMPIStatus(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                             const CMPIObjectPath *, const CMPIBroker *);
using QueryAny = CMPIStatus(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *, const CMPIObjectPath *,
                            const char *query, const char *language, const CMPIBroker *);

constexpr Operation createAny = {Scope::Library, "PH_OEM_CreateInstance_Association", "createInstance"};
constexpr Operation modifyAssociation = {Scope::Library, "PH_OEM_SetInstance_Association", "modifyInstance"};
constexpr Operation deleteAny = {Scope::Library, "PH_OEM_DeleteInstance_Association", "deleteInstance"};
constexpr Operation queryAny = {Scope::Library, "PH_OEM_ExecQuery_Association", "execQuery"};

// The library hands what it finds to the result; that this was all of it is the provider layer's to say.
CMPIStatus answered(const CMPIResult *rslt, const CMPIStatus &status) {
    return status.rc == CMPI_RC_OK ? CMReturnDone(rslt) : status;
}

CMPIStatus read(const Operation &operation, const CMPIInstanceMI *mi, const CMPIContext *ctx,
                const CMPIResult *rslt, const CMPIObjectPath *cop, const char **properties) {
    const CMPIBroker *broker = brokerOf(mi);
    return carryOut<Read>(broker, operation, cop, [&](Read *function) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        function(broker, ctx, cop, properties, rslt, &status);
        return answered(rslt, status);
    });
}

CMPIStatus getInstance(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                       const CMPIObjectPath *path, const char **properties) {
    return read(get, mi, ctx, rslt, path, properties);
}

CMPIStatus enumerateInstances(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                              const CMPIObjectPath *path, const char **properties) {
    return read(enumerate, mi, ctx, rslt, path, properties);
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                  const CMPIObjectPath *path) {
    const CMPIBroker *broker = brokerOf(mi);
    return carryOut<ReadNames>(broker, enumerateNames, path, [&](ReadNames *function) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        function(broker, ctx, path, rslt, &status);
        return answered(rslt, status);
    });
}

// Only the path of an association's instance has references among its keys.
bool isOfAssociation(const CMPIObjectPath *path) {
    const CMPICount count = CMGetKeyCount(path, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString *name = nullptr;
        if (CMGetKeyAt(path, i, &name, nullptr).type == CMPI_ref) {
            return true;
        }
    }
    return false;
}

CMPIStatus modifyInstance(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                          const CMPIObjectPath *path, const CMPIInstance *instance, const char **properties) {
    const CMPIBroker *broker = brokerOf(mi);
    if (isOfAssociation(path)) {
        return carryOut<ModifyAssociation>(broker, modifyAssociation, path, [&](ModifyAssociation *function) {
            return function(mi, ctx, rslt, path, instance, properties, broker);
        });
    }
    return carryOut<Modify>(broker, modify, path, [&](Modify *function) {
        return function(broker, mi, ctx, path, instance, properties);
    });
}

CMPIStatus createInstance(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                          const CMPIObjectPath *path, const CMPIInstance *instance) {
    const CMPIBroker *broker = brokerOf(mi);
    return carryOut<CreateAny>(broker, createAny, path, [&](CreateAny *function) {
        return function(mi, ctx, rslt, path, instance, broker);
    });
}

CMPIStatus deleteInstance(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                          const CMPIObjectPath *path) {
    const CMPIBroker *broker = brokerOf(mi);
    return carryOut<DeleteAny>(broker, deleteAny, path,
                               [&](DeleteAny *function) { return function(mi, ctx, rslt, path, broker); });
}

CMPIStatus execQuery(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                     const CMPIObjectPath *path, const char *query, const char *language) {
    const CMPIBroker *broker = brokerOf(mi);
    return carryOut<QueryAny>(broker, queryAny, path, [&](QueryAny *function) {
        return function(mi, ctx, rslt, path, query, language, broker);
    });
}

constexpr CMPIInstanceMIFT table = {
    .ftVersion = miTableVersion,
    .miVersion = miVersion,
    .miName = miName,
    .cleanup = cleanUp,
    .enumerateInstanceNames = enumerateInstanceNames,
    .enumerateInstances = enumerateInstances,
    .getInstance = getInstance,
    .createInstance = createInstance,
    .modifyInstance = modifyInstance,
    .deleteInstance = deleteInstance,
    .execQuery = execQuery,
};

} // namespace

TRV_FACTORY CMPIInstanceMI *TRVProviders_Create_InstanceMI(const CMPIBroker *broker, const CMPIContext *,
                                                           CMPIStatus *status) {
    return newMi<CMPIInstanceMI>(broker, &table, status);
}

TRV_FACTORY CMPIInstanceMI *_Generic_Create_InstanceMI(const CMPIBroker *broker, const CMPIContext *,
                                                       const char *, CMPIStatus *status) {
    return newMi<CMPIInstanceMI>(broker, &table, status);
}
