// TRV_oVTAPowerManagementConfigSettings: the weekly schedule by which the server powers itself on and off,
// the premonition times of the traps that announce it, and the power restore policy. A stand-alone server has
// the schedule in the configuration space, one variable for each day and direction; a blade has it behind two
// calls that take both times of a day at once, so that a change of one needs both from the client.
#include "TRVPowerStateManagementProfile/TRV_oVTAPowerManagementConfigSettings.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/DayTimes.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"
#include "Utilities/Text.h"

#include "libCIMBaseHooks.h"
#include "libzbr_cim.h"

#include <algorithm>
#include <iterator>

namespace {

using R = PowerManagementConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings. Constant."},
};

constexpr Property<R> properties[] = {
    {.name = "ConfPowerOffTrapPremonitionTime",
     .type = CMPI_dateTime,
     .field = FIELD(R, ConfPowerOffTrapPremonitionTime),
     .description =
         "How long before a power-off a trap announces it, an interval of whole minutes. Configuration "
         "variable 0x00A4.",
     .flags = PH_OEM_PROP_INTERVAL},
    {.name = "ConfPowerOnTrapPremonitionTime",
     .type = CMPI_dateTime,
     .field = FIELD(R, ConfPowerOnTrapPremonitionTime),
     .description = "The same for a power-on. Configuration variable 0x00A3.",
     .flags = PH_OEM_PROP_INTERVAL},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Constant."},
    {"PowerOnOffTimeFormat", CMPI_chars, FIELD(R, PowerOnOffTimeFormat),
     "Which element of the schedule is which day. Constant."},
    {.name = "PowerRestorePolicy",
     .type = CMPI_uint16,
     .field = FIELD(R, PowerRestorePolicy),
     .description = "What the server does when power comes back. IPMI Get Chassis Status: bits 6 and 5 of "
                    "the power state.",
     .values = "0 Always Off, 1 Restore Previous State, 2 Always On, 3 Unknown"},
    {"PowerScheduleEnable", CMPI_boolean, FIELD(R, PowerScheduleEnable),
     "Whether any day has a time. Setting it to false clears the schedule."},
    {.name = "ConfServerOffTime",
     .type = CMPI_dateTimeA,
     .field = FIELD(R, ConfServerOffTime),
     .description =
         "When the server powers off on each day, an interval since midnight; 99,999,999 days for never. "
         "Configuration variable 0x00A1, index 0 to 6; on a blade the service processor's on and off times.",
     .flags = PH_OEM_PROP_INTERVAL},
    {.name = "ConfServerOnTime",
     .type = CMPI_dateTimeA,
     .field = FIELD(R, ConfServerOnTime),
     .description = "The same for powering on. Configuration variable 0x00A0, index 0 to 6.",
     .flags = PH_OEM_PROP_INTERVAL},
};

constexpr int days = std::size(R{}.ConfServerOffTime);

constexpr std::uint16_t off_time_variable = 0x00A1;
constexpr std::uint16_t on_time_variable = 0x00A0;
constexpr std::uint16_t off_premonition_variable = 0x00A4;
constexpr std::uint16_t on_premonition_variable = 0x00A3;

// --- Reading

std::uint64_t ReadPremonition(IpmiSession *session, std::uint16_t id, const char *name) {
    std::uint8_t minutes = 0;
    if (const int result = ReadNumber(session, id, 0, minutes); result != 0) {
        TRACE(TraceFailure, "failed to get the %s value for the target instance (ret=%d)", name, result);
    }
    return IntervalOfMinutes(minutes);
}

std::uint16_t ReadDayTime(IpmiSession *session, std::uint16_t id, std::uint8_t day) {
    std::uint16_t stored = 0;
    if (const int result = ReadNumber(session, id, day, stored); result != 0) {
        TRACE(TraceFailure, "ZBR_CIM_GetConfigSpaceVariables failed varid=0x%x index=%d ret=0x%x", id, day,
              static_cast<unsigned>(result));
        return no_time_stored;
    }
    return stored;
}

// The times of a day as they are stored; no time where they can't be read.
void ReadDay(IpmiSession *session, bool isBlade, std::uint8_t day, std::uint16_t &on, std::uint16_t &off) {
    if (!isBlade) {
        off = ReadDayTime(session, off_time_variable, day);
        on = ReadDayTime(session, on_time_variable, day);
    } else if (ZBR_CIM_GetPowerOnOffTime(session, day, &on, &off, backend_timeout) != 0) {
        on = no_time_stored;
        off = no_time_stored;
    }
}

// Fills the schedule; whether any day has a time.
bool ReadSchedule(IpmiSession *session, R &record) {
    std::ranges::fill(record.ConfServerOffTime, no_time_interval);
    std::ranges::fill(record.ConfServerOnTime, no_time_interval);
    std::uint8_t isBlade = 0;
    if (ZBR_CIM_IsBladeSystem(session, &isBlade, backend_timeout) != 0) {
        TRACE(TraceFailure, "ZBR_CIM_IsBladeSystem failed");
        return false;
    }
    bool anyTime = false;
    for (std::uint8_t day = 0; day < days; ++day) {
        std::uint16_t on = no_time_stored;
        std::uint16_t off = no_time_stored;
        ReadDay(session, isBlade != 0, day, on, off);
        record.ConfServerOnTime[day] = IntervalOfDayTime(on);
        record.ConfServerOffTime[day] = IntervalOfDayTime(off);
        anyTime = anyTime || on != no_time_stored || off != no_time_stored;
    }
    return anyTime;
}

// Get Chassis Status: completion code and power state, with the policy in bits 6 and 5.
bool ReadRestorePolicy(IpmiSession *session, std::uint16_t &policy) {
    constexpr std::uint8_t get_chassis_status = 0x01;
    std::uint8_t response[5] = {};
    std::uint32_t length = sizeof response;
    const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(session, 0, chassis_netfn, get_chassis_status,
                                                        nullptr, 0, response, &length, backend_timeout);
    if (result != 0 || length < 2 || response[0] != 0) {
        TRACE(TraceFailure, "Failed in sending ipmi command (ret=%d, cc=%d)", result, response[0]);
        TRACE(TraceFailure, "GetPowerRestorePolicy failed");
        return false;
    }
    policy = (response[1] & 0x60) >> 5;
    return true;
}

void FillRecord(IpmiSession *session, R &record) {
    record.ConfPowerOffTrapPremonitionTime =
        ReadPremonition(session, off_premonition_variable, "ConfPowerOffTrapPremonitionTime");
    record.ConfPowerOnTrapPremonitionTime =
        ReadPremonition(session, on_premonition_variable, "ConfPowerOnTrapPremonitionTime");
    const bool anyTime = ReadSchedule(session, record);
    SetText(record.ElementName, "Power Management Settings of the Base Server");
    SetText(record.PowerOnOffTimeFormat,
            "[0]:Sunday [1]:Monday [2]:Tuesday [3]:Wednesday [4]:Thursday [5]:Friday [6]:Saturday");
    if (ReadRestorePolicy(session, record.PowerRestorePolicy)) {
        record.PowerScheduleEnable = anyTime;
    }
}

// --- Modifying

int WritePremonition(IpmiSession *session, std::uint16_t id, const CMPIValue &value) {
    const auto minutes = static_cast<std::uint8_t>(MinutesOfInterval(value.uint64));
    return WriteVariable(session, id, 0, &minutes, sizeof minutes);
}

int WriteOffPremonition(IpmiSession *session, const CMPIValue &value) {
    return WritePremonition(session, off_premonition_variable, value);
}

int WriteOnPremonition(IpmiSession *session, const CMPIValue &value) {
    return WritePremonition(session, on_premonition_variable, value);
}

// Set Power Restore Policy: the policy in 2 bits.
int WriteRestorePolicy(IpmiSession *session, const CMPIValue &value) {
    constexpr std::uint8_t set_power_restore_policy = 0x06;
    const std::uint8_t policy = value.uint16 & 3;
    std::uint8_t response[2] = {};
    std::uint32_t length = sizeof response;
    const int result =
        LIBIPMI_Send_RAW_IPMI2_0_Command(session, 0, chassis_netfn, set_power_restore_policy, &policy,
                                         sizeof policy, response, &length, backend_timeout);
    if (result != 0) {
        return result;
    }
    return length == 0 ? -1 : response[0];
}

int WriteDayTime(IpmiSession *session, std::uint16_t id, std::uint8_t day, std::uint16_t stored) {
    return WriteVariable(session, id, day, &stored, sizeof stored);
}

// Clears the schedule of a stand-alone server; switching it on is done by its times.
int WriteScheduleEnable(IpmiSession *session, const CMPIValue &value) {
    for (std::uint8_t day = 0; day < days && value.boolean == 0; ++day) {
        for (const std::uint16_t id : {off_time_variable, on_time_variable}) {
            if (const int result = WriteDayTime(session, id, day, no_time_stored); result != 0) {
                return result;
            }
        }
    }
    return 0;
}

// The properties of the default list. On a blade, those of the schedule are applied together at the end; on a
// stand-alone server the two lists of times, which no single value can hold, are written by WriteDayTimes.
enum Modifiable { OffPremonition, OnPremonition, OffTime, OnTime, RestorePolicy, ScheduleEnable };
constexpr ModifiableProperty modifiable[] = {
    {.name = "ConfPowerOffTrapPremonitionTime", .readAs = CMPI_dateTime, .write = WriteOffPremonition},
    {.name = "ConfPowerOnTrapPremonitionTime", .readAs = CMPI_dateTime, .write = WriteOnPremonition},
    {.name = "ConfServerOffTime", .readAs = CMPI_dateTimeA, .id = off_time_variable},
    {.name = "ConfServerOnTime", .readAs = CMPI_dateTimeA, .id = on_time_variable},
    {.name = "PowerRestorePolicy",
     .readAs = CMPI_uint16,
     .write = WriteRestorePolicy,
     .writtenName = "Server"},
    {.name = "PowerScheduleEnable", .readAs = CMPI_boolean, .write = WriteScheduleEnable},
};

consteval ModifyTexts TextsOfThisClass() {
    ModifyTexts texts = check_path_texts;
    texts.noSession = {}; // only traced: the client sees success
    return texts;
}

constexpr ModifyTable modify = {
    .properties = modifiable,
    .variant = ModifyVariant::CheckPath,
    .texts = TextsOfThisClass(),
};

// The day times of a property of the new instance. *count has room for 7 on entry.
bool ReadNewTimes(const CMPIInstance *inst, const char *name, std::uint64_t (&times)[days], int &count) {
    count = days;
    return ZBR_CIM_GetArrayValueFromInstance(inst, name, times, &count, CMPI_dateTimeA) == 0;
}

// On a blade the times are written together at the end; here they have to be readable.
bool CheckNewTimes(Modification &modification, const ModifiableProperty &property) {
    std::uint64_t times[days];
    int count = 0;
    return ReadNewTimes(modification.inst, property.name, times, count) ||
           Refuse(modification, modify.texts.unreadable, property.name);
}

bool WriteDayTimes(Modification &modification, IpmiSession *session, const ModifiableProperty &property) {
    std::uint64_t times[days];
    std::ranges::fill(times, no_time_interval); // for days that the client left out
    int count = 0;
    if (!ReadNewTimes(modification.inst, property.name, times, count)) {
        return Refuse(modification, modify.texts.unreadable, property.name);
    }
    for (std::uint8_t day = 0; day < days; ++day) {
        const int result = WriteDayTime(session, property.id, day, DayTimeOfInterval(times[day]));
        if (result != 0) {
            return Refuse(modification, modify.texts.unwritable, property.name, result);
        }
    }
    return true;
}

constexpr StatusText blade_unwritable = {CMPI_RC_ERR_INVALID_PARAMETER,
                                         "Failed to set ServerOnTime and ServerOffTime"};

bool ClearBladeSchedule(Modification &modification, IpmiSession *session) {
    for (std::uint8_t day = 0; day < days; ++day) {
        const int result =
            ZBR_CIM_SetPowerOnOffTime(session, day, no_time_stored, no_time_stored, backend_timeout);
        if (result != 0) {
            TRACE(TraceFailure, "Failed to set ServerOnTime and ServerOffTime (index=%d)", day);
            return Refuse(modification, blade_unwritable, "", result);
        }
    }
    return true;
}

bool ReadBladeTimes(Modification &modification, const char *name, const char *shortName,
                    std::uint64_t (&times)[days]) {
    int count = 0;
    // An array that can't be read has no seven elements either.
    if (!ReadNewTimes(modification.inst, name, times, count) || count != days) {
        return Refuse(modification, {CMPI_RC_ERR_INVALID_PARAMETER, "Number of %s is not 7"}, shortName);
    }
    return true;
}

bool WriteBladeSchedule(Modification &modification, IpmiSession *session) {
    std::uint64_t onTimes[days];
    std::uint64_t offTimes[days];
    if (!ReadBladeTimes(modification, "ConfServerOnTime", "ServerOnTime", onTimes) ||
        !ReadBladeTimes(modification, "ConfServerOffTime", "ServerOffTime", offTimes)) {
        return false;
    }
    for (std::uint8_t day = 0; day < days; ++day) {
        const std::uint16_t on = DayTimeOfInterval(onTimes[day]);
        const std::uint16_t off = DayTimeOfInterval(offTimes[day]);
        if (const int result = ZBR_CIM_SetPowerOnOffTime(session, day, on, off, backend_timeout);
            result != 0) {
            TRACE(TraceFailure,
                  "Failed to set ServerOnTime and ServerOffTime (onTime=%d, offTime=%d, index=%d)", on, off,
                  day);
            return Refuse(modification, blade_unwritable, "", result);
        }
    }
    return true;
}

// On a blade the new value has to be there, and isn't looked at.
bool ReadScheduleEnable(Modification &modification) {
    const char *name = modifiable[ScheduleEnable].name;
    CMPIValue value{};
    return ZBR_CIM_GetValueFromInstance(modification.inst, name, &value, CMPI_boolean) == 0 ||
           Refuse(modification, modify.texts.unreadable, name);
}

// Which property an entry of the list of changes names; -1 for none.
int PropertyOf(const char (&name)[64]) {
    const auto *found = std::ranges::find_if(
        modifiable, [&](const ModifiableProperty &property) { return NamesProperty(name, property); });
    return found == std::end(modifiable) ? -1 : static_cast<int>(found - modifiable);
}

void ApplySchedule(Modification &modification, IpmiSession *session, bool isBlade,
                   const ModifiablePropertyList &changes) {
    bool changed[std::size(modifiable)] = {};
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    for (int i = 0; i < std::min(changes.count, room); ++i) {
        const int number = PropertyOf(changes.entries[i].name);
        if (number < 0) {
            continue;
        }
        changed[number] = true;
        const bool isTimes = number == OffTime || number == OnTime;
        bool goesOn = true;
        if (isBlade && number == ScheduleEnable) {
            goesOn = ReadScheduleEnable(modification);
        } else if (isBlade && isTimes) {
            goesOn = CheckNewTimes(modification, modifiable[number]);
        } else if (!isBlade && isTimes) {
            goesOn = WriteDayTimes(modification, session, modifiable[number]);
        } else if (!isTimes) {
            goesOn = ApplyChange(modification, session, modifiable[number], changes.entries[i].data);
        }
        if (!goesOn) {
            return;
        }
    }
    if (!isBlade) {
        return;
    }
    // A blade's schedule is cleared whatever the new value of PowerScheduleEnable is: true without times has
    // nothing that it could switch on.
    if (changed[ScheduleEnable]) {
        ClearBladeSchedule(modification, session);
    } else if (changed[OnTime] || changed[OffTime]) {
        WriteBladeSchedule(modification, session);
    }
}

} // namespace

int PH_OEM_Enum_PowerManagementConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Block<R> record{NewRecords<R>(1)};
    if (record == nullptr) {
        return -1;
    }
    IpmiSession session{};
    const SessionOwner owner{&session};
    SetText(record->InstanceID, "PowerManagementSettingData1");
    if (namesOnly == 0) {
        if (PH_OEM_CreateIPMISession(&session) != 0) {
            TRACE(TraceFailure, "Create IPMI session failed");
            return -1;
        }
        FillRecord(&session, *record);
    }
    Deliver(record, records, count);
    return 0;
}

EXPORT_CLASS(PowerManagementConfigSettings, "When the server powers itself on and off.",
             .superclass = "CIM_SettingData", .setting = Setting::ByHelpersUntested, .modify = &modify);

// The session is opened, and the kind of server read, before the list of changes is looked at.
CMPIStatus PH_OEM_MI_PowerManagementConfigSettings(const CMPIBroker *broker, void *, const CMPIContext *ctx,
                                                   const CMPIObjectPath *cop, const CMPIInstance *inst,
                                                   const char **wanted) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Modification modification{PowerManagementConfigSettingsClass, modify, broker, inst};
    ModifiablePropertyList changes{};
    if (!SortChanges(modification, ctx, cop, wanted, changes)) {
        return modification.status;
    }
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (!OpenSession(modification, &session)) {
        return modification.status;
    }
    std::uint8_t isBlade = 0;
    if (ZBR_CIM_IsBladeSystem(&session, &isBlade, backend_timeout) != 0) {
        TRACE(TraceFailure, "ZBR_CIM_IsBladeSystem failed");
        return modification.status;
    }
    ApplySchedule(modification, &session, isBlade != 0, changes);
    return modification.status;
}
