// TRV_oVTAPowerConsumptionConfigSettings: the service processor's power consumption control as one instance
// of configuration variables: monitoring, control mode, weekly schedule and power limit. No read is required:
// without a session the instance has nothing but its key. The schedule can be seen here and not changed.
#include "TRVBaseServerProfile/TRV_oVTAPowerConsumptionConfigSettings.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/DayTimes.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"

#include <algorithm>

namespace {

using R = PowerConsumptionConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings. Constant."},
};

constexpr Property<R> properties[] = {
    {"Caption", CMPI_chars, FIELD(R, Caption), "Constant."},
    {"ConfDynPowerLimitEnable", CMPI_boolean, FIELD(R, ConfDynPowerLimitEnable),
     "Whether the dynamic power limit is on. Configuration variable 0x1A08."},
    {"ConfPowerControlMode", CMPI_uint8, FIELD(R, ConfPowerControlMode),
     "Mode of the power control, 0 while monitoring is off. Configuration variable 0x1A00."},
    {"ConfPowerLimitModeAction", CMPI_uint8, FIELD(R, ConfPowerLimitModeAction),
     "What happens above the power limit. Configuration variable 0x1A0B."},
    {"ConfPowerLimitModeValue", CMPI_uint16, FIELD(R, ConfPowerLimitModeValue),
     "The power limit. Configuration variable 0x1A06."},
    {.name = "ConfPowerLimitModePeriod",
     .type = CMPI_dateTime,
     .field = FIELD(R, ConfPowerLimitModePeriod),
     .description =
         "How long the limit may be exceeded, an interval of whole minutes. Configuration variable 0x1A0A.",
     .flags = PH_OEM_PROP_INTERVAL},
    {"ConfPowerLimitModeThreshold", CMPI_uint16, FIELD(R, ConfPowerLimitModeThreshold),
     "Threshold of a warning below the limit. Configuration variable 0x1A09."},
    {"ConfPowerMonitoringEnable", CMPI_boolean, FIELD(R, ConfPowerMonitoringEnable),
     "Whether power is monitored. Configuration variable 0x1A01."},
    {"ConfWebPowerMonitoringUnits", CMPI_uint8, FIELD(R, ConfWebPowerMonitoringUnits),
     "Unit in which the web interface shows power. Configuration variable 0x1130."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Constant."},
    {"ConfPowerControlScheduleMode1", CMPI_uint8A, FIELD(R, ConfPowerControlScheduleMode1),
     "First mode of each day, Sunday first. Configuration variable 0x1A04, index 0 to 6."},
    {"ConfPowerControlScheduleMode2", CMPI_uint8A, FIELD(R, ConfPowerControlScheduleMode2),
     "Second mode of each day. Configuration variable 0x1A05, index 0 to 6."},
    {.name = "SupportedPowerControlModes",
     .type = CMPI_uint8A,
     .field = FIELD(R, SupportedPowerControlModes),
     .description = "Modes on offer. Service processor: misc control 15 adds the last one.",
     .count = FIELD(R, SupportedPowerControlModesCount)},
    {.name = "ConfPowerControlScheduleTime1",
     .type = CMPI_dateTimeA,
     .field = FIELD(R, ConfPowerControlScheduleTime1),
     .description =
         "When the first mode of each day begins, an interval since midnight; 99,999,999 days for never. "
         "Configuration variable 0x1A02, index 0 to 6.",
     .flags = PH_OEM_PROP_INTERVAL},
    {.name = "ConfPowerControlScheduleTime2",
     .type = CMPI_dateTimeA,
     .field = FIELD(R, ConfPowerControlScheduleTime2),
     .description = "The same for the second mode. Configuration variable 0x1A03, index 0 to 6.",
     .flags = PH_OEM_PROP_INTERVAL},
};

// --- Reading

// Reads a variable of a number; a failure is only traced, and leaves it 0.
template <typename Number>
void Read(IpmiSession *session, const char *name, std::uint16_t id, std::uint8_t index, Number &value) {
    std::uint8_t completionCode = 0;
    if (ReadNumber(session, id, index, value, &completionCode) != 0) {
        TRACE(TraceFailure, "Failed to read %s (id=0x%04x, cc=0x%02x)", name, id, completionCode);
    }
}

void ReadBoolean(IpmiSession *session, const char *name, std::uint16_t id, std::uint8_t &value) {
    Read(session, name, id, 0, value);
    value = value != 0;
}

// A time that can't be read stays an interval of 0.
void ReadScheduleTime(IpmiSession *session, const char *name, std::uint16_t id, std::uint8_t index,
                      std::uint64_t &interval) {
    std::uint16_t stored = 0;
    Read(session, name, id, index, stored);
    interval = IntervalOfDayTime(stored);
}

void ReadSchedule(IpmiSession *session, R &record) {
    constexpr std::uint8_t days = std::size(R{}.ConfPowerControlScheduleMode1);
    for (std::uint8_t day = 0; day < days; ++day) {
        Read(session, "ConfPowerControlScheduleMode1", 0x1A04, day,
             record.ConfPowerControlScheduleMode1[day]);
        Read(session, "ConfPowerControlScheduleMode2", 0x1A05, day,
             record.ConfPowerControlScheduleMode2[day]);
        ReadScheduleTime(session, "ConfPowerControlScheduleTime1", 0x1A02, day,
                         record.ConfPowerControlScheduleTime1[day]);
        ReadScheduleTime(session, "ConfPowerControlScheduleTime2", 0x1A03, day,
                         record.ConfPowerControlScheduleTime2[day]);
    }
}

void ReadSupportedModes(IpmiSession *session, R &record) {
    constexpr std::uint8_t modes[] = {0, 2, 3, 4, 5, 6};
    constexpr std::uint8_t last_mode_control = 15;
    std::uint8_t hasLastMode = 0;
    if (ZBR_CIM_GetMiscControl(session, last_mode_control, &hasLastMode, backend_timeout) != 0) {
        TRACE(TraceFailure, "Failed to read ZBR_CIM_GetMiscControl");
        hasLastMode = 0;
    }
    record.SupportedPowerControlModesCount = hasLastMode != 0 ? std::size(modes) : std::size(modes) - 1;
    std::copy_n(modes, record.SupportedPowerControlModesCount, record.SupportedPowerControlModes);
}

void FillRecord(IpmiSession *session, R &record) {
    SetText(record.ElementName, "Configuration Space Settings for Power Consumption");
    SetText(record.Caption, "Configuration Space Settings for Power Consumption");
    SetText(record.Description, "Collection of important configuration space values for a MARLOVEN server");
    ReadBoolean(session, "ConfDynPowerLimitEnable", 0x1A08, record.ConfDynPowerLimitEnable);
    ReadBoolean(session, "ConfPowerMonitoringEnable", 0x1A01, record.ConfPowerMonitoringEnable);
    if (record.ConfPowerMonitoringEnable != 0) {
        Read(session, "ConfPowerControlMode", 0x1A00, 0, record.ConfPowerControlMode);
    }
    ReadSchedule(session, record);
    Read(session, "ConfPowerLimitModeAction", 0x1A0B, 0, record.ConfPowerLimitModeAction);
    Read(session, "ConfPowerLimitModeValue", 0x1A06, 0, record.ConfPowerLimitModeValue);
    std::uint16_t minutes = 0;
    Read(session, "ConfPowerLimitModePeriod", 0x1A0A, 0, minutes);
    record.ConfPowerLimitModePeriod = IntervalOfMinutes(minutes);
    Read(session, "ConfPowerLimitModeThreshold", 0x1A09, 0, record.ConfPowerLimitModeThreshold);
    Read(session, "ConfPowerDisplayUnit", 0x1130, 0, record.ConfWebPowerMonitoringUnits);
    ReadSupportedModes(session, record);
}

// --- Modifying

constexpr ModifiableProperty modifiable[] = {
    {"ConfDynPowerLimitEnable", CMPI_boolean, 0x1A08, 1, Written::ZeroOrOne},
    {"ConfPowerControlMode", CMPI_uint8, 0x1A00, 1},
    {"ConfPowerLimitModeAction", CMPI_uint8, 0x1A0B, 1},
    {"ConfPowerLimitModePeriod", CMPI_dateTime, 0x1A0A, 2, Written::Minutes},
    {"ConfPowerLimitModeThreshold", CMPI_uint16, 0x1A09, 2},
    {"ConfPowerLimitModeValue", CMPI_uint16, 0x1A06, 2},
    {"ConfPowerMonitoringEnable", CMPI_boolean, 0x1A01, 1, Written::ZeroOrOne},
    {"ConfWebPowerMonitoringUnits", CMPI_uint8, 0x1130, 1},
};

constexpr ModifyTable modify = {
    .properties = modifiable,
    .variant = ModifyVariant::CurrentInstance,
    .texts = {.noInstance = {CMPI_RC_ERR_NOT_FOUND, "Instance is not found"},
              .notSorted = {CMPI_RC_ERR_FAILED, "Failed to retreive modifiable propeties"},
              .refused = {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Property: %s "},
              .noSession = {CMPI_RC_ERR_FAILED, "Create IPMI session failed"},
              .unreadable = {CMPI_RC_ERR_FAILED, "Failed to get %s value from the parameter"},
              .unwritable = {CMPI_RC_ERR_FAILED,
                             "Failed to set %s value for the target instance (ret=0x%x) "},
              .limit = 256},
};

} // namespace

int PH_OEM_Enum_PowerConsumptionConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    if (records == nullptr || count == nullptr) {
        return -1;
    }
    *records = nullptr;
    *count = 0;
    Block<R> record{NewRecords<R>(1)};
    if (record == nullptr) {
        return -1;
    }
    SetText(record->InstanceID, "TRV:oVTAPowerConsumptionConfigSettings");
    if (namesOnly == 0) {
        IpmiSession session{};
        const SessionOwner owner{&session};
        if (PH_OEM_CreateIPMISession(&session) == 0) {
            FillRecord(&session, *record);
        } else {
            TRACE(TraceFailure, "Create IPMI session failed");
        }
    }
    Deliver(record, records, count);
    return 0;
}

EXPORT_CLASS(PowerConsumptionConfigSettings, "The service processor's control of the power consumption.",
             .superclass = "CIM_SettingData", .namedByPath = true, .setting = Setting::ByHelpers,
             .modify = &modify);
EXPORT_MODIFY(PowerConsumptionConfigSettings);
