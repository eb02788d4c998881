#include "TRVPowerStateManagementProfile/TRV_oVTAPowerManagementConfigSettings.h"
#include "support/fixture.h"

namespace {

constexpr char path_text[] = "PowerManagementConfigSettings.InstanceID=\"PowerManagementSettingData1\"";
const std::string eight = "00000000080000.000000:000";
const std::string never = "99999999000000.000000:000";

struct PowerManagement : ServiceProcessorTest {
    static void clearSchedules() {
        sp::sql("UPDATE configuration_variable SET value = 65535 WHERE id IN (0x00A0, 0x00A1);"
                "UPDATE blade_schedule SET OnTime = 65535, OffTime = 65535");
    }
    static void makeBlade() { sp::sql("UPDATE service_processor SET Blade = 1"); }
    static std::string column(const std::string &query) {
        std::string text;
        for (const auto &row : sp::sql(query)) {
            text += (text.empty() ? "" : ",") + row.at(0);
        }
        return text;
    }
    static std::string times(int id) {
        return column("SELECT value FROM configuration_variable WHERE id = " + std::to_string(id) +
                      " ORDER BY list_index");
    }
    static std::string bladeTimes(const char *direction) {
        return column(std::string("SELECT ") + direction + " FROM blade_schedule ORDER BY Day");
    }
    static std::string told(const Reply &reply) {
        return std::to_string(reply.answer.rc) + " " + reply.answer.message;
    }
    static std::vector<std::string> week(const std::string &first) {
        return {first, never, never, never, never, never, never};
    }
    std::string shown(const char *property) { return get(path_text).value(0, property); }
};

TEST_F(PowerManagement, AStandAloneServersScheduleIsInTheConfigurationSpace) {
    clearSchedules();
    sp::sql("UPDATE configuration_variable SET value = 480 WHERE id = 0x00A0 AND list_index = 1;"
            "UPDATE configuration_variable SET value = 15 WHERE id = 0x00A4");
    EXPECT_EQ(shown("ConfServerOnTime"), "{" + never + ", " + eight + ", " + never + ", " + never + ", " +
                                             never + ", " + never + ", " + never + "}");
    EXPECT_EQ(shown("PowerScheduleEnable"), "true");
    EXPECT_EQ(shown("ConfPowerOffTrapPremonitionTime"), "00000000001500.000000:000");
    clearSchedules();
    EXPECT_EQ(shown("PowerScheduleEnable"), "false");
    sp::sql("UPDATE configuration_variable SET value = 0 WHERE id = 0x00A1 AND list_index = 6");
    EXPECT_EQ(shown("PowerScheduleEnable"), "true") << "midnight is a time";
}

TEST_F(PowerManagement, ABladesScheduleIsBehindItsCalls) {
    clearSchedules();
    makeBlade();
    sp::sql("UPDATE blade_schedule SET OffTime = 480 WHERE Day = 0");
    EXPECT_EQ(shown("ConfServerOffTime").find("{" + eight), 0U);
    sp::fail("ZBR_CIM_GetPowerOnOffTime", {.at = 1});
    EXPECT_EQ(shown("ConfServerOffTime").find("{" + never), 0U);
    sp::fail("ZBR_CIM_IsBladeSystem");
    EXPECT_EQ(shown("PowerScheduleEnable"), "false");
}

TEST_F(PowerManagement, WithoutTheChassisStatusPolicyAndScheduleFlagStay0) {
    sp::sql("UPDATE chassis_status SET CurrentPowerState = 0x41");
    EXPECT_EQ(shown("PowerRestorePolicy"), "2");
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.at = 0, .result = 0xC0});
    EXPECT_EQ(shown("PowerRestorePolicy"), "0");
    EXPECT_EQ(shown("PowerScheduleEnable"), "false");
    EXPECT_NE(trace().find("Failed in sending ipmi command (ret=0, cc=192)"), std::string::npos);
}

TEST_F(PowerManagement, AWeekIsWrittenAndReadBack) {
    for (const bool blade : {false, true}) {
        clearSchedules();
        sp::sql(std::string("UPDATE service_processor SET Blade = ") + (blade ? "1" : "0"));
        EXPECT_EQ(
            told(modify(path_text, {{"ConfServerOnTime", week(eight)}, {"ConfServerOffTime", week(never)}})),
            "0 ");
        EXPECT_EQ(blade ? bladeTimes("OnTime") : times(0x00A0), "480,65535,65535,65535,65535,65535,65535");
        EXPECT_EQ(blade ? bladeTimes("OffTime") : times(0x00A1), "65535,65535,65535,65535,65535,65535,65535");
        EXPECT_EQ(shown("ConfServerOnTime").find("{" + eight), 0U);
    }
}

TEST_F(PowerManagement, ABladeNeedsBothTimesOfAllDays) {
    makeBlade();
    std::vector<std::string> sixDays = week(eight);
    sixDays.pop_back();
    EXPECT_EQ(told(modify(path_text, {{"ConfServerOnTime", sixDays}, {"ConfServerOffTime", week(never)}})),
              "4 Number of ServerOnTime is not 7");
    EXPECT_EQ(told(modify(path_text, {{"ConfServerOnTime", week(eight)}, {"ConfServerOffTime", sixDays}})),
              "4 Number of ServerOffTime is not 7");
    sp::fail("ZBR_CIM_SetPowerOnOffTime", {.at = 3});
    EXPECT_EQ(
        told(modify(path_text, {{"ConfServerOnTime", week(eight)}, {"ConfServerOffTime", week(eight)}})),
        "4 Failed to set ServerOnTime and ServerOffTime");
    EXPECT_NE(trace().find("(onTime=65535, offTime=65535, index=2)"), std::string::npos);
}

TEST_F(PowerManagement, TheScheduleIsClearedByItsFlag) {
    const auto setAll = [] {
        sp::sql("UPDATE configuration_variable SET value = 60 WHERE id IN (0x00A0, 0x00A1);"
                "UPDATE blade_schedule SET OnTime = 60, OffTime = 60");
    };
    const std::string cleared = "65535,65535,65535,65535,65535,65535,65535";
    setAll();
    EXPECT_EQ(told(modify(path_text, {{"PowerScheduleEnable", {"false"}}})), "0 ");
    EXPECT_EQ(times(0x00A0), cleared);
    EXPECT_EQ(times(0x00A1), cleared);
    EXPECT_EQ(sp::calls("ZBR_CIM_SetConfigSpaceVariables"), 14);
    EXPECT_EQ(told(modify(path_text, {{"PowerScheduleEnable", {"true"}}})), "0 ");
    EXPECT_EQ(sp::calls("ZBR_CIM_SetConfigSpaceVariables"), 14) << "true writes nothing";
    setAll();
    makeBlade();
    EXPECT_EQ(told(modify(path_text, {{"PowerScheduleEnable", {"false"}}})), "0 ");
    EXPECT_EQ(bladeTimes("OnTime"), cleared);
}

TEST_F(PowerManagement, OtherSettingsAreWrittenInTheirForm) {
    EXPECT_EQ(told(modify(path_text, {{"ConfPowerOnTrapPremonitionTime", {"00000000000130.000000:000"}},
                                      {"PowerRestorePolicy", {"6"}}})),
              "0 ");
    EXPECT_EQ(column("SELECT value FROM configuration_variable WHERE id = 0x00A3"), "1") << "90 seconds";
    EXPECT_EQ(shown("PowerRestorePolicy"), "2") << "two bits";
}

TEST_F(PowerManagement, EveryWayThatAChangeFailsIsTold) {
    const auto change = [&](const char *name, const std::vector<std::string> &value) {
        const std::string result = told(modify(path_text, {{name, value}}, {{name}}));
        sp::clear_faults();
        return result;
    };
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command");
    EXPECT_EQ(change("PowerRestorePolicy", {"1"}),
              "1 failed to set the Server value for the target instance");
    sp::fail("ZBR_CIM_SetConfigSpaceVariables");
    EXPECT_EQ(change("ConfServerOnTime", week(eight)),
              "1 failed to set the ConfServerOnTime value for the target instance");
    EXPECT_EQ(change("ConfServerOffTime", {"NULL"}),
              "4 failed to get the ConfServerOffTime value for the target instance");
    for (const char *failing : {"CIM_Create_IPMI20_Session", "ZBR_CIM_IsBladeSystem"}) {
        sp::fail(failing);
        EXPECT_EQ(change("PowerRestorePolicy", {"1"}), "0 ") << failing << " is only traced";
    }
    EXPECT_EQ(change("ElementName", {"x"}), "4 Invalid Property: ElementName ");
}

} // namespace
