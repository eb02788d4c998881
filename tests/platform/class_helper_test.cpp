#include "libClassHelper.h"

#include <dlfcn.h>

#include <cstring>

#include "cmpi_objects.h"
#include "sample_server.h"

namespace {

/// The library is opened as its callers open it.
template <class Function> struct HelperFunction {
    void *library = dlopen(CLASS_HELPER, RTLD_LAZY);
    Function *function;
    explicit HelperFunction(const char *name)
        : function(reinterpret_cast<Function *>(library != nullptr ? dlsym(library, name) : nullptr)) {
        if (function == nullptr) {
            throw std::runtime_error(dlerror());
        }
    }
    ~HelperFunction() { dlclose(library); }
    HelperFunction(const HelperFunction &) = delete;
    HelperFunction &operator=(const HelperFunction &) = delete;
};

using Properties = std::vector<const char *>;

struct Sorted {
    std::vector<std::string> changes;
    std::string refused;
    bool operator==(const Sorted &) const = default;
};

const StringObject id("TRV:1"), other_id("TRV:2"), text("text"), same_text("text"), new_text("new");
const DateTimeObject hour(3600000000u, true), same_hour(3600000000u, true), two_hours(7200000000u, true);
ArrayObject one({data_of<uint16_t>(CMPI_uint16, 1)}), same_one({data_of<uint16_t>(CMPI_uint16, 1)}),
    two({data_of<uint16_t>(CMPI_uint16, 2)}), one_two({one.elements[0], two.elements[0]});

CMPIData string(const StringObject &object) {
    return data_of<const CMPIString *>(CMPI_string, &object);
}
CMPIData interval(const DateTimeObject &object) {
    return data_of<const CMPIDateTime *>(CMPI_dateTime, &object);
}
CMPIData array(const ArrayObject &object) {
    return data_of<const CMPIArray *>(CMPI_uint16A, &object);
}
CMPIData number(uint8_t value) {
    return data_of(CMPI_uint8, value);
}

/// Sorts for a class that lets Delay, Name, Window and List be changed.
Sorted sort(const InstanceObject &changed, const InstanceObject *current, Properties *properties) {
    const HelperFunction<getModifiablePropertiesFunction> helper("getModifiableProperties");
    static ModifiablePropertyList defaults, changes;
    defaults = {};
    changes = {};
    for (const char *name : {"Delay", "Name", "Window", "List"}) {
        strcpy(defaults.entries[defaults.count++].name, name);
    }
    char refused[REFUSED_PROPERTIES_SIZE] = {};
    if (properties != nullptr) {
        properties->push_back(nullptr);
    }
    EXPECT_EQ(helper.function(&changed, current, properties != nullptr ? properties->data() : nullptr,
                              &defaults, &changes, refused),
              0);
    Sorted sorted{{}, refused};
    for (int i = 0; i < changes.count; ++i) {
        sorted.changes.push_back(changes.entries[i].name);
        CMPIStatus status{};
        const CMPIData value = CMGetProperty(&changed, changes.entries[i].name, &status);
        if (status.rc == CMPI_RC_OK) {
            EXPECT_EQ(memcmp(&value.value, &changes.entries[i].data.value, sizeof value.value), 0);
        }
    }
    return sorted;
}

const InstanceObject current({{"InstanceID", string(id)},
                              {"Delay", number(5)},
                              {"Name", string(text)},
                              {"Window", interval(hour)},
                              {"List", array(one)},
                              {"Description", string(text)}},
                             {{"InstanceID", string(id)}});

InstanceObject instance(std::vector<NamedData> values, const StringObject &key = id) {
    return InstanceObject(std::move(values), {{"InstanceID", string(key)}});
}

TEST(ModifiableProperties, OfEqualValuesAreNoChange) {
    EXPECT_EQ(sort(instance({{"InstanceID", string(id)},
                             {"Delay", number(5)},
                             {"Name", string(same_text)},
                             {"Window", interval(same_hour)},
                             {"List", array(same_one)},
                             {"Description", string(same_text)}}),
                   &current, nullptr),
              (Sorted{{}, ""}));
}

TEST(ModifiableProperties, OfNewValuesAreChangesInTheirOrder) {
    EXPECT_EQ(sort(instance({{"List", array(two)},
                             {"Delay", number(6)},
                             {"Window", interval(two_hours)},
                             {"Name", string(new_text)}}),
                   &current, nullptr),
              (Sorted{{"List", "Delay", "Window", "Name"}, ""}));
    EXPECT_EQ(sort(instance({{"List", array(one_two)}}), &current, nullptr), (Sorted{{"List"}, ""}));
}

TEST(ModifiableProperties, AreNamedAsTheClassNamesThem) {
    EXPECT_EQ(sort(instance({{"DELAY", number(6)}}), &current, nullptr), (Sorted{{"Delay"}, ""}));
    Properties properties = {"dElAy", "delay"};
    EXPECT_EQ(sort(instance({{"Delay", number(6)}}), nullptr, &properties), (Sorted{{"Delay"}, ""}));
}

TEST(ModifiableProperties, AreRefusedByNameWhenTheClassDoesNotListThem) {
    EXPECT_EQ(sort(instance({{"Description", string(new_text)}, {"Delay", number(6)}, {"Colour", number(1)}}),
                   &current, nullptr),
              (Sorted{{"Delay"}, "Description, Colour"}));
    Properties properties = {"Description", "Delay"};
    EXPECT_EQ(sort(instance({{"Delay", number(6)}}), nullptr, &properties),
              (Sorted{{"Delay"}, "Description"}));
}

TEST(ModifiableProperties, KeepTheRefusedNamesInTheirBuffer) {
    const std::string long_name(200, 'x');
    const Sorted sorted =
        sort(instance({{long_name, number(1)}, {long_name + "y", number(1)}}), &current, nullptr);
    EXPECT_EQ(sorted.refused, long_name + ", " + std::string(53, 'x'));
}

TEST(ModifiableProperties, LeaveWhatTheListDoesNotName) {
    Properties properties = {"Delay"};
    EXPECT_EQ(sort(instance({{"Delay", number(6)}, {"Name", string(new_text)}}), nullptr, &properties),
              (Sorted{{"Delay"}, ""}));
    Properties none;
    EXPECT_EQ(sort(instance({{"Delay", number(6)}}), nullptr, &none), (Sorted{{}, ""}));
}

TEST(ModifiableProperties, BecomeNullOnlyWhereTheListNamesThem) {
    const InstanceObject changed = instance({{"Delay", null_of(CMPI_uint8)}, {"Name", null_of(CMPI_string)}});
    EXPECT_EQ(sort(changed, &current, nullptr), (Sorted{{}, ""}));
    Properties properties = {"Delay"};
    EXPECT_EQ(sort(changed, nullptr, &properties), (Sorted{{"Delay"}, ""}));
}

TEST(ModifiableProperties, DoNotIncludeTheInstancesOwnKeys) {
    EXPECT_EQ(sort(instance({{"InstanceID", string(id)}, {"Delay", number(6)}}), nullptr, nullptr),
              (Sorted{{"Delay"}, ""}));
    EXPECT_EQ(sort(instance({{"InstanceID", string(other_id)}}), &current, nullptr),
              (Sorted{{}, "InstanceID"}));
}

TEST(ModifiableProperties, OfAnotherTypeAreAChange) {
    EXPECT_EQ(sort(instance({{"Delay", data_of<uint16_t>(CMPI_uint16, 5)}}), &current, nullptr),
              (Sorted{{"Delay"}, ""}));
}

TEST_F(SampleServer, TellsTheSystemNameOfTheServiceProcessor) {
    const HelperFunction<PH_GetSPSystemNameFunction> helper("PH_GetSPSystemName");
    char name[SYSTEM_NAME_SIZE];
    EXPECT_EQ(helper.function(name), 0);
    EXPECT_STREQ(name, "MVR7420220815-SP");
    sp::sql("UPDATE service_processor SET SystemName = printf('%0300d', 0)");
    EXPECT_EQ(helper.function(name), 0);
    EXPECT_EQ(strnlen(name, sizeof name), 255u);
    sp::sql("DELETE FROM service_processor");
    EXPECT_EQ(helper.function(name), -1);
}

TEST_F(SampleServer, FillsAProtocolServiceFromItsRow) {
    sp::sql("UPDATE protocol_service SET ElementName = printf('%0100d', 0), OtherProtocol = 'x', "
            "OperationalStatus = '2,10', Protocol = 0x10003, MaxConnections = 4, RequestedState = 12, "
            "EnabledState = 2, HealthState = 5 WHERE RowName = 'CLPProtocolService'");
    uint32_t core = 0;
    ProtocolServiceRow row;
    ASSERT_EQ(db_init(&core), 0);
    ASSERT_EQ(db_get_protocol_service(core, "CLPProtocolService", &row), 0);
    EXPECT_EQ(db_close(core), 0);

    const HelperFunction<PH_Fill_ProtocolServiceFunction> helper("PH_Fill_ProtocolService");
    ProtocolServiceRecord record;
    memset(&record, 0x55, sizeof record);
    ASSERT_EQ(helper.function(&record, &row), 0);
    EXPECT_EQ(strnlen(record.ElementName, sizeof record.ElementName), 63u);
    EXPECT_STREQ(record.OtherProtocol, "x");
    EXPECT_EQ(record.Protocol, 3);
    EXPECT_EQ(record.MaxConnections, 4);
    EXPECT_EQ(record.RequestedState, 12);
    EXPECT_EQ(record.EnabledState, 2);
    EXPECT_EQ(record.HealthState, 5);
    EXPECT_EQ(record.OperationalStatus[0], 2);
    EXPECT_EQ(record.OperationalStatus[1], 10);
    EXPECT_EQ(record.OperationalStatus[2], -1);
    EXPECT_EQ(record.Name[0], 0x55) << "the keys are the caller's";
}

} // namespace
