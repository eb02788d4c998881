#include "TRVHealthManagementProfile/TRV_oVTAHealthStateComponent.h"
#include "support/fixture.h"

#include <algorithm>
#include <map>

namespace {

using Texts = std::vector<std::string>;

constexpr char fans[] = "System-Environment Subsystem-Fans";
constexpr char modules[] = "System-System Board Subsystem-Memory Modules";
constexpr char slots[] = "System-System Board Subsystem-PCI Slots";
constexpr char supplies[] = "System-Power Supply Subsystem-Power Supply";

std::string below(const char *component, const std::string &instance) {
    return component + ('-' + instance);
}

struct HealthStateComponent : ServiceProcessorTest {
    static constexpr char system[] =
        "SystemCreationClassName=\"TRV_oVTABaseServer\",SystemName=\"MVR7420220815\"";

    Reply node(const std::string &id) {
        return get("HealthStateComponent.InstanceID=\"" + id + "\"," + system);
    }
    std::string failureOf(const std::string &id) { return textOf(node(id).answer); }
    // HealthState, GELState and CSSState of a node.
    std::string statesOf(const std::string &id) {
        const Reply reply = node(id);
        EXPECT_EQ(textOf(reply.answer), "0") << id;
        return reply.size() == 1 ? reply.value(0, "HealthState") + ' ' + reply.value(0, "GELState") + ' ' +
                                       reply.value(0, "CSSState")
                                 : "";
    }
    Texts idsOf(const Reply &reply) {
        Texts ids;
        EXPECT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        for (const CMPIObjectPath *path : reply.answer.paths) {
            ids.push_back(broker::textOfValue(CMGetKey(path, "InstanceID", nullptr)));
        }
        for (std::size_t i = 0; i < reply.answer.instances.size(); ++i) {
            ids.push_back(reply.value(i, "InstanceID"));
        }
        return ids;
    }
    static void setParameter(const char *group, const char *name, const std::string &value,
                             int instance = 0) {
        sp::sql(std::string("UPDATE component_parameter SET Value = ") + value + " WHERE ParameterGroup = '" +
                group + "' AND Name = '" + name + "' AND Instance = " + std::to_string(instance));
    }
    // The sample server with all that isn't well mended.
    static void mend() {
        sp::plug_power_supply(2, false);
        sp::plug_power_supply(2, true);
        setParameter("Driver Monitoring", "DrvMonComponentStatus", "1", 2);
    }
};

TEST_F(HealthStateComponent, TheTreeIsWalkedWholeAndDepthFirst) {
    const Reply reply = enumerate("HealthStateComponent");
    std::map<std::size_t, int> nodesOfLevel;
    Texts way; // the names from the system down to the last node
    for (std::size_t i = 0; i < reply.size(); ++i) {
        const std::string name = reply.value(i, "Name"), parent = reply.value(i, "Parent");
        const auto above = i == 0 ? way.end() : std::find(way.rbegin(), way.rend(), parent).base();
        ASSERT_TRUE(i == 0 || above != way.begin()) << name << " doesn't follow " << parent;
        way.erase(above, way.end());
        // A component may have its subsystem's name, and an instance its component's.
        std::string id;
        for (const std::string &each : way) {
            id += each + '-';
        }
        way.push_back(name);
        EXPECT_EQ(reply.value(i, "InstanceID"), id + name);
        EXPECT_EQ(reply.value(i, "IsLeaf"), way.size() == 4 ? "true" : "false") << name;
        ++nodesOfLevel[way.size() - 1];
    }
    // Eight fans, 14 temperatures, four supplies, ten voltages, eight modules, two processors, four slots,
    // three monitored components and six others.
    EXPECT_EQ(nodesOfLevel, (std::map<std::size_t, int>{{0, 1}, {1, 7}, {2, 22}, {3, 59}}));
    EXPECT_EQ(idsOf(names("HealthStateComponent")), idsOf(reply));
    // Texts of states for each node, and two lists of attributes for each instance.
    EXPECT_EQ(sp::calls("CSM_FreeMem"), 2 * (1 + 7 + 22 + 3 * 59));
}

TEST_F(HealthStateComponent, ANodeOfEachLevelShowsWhatItIs) {
    const Texts order = {"InstanceID",  "SystemCreationClassName",
                         "SystemName",  "Caption",
                         "CSSState",    "GELState",
                         "HealthState", "IsCSS",
                         "IsLeaf",      "PhysicalLED",
                         "ElementName", "Description",
                         "Name",        "Parent"};
    const std::string kind = "TRV_oVTABaseServer", name = "MVR7420220815";
    const Texts nodes[] = {
        {"System", kind, name, " - System", "2", "2", "20", "false", "false", "false", "System",
         "Status of \"System\", parent status \"\"", "System", ""},
        {"System-Driver Monitor", kind, name, "System - Driver Monitor", "1", "1", "20", "false", "false",
         "false", "Driver Monitor", "Status of \"Driver Monitor\", parent status \"System\"",
         "Driver Monitor", "System"},
        {"System-Power Supply Subsystem-Power Supply", kind, name, "Power Supply Subsystem - Power Supply",
         "2", "2", "10", "false", "false", "false", "Power Supply",
         "Status of \"Power Supply\", parent status \"Power Supply Subsystem\"", "Power Supply",
         "Power Supply Subsystem"},
        {below(supplies, "PSU2"), kind, name, "Power Supply - PSU2", "2", "2", "10", "true", "true", "true",
         "PSU2", "Status of \"PSU2\", parent status \"Power Supply\"", "PSU2", "Power Supply"},
    };
    for (const Texts &expected : nodes) {
        const Reply reply = node(expected[0]);
        ASSERT_EQ(reply.size(), 1U) << expected[0] << ": " << reply.answer.message;
        EXPECT_EQ(reply.propertyNames(0), order);
        for (std::size_t i = 0; i < order.size(); ++i) {
            EXPECT_EQ(reply.value(0, order[i].c_str()), expected[i]) << expected[0] << '.' << order[i];
        }
    }
}

TEST_F(HealthStateComponent, TheWorstChildShowsUpToTheRoot) {
    mend();
    struct Case {
        int value; // of the module's status parameter
        const char *module, *parents;
    };
    for (const Case &each : {Case{1, "5 1 1", "5 1 1"}, Case{5, "10 2 2", "10 2 2"},
                             Case{2, "20 3 3", "20 3 3"}, Case{0, "0 4 4", "5 1 1"}, // not present
                             Case{7, "0 0 0", "5 1 1"},                              // unknown
                             Case{9, "0 0 0", "5 1 1"},                              // ignored
                             Case{10, "0 0 0", "5 1 1"}}) { // no state has that value
        setParameter("TqMemModules", "MemModuleStatus", std::to_string(each.value), 5);
        EXPECT_EQ(statesOf(below(modules, "DIMM-2B")), each.module) << each.value;
        EXPECT_EQ(statesOf(below(modules, "DIMM-2A")), "5 1 1") << each.value;
        for (const char *parent : {modules, "System-System Board Subsystem", "System"}) {
            EXPECT_EQ(statesOf(parent), each.parents) << parent << " with " << each.value;
        }
        EXPECT_EQ(statesOf("System-Network"), "5 1 1");
    }
    // A warning elsewhere doesn't hide the error.
    setParameter("TqMemModules", "MemModuleStatus", "2", 5);
    setParameter("TqBIOS", "ComponentSignalStatus", "2");
    EXPECT_EQ(statesOf("System-System Board Subsystem-BIOS Selftest"), "10 2 1")
        << "customers don't service it";
    EXPECT_EQ(statesOf("System"), "20 3 3");
}

TEST_F(HealthStateComponent, StatesFollowTheSensors) {
    mend();
    sp::plug_power_supply(1, false);
    EXPECT_EQ(statesOf(below(supplies, "PSU1")), "0 4 4");
    EXPECT_EQ(statesOf(below(fans, "FAN PSU1")), "0 4 1");
    sp::sql("UPDATE sensor_reading SET State = 0 WHERE SensorNumber = 0x95"); // of PSU2
    EXPECT_EQ(statesOf(below(supplies, "PSU2")), "0 5 5");
    const std::string ambient = "System-Environment Subsystem-Temperature-Ambient";
    for (const auto &[reading, states] :
         {std::pair{79, "5 1 1"}, {80, "10 2 1"}, {90, "20 3 1"}, {100, "20 3 1"}}) {
        sp::sql("UPDATE sensor_reading SET Reading = " + std::to_string(reading) + " WHERE SensorNumber = 1");
        EXPECT_EQ(statesOf(ambient), states) << reading;
    }
    EXPECT_EQ(statesOf("System"), "20 3 1");
    EXPECT_EQ(statesOf("System-Environment Subsystem-Temperature-SFP Module"), "0 0 1") << "ignored";
}

TEST_F(HealthStateComponent, WithoutItsAgentTheServerKnowsNothingOfWhatTheAgentTells) {
    mend();
    sp::connect_agent(false);
    EXPECT_EQ(statesOf("System-Network"), "0 0 0");
    EXPECT_EQ(statesOf("System-Driver Monitor-Monitored Components"), "0 0 0");
    EXPECT_EQ(failureOf("System-Driver Monitor-Monitored Components-Chipset"), "1 Failed to Get Instance");
    EXPECT_EQ(statesOf("System-System Mgmt. Software-System Mgmt. Software-Agent"), "10 2 1");
    EXPECT_EQ(statesOf("System"), "10 2 1");
    sp::connect_agent(true);
    EXPECT_EQ(statesOf("System"), "5 1 1");
}

TEST_F(HealthStateComponent, ABrokenNodeIsLeftOutWithWhatLiesBeneathIt) {
    const Texts all = idsOf(enumerate("HealthStateComponent"));
    struct Case {
        const char *function;
        int at;
        std::string leftOut;
        const char *trace;
    };
    for (const Case &each :
         {Case{"CSM_GetSubsystemStatus", 2, "System-Power Supply Subsystem",
               "Failed in CSM_GetSubsystemStatus. Continue to enumerate."},
          Case{"CSM_GetComponentStatus", 1, fans, "Failed in CSM_GetComponentStatus. Continue to enumerate."},
          Case{"CSM_GetComponentInstanceStatus", 3, below(fans, "FAN3 SYS"),
               "Failed in CSM_GetComponentInstanceStatus. Continue to enumerate."}}) {
        Texts expected = all;
        std::erase_if(expected, [&](const std::string &id) {
            return id == each.leftOut || id.starts_with(each.leftOut + '-');
        });
        for (const bool namesOnly : {false, true}) {
            sp::fail(each.function, {.at = each.at});
            EXPECT_EQ(idsOf(namesOnly ? names("HealthStateComponent") : enumerate("HealthStateComponent")),
                      expected);
            EXPECT_NE(trace().find(each.trace), std::string::npos) << each.trace;
            sp::clear_faults();
        }
    }
}

TEST_F(HealthStateComponent, WithoutASystemThereIsNoTreeAndNoError) {
    const auto expectNone = [&](const char *line) {
        EXPECT_EQ(idsOf(enumerate("HealthStateComponent")), Texts{}) << line;
        EXPECT_EQ(idsOf(names("HealthStateComponent")), Texts{}) << line;
        EXPECT_EQ(failureOf("System"), "1 Failed to Get Instance") << line;
        EXPECT_NE(trace().find(line), std::string::npos) << line;
        sp::clear_faults();
    };
    sp::fail("CSM_GetSystemStatus");
    expectNone("Failed in to CSM_GetSystemStatus");
    sp::sql("DELETE FROM health_name");
    expectNone("Failed in to CSM_GetSystemStatus");
}

TEST_F(HealthStateComponent, ALibraryThatIsStartedAlreadyMayStillTell) {
    const auto nodes = idsOf(enumerate("HealthStateComponent"));
    sp::fail("CSM_Init");
    EXPECT_EQ(idsOf(enumerate("HealthStateComponent")), nodes);
    EXPECT_NE(trace().find("Failed in CSM_Init"), std::string::npos);
}

TEST_F(HealthStateComponent, GetReadsTheOneNode) {
    struct Case {
        std::string id;
        int system, subsystem, component, instances;
    };
    for (const Case &each :
         {Case{"System", 1, 0, 0, 0}, Case{"System-Network", 0, 1, 0, 0}, Case{fans, 0, 0, 1, 0},
          Case{below(fans, "FAN3 SYS"), 0, 0, 1, 3}, Case{below(modules, "DIMM-1B"), 0, 0, 1, 2}}) {
        sp::start_journal();
        EXPECT_EQ(textOf(node(each.id).answer), "0") << each.id;
        EXPECT_EQ(sp::calls("CSM_GetSystemStatus"), each.system) << each.id;
        EXPECT_EQ(sp::calls("CSM_GetSubsystemStatus"), each.subsystem) << each.id;
        EXPECT_EQ(sp::calls("CSM_GetComponentStatus"), each.component) << each.id;
        EXPECT_EQ(sp::calls("CSM_GetComponentInstanceStatus"), each.instances) << each.id;
        EXPECT_EQ(sp::calls("CSM_FreeMem"),
                  each.system + each.subsystem + each.component + 3 * each.instances);
    }
}

TEST_F(HealthStateComponent, AKeyThatNamesNoNodeIsNotFound) {
    const std::pair<std::string, const char *> cases[] = {
        {"Server", "Specified system is not found"},
        {"", "Specified system is not found"},
        {"system-Network", "Specified system is not found"},
        {"System-", "Specified subsystem is not found"},
        {"System-Networks", "Specified subsystem is not found"},
        {"System--Fans", "Specified subsystem is not found"},
        {"System-Network-", "Specified component is not found"},
        {"System-Network-fans", "Specified component is not found"},
        {below(fans, "FAN9"), "Specified component instance is not found"},
        {below(fans, "FAN1"), "Specified component instance is not found"},
        {"System-Mass Storage Subsystem-RAID Adapters-", "Specified component instance is not found"},
        {"System-" + std::string(300, 'x') + "-Fans", "Specified subsystem is not found"},
    };
    for (const auto &[id, line] : cases) {
        const std::size_t before = trace().size();
        EXPECT_EQ(failureOf(id), "1 Failed to Get Instance") << id;
        EXPECT_NE(trace().find(line, before), std::string::npos) << id;
    }
    EXPECT_EQ(textOf(get("HealthStateComponent.InstanceID=\"System\",SystemCreationClassName="
                         "\"TRV_oVTABaseServer\",SystemName=\"other\"")
                         .answer),
              "1 Failed to Get Instance");
    EXPECT_NE(trace().find("Invalid Key Properties"), std::string::npos);
}

TEST_F(HealthStateComponent, GetIsStrictAboutEveryFailure) {
    struct Case {
        std::string id;
        const char *function;
    };
    for (const Case &each :
         {Case{"System-Network", "CSM_GetSubsystemStatus"}, Case{fans, "CSM_GetComponentStatus"},
          Case{below(fans, "FAN3 SYS"), "CSM_GetComponentStatus"},
          Case{below(fans, "FAN3 SYS"), "CSM_GetComponentInstanceStatus"}}) {
        const std::size_t before = trace().size();
        sp::fail(each.function, {.at = 1});
        EXPECT_EQ(failureOf(each.id), "1 Failed to Get Instance") << each.function;
        EXPECT_NE(trace().find(std::string("Failed in to ") + each.function, before), std::string::npos);
        sp::clear_faults();
    }
}

// The Enum shows the names of the status library, a Get those of its key, which are the tables'.
TEST_F(HealthStateComponent, NamesOfTheLibraryAndOfTheKeyMayDiffer) {
    sp::sql("UPDATE health_name SET Name = 'Rack 7'; "
            "INSERT INTO health_name VALUES (0x01010001, 'Ventilators')");
    const Texts ids = idsOf(enumerate("HealthStateComponent"));
    EXPECT_EQ(ids.at(0), "Rack 7");
    EXPECT_EQ(ids.at(3), "Rack 7-Environment Subsystem-Ventilators-FAN1 SYS");
    EXPECT_EQ(failureOf("Rack 7"), "1 Failed to Get Instance");
    EXPECT_EQ(node("System").value(0, "Name"), "System");
    EXPECT_EQ(node(below(fans, "FAN1 SYS")).value(0, "Parent"), "Fans");
    // A component is found under any subsystem.
    EXPECT_EQ(node("System-Network-Fans").value(0, "Caption"), "Network - Fans");
}

TEST_F(HealthStateComponent, InstancesWithoutADesignationShareAKey) {
    sp::sql(
        "DELETE FROM component_parameter WHERE ParameterGroup = 'TqPCISlots' AND Name = 'Designation' AND "
        "Instance BETWEEN 1 AND 2");
    setParameter("TqPCISlots", "ComponentSignalStatus", "2", 0);
    setParameter("TqPCISlots", "ComponentSignalStatus", "3", 1);
    const Reply all = enumerate("HealthStateComponent");
    const auto first = static_cast<std::size_t>(all.find("InstanceID", below(slots, "")));
    for (const std::size_t i : {first, first + 1}) {
        EXPECT_EQ(all.value(i, "InstanceID"), below(slots, ""));
        EXPECT_EQ(all.value(i, "IsLeaf"), "false");
        EXPECT_EQ(all.value(i, "Name"), "");
        EXPECT_EQ(all.value(i, "IsCSS"), "true");
    }
    EXPECT_EQ(all.value(first, "HealthState"), "20");
    const Reply one = node(below(slots, ""));
    EXPECT_EQ(one.value(0, "HealthState"), "10") << "an empty name means the component's first instance";
    EXPECT_EQ(one.value(0, "IsLeaf"), "false");
}

TEST_F(HealthStateComponent, OnlyTheWordTRUESetsAFlag) {
    for (const auto &[value, flag] :
         {std::pair{"'TRUE'", "true"}, {"'true'", "false"}, {"1", "false"}, {"NULL", "false"}}) {
        setParameter("TqPCISlots", "CSS_LED", value, 0);
        const Reply slot = node(below(slots, "PCI Slot 1"));
        EXPECT_EQ(slot.value(0, "IsCSS"), flag) << value;
        EXPECT_EQ(slot.value(0, "PhysicalLED"), flag) << value;
    }
}

// Records are made for four nodes first, so that the fifth needs more memory; each before it had the row of
// the chassis for its name.
TEST_F(HealthStateComponent, WithoutMemoryTheEnumerationFails) {
    for (const auto &[broken, line] :
         {std::pair{"CSM_GetComponentStatus", "Failed to allocate memory for subsystem"},
          {"CSM_GetComponentInstanceStatus", "Failed to allocate memory for component"},
          {"CSM_FreeMem", "Failed to allocate memory for component instance"}}) {
        const std::size_t before = trace().size();
        sp::fail(broken);
        wraps::fail(wraps::Allocation, 6);
        EXPECT_EQ(textOf(enumerate("HealthStateComponent").answer), "1 Failed to Enumerate Instance")
            << broken;
        EXPECT_NE(trace().find(line + std::string("\n"), before), std::string::npos) << line;
        EXPECT_EQ(wraps::liveBlocks(), 0);
        sp::clear_faults();
        wraps::reset();
    }
}

TEST_F(HealthStateComponent, PathsTakeTheirClassFromTheRequest) {
    const broker::RequestPointer asked = request();
    const CMPIObjectPath *cop = CMNewObjectPath(cmpi(), name_space, "TRV_oVTAFan", nullptr);
    HealthStateComponentRecord record{};
    CMPIStatus status{};
    EXPECT_EQ(PH_OEM_MakePath_HealthStateComponent(cmpi(), nullptr, cop, &record, &status), nullptr);
    EXPECT_EQ(textOf(status), "1 Make ObjectPath failed.") << "its keys are empty";
    for (char *key : {record.InstanceID, record.SystemCreationClassName, record.SystemName}) {
        *key = 'k';
    }
    const CMPIObjectPath *path = PH_OEM_MakePath_HealthStateComponent(cmpi(), nullptr, cop, &record, &status);
    ASSERT_NE(path, nullptr);
    EXPECT_STREQ(CMGetCharsPtr(CMGetClassName(path, nullptr), nullptr), "TRV_oVTAFan");
}

} // namespace
