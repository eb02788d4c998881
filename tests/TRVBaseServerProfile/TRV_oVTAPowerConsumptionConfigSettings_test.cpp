#include "TRVBaseServerProfile/TRV_oVTAPowerConsumptionConfigSettings.h"
#include "support/fixture.h"

namespace {

constexpr char path_text[] =
    "PowerConsumptionConfigSettings.InstanceID=\"TRV:oVTAPowerConsumptionConfigSettings\"";
constexpr char never[] = "99999999000000.000000:000";

struct PowerConsumption : ServiceProcessorTest {
    std::string shown(const char *property) { return get(path_text).value(0, property); }
};

TEST_F(PowerConsumption, TimesAreShownAsIntervals) {
    for (int day = 0; day < 7; ++day) {
        setVariable(0x1A02, std::to_string(480 + day), day);
        setVariable(0x1A03, "65535", day);
        setVariable(0x1A04, std::to_string(day + 1), day);
    }
    setVariable(0x1A02, "65534", 6);
    setVariable(0x1A0A, "65535");
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
    setVariable(0x1A00, "5");
    setVariable(0x1A01, "7");
    EXPECT_EQ(shown("ConfPowerControlMode"), "5");
    EXPECT_EQ(shown("ConfPowerMonitoringEnable"), "true");
    setVariable(0x1A01, "0");
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
        textOf(modify(path_text, {{"ConfDynPowerLimitEnable", {"false"}},
                                  {"ConfPowerLimitModePeriod", {"00000000000130.000000:000"}}, // 90 seconds
                                  {"ConfPowerLimitModeValue", {"700"}}})
                   .answer),
        "0");
    EXPECT_EQ(variable(0x1A08), "0");
    EXPECT_EQ(variable(0x1A0A), "1");
    EXPECT_EQ(variable(0x1A06), "700");
}

TEST_F(PowerConsumption, EveryWayThatAChangeFailsIsTold) {
    EXPECT_EQ(textOf(modify("PowerConsumptionConfigSettings.InstanceID=\"other\"",
                            {{"ConfPowerLimitModeValue", {"1"}}})
                         .answer),
              "6 Instance is not found");
    EXPECT_EQ(textOf(modify(path_text, {{"Caption", {"x"}}}).answer), "4 Invalid Property: Caption ");
    const std::tuple<const char *, std::optional<int>, const char *> failures[] = {
        {"getModifiableProperties", {}, "1 Failed to retreive modifiable propeties"},
        {"ZBR_CIM_GetValueFromInstance",
         {},
         "1 Failed to get ConfPowerLimitModeValue value from the parameter"},
        {"ZBR_CIM_SetConfigSpaceVariables", 0x1C7,
         "1 Failed to set ConfPowerLimitModeValue value for the target instance (ret=0x1c7) "},
        {"CIM_Create_IPMI20_Session", {}, "1 Create IPMI session failed"},
    };
    for (const auto &[function, result, told] : failures) {
        sp::fail(function, {.at = 0, .result = result});
        EXPECT_EQ(textOf(modify(path_text, {{"ConfPowerLimitModeValue", {"701"}}}).answer), told);
        sp::clear_faults();
    }
    EXPECT_EQ(textOf(modify(path_text, {{"ConfPowerLimitModeValue", {variable(0x1A06)}}}).answer), "0");
    EXPECT_TRUE(traced("No modifiable property is found"));
}

} // namespace
