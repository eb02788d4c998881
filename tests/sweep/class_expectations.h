// What a class's operations may come to, where the sweep can't know it by itself. A class with ModifyInstance
// or methods gets a row of `changes` for each, or several.
#pragma once

#include "support/fixture.h"

// What classes show in place of what they couldn't read, where it is more than a value that is unset, null,
// zero or empty, or a list with less in it: globs. A row without a property says that such an instance is
// left out.
struct Gap {
    const char *className, *property, *value;
};
inline const Gap gaps[] = {
    {"*", "SystemName", "- unknown -"}, // no chassis in the Core DB

    {"BaseServer", "", ""}, // the helper library has none
    {"BaseServer", "Name", "- unknown -"},
    {"BaseServer", "ElementName", "- unknown -"},
    {"BaseServer", "Status", "Unknown"},
    {"BaseServer", "LastBootTime", "19700101000000.000000+000"},
    {"BaseServer", "LastPowerO*Reason", "255"},
    {"BaseServer", "AdminURL*", "http://*:0/"},           // no port
    {"BaseServer", "AdminURLDNS", "http://.*"},           // no host
    {"BaseServer", "AdminURLDNS", "http://*.:80/"},       // no domain
    {"BaseServer", "AdminURLDNS", "http://db-node-21.*"}, // no network name: the server's own
    {"Fan", "", ""},                                      // a fan or its supply isn't known to be there
    {"FanSensor", "", ""},
    {"FanSensorConfigSettings", "", ""},
    {"HealthStateComponent", "", ""}, // a node that can't be read, with what lies beneath it
    {"PowerSupply", "", ""},
    {"PSRedundancySet", "RedundancyStatus", "4"}, // too few supplies are known to work
    {"*Sensor", "CurrentState", "Unknown"},
    {"TemperatureSensor", "CurrentReading", "-128"}, // raw 0 by the conversions of the sample's rows
    {"TemperatureSensor", "CurrentReading", "-40"},
    {"VoltageSensor", "CurrentReading", "20"},
    {"PowerManagementConfigSettings", "ConfServerO*Time", "{*99999999000000.000000:000*}"}, // no time

    {"LogEntry", "LogInstanceID", "- unknown -.*"}, // no chassis in the Core DB
    {"LogEntry", "ElementName", "- unknown -.*"},
    {"LogEntry", "RecordData", "??10107*"}, // "**10107*": no text for the severity
    {"LogEntry", "RecordData", "??18107*"},
    {"LogEntry", "RecordData", "??20??*"},
    {"LogEntry", "RecordData",
     "?*?1?107??Temperatur*"}, // no text for whether the customer can replace the part
    {"RecordLog", "InstanceID", "- unknown -.*"},
    {"RecordLog", "ElementName", "- unknown -.*"},
    {"RecordLog", "LastEntry*", "19700101000000.000000+000"},
    {"RecordLog", "OverwritePolicy", "2"},
};

// A state of the sample server in which a class goes other ways: the operations that read are swept in it as
// well. A value may then also be what it is by default.
struct OtherState {
    const char *className, *sql;
};
inline const OtherState other_states[] = {
    {"LogEntry", "UPDATE configuration_variable SET value = 1031 WHERE id = 0x000E"}, // German
};

// Requests that change something, for the sample server, and what they may come to. The values differ from
// what is there and from what a failed read leaves, so that each is a change.
struct Change {
    const char *className;
    const char *method; // NULL for ModifyInstance
    ServiceProcessorTest::Values values;
    std::vector<std::string> failures; // "rc message": globs
    std::vector<std::string> writes;   // rows of the store, "table|column|column...": globs
    // Functions whose failure a client takes for success, and a method's return values that tell a failure.
    std::vector<std::string> unnoticed = {};
    std::vector<std::string> toldValues = {};
    std::vector<std::string> leftBehind = {}; // rows that may change also where it fails or is taken for one
};
inline const Change changes[] = {
    {"BaseServer",
     "RequestStateChange",
     {{"RequestedState", {"3"}}},
     {"1 the service processor doesn't answer"},
     {"chassis_status|*"},
     {},
     {"2"}},
    {"BaseServer",
     "StartFanTest",
     {},
     {"1 Create IPMI session failed", "1 Send IPMI command failed"},
     {"service_processor|*"}},
    {"FanSensor",
     nullptr,
     {{"CriticalBehavior", {"1"}}, {"FailDelay", {"120"}}},
     {"1 Failed in Modify Instance?", "1 Invalid Property: *",
      "1 failed to get the instance id for the target instance",
      "1 Failed to get the instance id for the target instance"},
     {"configuration_variable|*"}},
    {"GeneralRecordLogConfigSettings",
     nullptr,
     {{"CurrentLogEntryTranslation", {"de_DE"}}, {"Helpdesk", {"Extension 42"}}},
     {"4 Invalid Key Property", "4 Invalid Property: *",
      "4 failed to get the * value for the target instance", "1 failed to convert locale code",
      "1 failed to set the ConfCIMRecordLogLanguage value for the target instance",
      "1 failed to set the Helpdesk value for the target instance"},
     {"configuration_variable|14|*", "configuration_variable|529|*"},
     {"zbr_oemdb_init", "zbr_oemdb_get_ipmi_session_info", "CIM_Create_IPMI20_Session"}},
    {"GeneralRecordLogConfigSettings",
     "SetLanguage",
     {{"localID", {"de_DE"}}},
     {"4 A parameter is missing", "4 Selected language is not supported"},
     {"configuration_variable|14|*"},
     {},
     {"2"}},
    {"GeneralRecordLogConfigSettings",
     "AddServiceNote",
     {{"Message", {"Fan replaced"}}},
     {},
     {"iel|*"},
     {"ZBR_CIM_GetValueFromData"}, // the note is empty then
     {"2"},
     {"iel|*"}},
    {"RecordLog", "ClearLog", {}, {}, {"sel|*", "sel_state|*"}, {}, {"2"}, {"sel_state|*"}}, // the
                                                                                             // reservation
    {"RecordLogConfigSettings",
     nullptr,
     {{"BufferMode", {"3"}}},
     {"4 Invalid Key Property", "4 Invalid Property: *",
      "4 failed to get the BufferMode value for the target instance",
      "1 failed to set the BufferMode value for the target instance"},
     {"configuration_variable|7|*"},
     {"zbr_oemdb_init", "zbr_oemdb_get_ipmi_session_info", "CIM_Create_IPMI20_Session"}},
    {"RecordLogConfigSettings",
     nullptr,
     {{"DefaultDisplayInfo", {"true"}}},
     {"4 Invalid Key Property", "4 Invalid Property: *",
      "4 failed to get the DefaultDisplayInfo value for the target instance",
      "1 failed to set the DisplayDefault values for the target instance"},
     {"configuration_variable|4385|*"},
     {"zbr_oemdb_init", "zbr_oemdb_get_ipmi_session_info", "CIM_Create_IPMI20_Session",
      "ZBR_CIM_GetConfigSpaceVariables"}},
    {"PowerConsumptionConfigSettings",
     nullptr,
     {{"ConfPowerControlMode", {"3"}},
      {"ConfPowerLimitModeAction", {"2"}},
      {"ConfPowerLimitModePeriod", {"00000000000700.000000:000"}},
      {"ConfPowerLimitModeThreshold", {"77"}},
      {"ConfPowerLimitModeValue", {"555"}}},
     {"6 Instance is not found", "1 Failed to retreive modifiable propeties", "1 Create IPMI session failed",
      "1 Failed to get * value from the parameter",
      "1 Failed to set * value for the target instance (ret=0x*) "},
     {"configuration_variable|*"}},
    {"PowerManagementConfigSettings",
     nullptr,
     {{"ConfPowerOffTrapPremonitionTime", {"00000000000900.000000:000"}},
      {"ConfPowerOnTrapPremonitionTime", {"00000000000800.000000:000"}},
      {"PowerRestorePolicy", {"2"}}},
     {"4 Invalid Property: *", "4 failed to get the * value for the target instance",
      "1 failed to set the * value for the target instance"},
     {"configuration_variable|*", "chassis_status|*"},
     {"zbr_oemdb_init", "zbr_oemdb_get_ipmi_session_info", "CIM_Create_IPMI20_Session",
      "ZBR_CIM_IsBladeSystem"}},
    {"ServerConfigSettings",
     nullptr,
     {{"BIOSRecoveryFlash", {"true"}},
      {"ConfDisableFanTest", {"true"}},
      {"ConfErrorOffRestartTime", {"400"}},
      {"ConfFanDailyTestTime", {"600"}},
      {"ConfPowerCycleDelay", {"9"}},
      {"ConfRebootRetryCounter", {"2"}},
      {"ConfRetryCounterMax", {"7"}},
      {"ConfTempCriticalPowerOff", {"false"}}},
     {"4 Invalid Property: *", "4 failed to get the * value for the target instance",
      "1 failed to set the * value for the target instance"},
     {"service_processor|*", "configuration_variable|48|*", "configuration_variable|50|*",
      "configuration_variable|51|*", "configuration_variable|119|*", "configuration_variable|128|*",
      "configuration_variable|132|*", "configuration_variable|162|*"},
     {"zbr_oemdb_init", "zbr_oemdb_get_ipmi_session_info", "CIM_Create_IPMI20_Session"}},
    {"ServerConfigSettings",
     "ResetPowerOnCounter",
     {},
     {"1 failed to reset the PowerOnHours"},
     {"power_on_hours|*"},
     {},
     {"2"}},
};
