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
    answer(status, {.function = "GI",
                    .broker = broker,
                    .context = context,
                    .path = path,
                    .properties = properties,
                    .result = result});
}

EXPORT void PH_OEM_EI_Toy(const CMPIBroker *broker, const CMPIContext *context, const CMPIObjectPath *path,
                          const char **properties, const CMPIResult *result, CMPIStatus *status) {
    answer(status, {.function = "EI",
                    .broker = broker,
                    .context = context,
                    .path = path,
                    .properties = properties,
                    .result = result});
}

EXPORT void PH_OEM_EIN_Toy(const CMPIBroker *broker, const CMPIContext *context, const CMPIObjectPath *path,
                           const CMPIResult *result, CMPIStatus *status) {
    answer(status, {.function = "EIN", .broker = broker, .context = context, .path = path, .result = result});
}

EXPORT CMPIStatus PH_OEM_MI_Toy(const CMPIBroker *broker, void *handle, const CMPIContext *context,
                                const CMPIObjectPath *path, const CMPIInstance *instance,
                                const char **properties) {
    return called({.function = "MI",
                   .broker = broker,
                   .handle = handle,
                   .context = context,
                   .path = path,
                   .instance = instance,
                   .properties = properties});
}

EXPORT CMPIStatus PH_OEM_IM_Toy(const CMPIBroker *broker, void *handle, const CMPIContext *context,
                                const CMPIObjectPath *path, const char *method, const CMPIArgs *in,
                                const CMPIResult *result, CMPIArgs *out) {
    return called({.function = "IM",
                   .broker = broker,
                   .handle = handle,
                   .context = context,
                   .path = path,
                   .result = result,
                   .text = method,
                   .in = in,
                   .out = out});
}

// Class Partial: a hook is all that it has.
EXPORT void PH_OEM_MakeInst_Partial() {}

EXPORT CMPIStatus PH_OEM_CreateInstance_Association(void *mi, const CMPIContext *context,
                                                    const CMPIResult *result, const CMPIObjectPath *path,
                                                    const CMPIInstance *instance, const CMPIBroker *broker) {
    return called({.function = "CreateInstance_Association",
                   .broker = broker,
                   .handle = mi,
                   .context = context,
                   .path = path,
                   .instance = instance,
                   .result = result});
}

EXPORT CMPIStatus PH_OEM_SetInstance_Association(void *mi, const CMPIContext *context,
                                                 const CMPIResult *result, const CMPIObjectPath *path,
                                                 const CMPIInstance *instance, const char **properties,
                                                 const CMPIBroker *broker) {
    return called({.function = "SetInstance_Association",
                   .broker = broker,
                   .handle = mi,
                   .context = context,
                   .path = path,
                   .instance = instance,
                   .properties = properties,
                   .result = result});
}

EXPORT CMPIStatus PH_OEM_DeleteInstance_Association(void *mi, const CMPIContext *context,
                                                    const CMPIResult *result, const CMPIObjectPath *path,
                                                    const CMPIBroker *broker) {
    return called({.function = "DeleteInstance_Association",
                   .broker = broker,
                   .handle = mi,
                   .context = context,
                   .path = path,
                   .result = result});
}

EXPORT CMPIStatus PH_OEM_ExecQuery_Association(void *mi, const CMPIContext *context, const CMPIResult *result,
                                               const CMPIObjectPath *path, const char *query,
                                               const char *language, const CMPIBroker *broker) {
    return called({.function = "ExecQuery_Association",
                   .broker = broker,
                   .handle = mi,
                   .context = context,
                   .path = path,
                   .result = result,
                   .text = query,
                   .language = language});
}
