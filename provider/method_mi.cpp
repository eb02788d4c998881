// The method MI: a method goes to the class library's one function for all methods of its class, which hands
// the return value to the result and says that it is complete.

#include "mi.h"

namespace {

using Invoke = CMPIStatus(const CMPIBroker *, void *handle, const CMPIContext *, const CMPIObjectPath *,
                          const char *method, const CMPIArgs *in, const CMPIResult *, CMPIArgs *out);

constexpr Operation invoke = {Scope::Class, "PH_OEM_IM_", "invokeMethod"};

CMPIStatus invokeMethod(CMPIMethodMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                        const CMPIObjectPath *path, const char *method, const CMPIArgs *in, CMPIArgs *out) {
    const CMPIBroker *broker = brokerOf(mi);
    return carryOut<Invoke>(broker, invoke, path, [&](Invoke *function) {
        return function(broker, mi, ctx, path, method, in, rslt, out);
    });
}

constexpr CMPIMethodMIFT table = {
    .ftVersion = miTableVersion,
    .miVersion = miVersion,
    .miName = miName,
    .cleanup = cleanUp,
    .invokeMethod = invokeMethod,
};

} // namespace

TRV_FACTORY CMPIMethodMI *TRVProviders_Create_MethodMI(const CMPIBroker *broker, const CMPIContext *,
                                                       CMPIStatus *status) {
    return newMi<CMPIMethodMI>(broker, &table, status);
}

TRV_FACTORY CMPIMethodMI *_Generic_Create_MethodMI(const CMPIBroker *broker, const CMPIContext *,
                                                   const char *, CMPIStatus *status) {
    return newMi<CMPIMethodMI>(broker, &table, status);
}
