#include "TRVPowerSupplyProfile/TRV_oVTAPowerSupply.h"
#include "support/fixture.h"

namespace {

struct PowerSupply : ServiceProcessorTest {
    // The sample server's third slot is empty.
    static void setPresent(int slot, bool present) {
        sp::sql("UPDATE power_supply_slot SET Present = " + std::to_string(present) +
                " WHERE Slot = " + std::to_string(slot));
    }
    static void setState(const char *column, int slot, int state) {
        sp::sql("UPDATE sensor_reading SET State = " + std::to_string(state) +
                " WHERE SensorNumber = (SELECT " + column +
                " FROM power_supply WHERE position = " + std::to_string(slot) + ")");
    }
    std::string units() {
        std::string text;
        const Reply reply = enumerate("PowerSupply");
        EXPECT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        EXPECT_EQ(names("PowerSupply").size(), reply.size());
        for (std::size_t i = 0; i < reply.size(); ++i) {
            text += (i > 0 ? "," : "") + reply.value(i, "DeviceID");
        }
        return text;
    }
};

TEST_F(PowerSupply, OnlyUnitsThatAreThereAreListedInTheOrderOfTheirRows) {
    EXPECT_EQ(units(), "PSU1,PSU2,PSU4");
    setPresent(2, false);
    EXPECT_EQ(units(), "PSU1,PSU4") << "pulled";
    setPresent(2, true);
    setPresent(3, true);
    EXPECT_EQ(units(), "PSU1,PSU2,PSU3,PSU4") << "plugged";
}

TEST_F(PowerSupply, PresenceAndStatusSensorDecideWhetherAUnitIsThere) {
    setState("PresenceSensor", 1, 0x8001); // bit 15 isn't a state
    EXPECT_EQ(units(), "PSU1,PSU2,PSU4");
    setState("PresenceSensor", 1, 0x0003);
    EXPECT_EQ(units(), "PSU2,PSU4");
    setState("StatusSensor", 2, 0x8001);
    EXPECT_EQ(units(), "PSU4");
    sp::sql("DELETE FROM sensor_reading WHERE SensorNumber = (SELECT StatusSensor FROM power_supply WHERE "
            "position = 4)");
    EXPECT_EQ(units(), "");
}

TEST_F(PowerSupply, AUnitIsShownWithItsReadingAndMappedState) {
    sp::sql("UPDATE sensor_reading SET Reading = 31 WHERE SensorNumber = 0x30"); // times 4
    const Reply reply = get("PowerSupply.SystemCreationClassName=\"TRV_oVTABaseServer\",CreationClassName="
                            "\"TRV_oVTAPowerSupply\",SystemName=\"MVR7420220815\",DeviceID=\"PSU1\"");
    ASSERT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
    const std::pair<const char *, const char *> expected[] = {
        {"SystemCreationClassName", "TRV_oVTABaseServer"},
        {"CreationClassName", "TRV_oVTAPowerSupply"},
        {"SystemName", "MVR7420220815"},
        {"DeviceID", "PSU1"},
        {"OperationalStatus", "{1}"},
        {"HealthState", "5"},
        {"PrimaryStatus", "1"},
        {"Status", "OK"},
        {"DetailedStatus", "1"},
        {"TotalOutputPower", "124"},
        {"EnabledState", "12"},
        {"RequestedState", "12"},
        {"ElementName", "PSU1"},
        {"Caption", "PSU1"},
        {"Description", "PSU1"},
    };
    std::vector<std::string> order;
    for (const auto &[name, text] : expected) {
        EXPECT_EQ(reply.value(0, name), text) << name;
        order.push_back(name);
    }
    EXPECT_EQ(reply.propertyNames(0), order);
}

TEST_F(PowerSupply, PathsHaveTheDeviceFirst) {
    const Reply reply = names("PowerSupply");
    CMPIString *name = nullptr;
    CMGetKeyAt(reply.answer.paths.at(0), 0, &name, nullptr);
    EXPECT_STREQ(CMGetCharsPtr(name, nullptr), "DeviceID");
}

TEST_F(PowerSupply, WithoutAnSDRThePowerIs0) {
    sp::sql("DELETE FROM full_sdr WHERE SensorNumber = 0x31");
    const Reply reply = enumerate("PowerSupply");
    EXPECT_EQ(reply.value(1, "TotalOutputPower"), "0");
    EXPECT_NE(trace().find("get full sdr record failed"), std::string::npos);
}

TEST_F(PowerSupply, ALongDesignationIsCut) {
    sp::sql("UPDATE power_supply SET Designation = hex(zeroblob(150)) WHERE position = 1");
    const Reply reply = enumerate("PowerSupply");
    EXPECT_EQ(reply.value(0, "DeviceID"), std::string(255, '0'));
    EXPECT_EQ(reply.value(0, "ElementName"), std::string(63, '0'));
}

TEST_F(PowerSupply, NamesReadThePresenceAndNothingElse) {
    names("PowerSupply");
    EXPECT_EQ(sp::calls("ZBR_CIM_GetFullSensorReading"), 0);
    EXPECT_EQ(sp::calls("zbr_oemdb_get_full_sdr_info_by_sensor_num"), 0);
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 1);
}

TEST_F(PowerSupply, WithoutRowsThereAreNone) {
    sp::sql("DELETE FROM power_supply");
    EXPECT_EQ(units(), "");
}

TEST_F(PowerSupply, EveryFailureIsToldAndReleasesEverything) {
    const auto failsWith = [&](const char *line) {
        const Reply reply = enumerate("PowerSupply");
        EXPECT_EQ(reply.answer.message, "Failed to Enumerate Instance") << line;
        EXPECT_NE(trace().find(line), std::string::npos) << line;
        sp::clear_faults();
    };
    sp::fail("zbr_oemdb_init", {.at = 1});
    failsWith("Failed in db_init");
    sp::fail("zbr_oemdb_get_all_psu_info");
    failsWith("db_get_all_compact_sdrs call failed");
    sp::fail("CIM_Create_IPMI20_Session");
    failsWith("Create IPMI session failed");
    wraps::fail(wraps::Allocation, 2); // the first one is the chassis row's
    failsWith("Allocation error");
}

TEST_F(PowerSupply, CapabilitiesShowTheirRow) {
    const Reply reply = enumerate("PowerSupplyCapabilities");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "InstanceID"), "MARLOVEN:PowerSupplyCapabilities1");
    sp::sql("DELETE FROM capabilities WHERE RowName = 'PowerSupplyCapabilities1'");
    EXPECT_EQ(enumerate("PowerSupplyCapabilities").size(), 0U);
}

// --- Redundancy set

struct PSRedundancySet : PowerSupply {
    static void setMode(int mode, int units) {
        sp::sql("UPDATE configuration_variable SET value = " + std::to_string(mode) +
                " WHERE id = 0x1A0C;"
                "UPDATE configuration_variable SET value = " +
                std::to_string(units) + " WHERE id = 0x1A0D");
    }
};

TEST_F(PSRedundancySet, FollowsTheHealthOfThePowerSupplies) {
    setState("StatusSensor", 1, 2);
    setState("StatusSensor", 2, 2);
    setState("StatusSensor", 4, 2);
    struct Case {
        int units;
        const char *needed, *supported, *status;
    };
    for (const Case &each : {Case{0x21, "2", "3", "2"},    // three are well, and three is all that it holds
                             Case{0x22, "2", "4", "3"},    // enough, but not all
                             Case{0x41, "4", "5", "4"},    // fewer than needed
                             Case{0x11, "1", "2", "3"}}) { // more than it holds isn't fully redundant
        setMode(2, each.units);
        const Reply reply = enumerate("PSRedundancySet");
        ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
        EXPECT_EQ(reply.value(0, "MinNumberNeeded"), each.needed) << each.units;
        EXPECT_EQ(reply.value(0, "MaxNumberSupported"), each.supported) << each.units;
        EXPECT_EQ(reply.value(0, "RedundancyStatus"), each.status) << each.units;
        EXPECT_EQ(reply.value(0, "TypeOfSet"), "{1, 2}");
    }
    setMode(2, 0x21);
    setPresent(1, false);
    EXPECT_EQ(enumerate("PSRedundancySet").value(0, "RedundancyStatus"), "3") << "a unit was pulled";
    sp::sql("DELETE FROM power_supply");
    EXPECT_EQ(enumerate("PSRedundancySet").value(0, "RedundancyStatus"), "4");
    setMode(2, 0);
    EXPECT_EQ(enumerate("PSRedundancySet").value(0, "RedundancyStatus"), "2");
}

TEST_F(PSRedundancySet, IsThereInFiveModesOnly) {
    for (const auto &[mode, kind] : std::vector<std::pair<int, std::string>>{
             {2, "Normal"}, {4, "Normal"}, {8, "Normal"}, {16, "2-Phase"}, {32, "2-Phase"}}) {
        setMode(mode, 0x21);
        EXPECT_EQ(enumerate("PSRedundancySet").value(0, "OtherTypeOfSet"), "{, " + kind + "}") << mode;
    }
    for (const int mode : {0, 1, 3, 64, 255}) {
        setMode(mode, 0x21);
        EXPECT_EQ(enumerate("PSRedundancySet").size(), 0U) << mode;
        EXPECT_EQ(get("PSRedundancySet.InstanceID=\"TRV_PSET\"").answer.message, "Failed to Get Instance");
    }
    EXPECT_NE(trace().find("Invalid Key Properties"), std::string::npos);
}

TEST_F(PSRedundancySet, NamesReadTheModeAlone) {
    EXPECT_EQ(names("PSRedundancySet").size(), 1U);
    EXPECT_EQ(sp::calls("ZBR_CIM_GetConfigSpaceVariables"), 1);
    EXPECT_EQ(sp::calls("zbr_oemdb_get_all_psu_info"), 0);
}

TEST_F(PSRedundancySet, EveryFailureIsToldAndFreesItsTexts) {
    const auto failsWith = [&](const char *line) {
        EXPECT_EQ(enumerate("PSRedundancySet").answer.message, "Failed to Enumerate Instance") << line;
        EXPECT_NE(trace().find(line), std::string::npos) << line;
        sp::clear_faults();
    };
    sp::fail("CIM_Create_IPMI20_Session");
    failsWith("Create IPMI session failed");
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 1});
    failsWith("Failed to get PSU redundancy mode");
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 2});
    failsWith("Failed to get PSU number required");
    sp::fail("zbr_oemdb_get_all_psu_info");
    failsWith("Failed to get redundancy status");
    for (int nth = 1; nth <= 3; ++nth) { // the record and its two texts
        wraps::fail(wraps::Allocation, nth);
        failsWith("memory allocation failed");
    }
}

} // namespace
