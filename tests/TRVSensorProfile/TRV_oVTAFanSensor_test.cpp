#include "TRVSensorProfile/TRV_oVTAFanSensor.h"
#include "support/fixture.h"

#include <memory>

namespace {

struct FanSensor : ServiceProcessorTest {
    // The fans, listed alike by both classes and by their names.
    std::string fans() {
        std::string text;
        const Reply reply = enumerate("FanSensor");
        const Reply settings = enumerate("FanSensorConfigSettings");
        EXPECT_EQ(textOf(reply.answer) + textOf(settings.answer), "00");
        EXPECT_EQ(names("FanSensor").size(), reply.size());
        EXPECT_EQ(names("FanSensorConfigSettings").size(), reply.size());
        EXPECT_EQ(settings.size(), reply.size());
        for (std::size_t i = 0; i < reply.size(); ++i) {
            const std::string name = reply.value(i, "DeviceID");
            EXPECT_EQ(settings.value(i, "InstanceID"), "TRV:oVTAFanSensorConfigSettings:" + name);
            text += (i > 0 ? "," : "") + name;
        }
        return text;
    }
    static std::string pathOf(const std::string &fan) {
        return "FanSensor.SystemCreationClassName=\"TRV_oVTABaseServer\",CreationClassName="
               "\"TRV_oVTAFanSensor\",SystemName=\"MVR7420220815\",DeviceID=\"" +
               fan + "\"";
    }
    // All variables of the fans: behavior/delay by index.
    static std::string variables() {
        return sp::sql(
                   "SELECT group_concat(b.value || '/' || d.value, ' ') FROM configuration_variable b JOIN "
                   "configuration_variable d USING (list_index) WHERE b.id = 0x71 AND d.id = 0x72")
            .at(0)
            .at(0);
    }
};

constexpr char untouched[] = "1/90 1/90 1/90 1/90 0/300 0/300 0/300 0/300";

TEST_F(FanSensor, FansOfTheSystemComeFirstAndThenThoseOfPluggedSupplies) {
    sp::sql("UPDATE full_sdr SET position = -position");
    EXPECT_EQ(fans(), "FAN4 SYS,FAN3 SYS,FAN2 SYS,FAN1 SYS,FAN PSU4,FAN PSU2,FAN PSU1");
    sp::plug_power_supply(2, false);
    sp::plug_power_supply(3, true);
    EXPECT_EQ(fans(), "FAN4 SYS,FAN3 SYS,FAN2 SYS,FAN1 SYS,FAN PSU4,FAN PSU3,FAN PSU1");
    sp::sql("DELETE FROM sensor_reading WHERE SensorNumber = 0x94"); // a unit that can't be asked isn't there
    EXPECT_EQ(fans(), "FAN4 SYS,FAN3 SYS,FAN2 SYS,FAN1 SYS,FAN PSU4,FAN PSU3");
    sp::sql("UPDATE power_supply SET EntityInstance = 9 WHERE position = 4");
    EXPECT_EQ(fans(), "FAN4 SYS,FAN3 SYS,FAN2 SYS,FAN1 SYS,FAN PSU3");
    sp::sql("DELETE FROM power_supply");
    EXPECT_EQ(fans(), "FAN4 SYS,FAN3 SYS,FAN2 SYS,FAN1 SYS");
}

TEST_F(FanSensor, NameAndEntityMustBothFit) {
    sp::sql("UPDATE full_sdr SET EntityId = 10 WHERE SensorName = 'FAN1 SYS';"
            "UPDATE full_sdr SET EntityId = 29 WHERE SensorName = 'FAN PSU1';"
            "UPDATE full_sdr SET SensorName = 'FAN3 sys' WHERE SensorName = 'FAN3 SYS';"
            "UPDATE full_sdr SET SensorName = 'FAN Psu2' WHERE SensorName = 'FAN PSU2'");
    EXPECT_EQ(fans(), "FAN2 SYS,FAN4 SYS,FAN PSU4");
}

TEST_F(FanSensor, NoFanIsAnEmptyBlockAndNoStateSensorNone) {
    FanSensorRow *rows = nullptr;
    int count = 17;
    sp::sql("UPDATE full_sdr SET SensorName = 'FAN'");
    EXPECT_EQ(PH_OEM_GetFanSensorInfo(&rows, &count), 0);
    EXPECT_NE(rows, nullptr);
    EXPECT_EQ(count, 0);
    std::free(rows);
    EXPECT_EQ(fans(), "");
    EXPECT_TRUE(traced("No Fan Sensor sdr"));
    rows = nullptr;
    count = 17;
    sp::sql("DELETE FROM compact_sdr WHERE SensorType = 230");
    EXPECT_EQ(PH_OEM_GetFanSensorInfo(&rows, &count), 0);
    EXPECT_EQ(rows, nullptr);
    EXPECT_EQ(count, 17) << "untouched";
    EXPECT_EQ(fans(), "");
}

TEST_F(FanSensor, RowsAreJoinedByEntityAndInstance) {
    sp::sql(
        "UPDATE compact_sdr SET EntityInstance = 8 WHERE SensorNumber = 0x81;" // no row fits FAN2 any more
        "INSERT INTO compact_sdr (SensorNumber, SensorType, EntityId, EntityInstance, SensorName) "
        "VALUES (0x88, 230, 29, 2, 'again');" // behind the one of FAN3
        "INSERT INTO sensor_reading (SensorNumber, State) VALUES (0, 8)");
    FanSensorRow *rows = nullptr;
    int count = 0;
    ASSERT_EQ(PH_OEM_GetFanSensorInfo(&rows, &count), 0);
    const std::unique_ptr<FanSensorRow, decltype(&std::free)> owner(rows, std::free);
    ASSERT_EQ(count, 7);
    const int expected[] = {0x80, 0, 0x82, 0x83, 0x84, 0x85, 0x87};
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(rows[i].compact.SensorNumber, expected[i]) << i;
    }
    EXPECT_EQ(enumerate("FanSensor").value(1, "CurrentState"), "Failed") << "the state of sensor 0";
}

TEST_F(FanSensor, QualityIsTheRatioOfTheSpeedsInPerCent) {
    sp::sql("UPDATE maximum_speed SET Reference = 0 WHERE SensorNumber = 0x21;"
            "DELETE FROM maximum_speed WHERE SensorNumber = 0x22;"
            "UPDATE maximum_speed SET Measured = 50000000, Reference = 10000 WHERE SensorNumber = 0x23");
    // The fourth's product is 705032704 in 32 bits, and the ratio 70503 has 16.
    const char *expected[] = {"96", "0", "0", "4967", "98", "80", "99"};
    const Reply reply = enumerate("FanSensor");
    ASSERT_EQ(reply.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(reply.value(i, "Quality"), expected[i]) << i;
    }
    EXPECT_TRUE(traced("ZBR_CIM_ReadMaximumSpeed failed SensorNumber=34, ret=0x0"));
}

TEST_F(FanSensor, SettingsAreFoundByTheSensorsNumber) {
    sp::sql("UPDATE configuration_variable SET value = 10 + list_index WHERE id = 0x71;"
            "UPDATE configuration_variable SET value = 500 + list_index WHERE id = 0x72;"
            "UPDATE full_sdr SET VariableIndex = 7 WHERE SensorNumber = 0x20;"
            "UPDATE full_sdr SET VariableIndex = NULL WHERE SensorNumber = 0x23");
    const Reply reply = enumerate("FanSensorConfigSettings");
    const std::pair<const char *, const char *> expected[] = {
        {"17", "507"}, {"11", "501"}, {"12", "502"}, {"0", "0"}, {"14", "504"}, {"15", "505"}, {"17", "507"}};
    ASSERT_EQ(reply.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(reply.value(i, "ConfFanFailBehavior"), expected[i].first) << i;
        EXPECT_EQ(reply.value(i, "ConfFanFailShutdownDelay"), expected[i].second) << i;
    }
    EXPECT_TRUE(traced("Failed to get ConfFanFailBehavior for sensor number 35"));
    EXPECT_TRUE(traced("Failed to get ConfFanFailShutdownDelay for sensor number 35"));
    EXPECT_EQ(reply.propertyNames(0),
              (std::vector<std::string>{"InstanceID", "Caption", "ConfFanFailBehavior",
                                        "ConfFanFailShutdownDelay", "Description", "ElementName"}));
}

// --- Modify

TEST_F(FanSensor, ValuesWithinTheirRangeAreWrittenByTheEntityInstance) {
    sp::sql(
        "UPDATE full_sdr SET EntityInstance = 0x0106 WHERE SensorName = 'FAN3 SYS'"); // of which a byte goes
    const struct {
        const char *fan;
        Values values;
        const char *told, *variables;
    } cases[] = {
        {"FAN2 SYS", {{"CriticalBehavior", {"0"}}}, "0", "1/90 0/90 1/90 1/90 0/300 0/300 0/300 0/300"},
        {"FAN2 SYS", {{"FailDelay", {"600"}}}, "0", "1/90 0/600 1/90 1/90 0/300 0/300 0/300 0/300"},
        {"FAN3 SYS",
         {{"CriticalBehavior", {"1"}}, {"FailDelay", {"0"}}},
         "0",
         "1/90 0/600 1/90 1/90 0/300 0/300 1/0 0/300"},
        {"FAN4 SYS",
         {{"CriticalBehavior", {"2"}}},
         "4 The requested value for CriticalBehavior is out of range",
         "1/90 0/600 1/90 1/90 0/300 0/300 1/0 0/300"},
        {"FAN4 SYS", // the one before it stays written
         {{"CriticalBehavior", {"0"}}, {"FailDelay", {"601"}}},
         "4 The requested value for FailDelay is out of range",
         "1/90 0/600 1/90 0/90 0/300 0/300 1/0 0/300"},
        {"FAN1 SYS", // and the one behind it isn't
         {{"FailDelay", {"65535"}}, {"CriticalBehavior", {"0"}}},
         "4 The requested value for FailDelay is out of range",
         "1/90 0/600 1/90 0/90 0/300 0/300 1/0 0/300"},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(textOf(modify(pathOf(each.fan), each.values).answer), each.told) << each.fan;
        EXPECT_EQ(variables(), each.variables) << each.fan;
    }
}

TEST_F(FanSensor, TheBeginningOfANameFindsTheFirstFanOfTheSystem) {
    const PropertyNames listed = {{"FailDelay"}};
    EXPECT_EQ(textOf(modify(pathOf("FAN3"), {{"FailDelay", {"30"}}}, listed).answer), "0");
    EXPECT_EQ(textOf(modify(pathOf("FAN"), {{"FailDelay", {"10"}}}, listed).answer), "0");
    EXPECT_EQ(variables(), "1/10 1/90 1/30 1/90 0/300 0/300 0/300 0/300");
    for (const char *other : {"FAN PSU1", "fan1", "FAN1 SYS 1"}) {
        EXPECT_EQ(textOf(modify(pathOf(other), {{"FailDelay", {"20"}}}, listed).answer),
                  "1 Failed to get the instance id for the target instance")
            << other;
    }
    EXPECT_EQ(variables(), "1/10 1/90 1/30 1/90 0/300 0/300 0/300 0/300");
    EXPECT_TRUE(traced("No entry is found to match the specified key FAN PSU1"));
}

TEST_F(FanSensor, AChangeThatIsNoneOpensNoSessionAndARefusedOneWritesNothing) {
    EXPECT_EQ(textOf(modify(pathOf("FAN1 SYS"), {{"DeviceID", {"FAN1 SYS"}}}, {{"DeviceID"}}).answer), "0");
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0);
    EXPECT_EQ(textOf(modify(pathOf("FAN1 SYS"), {{"Caption", {"x"}}, {"FailDelay", {"20"}}}).answer),
              "1 Invalid Property: Caption ");
    EXPECT_EQ(textOf(modify(pathOf("FAN1 SYS"), {{"FailDelay", {"NULL"}}}, {{"FailDelay"}}).answer),
              "1 Failed in Modify Instance\n");
    const auto caller = request();
    CMPIObjectPath *bare = path(*caller, "FanSensor");
    EXPECT_EQ(textOf(PH_OEM_MI_FanSensor(cmpi(), nullptr, broker::contextOf(*caller), bare,
                                         CMNewInstance(cmpi(), bare, nullptr), nullptr)),
              "1 Failed in Modify Instance\n");
    EXPECT_EQ(variables(), untouched);
}

} // namespace
