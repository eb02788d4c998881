#include "TRVFanProfile/TRV_oVTAFan.h"
#include "support/fixture.h"

namespace {

struct Fan : ServiceProcessorTest {
    static void setReading(const char *column, int sensor, int value) {
        sp::sql("UPDATE sensor_reading SET " + std::string(column) + " = " + std::to_string(value) +
                " WHERE SensorNumber = " + std::to_string(sensor));
    }
    static void forget(int sensor) {
        sp::sql("DELETE FROM sensor_reading WHERE SensorNumber = " + std::to_string(sensor));
    }
    static void powerOff() { sp::sql("UPDATE chassis_status SET CurrentPowerState = 0x20"); }
    // The fans, listed alike by instances and by names.
    std::string fans() {
        std::string text;
        const Reply reply = enumerate("Fan");
        EXPECT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        EXPECT_EQ(names("Fan").size(), reply.size());
        for (std::size_t i = 0; i < reply.size(); ++i) {
            text += (i > 0 ? "," : "") + reply.value(i, "DeviceID");
        }
        return text;
    }
};

TEST_F(Fan, TheStateSensorsDecideWhichFansAreThere) {
    EXPECT_EQ(fans(), "FAN1 SYS,FAN2 SYS,FAN3 SYS,FAN4 SYS,FAN PSU1,FAN PSU2,FAN PSU4");
    setReading("State", 0x80, 0xFF9F); // all but the two bits of a fan that isn't there
    setReading("State", 0x81, 0x21);
    setReading("State", 0x82, 0x41);
    EXPECT_EQ(fans(), "FAN1 SYS,FAN4 SYS,FAN PSU1,FAN PSU2,FAN PSU4");
    forget(0x83);
    EXPECT_EQ(fans(), "FAN1 SYS,FAN PSU1,FAN PSU2,FAN PSU4");
    EXPECT_NE(trace().find("Failed to get fan state (ret="), std::string::npos);
    setReading("State", 0x87, 0x40); // in a unit that is there
    EXPECT_EQ(fans(), "FAN1 SYS,FAN PSU1,FAN PSU2");
    sp::sql("UPDATE fan SET EntityId = 30 WHERE Name = 'FAN2 SYS'"); // neither kind: nobody asks its sensors
    EXPECT_EQ(fans(), "FAN1 SYS,FAN2 SYS,FAN PSU1,FAN PSU2");
}

TEST_F(Fan, APulledPowerSupplyTakesItsFansAlong) {
    sp::plug_power_supply(1, false);
    sp::plug_power_supply(3, true);
    EXPECT_EQ(fans(), "FAN1 SYS,FAN2 SYS,FAN3 SYS,FAN4 SYS,FAN PSU2,FAN PSU3,FAN PSU4");
    setReading("State", 0x91, 0xFFFE); // whatever else the presence sensor says
    forget(0x92);
    EXPECT_EQ(fans(), "FAN1 SYS,FAN2 SYS,FAN3 SYS,FAN4 SYS,FAN PSU4");
    EXPECT_NE(trace().find("Failed to get psu presence (ret="), std::string::npos);
    sp::sql("UPDATE fan SET PsuPresenceSensor = 0 WHERE Name = 'FAN PSU4'");
    EXPECT_EQ(fans(), "FAN1 SYS,FAN2 SYS,FAN3 SYS,FAN4 SYS");
}

TEST_F(Fan, WithThePowerOffNobodyAsksAFanForItsState) {
    powerOff();
    sp::sql("DELETE FROM sensor_reading WHERE SensorNumber BETWEEN 0x80 AND 0x87");
    const Reply reply = enumerate("Fan");
    ASSERT_EQ(reply.size(), 7U);
    EXPECT_EQ(sp::calls("ZBR_CIM_GetCompactSensorReading"), 4) << "the presence of the power supplies";
    for (std::size_t i = 0; i < reply.size(); ++i) {
        EXPECT_EQ(reply.value(i, "HealthState"), "0") << i;
        EXPECT_EQ(reply.value(i, "EnabledState"), "0") << i;
    }
    EXPECT_EQ(fans(), "FAN1 SYS,FAN2 SYS,FAN3 SYS,FAN4 SYS,FAN PSU1,FAN PSU2,FAN PSU4");
}

TEST_F(Fan, SpeedStateAndAttributesAreMapped) {
    setReading("Reading", 0x21, 0);
    setReading("Reading", 0x22, 255);
    forget(0x23);
    setReading("State", 0x82, 0x08);
    sp::sql("UPDATE fan SET Attributes = 0x20 WHERE position = 2;"
            "UPDATE fan SET Attributes = 0x30 WHERE position = 3;"
            "UPDATE fan SET Attributes = 0xFFCF WHERE position = 4");
    const struct {
        const char *fan, *enabledState, *healthState, *coolingDeviceType;
    } expected[] = {
        {"FAN1 SYS", "2", "5", "1"},  {"FAN2 SYS", "3", "5", "0"},  // stands still
        {"FAN3 SYS", "0", "20", "0"},                               // no reading, and it failed
        {"FAN4 SYS", "0", "5", "1"},                                // can't be read
        {"FAN PSU1", "2", "5", "2"},  {"FAN PSU2", "2", "10", "2"}, // at full speed
        {"FAN PSU4", "2", "5", "2"},
    };
    const Reply reply = enumerate("Fan");
    ASSERT_EQ(reply.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(reply.value(i, "DeviceID"), expected[i].fan);
        EXPECT_EQ(reply.value(i, "EnabledState"), expected[i].enabledState) << expected[i].fan;
        EXPECT_EQ(reply.value(i, "HealthState"), expected[i].healthState) << expected[i].fan;
        EXPECT_EQ(reply.value(i, "CoolingDeviceType"), expected[i].coolingDeviceType) << expected[i].fan;
    }
    EXPECT_NE(trace().find("Failed to get fan speed: "), std::string::npos);
}

TEST_F(Fan, IsShownWithAllItsProperties) {
    const Reply reply =
        get("Fan.SystemCreationClassName=\"TRV_oVTABaseServer\",CreationClassName=\"TRV_oVTAFan\","
            "SystemName=\"MVR7420220815\",DeviceID=\"FAN PSU2\"");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    const std::pair<const char *, const char *> expected[] = {
        {"SystemCreationClassName", "TRV_oVTABaseServer"},
        {"CreationClassName", "TRV_oVTAFan"},
        {"SystemName", "MVR7420220815"},
        {"DeviceID", "FAN PSU2"},
        {"ElementName", "FAN PSU2"},
        {"Description", "Logical Device for FAN PSU2"},
        {"VariableSpeed", "true"},
        {"DesiredSpeed", "0"},
        {"OperationalStatus", "{1}"},
        {"HealthState", "10"},
        {"EnabledState", "2"},
        {"RequestedState", "12"},
        {"ActiveCooling", "true"},
        {"CoolingDeviceType", "2"},
    };
    std::vector<std::string> order;
    for (const auto &[name, text] : expected) {
        EXPECT_EQ(reply.value(0, name), text) << name;
        order.push_back(name);
    }
    EXPECT_EQ(reply.propertyNames(0), order);
}

TEST_F(Fan, PathsHaveTheDeviceFirst) {
    const Reply reply = names("Fan");
    std::string keys;
    for (CMPICount i = 0; i < 4; ++i) {
        CMPIString *name = nullptr;
        CMGetKeyAt(reply.answer.paths.at(0), i, &name, nullptr);
        keys += CMGetCharsPtr(name, nullptr) + std::string(" ");
    }
    EXPECT_EQ(keys, "DeviceID SystemCreationClassName CreationClassName SystemName ");
}

TEST_F(Fan, ALongNameIsCut) {
    sp::sql("UPDATE fan SET Name = hex(zeroblob(150)) WHERE position = 1");
    const Reply reply = enumerate("Fan");
    EXPECT_EQ(reply.value(0, "DeviceID"), std::string(255, '0'));
    EXPECT_EQ(reply.value(0, "ElementName"), std::string(63, '0'));
    EXPECT_EQ(reply.value(0, "Description"), "Logical Device for " + std::string(255 - 19, '0'));
}

TEST_F(Fan, WithoutRowsThereAreNone) {
    sp::sql("DELETE FROM fan");
    EXPECT_EQ(fans(), "");
}

TEST_F(Fan, EveryFailureIsToldAndReleasesEverything) {
    const auto failsWith = [&](const char *line) {
        EXPECT_EQ(textOf(enumerate("Fan").answer), "1 Failed to Enumerate Instance") << line;
        EXPECT_NE(trace().find(line), std::string::npos) << line;
        EXPECT_EQ(wraps::liveBlocks(), 0) << line;
        sp::clear_faults();
    };
    sp::fail("zbr_oemdb_init", {.at = 1});
    failsWith("Failed to create handle for OEM DB Access");
    sp::fail("zbr_oemdb_get_all_fan_info");
    failsWith("Failed in zbr_oemdb_get_all_fan_info");
    sp::fail("CIM_Create_IPMI20_Session");
    failsWith("Create IPMI session failed");
    sp::fail("LIBIPMI_HL_GetChassisStatus");
    failsWith("Failed to get chassis status");
    wraps::fail(wraps::Allocation, 2); // the first one is the chassis row's
    failsWith("Failed to allocate memory");
}

TEST_F(Fan, CapabilitiesShowTheirRow) {
    const Reply reply = enumerate("FanCapabilities");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "InstanceID"), "MARLOVEN:FanCapabilities1");
    EXPECT_EQ(reply.value(0, "ElementName"), "Fan Capabilities");
    sp::sql("DELETE FROM capabilities WHERE RowName = 'FanCapabilities1'");
    EXPECT_EQ(enumerate("FanCapabilities").size(), 0U);
}

} // namespace
