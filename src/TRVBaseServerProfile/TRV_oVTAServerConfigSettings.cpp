// TRV_oVTAServerConfigSettings: the one instance of the server's own configuration variables (fan test,
// restart and retry behaviour), of the BIOS recovery flash flag, which isn't a variable, and of the power-on
// counter, which a method resets. Unlike most settings classes it needs every one of its values: a read that
// fails, fails the enumeration.
#include "TRVBaseServerProfile/TRV_oVTAServerConfigSettings.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/DayTimes.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"

#include <cstring>

namespace {

using R = ServerConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings. Constant."},
};

constexpr Property<R> properties[] = {
    {"BIOSRecoveryFlash", CMPI_boolean, FIELD(R, BIOSRecoveryFlash),
     "Whether the BIOS starts its recovery flash. Service processor: BIOS recovery flash status."},
    {"Caption", CMPI_chars, FIELD(R, Caption), "Constant."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Constant."},
    {.name = "PowerOnCounter",
     .type = CMPI_dateTime,
     .field = FIELD(R, PowerOnCounter),
     .description =
         "Time that the server has been on, an interval. IPMI Get POH Counter: minutes per count (byte 1) "
         "times the counter (bytes 2 to 5).",
     .flags = PH_OEM_PROP_INTERVAL},
    {"ConfDisableFanTest", CMPI_boolean, FIELD(R, ConfDisableFanTest),
     "Whether the daily fan test is left out. Configuration variable 0x0084."},
    {"ConfErrorOffRestartTime", CMPI_uint16, FIELD(R, ConfErrorOffRestartTime),
     "Delay before a restart after a power-off by an error. Configuration variable 0x0032."},
    {"ConfFanDailyTestTime", CMPI_uint16, FIELD(R, ConfFanDailyTestTime),
     "When the daily fan test runs. Configuration variable 0x0080."},
    {"ConfPowerCycleDelay", CMPI_uint8, FIELD(R, ConfPowerCycleDelay),
     "Delay between off and on in a power cycle. Configuration variable 0x00A2."},
    {"ConfRebootRetryCounter", CMPI_uint8, FIELD(R, ConfRebootRetryCounter),
     "Restarts that are left. Configuration variable 0x0030."},
    {"ConfRetryCounterMax", CMPI_uint8, FIELD(R, ConfRetryCounterMax),
     "Restarts that are tried at most. Configuration variable 0x0033."},
    {"ConfTempCriticalPowerOff", CMPI_boolean, FIELD(R, ConfTempCriticalPowerOff),
     "Whether a critical temperature switches the server off. Configuration variable 0x0077."},
};

int WriteRecoveryFlash(IpmiSession *session, const CMPIValue &value) {
    return ZBR_CIM_SetBIOSRecoveryFlash(session, value.boolean, backend_timeout);
}

// The variables, in the order in which they are read; all can be modified.
struct Variable {
    const char *name;
    CMPIType type;
    std::uint16_t id;
    Field<R> field;
};
constexpr Variable variables[] = {
    {"ConfDisableFanTest", CMPI_boolean, 0x0084, FIELD(R, ConfDisableFanTest)},
    {"ConfErrorOffRestartTime", CMPI_uint16, 0x0032, FIELD(R, ConfErrorOffRestartTime)},
    {"ConfFanDailyTestTime", CMPI_uint16, 0x0080, FIELD(R, ConfFanDailyTestTime)},
    {"ConfPowerCycleDelay", CMPI_uint8, 0x00A2, FIELD(R, ConfPowerCycleDelay)},
    {"ConfRebootRetryCounter", CMPI_uint8, 0x0030, FIELD(R, ConfRebootRetryCounter)},
    {"ConfRetryCounterMax", CMPI_uint8, 0x0033, FIELD(R, ConfRetryCounterMax)},
    {"ConfTempCriticalPowerOff", CMPI_boolean, 0x0077, FIELD(R, ConfTempCriticalPowerOff)},
};

// What a client may change: the flag, then the variables.
consteval auto ModifiableProperties() {
    std::array<ModifiableProperty, 1 + std::size(variables)> table{};
    table[0] = {.name = "BIOSRecoveryFlash", .readAs = CMPI_boolean, .id = 0, .write = WriteRecoveryFlash};
    for (std::size_t i = 0; i < std::size(variables); ++i) {
        const Variable &variable = variables[i];
        // cppcheck-suppress containerOutOfBounds ; it takes the size for 1
        table[i + 1] = {.name = variable.name,
                        .readAs = variable.type,
                        .id = variable.id,
                        .width = static_cast<std::uint8_t>(variable.field.place.size)};
    }
    return table;
}
constexpr auto modifiable = ModifiableProperties();

// A session that can't be opened is only traced here: the client sees success.
consteval ModifyTexts ModifyTextsOfThisClass() {
    ModifyTexts texts = check_path_texts;
    texts.noSession = {};
    return texts;
}
constexpr ModifyTable modify = {
    .properties = modifiable,
    .variant = ModifyVariant::CheckPath,
    .texts = ModifyTextsOfThisClass(),
};

bool ReadSettings(IpmiSession *session, R &record) {
    if (ZBR_CIM_GetBIOSRecoveryFlash(session, &record.BIOSRecoveryFlash, backend_timeout) != 0) {
        TRACE(TraceFailure, "Failed to read BIOS recovery flash status");
        return false;
    }
    for (const Variable &variable : variables) {
        void *field = reinterpret_cast<char *>(&record) + variable.field.place.offset;
        const auto width = static_cast<std::uint16_t>(variable.field.place.size);
        if (ReadVariable(session, variable.id, 0, field, width) != 0) {
            TRACE(TraceFailure, "Failed to read %s", variable.name);
            return false;
        }
    }
    return true;
}

// The time that the server has been on, by the IPMI command Get POH Counter: completion code, minutes per
// count and a signed 32-bit count.
bool ReadPowerOnCounter(std::uint64_t &microseconds) {
    constexpr std::uint8_t get_poh_counter = 0x0F;
    std::uint8_t response[6] = {};
    std::uint32_t length = sizeof response;
    if (PH_OEM_SendIPMICommand(chassis_netfn, get_poh_counter, nullptr, 0, response, &length) != 0 ||
        length < sizeof response || response[0] != 0) {
        TRACE(TraceFailure, "Get POH failed");
        return false;
    }
    std::int32_t count;
    std::memcpy(&count, response + 2, sizeof count);
    microseconds = response[1] * microseconds_per_minute * static_cast<std::uint64_t>(std::int64_t{count});
    return true;
}

bool FillRecord(R &record) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return false;
    }
    if (!ReadSettings(&session, record)) {
        return false;
    }
    SetText(record.Description, "Collection of important configuration space values for a MARLOVEN server");
    SetText(record.ElementName, "Configuration Space Settings");
    SetText(record.Caption, "Configuration Space Settings");
    return ReadPowerOnCounter(record.PowerOnCounter);
}

CMPIUint32 ResetPowerOnCounter(const MethodCall &call, CMPIStatus &status) {
    constexpr CMPIUint32 failed = 2;
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return failed;
    }
    if (const int result = ZBR_CIM_ResetPowerOnHours(&session, backend_timeout); result != 0) {
        TRACE(TraceFailure, "failed to reset the PowerOnHours (ret=%d)", result);
        SetStatus(call.broker, &status, CMPI_RC_ERR_FAILED, "failed to reset the PowerOnHours");
        return failed;
    }
    return 0;
}

constexpr Method methods[] = {
    {"ResetPowerOnCounter", ResetPowerOnCounter,
     "Sets PowerOnCounter to zero. Returns 0 on success, 1 for an unknown method and 2 on failure."},
};

} // namespace

int PH_OEM_Enum_ServerConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Block<R> record{NewRecords<R>(1)};
    if (record == nullptr) {
        return -1;
    }
    SetText(record->InstanceID, "TRV:oVTAServerConfigSettings");
    if (namesOnly == 0 && !FillRecord(*record)) {
        return -1;
    }
    Deliver(record, records, count);
    return 0;
}

EXPORT_CLASS(ServerConfigSettings,
             "Fan test, restart and retry behaviour of the server, and its power-on counter.",
             .superclass = "CIM_SettingData", .keyNamedInTrace = true, .setting = Setting::ByHelpersUntested,
             .modify = &modify, .methods = Untagged<methods>, .noSuchMethod = 1);
EXPORT_MODIFY(ServerConfigSettings);
EXPORT_METHODS(ServerConfigSettings);
