// What the sensors of the sample server show, worked out by hand:
//
//     (M x raw + B x 10^Bexp) x 10^Rexp
//
// in single precision, cut to an integer.
#include "support/fixture.h"

#include <algorithm>
#include <map>

namespace {

struct Thresholds {
    int lowerCritical, upperNonCritical, upperCritical, upperFatal; // 0 where no class shows it
};
struct Sensor {
    const char *name;
    int m, b, exponents;
    int raw; // 0 where the sensor can't be read
    int reading;
    Thresholds thresholds;
};

// Degrees; hundredths of a volt; revolutions per minute; watts.
constexpr Sensor sensors[] = {
    {"Ambient", 5, 0, 0xF0, 47, 23, {0, 40, 45, 0}}, // 23.5: halves of a degree are cut
    {"Systemboard 1", 1, 0, 0x00, 38, 38, {0, 70, 75, 0}},
    {"Systemboard 2", 1, 0, 0x00, 41, 41, {0, 70, 75, 0}},
    {"CPU1", 1, 0, 0x00, 52, 52, {0, 88, 95, 0}},
    {"CPU2", 1, 0, 0x00, 49, 49, {0, 88, 95, 0}},
    {"PCH", 1, 0, 0x00, 55, 55, {0, 95, 105, 0}},
    {"MEM A", 1, -128, 0x00, 162, 34, {0, 78, 85, 0}},
    {"MEM B", 1, -128, 0x00, 160, 32, {0, 78, 85, 0}},
    {"PSU1 Inlet", 1, -4, 0x01, 69, 29, {0, 60, 70, 0}}, // B is -40
    {"PSU2 Inlet", 1, -4, 0x01, 76, 36, {0, 60, 70, 0}},
    {"PSU3 Inlet", 1, -4, 0x01, 0, -40, {0, 60, 70, 0}},
    {"PSU4 Inlet", 1, -4, 0x01, 70, 30, {0, 60, 70, 0}},
    {"HDD Backplane", 1, 0, 0x00, 0, 0, {0, 60, 65, 0}},
    {"SFP Module", 1, 0, 0x00, 120, 0, {0, 0, 0, 0}}, // not linear
    {"BATT 3.0V", 17, 0, 0xD0, 181, 307, {200, 0, 360, 0}},
    {"STBY 12V", 63, 0, 0xD0, 190, 1197, {1077, 0, 1316, 0}},
    {"STBY 5V", 26, 0, 0xD0, 194, 504, {460, 0, 540, 0}},
    {"STBY 3.3V", 17, 0, 0xD0, 195, 331, {304, 0, 357, 0}}, // 331.5
    {"MAIN 12V", 63, 0, 0xD0, 191, 1203, {1077, 0, 1316, 0}},
    {"MAIN 5V", 26, 0, 0xD0, 193, 501, {460, 0, 540, 0}},
    {"MAIN 3.3V", 17, 0, 0xD0, 194, 329, {304, 0, 357, 0}},
    {"MEM 1.2V", 5, 0, 0xD0, 241, 120, {114, 0, 126, 0}},
    {"CPU1 1.8V", 8, 2, 0xD2, 210, 188, {172, 0, 196, 0}}, // B is 200
    {"CPU2 1.8V", 8, 2, 0xD2, 209, 187, {172, 0, 196, 0}},
    {"FAN1 SYS", 60, 0, 0x00, 71, 4260, {}},
    {"FAN2 SYS", 60, 0, 0x00, 72, 4320, {}},
    {"FAN3 SYS", 60, 0, 0x00, 70, 4200, {}},
    {"FAN4 SYS", 60, 0, 0x00, 71, 4260, {}},
    {"FAN PSU1", 128, 0, 0x00, 71, 9088, {}},
    {"FAN PSU2", 128, 0, 0x00, 84, 10752, {}},
    {"FAN PSU3", 128, 0, 0x00, 0, 0, {}},
    {"FAN PSU4", 128, 0, 0x00, 72, 9216, {}},
    {"PSU1 Power", 4, 0, 0x00, 31, 124, {0, 800, 848, 880}},
    {"PSU2 Power", 4, 0, 0x00, 29, 116, {0, 800, 848, 880}},
    {"PSU3 Power", 4, 0, 0x00, 0, 0, {0, 800, 848, 880}},
    {"PSU4 Power", 4, 0, 0x00, 30, 120, {0, 800, 848, 880}},
    {"Total Power", 8, 0, 0x00, 45, 360, {0, 0, 1696, 0}},
    {"CPU1 Power", 2, 0, 0x00, 43, 86, {0, 0, 240, 0}},
    {"CPU2 Power", 2, 0, 0x00, 40, 80, {0, 0, 240, 0}},
};

// The classes that show full SDRs, with the sensors in their order.
const std::map<std::string, std::vector<std::string>> sensors_of = {
    {"TemperatureSensor",
     {"Ambient", "Systemboard 1", "Systemboard 2", "CPU1", "CPU2", "PCH", "MEM A", "MEM B", "PSU1 Inlet",
      "PSU2 Inlet", "PSU3 Inlet", "PSU4 Inlet", "HDD Backplane", "SFP Module"}},
    {"VoltageSensor",
     {"STBY 12V", "STBY 5V", "STBY 3.3V", "MAIN 12V", "MAIN 5V", "MAIN 3.3V", "MEM 1.2V", "CPU1 1.8V",
      "CPU2 1.8V", "BATT 3.0V"}}, // the battery comes last, though its row is the first
    {"FanSensor", {"FAN1 SYS", "FAN2 SYS", "FAN3 SYS", "FAN4 SYS", "FAN PSU1", "FAN PSU2", "FAN PSU4"}},
    {"PowerProductionSensor", {"PSU1 Power", "PSU2 Power", "PSU3 Power", "PSU4 Power"}},
    {"PowerConsumptionSensor",
     {"Power Level", "PSU1 Power", "PSU2 Power", "PSU3 Power", "PSU4 Power", "Total Power", "CPU1 Power",
      "CPU2 Power"}},
};

struct SensorReadings : ServiceProcessorTest {
    static void setReading(int sensor, const char *assignment) {
        sp::sql("UPDATE sensor_reading SET " + std::string(assignment) +
                " WHERE SensorNumber = " + std::to_string(sensor));
    }
    static std::string valueOf(const Reply &reply, const char *sensor, const char *property) {
        const int instance = reply.find("DeviceID", sensor);
        return instance < 0 ? "no " + std::string(sensor)
                            : reply.value(static_cast<std::size_t>(instance), property);
    }
};

TEST_F(SensorReadings, TheSampleServersFactorsAreThoseOfTheTable) {
    EXPECT_EQ(sp::sql("SELECT count(*) FROM full_sdr")[0][0], std::to_string(std::size(sensors)));
    for (const Sensor &sensor : sensors) {
        const std::vector<std::string> expected = {std::to_string(sensor.m), std::to_string(sensor.b),
                                                   std::to_string(sensor.exponents),
                                                   std::to_string(sensor.raw)};
        EXPECT_EQ(sp::sql("SELECT M, B, Exponents, iif(Status & 0x20, 0, Reading) FROM full_sdr JOIN "
                          "sensor_reading USING (SensorNumber) WHERE SensorName = '" +
                          std::string(sensor.name) + "'")
                      .at(0),
                  expected)
            << sensor.name;
    }
}

TEST_F(SensorReadings, EveryReadingAndThresholdIsTheConvertedOne) {
    for (const auto &[className, sensorNames] : sensors_of) {
        const Reply reply = enumerate(className);
        ASSERT_EQ(reply.size(), sensorNames.size()) << className;
        for (std::size_t i = 0; i < reply.size(); ++i) {
            EXPECT_EQ(reply.value(i, "DeviceID"), sensorNames[i]) << className;
            const auto *sensor = std::ranges::find(sensors, sensorNames[i], &Sensor::name);
            if (sensor == std::end(sensors)) {
                continue; // it has a state only
            }
            EXPECT_EQ(reply.value(i, "CurrentReading"), std::to_string(sensor->reading)) << sensor->name;
            const std::pair<const char *, int> thresholds[] = {
                {"LowerThresholdCritical", sensor->thresholds.lowerCritical},
                {"UpperThresholdNonCritical", sensor->thresholds.upperNonCritical},
                {"UpperThresholdCritical", sensor->thresholds.upperCritical},
                {"UpperThresholdFatal", sensor->thresholds.upperFatal},
            };
            for (const auto &[property, threshold] : thresholds) {
                // Of power that is consumed, no field of the rows is meant for the other one.
                const bool isNone = className == "PowerConsumptionSensor" && property != thresholds[2].first;
                const std::string shown = reply.value(i, property);
                if (shown != "(unset)") {
                    EXPECT_EQ(shown, std::to_string(isNone ? 0 : threshold))
                        << sensor->name << ' ' << property;
                }
            }
        }
    }
}

TEST_F(SensorReadings, APluggedSupplyBringsItsReadings) {
    sp::plug_power_supply(3, true);
    EXPECT_EQ(valueOf(enumerate("FanSensor"), "FAN PSU3", "CurrentReading"), "8960");              // 70 x 128
    EXPECT_EQ(valueOf(enumerate("TemperatureSensor"), "PSU3 Inlet", "CurrentReading"), "25");      // 65 - 40
    EXPECT_EQ(valueOf(enumerate("PowerProductionSensor"), "PSU3 Power", "CurrentReading"), "112"); // 28 x 4
}

TEST_F(SensorReadings, TheStateComesFromWhatItsClassLooksAt) {
    setReading(0x01, "Reading = 80");                 // upper non-critical
    setReading(0x02, "Reading = 75");                 // upper critical
    setReading(0x11, "Reading = 209");                // upper critical
    setReading(0x12, "Reading = 177");                // lower critical
    setReading(0x30, "Status = 0x80, Reading = 215"); // it shows the status byte, not the state of thresholds
    setReading(0xD0, "State = 4");
    const std::tuple<const char *, const char *, const char *> expected[] = {
        {"TemperatureSensor", "Ambient", "Upper Non-Critical"},
        {"TemperatureSensor", "Systemboard 1", "Upper Critical"},
        {"TemperatureSensor", "PSU4 Inlet", "Normal"},
        {"TemperatureSensor", "HDD Backplane", "Unknown"}, // can't be read
        {"VoltageSensor", "STBY 12V", "Upper Critical"},
        {"VoltageSensor", "STBY 5V", "Lower Critical"},
        {"VoltageSensor", "BATT 3.0V", "Normal"},
        {"PowerProductionSensor", "PSU1 Power", "Not Scanned"},
        {"PowerProductionSensor", "PSU2 Power", "Normal"},
        {"PowerProductionSensor", "PSU3 Power", "Unknown"}, // can't be read
        {"PowerConsumptionSensor", "Power Level", "Critical Level Exceeded"},
        {"PowerConsumptionSensor", "PSU1 Power", "Normal"}, // has no state of its own
        {"FanSensor", "FAN1 SYS", "OK"},
        {"FanSensor", "FAN PSU2", "Running At Full Speed"},
    };
    for (const auto &[className, sensor, state] : expected) {
        EXPECT_EQ(valueOf(enumerate(className), sensor, "CurrentState"), state) << className << ' ' << sensor;
    }
}

TEST_F(SensorReadings, AFailedReadingKeepsTheSensor) {
    setReading(0x11, "Reading = 209"); // the state of the sensor before the one that fails
    sp::sql(
        "DELETE FROM sensor_reading WHERE SensorNumber NOT BETWEEN 0x90 AND 0x97 AND SensorNumber != 0x11;"
        "UPDATE full_sdr SET B = 25 WHERE SensorNumber IN (0x20, 0x30)");
    const std::tuple<const char *, const char *, const char *, const char *> expected[] = {
        {"TemperatureSensor", "MEM A", "-128", "Unknown"},
        {"VoltageSensor", "STBY 12V", "1316", "Upper Critical"},
        {"VoltageSensor", "STBY 5V", "0", "Normal"},
        {"VoltageSensor", "CPU1 1.8V", "20", "Normal"}, // 200 thousandths
        {"PowerProductionSensor", "PSU1 Power", "0", "Unknown"},
        {"PowerConsumptionSensor", "PSU1 Power", "25", "Normal"},
        {"PowerConsumptionSensor", "Power Level", "0", "Unknown"},
        {"FanSensor", "FAN1 SYS", "25", "Unknown"},
    };
    for (const auto &[className, sensor, reading, state] : expected) {
        const Reply reply = enumerate(className);
        EXPECT_EQ(reply.size(), sensors_of.at(className).size()) << className;
        EXPECT_EQ(valueOf(reply, sensor, "CurrentReading"), reading) << className << ' ' << sensor;
        EXPECT_EQ(valueOf(reply, sensor, "CurrentState"), state) << className << ' ' << sensor;
        EXPECT_EQ(valueOf(reply, sensor, "HealthState"), "5") << className << ' ' << sensor;
    }
    EXPECT_TRUE(traced("Failed in ZBR_CIM_GetFullSensorReading"));
    EXPECT_TRUE(traced("non linear sensor"));
}

TEST_F(SensorReadings, PowerConsumptionTakesTheUnitModifierOfAFullRowAlone) {
    sp::sql("UPDATE full_sdr SET UnitModifier = -1 WHERE SensorNumber = 0x34;"
            "UPDATE compact_sdr SET UnitModifier = 3 WHERE SensorNumber = 0xD0");
    const Reply reply = enumerate("PowerConsumptionSensor");
    EXPECT_EQ(valueOf(reply, "Total Power", "UnitModifier"), "-1");
    EXPECT_EQ(valueOf(reply, "Power Level", "UnitModifier"), "0");
    EXPECT_EQ(valueOf(reply, "Power Level", "UpperThresholdCritical"), "0");
    EXPECT_EQ(sp::calls("PH_GetHostSystemName"), 1);
    EXPECT_EQ(sp::calls("db_get_all_fru_info"), 0) << "the base server's name isn't asked for";
}

TEST_F(SensorReadings, WhatIsListedDependsOnTheRowsOfEachKind) {
    sp::sql("DELETE FROM full_sdr WHERE SensorType = 2 AND EntityId = 7");
    EXPECT_EQ(enumerate("VoltageSensor").size(), 1U) << "the battery alone";
    sp::sql("DELETE FROM compact_sdr WHERE SensorType = 221");
    EXPECT_EQ(textOf(enumerate("PowerConsumptionSensor").answer), "0");
    EXPECT_EQ(enumerate("PowerConsumptionSensor").size(), 0U) << "whatever full rows there are";
    EXPECT_EQ(enumerate("PowerProductionSensor").size(), 4U);
    sp::sql("DELETE FROM full_sdr; DELETE FROM compact_sdr");
    for (const auto &[className, sensorNames] : sensors_of) {
        const Reply reply = enumerate(className);
        EXPECT_EQ(textOf(reply.answer), "0") << className;
        EXPECT_EQ(reply.size(), 0U) << className;
    }
    EXPECT_EQ(textOf(get("TemperatureSensorConfigSettings.InstanceID="
                         "\"TRV:oVTATemperatureSensorConfigSettings:Ambient\"")
                         .answer),
              "1 Failed to Get Instance");
}

TEST_F(SensorReadings, SettingsOfATemperatureAreFoundByItsPlace) {
    sp::sql("UPDATE full_sdr SET position = -position;" // the other way round
            "UPDATE configuration_variable SET value = 100 + list_index WHERE id = 0x73;"
            "DELETE FROM configuration_variable WHERE id = 0x73 AND list_index = 2");
    const Reply reply = enumerate("TemperatureSensorConfigSettings");
    ASSERT_EQ(reply.size(), 14U);
    EXPECT_EQ(reply.value(0, "InstanceID"), "TRV:oVTATemperatureSensorConfigSettings:SFP Module");
    EXPECT_EQ(reply.value(0, "Caption"), "Configuration Space Settings");
    EXPECT_EQ(reply.value(0, "ElementName"), "SFP Module");
    for (std::size_t i = 0; i < reply.size(); ++i) {
        EXPECT_EQ(reply.value(i, "ConfTempCriticalBehavior"), i == 2 ? "0" : std::to_string(100 + i)) << i;
    }
    EXPECT_TRUE(traced("Failed to get ConfTempCriticalBehavior for sensor number 12"));
}

} // namespace
