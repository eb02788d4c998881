#include "TRVBaseServerProfile/TRV_oVTAPowerConsumptionConfigSettings.h"
#include "support/fixture.h"

namespace {

constexpr char path_text[] =
    "PowerConsumptionConfigSettings.InstanceID=\"TRV:oVTAPowerConsumptionConfigSettings\"";
constexpr char never[] = "99999999000000.000000:000";

struct PowerConsumption : ServiceProcessorTest {
    static void setVariable(int id, int value, int index = 0) {
        sp::sql("UPDATE configuration_variable SET value = " + std::to_string(value) +
                " WHERE id = " + std::to_string(id) + " AND list_index = " + std::to_string(index));
    }
    static std::string variable(int id) {
        return sp::sql("SELECT value FROM configuration_variable WHERE id = " + std::to_string(id))
            .at(0)
            .at(0);
    }
    static std::string told(const Reply &reply) {
        return std::to_string(reply.answer.rc) + " " + reply.answer.message;
    }
    std::string shown(const char *property) { return get(path_text).value(0, property); }
};

TEST_F(PowerConsumption, TimesAreShownAsIntervals) {
    for (int day = 0; day < 7; ++day) {
        setVariable(0x1A02, 480 + day, day);
        setVariable(0x1A03, 0xFFFF, day);
        setVariable(0x1A04, day + 1, day);
    }
    setVariable(0x1A02, 0xFFFE, 6);
    setVariable(0x1A0A, 0xFFFF);
    const Reply reply = get(path_text);
    ASSERT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "ConfPowerControlScheduleTime1"),
              "{00000000080000.000000:000, 00000000080100.000000:000, 00000000080200.000000:000, "
              "00000000080300.000000:000, 00000000080400.000000:000, 00000000080500.000000:000, "
              "00000045121400.000000:000}"); // 65,534 minutes
    EXPECT_EQ(reply.value(0, "ConfPowerControlScheduleTime2").find(std::string("{") + never), 0U);
    EXPECT_EQ(reply.value(0, "ConfPowerControlScheduleMode1"), "{1, 2, 3, 4, 5, 6, 7}");
    EXPECT_EQ(reply.value(0, "ConfPowerLimitModePeriod"), "00000045121500.000000:000") << "65,535 minutes";
}

TEST_F(PowerConsumption, TheModeIsReadOnlyWhileMonitoringIsOn) {
    setVariable(0x1A00, 5);
    setVariable(0x1A01, 7);
    EXPECT_EQ(shown("ConfPowerControlMode"), "5");
    EXPECT_EQ(shown("ConfPowerMonitoringEnable"), "true");
    setVariable(0x1A01, 0);
    EXPECT_EQ(shown("ConfPowerControlMode"), "0");
}

TEST_F(PowerConsumption, AMiscControlAddsAMode) {
    sp::sql("INSERT OR REPLACE INTO misc_control VALUES(15, 1)");
    EXPECT_EQ(shown("SupportedPowerControlModes"), "{0, 2, 3, 4, 5, 6}");
    sp::fail("ZBR_CIM_GetMiscControl");
    EXPECT_EQ(shown("SupportedPowerControlModes"), "{0, 2, 3, 4, 5}");
}

TEST_F(PowerConsumption, WithoutASessionTheInstanceIsEmpty) {
    sp::fail("CIM_Create_IPMI20_Session");
    const Reply reply = enumerate("PowerConsumptionConfigSettings");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "Caption"), "");
    EXPECT_EQ(reply.value(0, "ConfPowerLimitModeValue"), "0");
    EXPECT_EQ(reply.value(0, "SupportedPowerControlModes"), "{}");
    EXPECT_EQ(names("PowerConsumptionConfigSettings").size(), 1U);
}

TEST_F(PowerConsumption, AFailedReadIsOnlyTraced) {
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 1, .result = 0x1C1});
    const Reply reply = enumerate("PowerConsumptionConfigSettings");
    ASSERT_EQ(reply.size(), 1U);
    EXPECT_EQ(reply.value(0, "ConfDynPowerLimitEnable"), "false");
    EXPECT_EQ(reply.value(0, "ConfPowerMonitoringEnable"), "true");
    EXPECT_TRUE(traced("Failed to read ConfDynPowerLimitEnable (id=0x1a08, cc=0xc1)"));
}

// --- Modify: the class that needs its current instance

TEST_F(PowerConsumption, ChangesAreWrittenInTheFormOfTheirVariables) {
    EXPECT_EQ(
        told(modify(path_text, {{"ConfDynPowerLimitEnable", {"false"}},
                                {"ConfPowerLimitModePeriod", {"00000000000130.000000:000"}}, // 90 seconds
                                {"ConfPowerLimitModeValue", {"700"}}})),
        "0 ");
    EXPECT_EQ(variable(0x1A08), "0");
    EXPECT_EQ(variable(0x1A0A), "1");
    EXPECT_EQ(variable(0x1A06), "700");
}

TEST_F(PowerConsumption, EveryWayThatAChangeFailsIsTold) {
    const auto change = [&] { return told(modify(path_text, {{"ConfPowerLimitModeValue", {"701"}}})); };
    EXPECT_EQ(told(modify("PowerConsumptionConfigSettings.InstanceID=\"other\"",
                          {{"ConfPowerLimitModeValue", {"1"}}})),
              "6 Instance is not found");
    EXPECT_EQ(told(modify(path_text, {{"Caption", {"x"}}})), "4 Invalid Property: Caption ");
    sp::fail("getModifiableProperties");
    EXPECT_EQ(change(), "1 Failed to retreive modifiable propeties");
    sp::clear_faults();
    sp::fail("ZBR_CIM_GetValueFromInstance");
    EXPECT_EQ(change(), "1 Failed to get ConfPowerLimitModeValue value from the parameter");
    sp::clear_faults();
    sp::fail("ZBR_CIM_SetConfigSpaceVariables", {.at = 0, .result = 0x1C7});
    EXPECT_EQ(change(), "1 Failed to set ConfPowerLimitModeValue value for the target instance (ret=0x1c7) ");
    sp::clear_faults();
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(told(modify(path_text, {{"ConfPowerLimitModeValue", {"701"}}})),
              "1 Create IPMI session failed");
    sp::clear_faults();
    EXPECT_EQ(told(modify(path_text, {{"ConfPowerLimitModeValue", {variable(0x1A06)}}})), "0 ");
    EXPECT_TRUE(traced("No modifiable property is found"));
}

} // namespace
