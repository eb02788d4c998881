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
    {"zbr_oemdb_get_specific_full_sdrs", 1},
    {"zbr_oemdb_get_specific_compact_sdrs", 1},
    {"zbr_oemdb_get_specific_compact_sdrs_ex", 1},
    {"zbr_oemdb_get_full_sdr_info_by_sensor_num", 1},

    {"CIM_Create_IPMI20_Session", 0x2001},
    {"CIM_Close_Session", 0x2001},
    {"LIBIPMI_Send_RAW_IPMI2_0_Command", 0x2001},
    {"CIM_Get_MACAddress", 0x2001},

    {"ZBR_CIM_CreateAuthenticatedLocalSession", 0x2001},
    {"ZBR_CIM_GetConfigSpaceVariables", 0x1FF},
    {"ZBR_CIM_SetConfigSpaceVariables", 0x1FF},
    {"ZBR_CIM_GetFullSensorReading", 0x1CB},
    {"ZBR_CIM_GetCompactSensorReading", 0x1CB},
    {"ZBR_CIM_GetBIOSRecoveryFlash", 0x1FF},
    {"ZBR_CIM_SetBIOSRecoveryFlash", 0x1FF},
    {"ZBR_CIM_ResetPowerOnHours", 0x1FF},

    {"ZBR_CIM_GetValueFromInstance", 1},
    {"ZBR_CIM_GetValueFromArgs", 1},
    {"ZBR_CIM_GetValueFromData", 1},
    {"ZBR_CIM_GetValueFromContext", 1},
    {"ZBR_CIM_GetArrayValueFromInstance", 1},
    {"ZBR_CIM_GetArrayValueFromArgs", 1},
    {"ZBR_CIM_GetArrayValueFromData", 1},
    {"ZBR_CIM_CreateCMPIValue", 0},

    {"zbr_debuginit", 0},
    {"zbr_debugvout", 0},
    {"zbr_debugmaskreconfig", 0},

    {"getModifiableProperties", -1},
    {"PH_GetSPSystemName", -1},
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
