#include "by_hand.h"

#include "libzbr_cim.h"

namespace {

constexpr char class_name[] = "TRV_oVTAServerConfigSettings";
constexpr char instance_id[] = "TRV:oVTAServerConfigSettings";

struct Settings {
    std::uint64_t powerOnCounter;
    std::uint16_t errorOffRestartTime, fanDailyTestTime;
    std::uint8_t biosRecoveryFlash, disableFanTest, powerCycleDelay, rebootRetryCounter, retryCounterMax,
        tempCriticalPowerOff;
};

bool ReadSettings(Settings &settings) {
    const Session session;
    auto *open = const_cast<IpmiSession *>(&session.session);
    if (!session.isOpen ||
        ZBR_CIM_GetBIOSRecoveryFlash(open, &settings.biosRecoveryFlash, backend_timeout) != 0 ||
        !ReadVariable(open, 0x0084, 0, &settings.disableFanTest, 1) ||
        !ReadVariable(open, 0x0032, 0, &settings.errorOffRestartTime, 2) ||
        !ReadVariable(open, 0x0080, 0, &settings.fanDailyTestTime, 2) ||
        !ReadVariable(open, 0x00A2, 0, &settings.powerCycleDelay, 1) ||
        !ReadVariable(open, 0x0030, 0, &settings.rebootRetryCounter, 1) ||
        !ReadVariable(open, 0x0033, 0, &settings.retryCounterMax, 1) ||
        !ReadVariable(open, 0x0077, 0, &settings.tempCriticalPowerOff, 1)) {
        return false;
    }
    std::uint8_t response[6];
    std::uint32_t length = sizeof response;
    if (!SendCommand(0x00, 0x0F, nullptr, 0, response, &length) || length < sizeof response) {
        return false;
    }
    std::int32_t count;
    std::memcpy(&count, response + 2, sizeof count);
    settings.powerOnCounter = response[1] * UINT64_C(60000000) * static_cast<std::uint64_t>(count);
    return true;
}

// A number goes through the service processor library's conversion.
template <typename Number>
void SetConverted(const Instance &instance, const char *name, Number number, CMPIType type) {
    if (IsWanted(instance, name)) {
        CMPIValue value;
        ZBR_CIM_CreateCMPIValue(&value, &number, type);
        CMSetProperty(instance.inst, name, &value, type);
    }
}

bool ReturnSettings(const CMPIBroker *broker, const CMPIObjectPath *cop, const char **properties,
                    const CMPIResult *rslt, const Settings &settings) {
    const Instance instance = NewInstance(broker, cop, class_name, properties);
    if (instance.inst == nullptr) {
        return false;
    }
    if (!SetKey(instance, "InstanceID", instance_id)) {
        CMRelease(instance.inst);
        return false;
    }
    SetConverted(instance, "BIOSRecoveryFlash", settings.biosRecoveryFlash, CMPI_boolean);
    SetText(instance, "Caption", "Configuration Space Settings");
    SetText(instance, "Description",
            "Collection of important configuration space values for a MARLOVEN server");
    SetText(instance, "ElementName", "Configuration Space Settings");
    if (IsWanted(instance, "PowerOnCounter")) {
        const CMPIDateTime *time = CMNewDateTimeFromBinary(broker, settings.powerOnCounter, 1, nullptr);
        if (time != nullptr) {
            CMSetProperty(instance.inst, "PowerOnCounter", &time, CMPI_dateTime);
        }
    }
    SetConverted(instance, "ConfDisableFanTest", settings.disableFanTest, CMPI_boolean);
    SetConverted(instance, "ConfErrorOffRestartTime", settings.errorOffRestartTime, CMPI_uint16);
    SetConverted(instance, "ConfFanDailyTestTime", settings.fanDailyTestTime, CMPI_uint16);
    SetConverted(instance, "ConfPowerCycleDelay", settings.powerCycleDelay, CMPI_uint8);
    SetConverted(instance, "ConfRebootRetryCounter", settings.rebootRetryCounter, CMPI_uint8);
    SetConverted(instance, "ConfRetryCounterMax", settings.retryCounterMax, CMPI_uint8);
    SetConverted(instance, "ConfTempCriticalPowerOff", settings.tempCriticalPowerOff, CMPI_boolean);
    CMReturnInstance(rslt, instance.inst);
    return true;
}

} // namespace

EXPORTED void PH_OEM_GI_ServerConfigSettings(const CMPIBroker *broker, const CMPIContext *,
                                             const CMPIObjectPath *cop, const char **properties,
                                             const CMPIResult *rslt, CMPIStatus *status) {
    constexpr const char *names[] = {"InstanceID"};
    CMPIString *key = nullptr;
    const char *id = ReadKeys(cop, names, &key, 1) ? CMGetCharsPtr(key, nullptr) : nullptr;
    Settings settings{};
    if (id == nullptr || !ReadSettings(settings) || std::strcmp(id, instance_id) != 0 ||
        !ReturnSettings(broker, cop, properties, rslt, settings)) {
        Fail(broker, status, "Failed to Get Instance");
    }
}

EXPORTED void PH_OEM_EI_ServerConfigSettings(const CMPIBroker *broker, const CMPIContext *,
                                             const CMPIObjectPath *cop, const char **properties,
                                             const CMPIResult *rslt, CMPIStatus *status) {
    Settings settings{};
    if (!ReadSettings(settings) || !ReturnSettings(broker, cop, properties, rslt, settings)) {
        Fail(broker, status, "Failed to Enumerate Instance");
    }
}

EXPORTED void PH_OEM_EIN_ServerConfigSettings(const CMPIBroker *broker, const CMPIContext *,
                                              const CMPIObjectPath *cop, const CMPIResult *rslt,
                                              CMPIStatus *status) {
    CMPIObjectPath *path = NewPath(broker, cop, class_name);
    if (path == nullptr || !AddKey(path, "InstanceID", instance_id)) {
        if (path != nullptr) {
            CMRelease(path);
        }
        return Fail(broker, status, "Failed to Enumerate Instance Names");
    }
    CMReturnObjectPath(rslt, path);
}
