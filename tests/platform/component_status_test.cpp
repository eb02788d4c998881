#include <cstdlib>
#include <map>

#include "libzbr_CSM.h"
#include "stand_ins.h"

namespace {

constexpr uint32_t fans = 0x01010001, slots = 0x01030005;

/// What a call gave, freed as its callers have to.
struct Node {
    char *name = nullptr;
    uint32_t count = 0, *ids = nullptr;
    uint32_t health = 0, gel = 0, css = 0, state_count = 0, attribute_count = 0;
    char **texts = nullptr, **names = nullptr, **values = nullptr;

    Node() = default;
    Node(const Node &) = delete;
    Node &operator=(const Node &) = delete;
    ~Node() {
        free(name);
        free(ids);
        for (char **array : {texts, names, values}) {
            CSM_FreeMem(array, 0);
        }
    }
    int read_component(uint32_t id) {
        return CSM_GetComponentStatus(id, &name, &count, &health, &gel, &css, &state_count, &texts);
    }
    int read_instance(uint32_t id, uint32_t index) {
        return CSM_GetComponentInstanceStatus(id, index, &health, &gel, &css, &state_count, &texts,
                                              &attribute_count, &names, &values);
    }
    std::map<std::string, std::string> attributes() const {
        std::map<std::string, std::string> all;
        for (uint32_t i = 0; i < attribute_count; ++i) {
            all[names[i]] = values[i];
        }
        return all;
    }
};

using Attributes = std::map<std::string, std::string>;

TEST_F(SampleServer, GivesAnInstanceItsOwnValuesInPlaceOfThePlaceholders) {
    Node fan, slot;
    ASSERT_EQ(fan.read_instance(fans, 4), 0);
    EXPECT_EQ(fan.attributes(), (Attributes{{"InstanceName", "Fan"},
                                            {"Category", "Optional"},
                                            {"Source", "LCM"},
                                            {"ObjectName", "FanStatus (0301)"},
                                            {"DesignationRequest", "FAN PSU1"},
                                            {"CssRequest", "FALSE"},
                                            {"PhysicalLEDRequest", "FALSE"}}));
    sp::sql("UPDATE component_parameter SET Value = NULL WHERE ParameterGroup = 'TqPCISlots' AND Name IN "
            "('Designation', 'CSS_LED')");
    ASSERT_EQ(slot.read_instance(slots, 0), 0);
    EXPECT_EQ(slot.attributes(),
              (Attributes{{"InstanceName", "PciSlot"},
                          {"Category", "Optional"},
                          {"Source", "LCM"},
                          {"ObjectName", "ComponentStatusSignalRead - PCI Slot (1042-28)"}}));
}

TEST_F(SampleServer, HasAsManyInstancesAsTheCountParameterSays) {
    for (const auto &[stored, count] :
         {std::pair{"3", 3u}, {"0", 0u}, {"-1", 0u}, {"NULL", 0u}, {"'two'", 0u}, {"4294967295", 255u}}) {
        sp::sql(std::string("UPDATE component_parameter SET Value = ") + stored +
                " WHERE Name = 'NrPCISlotInstances'");
        Node component, beyond;
        EXPECT_EQ(component.read_component(slots), 0);
        EXPECT_EQ(component.count, count) << stored;
        EXPECT_NE(beyond.read_instance(slots, count), 0);
    }
    Node without_status;
    EXPECT_NE(without_status.read_instance(slots, 4), 0) << "nothing is known of a fifth slot";
}

TEST_F(SampleServer, RefusesNodesAndPlacesThatAreNotThere) {
    Node node;
    uint32_t number = 0;
    char **texts = nullptr;
    EXPECT_NE(node.read_component(0x01010004), 0);
    EXPECT_NE(node.read_component(0x01010000), 0) << "a subsystem";
    EXPECT_NE(node.read_instance(0, 0), 0);
    EXPECT_NE(CSM_GetSubsystemStatus(fans, &node.name, &number, &node.ids, &number, &number, &number, &number,
                                     &texts),
              0);
    EXPECT_NE(CSM_GetSystemStatus(&node.name, &number, nullptr, &number, &number, &number, &number, &texts),
              0);
    EXPECT_EQ(node.name, nullptr);
    EXPECT_EQ(CSM_FreeMem(nullptr, 3), 0);
}

} // namespace
