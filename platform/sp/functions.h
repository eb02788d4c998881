/// The functions of the firmware's libraries that have a stand-in.
#pragma once

#include <cstddef>
#include <string_view>

namespace sp {

/// A function and the result by which it ordinarily fails; 0 where it has no result.
struct FunctionEntry {
    std::string_view name;
    int failure;
};

constexpr FunctionEntry function_table[] = {
    {"db_init", 1},
    {"db_close", 1},
    {"db_get_elec", 1},
    {"db_get_protocol_service", 1},
    {"db_get_all_fru_info", 1},
    {"db_get_fru_info", 1},

    {"zbr_oemdb_init", 1},
    {"zbr_oemdb_close", 1},
    {"zbr_oemdb_get_ipmi_session_info", 1},
    {"zbr_oemdb_get_all_reg_prof_info", 1},
    {"zbr_oemdb_get_sys_info", 1},
    {"zbr_oemdb_get_all_psu_info", 1},
    {"zbr_oemdb_get_all_fan_info", 1},
    {"zbr_oemdb_get_all_frudevice_sdr_info", 1},
    {"zbr_oemdb_get_specific_full_sdrs", 1},
    {"zbr_oemdb_get_specific_compact_sdrs", 1},
    {"zbr_oemdb_get_specific_compact_sdrs_ex", 1},
    {"zbr_oemdb_get_full_sdr_info_by_sensor_num", 1},
    {"zbr_oemdb_get_all_sel_rec", 1},
    {"zbr_oemdb_get_sel_rec", 1},
    {"zbr_oemdb_get_all_iel_rec", 1},
    {"zbr_oemdb_get_iel_rec", 1},

    {"CIM_Create_IPMI20_Session", 0x2001},
    {"CIM_Close_Session", 0x2001},
    {"LIBIPMI_Send_RAW_IPMI2_0_Command", 0x2001},
    {"LIBIPMI_HL_GetChassisStatus", 0x2001},
    {"LIBIPMI_HL_GetIPv4Address", 0x2001},
    {"CIM_GetSELInfo", 0x2001},
    {"CIM_Get_MACAddress", 0x2001},

    {"ZBR_CIM_CreateAuthenticatedLocalSession", 0x2001},
    {"ZBR_CIM_GetConfigSpaceVariables", 0x1FF},
    {"ZBR_CIM_SetConfigSpaceVariables", 0x1FF},
    {"ZBR_CIM_GetFullSensorReading", 0x1CB},
    {"ZBR_CIM_GetCompactSensorReading", 0x1CB},
    {"ZBR_CIM_GetCSVForSensor", 0x1FF},
    {"ZBR_CIM_ReadMaximumSpeed", 0},
    {"ZBR_CIM_GetErrorLED", 0x1FF},
    {"ZBR_CIM_GetMiscControl", 0x1FF},
    {"ZBR_CIM_IsBladeSystem", 0x1FF},
    {"ZBR_CIM_GetPowerOnOffTime", 0x1FF},
    {"ZBR_CIM_SetPowerOnOffTime", 0x1FF},
    {"ZBR_CIM_GetBIOSRecoveryFlash", 0x1FF},
    {"ZBR_CIM_SetBIOSRecoveryFlash", 0x1FF},
    {"ZBR_CIM_ResetPowerOnHours", 0x1FF},
    {"ZBR_CIM_GetIELInfo", 0x1FF},
    {"ZBR_CIM_GET_SEL_ALLOCATION_INFO", 0x1FF},
    {"ZBR_CIM_GetSupportedLanguages", 0x1FF},
    {"ZBR_CIM_InterpretSELEntryAsText", 0x1FF},
    {"ZBR_CIM_GetSELTextFromErrCode", 0x1FF},

    {"ZBR_CIM_GetValueFromInstance", 1},
    {"ZBR_CIM_GetValueFromArgs", 1},
    {"ZBR_CIM_GetValueFromData", 1},
    {"ZBR_CIM_GetValueFromContext", 1},
    {"ZBR_CIM_GetArrayValueFromInstance", 1},
    {"ZBR_CIM_GetArrayValueFromArgs", 1},
    {"ZBR_CIM_GetArrayValueFromData", 1},
    {"ZBR_CIM_CreateCMPIValue", 0},

    {"Zbr_CimIpmi_GetPsuHealthState", 0},
    {"Zbr_CimIpmi_GetPsuPrimaryStatus", 0},
    {"Zbr_CimIpmi_GetPsuDetailedStatus", 0},
    {"Zbr_CimIpmi_GetPsuStatus", 0},
    {"Zbr_CimIpmi_IsPsuPresent", 0},
    {"Zbr_CimIpmi_GetBaseSrvHealthState", 0},
    {"Zbr_CimIpmi_GetBaseSrvPrimaryStatus", 0},
    {"Zbr_CimIpmi_GetBaseSrvStatus", 0},
    {"Zbr_CimIpmi_GetFanHealthState", 0},
    {"Zbr_CimIpmi_GetTmpSensorNumOfPossibleState", 0},
    {"Zbr_CimIpmi_GetTmpSensorPossibleState", 0},
    {"Zbr_CimIpmi_GetTmpCurrentState", 0},
    {"Zbr_CimIpmi_GetFanSensorNumOfPossibleState", 0},
    {"Zbr_CimIpmi_GetFanSensorPossibleState", 0},
    {"Zbr_CimIpmi_GetFanCurrentState", 0},
    {"Zbr_CimIpmi_GetVolSensorNumOfPossibleState", 0},
    {"Zbr_CimIpmi_GetVolSensorPossibleState", 0},
    {"Zbr_CimIpmi_GetVolCurrentState", 0},
    {"Zbr_CimIpmi_GetPPSensorNumOfPossibleState", 0},
    {"Zbr_CimIpmi_GetPPSensorPossibleState", 0},
    {"Zbr_CimIpmi_GetPPCurrentState", 0},
    {"Zbr_CimIpmi_GetPwlSensorNumOfPossibleState", 0},
    {"Zbr_CimIpmi_GetPwlSensorPossibleState", 0},
    {"Zbr_CimIpmi_GetPwlCurrentState", 0},
    {"Zbr_CimIpmi_GetPossibleStateString", 0},
    {"Zbr_CimIpmi_GetCurrentStateString", 0},
    {"Zbr_CimIpmi_GetMultipleStateString", 0},
    {"Zbr_CimIpmi_ConvertRateUnit", 0},
    {"Zbr_CimIpmi_ConvSeverityString", 0},
    {"Zbr_CimIpmi_ConvBoolCSSString", 0},
    {"Zbr_CimIpmi_ConvLocaleString", 0},
    {"Zbr_CimIpmi_ConvLocaleCode", 0},

    {"CSM_Init", 1},
    {"CSM_GetSystemStatus", 1},
    {"CSM_GetSubsystemStatus", 1},
    {"CSM_GetComponentStatus", 1},
    {"CSM_GetComponentInstanceStatus", 1},
    {"CSM_FreeMem", 1},

    {"OpenMTLIConnection", -1},
    {"LCMParam_update", 0},
    {"LCMParamDb_destroyParameterTable", 0},

    {"zbr_debuginit", 0},
    {"zbr_debugvout", 0},
    {"zbr_debugmaskreconfig", 0},

    {"getModifiableProperties", -1},
    {"PH_GetSPSystemName", -1},
    {"PH_GetHostSystemName", -1},
    {"PH_Enum_All_HostComputerSystem", -1},
    {"PH_Clean_HostComputerSystem", 0},
    {"PH_HostRequestStateChange", -1},
    {"PH_Fill_ProtocolService", -1},
};

constexpr size_t function_count = sizeof function_table / sizeof *function_table;

/// Position of a name in the table; `function_count` when it isn't there.
constexpr size_t find_function(std::string_view name) {
    size_t index = 0;
    while (index < function_count && function_table[index].name != name) {
        ++index;
    }
    return index;
}

static_assert(
    [] {
        for (size_t index = 0; index < function_count; ++index) {
            if (find_function(function_table[index].name) != index) {
                return false;
            }
        }
        return true;
    }(),
    "a function is in the table twice");

/// A position in the table, made from a name while compiling: a name that isn't there doesn't compile.
struct Function {
    size_t index;
    consteval Function(const char *name) : index(find_function(name)) {
        if (index == function_count) {
            throw "not in the table of functions";
        }
    }
};

} // namespace sp
