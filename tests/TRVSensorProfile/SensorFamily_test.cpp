// What holds for all sensor classes: their shape, what they cost, how they fail and what they give back.
#include "TRVSensorProfile/SensorFamily.h"
#include "TRVSensorProfile/TRV_oVTABMCCommunicationSensor.h"
#include "TRVSensorProfile/TRV_oVTAFanSensor.h"
#include "TRVSensorProfile/TRV_oVTAI2CSensor.h"
#include "TRVSensorProfile/TRV_oVTATemperatureSensor.h"
#include "support/fixture.h"

#include "libzbr_cimipmi.h"

#include <iterator>
#include <set>
#include <sstream>

namespace {

using Texts = std::vector<std::string>;

Texts wordsOf(const std::string &text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

// Texts of the possible states, from the library that knows them.
struct States {
    int (*number)();
    void (*text)(int index, char *text, int size);
};
#define STATES(kind)                                                                                         \
    { Zbr_CimIpmi_Get##kind##SensorNumOfPossibleState, Zbr_CimIpmi_Get##kind##SensorPossibleState }
constexpr States temperature = STATES(Tmp);
constexpr States voltage = STATES(Vol);
constexpr States production = STATES(PP);
constexpr States consumption = STATES(Pwl);
constexpr States fan = STATES(Fan);
constexpr States discrete = {};

struct SensorClass {
    const char *name;
    const char *kind;       // SensorType, EnabledState, BaseUnits, UnitModifier
    const char *thresholds; // supported and enabled
    const char *shown;      // thresholds and other properties behind those of every sensor
    States states;          // empty in the discrete classes, which have texts for each sensor type
};

const SensorClass classes[] = {
    {"TemperatureSensor", "2 5 2 0", "{1, 3}", "UpperThresholdNonCritical UpperThresholdCritical",
     temperature},
    {"VoltageSensor", "3 5 5 -2", "{2, 3}", "LowerThresholdCritical UpperThresholdCritical", voltage},
    {"PowerProductionSensor", "14 5 7 0", "{1, 3, 5}",
     "UpperThresholdNonCritical UpperThresholdCritical UpperThresholdFatal", production},
    {"PowerConsumptionSensor", "13 5 7 0", "{1, 3}", "UpperThresholdNonCritical UpperThresholdCritical",
     consumption},
    {"FanSensor", "5 5 19 0", "NULL", "Quality", fan},
    {"BMCCommunicationSensor", "1 2 0 0", "NULL", "BMCRequestPending", discrete},
    {"BMCFlashSensor", "1 2 0 0", "NULL", "", discrete},
    {"CPUConfigurationSensor", "1 2 0 0", "NULL", "", discrete},
    {"ChassisIDPROMDataSyncSensor", "1 2 0 0", "NULL", "", discrete},
    {"I2CSensor", "1 2 0 0", "NULL", "", discrete},
};

std::string listOf(const States &states) {
    std::string all;
    for (int i = 0; i < states.number(); ++i) {
        char text[256] = "";
        states.text(i, text, sizeof text);
        all += (i == 0 ? "{" : ", ") + std::string(text);
    }
    return all + "}";
}

struct SensorFamily : ServiceProcessorTest {
    // The numbers of the sensors that were read.
    static std::multiset<std::string> sensorsRead(const std::vector<sp::JournalEntry> &journal,
                                                  const std::string &function) {
        std::multiset<std::string> sensors;
        for (const sp::JournalEntry &entry : journal) {
            if (entry.function == function) {
                sensors.insert(entry.arguments);
            }
        }
        return sensors;
    }
};

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
            };
            std::string kind = reply.value(i, "SensorType");
            for (const char *property : {"EnabledState", "BaseUnits", "UnitModifier"}) {
                kind += ' ' + reply.value(i, property);
            }
            EXPECT_EQ(kind, sensors.kind) << sensors.name << ' ' << name;
            for (const auto &[property, text] : expected) {
                EXPECT_EQ(reply.value(i, property), text) << sensors.name << ' ' << name << ' ' << property;
            }
            if (sensors.states.number != nullptr) {
                EXPECT_EQ(reply.value(i, "PossibleStates"), listOf(sensors.states)) << sensors.name;
            }
        }
    }
}

TEST_F(SensorFamily, PropertiesAreSetInTheirOrder) {
    for (const SensorClass &sensors : classes) {
        const bool isDiscrete = sensors.states.number == nullptr;
        const Texts expected =
            wordsOf("SystemCreationClassName SystemName CreationClassName DeviceID BaseUnits Caption "
                    "CurrentReading CurrentState ElementName EnabledState RateUnits RequestedState "
                    "UnitModifier HealthState SensorType EnabledThresholds OperationalStatus "
                    "SettableThresholds SupportedThresholds PossibleStates " +
                    std::string(isDiscrete ? "OtherSensorTypeDescription " : "") +
                    "DetailedStatus OperatingStatus PrimaryStatus Status " + sensors.shown);
        EXPECT_EQ(enumerate(sensors.name).propertyNames(0), expected) << sensors.name;
    }
}

TEST_F(SensorFamily, PathsHaveTheirKeysInTheOrderOfTheirKind) {
    for (const SensorClass &sensors : classes) {
        const Reply reply = names(sensors.name);
        std::string keys;
        for (CMPICount i = 0; i < 4; ++i) {
            CMPIString *name = nullptr;
            CMGetKeyAt(reply.answer.paths.at(0), i, &name, nullptr);
            keys += CMGetCharsPtr(name, nullptr) + std::string(" ");
        }
        EXPECT_EQ(keys, sensors.states.number != nullptr
                            ? "SystemCreationClassName DeviceID CreationClassName SystemName "
                            : "CreationClassName DeviceID SystemName SystemCreationClassName ")
            << sensors.name;
    }
}

TEST_F(SensorFamily, EachSensorIsReadOnceAndForNamesNone) {
    struct Cost {
        int sessions;
        std::size_t fullReadings, compactReadings;
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
    const auto spends = [&](const Cost &cost, const std::string &what) {
        EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), cost.sessions) << what;
        const std::vector<sp::JournalEntry> journal = sp::take_journal();
        const std::pair<const char *, std::size_t> readings[] = {
            {"ZBR_CIM_GetFullSensorReading", cost.fullReadings},
            {"ZBR_CIM_GetCompactSensorReading", cost.compactReadings},
        };
        for (const auto &[function, expected] : readings) {
            const auto read = sensorsRead(journal, function);
            EXPECT_EQ(read.size(), expected) << what << ' ' << function;
            EXPECT_EQ(std::set<std::string>(read.begin(), read.end()).size(), read.size()) << what;
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

TEST_F(SensorFamily, NamesOfPowerProductionNeedNoSession) {
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(names("PowerProductionSensor").size(), 4U);
    EXPECT_EQ(textOf(names("VoltageSensor").answer), "1 Failed to Enumerate Instance Names");
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
        if (sensors.states.number != nullptr) {
            const std::string states = enumerate(sensors.name).value(0, "PossibleStates");
            EXPECT_EQ(std::ranges::count(states, ','), 63) << sensors.name;
        }
    }
}

TEST_F(SensorFamily, AStateWithoutMemoryStaysOut) {
    const char line[] = "Memory Allocation Failed for PossibleStates";
    int first = 1; // of the first sensor's texts; before them are the records, names and threshold lists
    const auto failAt = [&](int nth) {
        wraps::fail(wraps::Allocation, nth);
        return enumerate("TemperatureSensor");
    };
    while (failAt(first), trace().find(line) == std::string::npos) {
        ASSERT_LT(++first, 20);
    }
    const Reply reply = failAt(first + 2);
    ASSERT_EQ(reply.size(), 14U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "PossibleStates"), "{Normal, Lower Non-Critical}") << "the list ends there";
    EXPECT_EQ(reply.value(1, "PossibleStates"), listOf(classes[0].states));
    EXPECT_EQ(wraps::liveBlocks(), 0) << "also the texts behind it are freed";
}

TEST_F(SensorFamily, EveryFailureIsToldAndReleasesEverything) {
    const auto failsWith = [&](const char *className, const std::string &line) {
        const std::size_t before = trace().size();
        EXPECT_EQ(textOf(enumerate(className).answer), "1 Failed to Enumerate Instance") << className;
        EXPECT_TRUE(traced(line, before)) << className << ' ' << line;
        EXPECT_EQ(wraps::liveBlocks(), 0) << className << ' ' << line;
        EXPECT_EQ(wraps::openLibraries(), 0) << className << ' ' << line;
        sp::clear_faults();
    };
    constexpr char full_rows[] = "zbr_oemdb_get_specific_full_sdrs";
    constexpr char session[] = "zbr_oemdb_get_ipmi_session_info"; // which isn't tried again
    const struct {
        const char *className, *function;
        int at;
        const char *line;
    } failures[] = {
        {"TemperatureSensor", full_rows, 1, full_rows},
        {"TemperatureSensorConfigSettings", session, 1, "Create IPMI session failed"},
        {"VoltageSensor", full_rows, 2, full_rows}, // that of the battery
        {"PowerProductionSensor", session, 1, "Create IPMI session failed"},
        {"PowerConsumptionSensor", "PH_GetHostSystemName", 1, "Failed in PH_GetHostSystemName"},
        {"FanSensor", "zbr_oemdb_get_all_psu_info", 1, "db_get_all_compact_sdrs call failed"},
        {"FanSensor", session, 2, "Create IPMI session failed"},
        {"FanSensorConfigSettings", session, 2, "Create IPMI session failed"},
        {"BMCCommunicationSensor", "zbr_oemdb_get_specific_compact_sdrs", 1,
         "Failed to get BMC Communication Sensor info"},
        {"I2CSensor", session, 1, "Create IPMI session failed"},
    };
    for (const auto &each : failures) {
        sp::fail(each.function, {.at = each.at});
        failsWith(each.className, each.line);
    }
    wraps::fail(wraps::Open, 1);
    failsWith("PowerConsumptionSensor", "dlopen failed errno=");
    wraps::fail(wraps::Symbol, 1);
    failsWith("PowerConsumptionSensor", "dlsym failed errno=");
}

// --- Called directly

// Enumerates and cleans. `foreignTexts` is how many texts of the records the back end has allocated.
template <typename R>
void cleans(int (*enumerateRecords)(R **, int *, int), void (*clean)(R **, int), int foreignTexts) {
    R *records = nullptr;
    int count = 0;
    ASSERT_EQ(enumerateRecords(&records, &count, 0), 0);
    ASSERT_NE(records, nullptr);
    EXPECT_NE(SensorOf(records[count - 1]).PossibleStates[0], nullptr);
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
    cleans(PH_OEM_Enum_I2CSensor_Instance, PH_OEM_Clean_I2CSensor, 5 * 5); // five buses with five states
    // Seven states, and two requests that are pending.
    cleans(PH_OEM_Enum_BMCCommunicationSensor_Instance, PH_OEM_Clean_BMCCommunicationSensor, 7 + 2);
}

TEST_F(SensorFamily, TemperatureRowsBelongToTheCallerOrArentThere) {
    FullSdrRow *rows = nullptr;
    int count = 0;
    ASSERT_EQ(PH_OEM_GetTemperatureSensorInfo(&rows, &count), 0);
    EXPECT_EQ(count, 14);
    std::free(rows);
    rows = reinterpret_cast<FullSdrRow *>(&count);
    sp::fail("zbr_oemdb_get_specific_full_sdrs");
    EXPECT_EQ(PH_OEM_GetTemperatureSensorInfo(&rows, &count), -1);
    EXPECT_EQ(rows, nullptr);
    EXPECT_EQ(count, 0);
}

} // namespace
