#include "HealthTables.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

std::string attributesOf(const HealthComponentRow &row) {
    std::string text;
    for (std::size_t i = 0; i < row.AttributeCount; ++i) {
        text += row.AttributeNames[i] + std::string("=") + row.AttributeValues[i] + ";";
    }
    return text;
}

// That children have rows and names no '-' is asserted beside the tables.
TEST(HealthTables, HaveTheNodesAndStatesOfTheServersTree) {
    EXPECT_EQ(std::size(HealthSubsystemTable), 7U);
    ASSERT_EQ(std::size(HealthComponentTable), 22U);
    constexpr std::size_t states[] = {7, 4, 8, 12, 4, 4, 4, 6, 10, 7, 4, 4, 2, 4, 4, 4, 4, 4, 2, 4, 4, 4};
    const std::set<std::string> known = {"Unknown",       "OK",    "Warning", "Error", "NotPresent",
                                         "NotManageable", "Ignore"};
    for (std::size_t i = 0; i < std::size(states); ++i) {
        const HealthComponentRow &row = HealthComponentTable[i];
        EXPECT_EQ(row.StatusValueCount, states[i]) << row.DisplayName;
        for (std::size_t value = 0; value < row.StatusValueCount; ++value) {
            EXPECT_TRUE(known.contains(row.StatusValues[value])) << row.DisplayName << ' ' << value;
        }
        EXPECT_TRUE(row.Status.Group != nullptr && row.Status.Parameter != nullptr) << row.DisplayName;
    }
    EXPECT_STREQ(HealthSubsystemTable[3].Status.Group, "MassStorage");
    EXPECT_EQ(HealthSubsystemTable[3].ChildIds[5], 0x01040006U);
    EXPECT_EQ(HealthSubsystemTable[3].ChildIds[6], 0U);
}

TEST(HealthTables, NameTheSourceOfEachRequestInItsPlace) {
    EXPECT_EQ(attributesOf(HealthComponentTable[0]),
              "InstanceName=Fan;Category=Optional;Source=LCM;ObjectName=FanStatus (0301);"
              "DesignationRequest=<Group = TqFans; ParamName = Designation>;"
              "CssRequest=<Group = TqFans; ParamName = CSS_LED>;"
              "PhysicalLEDRequest=<Group = TqFans; ParamName = CSS_LED>;");
    EXPECT_TRUE(attributesOf(HealthComponentTable[9]).starts_with("InstanceName=Cpu;Category=Mandatory;"));
    EXPECT_EQ(attributesOf(HealthComponentTable[16]),
              "Category=Optional;Source=LCM;ObjectName=TQRaidLogicalDrivesOverallStatus  (2122);"
              "CssRequest=<Group = Mass Storage; ParamName = TQRaidStatusCss>;");
    EXPECT_EQ(attributesOf(HealthComponentTable[20]),
              "Category=Optional;Source=LCM;ObjectName=DrvMonSummaryStatus (1820);"
              "DesignationRequest=<Group = Driver Monitoring; ParamName = DrvMonComponentName>;");
    EXPECT_EQ(HealthComponentTable[12].Designation.Group, nullptr);
    EXPECT_EQ(HealthComponentTable[12].Css.Parameter, nullptr);
}

} // namespace
