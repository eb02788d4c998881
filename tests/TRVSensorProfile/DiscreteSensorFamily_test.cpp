#include "support/fixture.h"

namespace {

struct DiscreteSensors : ServiceProcessorTest {};

TEST_F(DiscreteSensors, EachClassShowsTheSensorsOfItsType) {
    const struct {
        const char *name, *otherType, *sensor, *state, *possibleStates;
        std::size_t count;
    } classes[] = {
        {"BMCCommunicationSensor", "BMC Communication Status", "BMC Communication", "Reset Request Pending",
         "{No Request Pending, Power On Request Pending, Shutdown Request Pending, Power Off Request "
         "Pending, "
         "Power Cycle Request Pending, Reset Request Pending, Unknown}",
         1},
        {"BMCFlashSensor", "BMC Flash Status", "BMC Flash", "OK",
         "{OK, Update Running, Running From Second Image, Image Invalid, Unknown}", 1},
        {"CPUConfigurationSensor", "CPU configuration Status", "CPU Config", "OK",
         "{OK, CPU Disabled, CPU Missing, CPU Mix Not Supported, Unknown}", 1},
        {"ChassisIDPROMDataSyncSensor", "Chassis IDPROM Data Sync Status Connectivity Status",
         "Chassis IDPROM", "Synchronization Running",
         "{Synchronized, Synchronization Running, Copy Outdated, Copy Not Readable, Unknown}", 1},
        {"I2CSensor", "I2C Connectivity Status", "I2C1 Systemboard", "OK",
         "{OK, Arbitration Lost, Device Not Responding, Bus Blocked, Unknown}", 5},
    };
    for (const auto &each : classes) {
        const Reply reply = enumerate(each.name);
        ASSERT_EQ(reply.size(), each.count) << each.name;
        EXPECT_EQ(reply.value(0, "DeviceID"), each.sensor);
        EXPECT_EQ(reply.value(0, "OtherSensorTypeDescription"), each.otherType);
        EXPECT_EQ(reply.value(0, "CurrentState"), each.state);
        EXPECT_EQ(reply.value(0, "PossibleStates"), each.possibleStates);
        EXPECT_EQ(reply.value(0, "CurrentReading"), "0");
    }
    sp::sql("DELETE FROM compact_sdr");
    for (const auto &each : classes) {
        EXPECT_EQ(textOf(enumerate(each.name).answer), "0") << each.name;
        EXPECT_EQ(enumerate(each.name).size(), 0U) << each.name;
    }
}

TEST_F(DiscreteSensors, AnyStateOfTheSensorLeavesItWell) {
    const Reply reply = enumerate("I2CSensor");
    EXPECT_EQ(reply.value(3, "CurrentState"), "Device Not Responding") << "the more serious of two faults";
    EXPECT_EQ(reply.value(4, "CurrentState"), "Unknown") << "can't be read";
    for (const std::size_t i : {3U, 4U}) {
        EXPECT_EQ(reply.value(i, "HealthState"), "5");
        EXPECT_EQ(reply.value(i, "OperationalStatus"), "{2}");
        EXPECT_EQ(reply.value(i, "Status"), "OK");
    }
}

TEST_F(DiscreteSensors, EachPendingRequestIsListed) {
    const struct {
        const char *change, *state, *pending;
    } cases[] = {
        {"State = 0x12", "Reset Request Pending", "{Shutdown Request Pending, Reset Request Pending}"},
        {"State = 0x04", "Power Off Request Pending", "{Power Off Request Pending}"},
        {"State = 0", "No Request Pending", "NULL"},
        {"Status = 0xE0", "Unknown", "NULL"}, // can't be read: not all requests at once
    };
    for (const auto &each : cases) {
        sp::sql("UPDATE sensor_reading SET " + std::string(each.change) + " WHERE SensorNumber = 0xE0");
        const Reply reply = enumerate("BMCCommunicationSensor");
        EXPECT_EQ(reply.value(0, "CurrentState"), each.state) << each.change;
        EXPECT_EQ(reply.value(0, "BMCRequestPending"), each.pending) << each.change;
    }
}

TEST_F(DiscreteSensors, UnitsComeFromTheSDR) {
    sp::sql("UPDATE compact_sdr SET BaseUnits = 0x10005, UnitModifier = -3, RateUnits = 2 WHERE SensorNumber "
            "= 0xE1");
    Reply reply = enumerate("BMCFlashSensor");
    EXPECT_EQ(reply.value(0, "BaseUnits"), "5") << "the low 16 bits";
    EXPECT_EQ(reply.value(0, "UnitModifier"), "-3");
    EXPECT_EQ(reply.value(0, "RateUnits"), "2");
    sp::sql("UPDATE compact_sdr SET RateUnits = 7 WHERE SensorNumber = 0xE1"); // reserved: mapped, not copied
    EXPECT_EQ(enumerate("BMCFlashSensor").value(0, "RateUnits"), "0");
}

} // namespace
