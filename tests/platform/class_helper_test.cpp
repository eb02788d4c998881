#include <cstring>
#include <optional>

#include "cmpi_objects.h"
#include "helper_library.h"
#include "sample_server.h"

namespace {

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

InstanceObject instance(std::vector<NamedData> values) {
    return InstanceObject(std::move(values), {{"InstanceID", string(id)}});
}

TEST(ModifiableProperties, AreSortedIntoChangesAndRefusals) {
    using Values = std::vector<NamedData>;
    const struct {
        const char *what;
        Values values;
        std::optional<Properties> listed; // without a list there is a current instance
        Sorted expected;
    } cases[] = {
        {"equal values are no change",
         {{"InstanceID", string(id)},
          {"Delay", number(5)},
          {"Name", string(same_text)},
          {"Window", interval(same_hour)},
          {"List", array(same_one)},
          {"Description", string(same_text)}},
         {},
         {{}, ""}},
        {"new values are changes in their order",
         {{"List", array(two)},
          {"Delay", number(6)},
          {"Window", interval(two_hours)},
          {"Name", string(new_text)}},
         {},
         {{"List", "Delay", "Window", "Name"}, ""}},
        {"a longer array is a change", {{"List", array(one_two)}}, {}, {{"List"}, ""}},
        {"another type is a change", {{"Delay", data_of<uint16_t>(CMPI_uint16, 5)}}, {}, {{"Delay"}, ""}},
        {"another key is refused", {{"InstanceID", string(other_id)}}, {}, {{}, "InstanceID"}},
        {"refused ones are named",
         {{"Description", string(new_text)}, {"Delay", number(6)}, {"Colour", number(1)}},
         {},
         {{"Delay"}, "Description, Colour"}},
        {"without a list null is no change", {{"Delay", null_of(CMPI_uint8)}}, {}, {{}, ""}},
        {"names have the class's spelling", {{"Delay", number(6)}}, {{"dElAy", "delay"}}, {{"Delay"}, ""}},
        {"listed ones are refused",
         {{"Delay", number(6)}},
         {{"Description", "Delay"}},
         {{"Delay"}, "Description"}},
        {"what isn't listed stays",
         {{"Delay", number(6)}, {"Name", string(new_text)}},
         {{"Delay"}},
         {{"Delay"}, ""}},
        {"a listed null is a change", {{"Delay", null_of(CMPI_uint8)}}, {{"Delay"}}, {{"Delay"}, ""}},
    };
    for (const auto &request : cases) {
        std::optional<Properties> listed = request.listed;
        EXPECT_EQ(sort(instance(request.values), listed ? nullptr : &current, listed ? &*listed : nullptr),
                  request.expected)
            << request.what;
    }
}

TEST(ModifiableProperties, KeepTheRefusedNamesInTheirBuffer) {
    const std::string long_name(200, 'x');
    const Sorted sorted =
        sort(instance({{long_name, number(1)}, {long_name + "y", number(1)}}), &current, nullptr);
    EXPECT_EQ(sorted.refused, long_name + ", " + std::string(53, 'x'));
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
