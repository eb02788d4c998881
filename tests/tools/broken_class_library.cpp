// A class library whose classes do wrong: RegisteredProfile gives a number where a text is declared,
// BaseServerCapabilities names an instance that isn't there.
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

#include <strings.h>

#define EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr char profile[] = "TRV_oVTARegisteredProfile";
constexpr char capabilities[] = "TRV_oVTABaseServerCapabilities";
constexpr char version[] = "RegisteredVersion"; // a text
constexpr char present[] = "present", absent[] = "absent";

CMPIObjectPath *newPath(const CMPIBroker *broker, const char *className, const char *id) {
    CMPIObjectPath *path = CMNewObjectPath(broker, "root/cimv2", className, nullptr);
    CMAddKey(path, "InstanceID", id, CMPI_chars);
    return path;
}

CMPIInstance *newInstance(const CMPIBroker *broker, const char *className) {
    CMPIInstance *instance = CMNewInstance(broker, newPath(broker, className, present), nullptr);
    CMSetProperty(instance, "InstanceID", present, CMPI_chars);
    return instance;
}

// Gives the profile, or the error that came of the number.
void giveProfile(const CMPIBroker *broker, const char **properties, const CMPIResult *result,
                 CMPIStatus *status) {
    CMPIInstance *instance = newInstance(broker, profile);
    bool isWanted = properties == nullptr;
    for (; !isWanted && *properties != nullptr; ++properties) {
        isWanted = strcasecmp(*properties, version) == 0;
    }
    const CMPIUint16 number = 7;
    if (isWanted) {
        *status = CMSetProperty(instance, version, &number, CMPI_uint16);
    }
    if (status->rc == CMPI_RC_OK) {
        CMReturnInstance(result, instance);
    }
}

} // namespace

EXPORT void PH_OEM_EI_RegisteredProfile(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *,
                                        const char **properties, const CMPIResult *result,
                                        CMPIStatus *status) {
    giveProfile(broker, properties, result, status);
}

EXPORT void PH_OEM_GI_RegisteredProfile(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *,
                                        const char **properties, const CMPIResult *result,
                                        CMPIStatus *status) {
    giveProfile(broker, properties, result, status);
}

EXPORT void PH_OEM_EIN_RegisteredProfile(const CMPIBroker *broker, const CMPIContext *,
                                         const CMPIObjectPath *, const CMPIResult *result, CMPIStatus *) {
    CMReturnObjectPath(result, newPath(broker, profile, present));
}

EXPORT void PH_OEM_EI_BaseServerCapabilities(const CMPIBroker *broker, const CMPIContext *,
                                             const CMPIObjectPath *, const char **, const CMPIResult *result,
                                             CMPIStatus *) {
    CMReturnInstance(result, newInstance(broker, capabilities));
}

EXPORT void PH_OEM_GI_BaseServerCapabilities(const CMPIBroker *broker, const CMPIContext *,
                                             const CMPIObjectPath *path, const char **,
                                             const CMPIResult *result, CMPIStatus *status) {
    const CMPIString *id = CMGetKey(path, "InstanceID", nullptr).value.string;
    if (strcasecmp(CMGetCharsPtr(id, nullptr), present) == 0) {
        CMReturnInstance(result, newInstance(broker, capabilities));
    } else {
        *status = {CMPI_RC_ERR_NOT_FOUND, nullptr};
    }
}

EXPORT void PH_OEM_EIN_BaseServerCapabilities(const CMPIBroker *broker, const CMPIContext *,
                                              const CMPIObjectPath *, const CMPIResult *result,
                                              CMPIStatus *) {
    CMReturnObjectPath(result, newPath(broker, capabilities, present));
    CMReturnObjectPath(result, newPath(broker, capabilities, absent));
}
