// vch health: the tree, its reasons and the exit code.

#include "tool.h"

#include <platform/sp/sp.h>

#include <algorithm>
#include <regex>

namespace {

using Lines = std::vector<std::string>;

struct Health : Tool {
    // The health tree's lines, with ": " for the blanks between the columns.
    Lines healthTree() const {
        Lines lines = linesOf(vch({"health"}).out);
        for (std::string &line : lines) {
            const std::string indent = line.substr(0, line.find_first_not_of(' '));
            line = indent + std::regex_replace(line.substr(indent.size()), std::regex("  +"), ": ");
        }
        return lines;
    }
};

TEST_F(Health, TheTreeShowsEachNodeBeneathItsParent) {
    sp::sql("UPDATE component_parameter SET Value = NULL WHERE Value = 'BIOS';"
            "UPDATE component_parameter SET Value = 'Memory Modules' WHERE Value = 'DIMM-1A'");
    const Lines tree = healthTree();
    EXPECT_EQ(tree.front(), "System: Major failure: Driver Monitor");
    EXPECT_EQ(tree.back(), "      Agent: OK") << "beneath two nodes of one name";
    EXPECT_EQ(std::count(tree.begin(), tree.end(), "      Memory Modules: OK"), 1)
        << "a part with its parent's name";
    EXPECT_EQ(std::count(tree.begin(), tree.end(), "      DIMM-1B: OK"), 1) << "beside it";
    EXPECT_EQ(std::count(tree.begin(), tree.end(),
                         "      SFP Module: Unknown: the service processor doesn't know it"),
              1);
    const auto supplies = std::find(tree.begin(), tree.end(), "    Power Supply: Degraded/Warning: PSU2");
    ASSERT_LT(supplies, tree.end() - 3);
    EXPECT_EQ(supplies[2],
              "      PSU2: Degraded/Warning: Power supply will fail: PSU2 (2025-12-30 04:14:12 UTC)");
    EXPECT_EQ(supplies[3], "      PSU3: Not Present");
    EXPECT_EQ(std::count(tree.begin(), tree.end(), "      -: OK"), 1) << "an instance without a name";
    EXPECT_NE(onTerminal({"health"}).find("\033[31mMajor failure"), std::string::npos);
}

// A part's reason is the newest fault whose message holds its whole name, and no longer one.
TEST_F(Health, TheReasonOfAPartsStateStandsInTheLogs) {
    // What stands behind the state of a part that isn't well.
    const auto reason = [&](const std::string &part) {
        const std::regex line(" +" + part + ": (?:Degraded/Warning|Major failure): (.*)");
        std::smatch parts;
        for (const std::string &shown : healthTree())
            if (std::regex_match(shown, parts, line))
                return parts.str(1);
        return std::string("no such part");
    };
    const auto event = [](int time, const std::string &message, int flags = 0x10) {
        sp::sql("INSERT INTO iel (TimeStamp, Flags, ErrorCode, AlertGroup, LanguageCode, Message) VALUES (" +
                std::to_string(time) + ", " + std::to_string(flags) + ", 1, 1, 1033, '" + message + "')");
    };
    event(1800000004, "XPSU2 and PSU25 are hot");
    event(1800000003, "FAN PSU2 rattles");
    event(1800000002, "(PSU2) smokes");
    event(1800000001, "PSU2 smells");
    EXPECT_EQ(reason("PSU2"), "(PSU2) smokes (2027-01-15 08:00:02 UTC)");
    EXPECT_EQ(reason("FAN PSU2"), "FAN PSU2 rattles (2027-01-15 08:00:03 UTC)");
    event(1800000005, "PSU2 is well again", 0);
    EXPECT_EQ(reason("PSU2"), "no fault in the logs since: PSU2 is well again (2027-01-15 08:00:05 UTC)");
    sp::sql("UPDATE component_parameter SET Value = 5 WHERE Name = 'CPUStatus' AND Instance = 0");
    EXPECT_EQ(reason("CPU1"), "no fault in the logs since: Temperature OK again: CPU1 "
                              "(2025-11-02 22:58:14 UTC), of this or another CPU1");
    sp::sql("DELETE FROM sel; DELETE FROM iel");
    EXPECT_EQ(reason("PSU2"), "no log entry names it");
    EXPECT_EQ(reason("Power Supply"), "PSU2");
    environment["VCH_FAULTS"] = "zbr_oemdb_get_all_sel_rec";
    EXPECT_EQ(reason("PSU2"), "the logs can't be read: CMPI_RC_ERR_FAILED (1): Failed to Enumerate Instance");
}

// The states are those of the health library, by whose worst part the system is.
TEST_F(Health, TheExitCodeIsFitForMonitoring) {
    EXPECT_EQ(vch({"health"}).code, 2);
    sp::sql("UPDATE component_parameter SET Value = 1 WHERE Name = 'DrvMonComponentStatus'");
    EXPECT_EQ(vch({"health"}).code, 1);
    sp::plug_power_supply(2, false);
    sp::plug_power_supply(2, true);
    EXPECT_EQ(vch({"health"}).code, 0);
    environment["VCH_FAULTS"] = "CSM_GetSystemStatus";
    const Ended none = vch({"health"});
    EXPECT_EQ(none.code, 3);
    EXPECT_EQ(none.out, "unknown: the health tree is empty\n");
    environment["VCH_FAULTS"] = "";
    for (const Lines &bad : {Lines{"health", "--nothing"}, {"health", "-n", "nowhere/else"}})
        EXPECT_EQ(vch(bad).code, 3) << testing::PrintToString(bad);
    environment["VCH_STORE"] = folder + "/missing";
    EXPECT_EQ(vch({"health"}).code, 3);
    EXPECT_EQ(vch({"health", "--help"}).code, 0);
}

} // namespace
