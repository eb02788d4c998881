#include "fake_class_library.h"

#define EXPORT extern "C" __attribute__((visibility("default")))

extern "C" {
__attribute__((visibility("default"))) FakeState fake_state;
}

namespace {

CMPIStatus called(const FakeCall &call) {
    ++fake_state.calls;
    if (fake_state.recording)
        fake_state.last = call;
    if (fake_state.during != nullptr)
        fake_state.during();
    return fake_state.answer;
}

void answer(CMPIStatus *status, const FakeCall &call) {
    if (fake_state.recording)
        fake_state.statusOnEntry = *status;
    if (const CMPIStatus failure = called(call); failure.rc != CMPI_RC_OK)
        *status = failure; // a success leaves the caller's status alone
}

} // namespace

EXPORT void PH_OEM_GI_Toy(const CMPIBroker *broker, const CMPIContext *context, const CMPIObjectPath *path,
                          const char **properties, const CMPIResult *result, CMPIStatus *status) {
    answer(status, {"GI", broker, context, path, result, properties});
}

EXPORT void PH_OEM_EI_Toy(const CMPIBroker *broker, const CMPIContext *context, const CMPIObjectPath *path,
                          const char **properties, const CMPIResult *result, CMPIStatus *status) {
    answer(status, {"EI", broker, context, path, result, properties});
}

EXPORT void PH_OEM_EIN_Toy(const CMPIBroker *broker, const CMPIContext *context, const CMPIObjectPath *path,
                           const CMPIResult *result, CMPIStatus *status) {
    answer(status, {"EIN", broker, context, path, result});
}

EXPORT CMPIStatus PH_OEM_MI_Toy(const CMPIBroker *broker, void *handle, const CMPIContext *context,
                                const CMPIObjectPath *path, const CMPIInstance *instance,
                                const char **properties) {
    return called({"MI", broker, context, path, nullptr, properties, instance, handle});
}

EXPORT CMPIStatus PH_OEM_IM_Toy(const CMPIBroker *broker, void *handle, const CMPIContext *context,
                                const CMPIObjectPath *path, const char *method, const CMPIArgs *in,
                                const CMPIResult *result, CMPIArgs *out) {
    return called({"IM", broker, context, path, result, nullptr, nullptr, handle, method, nullptr, in, out});
}

// Class Partial: a hook is all that it has.
EXPORT void PH_OEM_MakeInst_Partial() {}

EXPORT CMPIStatus PH_OEM_CreateInstance_Association(void *mi, const CMPIContext *context,
                                                    const CMPIResult *result, const CMPIObjectPath *path,
                                                    const CMPIInstance *instance, const CMPIBroker *broker) {
    return called({"CreateInstance_Association", broker, context, path, result, nullptr, instance, mi});
}

EXPORT CMPIStatus PH_OEM_SetInstance_Association(void *mi, const CMPIContext *context,
                                                 const CMPIResult *result, const CMPIObjectPath *path,
                                                 const CMPIInstance *instance, const char **properties,
                                                 const CMPIBroker *broker) {
    return called({"SetInstance_Association", broker, context, path, result, properties, instance, mi});
}

EXPORT CMPIStatus PH_OEM_DeleteInstance_Association(void *mi, const CMPIContext *context,
                                                    const CMPIResult *result, const CMPIObjectPath *path,
                                                    const CMPIBroker *broker) {
    return called({"DeleteInstance_Association", broker, context, path, result, nullptr, nullptr, mi});
}

EXPORT CMPIStatus PH_OEM_ExecQuery_Association(void *mi, const CMPIContext *context, const CMPIResult *result,
                                               const CMPIObjectPath *path, const char *query,
                                               const char *language, const CMPIBroker *broker) {
    return called(
        {"ExecQuery_Association", broker, context, path, result, nullptr, nullptr, mi, query, language});
}
