// What holds for all sensor classes: their shape, what they cost, what they show after a failure and what
// they give back.
#include "TRVSensorProfile/SensorFamily.h"
#include "TRVSensorProfile/TRV_oVTABMCCommunicationSensor.h"
#include "TRVSensorProfile/TRV_oVTAFanSensor.h"
#include "TRVSensorProfile/TRV_oVTATemperatureSensor.h"
#include "support/fixture.h"

#include <iterator>
#include <set>
#include <sstream>

namespace {

using Texts = std::vector<std::string>;

Texts wordsOf(const std::string &text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

constexpr char threshold_states[] = "{Normal, Lower Non-Critical, Upper Non-Critical, Lower Critical, "
                                    "Upper Critical, Lower Fatal, Upper Fatal, Unknown}";

struct SensorClass {
    const char *name;
    const char *kind;       // SensorType, EnabledState, BaseUnits, UnitModifier
    const char *thresholds; // supported and enabled
    const char *shown;      // thresholds and other properties behind those of every sensor
    const char *states; // possible ones; NULL in the discrete classes, which have texts for each sensor type
};

const SensorClass classes[] = {
    {"TemperatureSensor", "2 5 2 0", "{1, 3}", "UpperThresholdNonCritical UpperThresholdCritical",
     threshold_states},
    {"VoltageSensor", "3 5 5 -2", "{2, 3}", "LowerThresholdCritical UpperThresholdCritical",
     threshold_states},
    {"PowerProductionSensor", "14 5 7 0", "{1, 3, 5}",
     "UpperThresholdNonCritical UpperThresholdCritical UpperThresholdFatal",
     "{Not Scanned, Normal, Unavailable, Unknown}"},
    {"PowerConsumptionSensor", "13 5 7 0", "{1, 3}", "UpperThresholdNonCritical UpperThresholdCritical",
     "{Normal, Warning Level Exceeded, Critical Level Exceeded, Unknown}"},
    {"FanSensor", "5 5 19 0", "NULL", "Quality",
     "{OK, Running At Full Speed, Failure Predicted, Failed, Not Managed, Not Present, Unknown}"},
    {"BMCCommunicationSensor", "1 2 0 0", "NULL", "BMCRequestPending", nullptr},
    {"BMCFlashSensor", "1 2 0 0", "NULL", "", nullptr},
    {"CPUConfigurationSensor", "1 2 0 0", "NULL", "", nullptr},
    {"ChassisIDPROMDataSyncSensor", "1 2 0 0", "NULL", "", nullptr},
    {"I2CSensor", "1 2 0 0", "NULL", "", nullptr},
};

struct SensorFamily : ServiceProcessorTest {};

TEST_F(SensorFamily, EverySensorHasItsClassesConstantsAndIsWell) {
    for (const SensorClass &sensors : classes) {
        const Reply reply = enumerate(sensors.name);
        EXPECT_GT(reply.size(), 0U) << sensors.name;
        for (std::size_t i = 0; i < reply.size(); ++i) {
            const std::string name = reply.value(i, "DeviceID");
            const std::pair<const char *, std::string> expected[] = {
                {"SystemCreationClassName", "TRV_oVTABaseServer"},
                {"SystemName", "MVR7420220815"},
                {"CreationClassName", "TRV_oVTA" + std::string(sensors.name)},
                {"Caption", name},
                {"ElementName", name},
                {"RateUnits", "0"},
                {"RequestedState", "12"},
                {"HealthState", "5"},
                {"SupportedThresholds", sensors.thresholds},
                {"EnabledThresholds", sensors.thresholds},
                {"SettableThresholds", "NULL"},
                {"OperationalStatus", "{2}"},
                {"DetailedStatus", "1"},
                {"OperatingStatus", "1"},
                {"PrimaryStatus", "1"},
                {"Status", "OK"},
                {"PossibleStates",
                 sensors.states != nullptr ? sensors.states : reply.value(i, "PossibleStates")},
            };
            std::string kind = reply.value(i, "SensorType");
            for (const char *property : {"EnabledState", "BaseUnits", "UnitModifier"}) {
                kind += ' ' + reply.value(i, property);
            }
            EXPECT_EQ(kind, sensors.kind) << sensors.name << ' ' << name;
            for (const auto &[property, text] : expected) {
                EXPECT_EQ(reply.value(i, property), text) << sensors.name << ' ' << name << ' ' << property;
            }
        }
    }
}

TEST_F(SensorFamily, PropertiesAndKeysOfPathsAreSetInTheirOrder) {
    for (const SensorClass &sensors : classes) {
        const bool isDiscrete = sensors.states == nullptr;
        const Texts expected =
            wordsOf("SystemCreationClassName SystemName CreationClassName DeviceID BaseUnits Caption "
                    "CurrentReading CurrentState ElementName EnabledState RateUnits RequestedState "
                    "UnitModifier HealthState SensorType EnabledThresholds OperationalStatus "
                    "SettableThresholds SupportedThresholds PossibleStates " +
                    std::string(isDiscrete ? "OtherSensorTypeDescription " : "") +
                    "DetailedStatus OperatingStatus PrimaryStatus Status " + sensors.shown);
        EXPECT_EQ(enumerate(sensors.name).propertyNames(0), expected) << sensors.name;
        const Reply reply = names(sensors.name);
        std::string keys;
        for (CMPICount i = 0; i < 4; ++i) {
            CMPIString *name = nullptr;
            CMGetKeyAt(reply.answer.paths.at(0), i, &name, nullptr);
            keys += CMGetCharsPtr(name, nullptr) + std::string(" ");
        }
        EXPECT_EQ(keys, isDiscrete ? "CreationClassName DeviceID SystemName SystemCreationClassName "
                                   : "SystemCreationClassName DeviceID CreationClassName SystemName ")
            << sensors.name;
    }
}

TEST_F(SensorFamily, EachSensorIsReadOnceAndForNamesNone) {
    struct Cost {
        int sessions, fullReadings, compactReadings;
    };
    const struct {
        const char *name;
        Cost instances, names;
    } costs[] = {
        {"Fan", {1, 7, 4 + 4 + 3}, {1, 0, 4 + 4 + 3}}, // fans, units, and the fans in those that are there
        {"TemperatureSensor", {1, 14, 0}, {1, 0, 0}},
        {"TemperatureSensorConfigSettings", {1, 0, 0}, {1, 0, 0}},
        {"VoltageSensor", {1, 10, 0}, {1, 0, 0}},
        {"PowerProductionSensor", {1, 4, 0}, {0, 0, 0}},
        {"PowerConsumptionSensor", {1, 7, 1}, {1, 0, 0}},
        // The four units are asked whether they are plugged, in a session of its own, as is each fan for its
        // variables.
        {"FanSensor", {2 + 7, 7, 4 + 7}, {2, 0, 4}},
        {"FanSensorConfigSettings", {2, 0, 4}, {2, 0, 4}},
        {"BMCCommunicationSensor", {1, 0, 1}, {1, 0, 0}},
        {"I2CSensor", {1, 0, 5}, {1, 0, 0}},
    };
    const auto spends = [](const Cost &cost, const std::string &what) {
        const std::pair<const char *, int> calls[] = {
            {"CIM_Create_IPMI20_Session", cost.sessions},
            {"ZBR_CIM_GetFullSensorReading", cost.fullReadings},
            {"ZBR_CIM_GetCompactSensorReading", cost.compactReadings},
        };
        for (const auto &[function, expected] : calls) {
            EXPECT_EQ(sp::calls(function), expected) << what << ' ' << function;
        }
        std::map<std::string, std::multiset<std::string>> made;
        for (const sp::JournalEntry &entry : sp::take_journal()) {
            made[entry.function].insert(entry.arguments);
        }
        for (const char *function : {calls[1].first, calls[2].first}) {
            for (const std::string &sensor : made[function]) {
                EXPECT_EQ(made[function].count(sensor), 1U) << what << " reads it twice: " << sensor;
            }
        }
    };
    for (const auto &each : costs) {
        sp::start_journal();
        enumerate(each.name);
        spends(each.instances, each.name);
        sp::start_journal();
        names(each.name);
        spends(each.names, each.name + std::string(" names"));
    }
}

TEST_F(SensorFamily, ALongNameIsCut) {
    sp::sql("UPDATE full_sdr SET SensorName = hex(zeroblob(150)) WHERE SensorNumber = 1");
    const Reply reply = enumerate("TemperatureSensor");
    for (const char *property : {"DeviceID", "Caption", "ElementName"}) {
        EXPECT_EQ(reply.value(0, property), std::string(255, '0')) << property;
    }
    const std::string prefix = "TRV:oVTATemperatureSensorConfigSettings:";
    EXPECT_EQ(enumerate("TemperatureSensorConfigSettings").value(0, "InstanceID"),
              prefix + std::string(255 - prefix.size(), '0'));
}

TEST_F(SensorFamily, MoreStatesThanThereAreSlotsAreCutOff) {
    for (const char *kind : {"Tmp", "Vol", "PP", "Pwl", "Fan"}) {
        sp::fail("Zbr_CimIpmi_Get" + std::string(kind) + "SensorNumOfPossibleState", {.result = 1000});
    }
    for (const SensorClass &sensors : classes) {
        if (sensors.states != nullptr) {
            const std::string states = enumerate(sensors.name).value(0, "PossibleStates");
            EXPECT_EQ(std::ranges::count(states, ','), 63) << sensors.name;
        }
    }
}

TEST_F(SensorFamily, ASensorThatIsAskedForHasNothingOfTheOnesBeforeIt) {
    const auto get = [this](const char *name) {
        return this->get("TemperatureSensor.SystemCreationClassName=\"TRV_oVTABaseServer\",CreationClassName="
                         "\"TRV_oVTATemperatureSensor\",SystemName=\"MVR7420220815\",DeviceID=\"" +
                         std::string(name) + '"');
    };
    sp::fail("Zbr_CimIpmi_GetTmpSensorNumOfPossibleState", {.at = 2, .result = 2});
    EXPECT_EQ(get("Systemboard 1").value(0, "PossibleStates"), "{Normal, Lower Non-Critical}");
    EXPECT_EQ(get("Systemboard 2").value(0, "PossibleStates"), threshold_states);
    EXPECT_EQ(wraps::liveBlocks(), 0);
}

TEST_F(SensorFamily, ASensorWithoutMemoryForItsStatesHasNone) {
    constexpr char line[] = "Memory Allocation Failed for PossibleStates";
    int first = 0; // of the first sensor's texts; before them are the records and names
    const auto failAt = [&](int nth) {
        wraps::fail(wraps::Allocation, nth);
        return enumerate("TemperatureSensor");
    };
    while (failAt(++first), !traced(line)) {
        ASSERT_LT(first, 20);
    }
    const Reply reply = failAt(first + 1);
    ASSERT_EQ(reply.size(), 14U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "PossibleStates"), threshold_states);
    EXPECT_EQ(reply.value(1, "PossibleStates"), "NULL");
    EXPECT_EQ(reply.value(2, "PossibleStates"), threshold_states);
    EXPECT_EQ(wraps::liveBlocks(), 0);
}

TEST_F(SensorFamily, AListOfStatesMayGrowWhileItIsRead) {
    const std::string states = enumerate("PowerProductionSensor").value(0, "PossibleStates");
    const auto number = static_cast<int>(std::ranges::count(states, ',')) + 1;
    ASSERT_GE(number, 3);
    for (int first = 1; first < number; ++first) { // before the first text alone
        sp::fail("Zbr_CimIpmi_GetPPSensorNumOfPossibleState", {.at = 1, .result = first});
        EXPECT_EQ(enumerate("PowerProductionSensor").value(0, "PossibleStates"), states) << first;
    }
}

TEST_F(SensorFamily, EveryFailureIsTraced) {
    constexpr char full_rows[] = "zbr_oemdb_get_specific_full_sdrs";
    constexpr char session[] = "zbr_oemdb_get_ipmi_session_info"; // which isn't tried again
    const struct {
        const char *className, *function;
        int at;
        const char *line;
    } failures[] = {
        {"TemperatureSensor", full_rows, 1, full_rows},
        {"VoltageSensor", full_rows, 2, full_rows}, // that of the battery
        {"PowerProductionSensor", session, 1, "Create IPMI session failed"},
        {"PowerConsumptionSensor", "PH_GetHostSystemName", 1, "Failed in PH_GetHostSystemName"},
        {"FanSensor", "zbr_oemdb_get_all_psu_info", 1, "db_get_all_compact_sdrs call failed"},
        {"FanSensor", session, 2, "Create IPMI session failed"},
        {"BMCCommunicationSensor", "zbr_oemdb_get_specific_compact_sdrs", 1,
         "Failed to get BMC Communication Sensor info"},
    };
    for (const auto &[className, function, at, line] : failures) {
        const std::size_t before = trace().size();
        sp::fail(function, {.at = at});
        EXPECT_EQ(textOf(enumerate(className).answer), "1 Failed to Enumerate Instance") << className;
        EXPECT_NE(trace().find(line, before), std::string::npos) << className << ' ' << line;
        sp::clear_faults();
    }
}

// --- Called directly

// Enumerates and cleans. `foreignTexts` is how many texts of the records the back end has allocated.
template <typename R>
void cleans(int (*enumerateRecords)(R **, int *, int), void (*clean)(R **, int), int foreignTexts) {
    R *records = nullptr;
    int count = 0;
    ASSERT_EQ(enumerateRecords(&records, &count, 0), 0);
    ASSERT_NE(records, nullptr);
    const int freed = wraps::foreignBlocksFreed();
    clean(&records, count);
    EXPECT_EQ(records, nullptr);
    EXPECT_EQ(wraps::liveBlocks(), 0);
    EXPECT_EQ(wraps::foreignBlocksFreed() - freed, foreignTexts);
    clean(&records, count); // there is nothing left to free
}

TEST_F(SensorFamily, CleaningFreesTheTextsAndClearsThePointer) {
    cleans(PH_OEM_Enum_TemperatureSensor_Instance, PH_OEM_Clean_TemperatureSensor, 0);
    cleans(PH_OEM_Enum_FanSensor_Instance, PH_OEM_Clean_FanSensor, 0);
    // Seven states, and two requests that are pending.
    cleans(PH_OEM_Enum_BMCCommunicationSensor_Instance, PH_OEM_Clean_BMCCommunicationSensor, 7 + 2);
}

TEST_F(SensorFamily, TemperatureRowsBelongToTheCallerOrArentThere) {
    FullSdrRow *rows = nullptr;
    int count = 0;
    ASSERT_EQ(PH_OEM_GetTemperatureSensorInfo(&rows, &count), 0);
    EXPECT_EQ(count, 14);
    std::free(rows);
    sp::fail("zbr_oemdb_get_specific_full_sdrs");
    EXPECT_EQ(PH_OEM_GetTemperatureSensorInfo(&rows, &count), -1);
    EXPECT_EQ(rows, nullptr);
    EXPECT_EQ(count, 0);
}

} // namespace
