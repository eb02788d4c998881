// vch's commands for the server as a whole: overview and selfcheck, and the switches of the service
// processor.

#include "tool.h"

#include <platform/sp/sp.h>

#include <nlohmann/json.hpp>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using Json = nlohmann::json;

struct Server : Tool {
    void SetUp() override {
        Tool::SetUp();
        sp::sql("UPDATE simulation SET Walk = 0"); // outputs are compared
    }

    // The overview's lines that hold a text, without the blanks before them.
    std::vector<std::string> overviewLines(const std::string &text) const {
        std::vector<std::string> found;
        for (const std::string &line : linesOf(vch({"overview"}).out))
            if (line.find(text) != std::string::npos)
                found.push_back(line.substr(line.find_first_not_of(' ')));
        return found;
    }
};

using Lines = std::vector<std::string>;

// --- overview ---------------------------------------------------------------------------------------

// Sensor 0x30: 4 W a count; PSU3's slot is empty; two of three units, of which one will fail, are well.
TEST_F(Server, TheOverviewIsOneScreenWithoutEscapeSequences) {
    sp::sql("UPDATE sensor_reading SET Reading = 50 WHERE SensorNumber = 0x30");
    const Ended ended = vch({"overview"});
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.out.find('\033'), std::string::npos);
    EXPECT_LE(linesOf(ended.out).size(), 25U) << ended.out;
    for (const char *text :
         {"Power state    Enabled", "Serial number  MVR7420220815", "2025-07-05 08:00:00 UTC",
          "PSU1  OK                OK         No Additional Information  200 W",
          "PSU2  Degraded/Warning  Pred Fail  Predictive Failure", "Status  Degraded Redundancy",
          "Units needed      2", "Limit exceeded for  5 min", "Sun 2, Mon-Fri 3, Sat 2", "Mon-Fri 06:00",
          "Mon-Thu 22:00, Fri 18:00"})
        EXPECT_NE(ended.out.find(text), std::string::npos) << text << "\n" << ended.out;
    EXPECT_EQ(ended.out.find("PSU3"), std::string::npos);
}

TEST_F(Server, ANarrowOverviewHasOneValueToALineAndTheDaysThatHaveATime) {
    const struct {
        const char *change, *line;
    } cases[] = {
        {"SELECT 1", "Power state    Enabled"},
        {"SELECT 1", "Model          TORVEN RX7420"},
        {"UPDATE configuration_variable SET value = 65535 WHERE id = 0x00A0", "Powers on             never"},
        {"UPDATE configuration_variable SET value = 61 WHERE id = 0x00A0 AND list_index IN (0, 1, 3, 6)",
         "Powers on             Sun-Mon 01:01, Wed 01:01, Sat 01:01"},
        {"UPDATE configuration_variable SET value = 0 WHERE id = 0x00A0",
         "Powers on             Sun-Sat 00:00"},
    };
    environment["COLUMNS"] = "40";
    for (const auto &[change, line] : cases) {
        sp::sql(change);
        EXPECT_EQ(overviewLines(std::string(line, 9)), Lines{line});
    }
}

TEST_F(Server, TheOverviewAsJsonIsAnObjectOfWhatIsShown) {
    const Ended ended = vch({"overview", "-o", "json"});
    ASSERT_EQ(ended.code, 0) << ended.err;
    const Json answer = Json::parse(ended.out);
    EXPECT_EQ(answer.size(), 5U);
    EXPECT_EQ(answer["server"][0]["EnabledState"], 2);
    EXPECT_EQ(answer["powerSupplies"].size(), 3U);
    EXPECT_EQ(answer["powerSupplies"][2]["DeviceID"], "PSU4");
    EXPECT_EQ(answer["redundancy"][0]["RedundancyStatus"], 3);
    EXPECT_EQ(answer["powerConsumption"][0]["ConfPowerLimitModeValue"], 650);
    EXPECT_EQ(answer["powerManagement"][0]["PowerScheduleEnable"], true);
    EXPECT_EQ(vch({"overview", "-o", "mof"}).code, 2);
}

TEST_F(Server, AClassThatFailsOrIsEmptyIsOneLineOfTheOverview) {
    for (const char *slot : {"1", "2", "4"})
        ASSERT_EQ(vch({"sp", "supply", "pull", slot}).code, 0);
    EXPECT_EQ(vch({"overview"}).code, 0);
    EXPECT_EQ(overviewLines("Power supplies"), Lines{"Power supplies: none"});

    environment["VCH_FAULTS"] = "ZBR_CIM_GetConfigSpaceVariables";
    const Ended ended = vch({"overview"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err.rfind("vch: 1 of 5 classes failed", 0), 0U) << ended.err;
    EXPECT_EQ(overviewLines("Redundancy"),
              Lines{"Redundancy: CMPI_RC_ERR_FAILED (1): Failed to Enumerate Instance"});
    EXPECT_EQ(overviewLines("Power management").size(), 1U) << "what stands behind it is there";
    const Json answer = Json::parse(vch({"overview", "-o", "json"}).out);
    EXPECT_EQ(answer["redundancy"]["error"], "CMPI_RC_ERR_FAILED (1): Failed to Enumerate Instance");
    EXPECT_EQ(answer["powerSupplies"], Json::array());
}

TEST_F(Server, ATerminalShowsHealthInColoursUnlessTheyAreUnwanted) {
    const std::string green = "\033[32mOK\033[0m", yellow = "\033[33mDegraded/Warning\033[0m",
                      red = "\033[31mRedundancy Lost\033[0m";
    std::string shown = onTerminal({"overview"});
    EXPECT_NE(shown.find(green), std::string::npos) << shown;
    EXPECT_NE(shown.find(yellow), std::string::npos) << shown;
    EXPECT_EQ(shown.find(red), std::string::npos) << shown;

    sp::plug_power_supply(1, false);
    sp::plug_power_supply(4, false);
    shown = onTerminal({"overview"});
    EXPECT_NE(shown.find(red), std::string::npos) << shown;

    environment["NO_COLOR"] = "";
    EXPECT_NE(onTerminal({"overview"}).find(red), std::string::npos) << "an empty wish is none";
    environment["NO_COLOR"] = "1";
    EXPECT_EQ(onTerminal({"overview"}).find('\033'), std::string::npos);
}

// --- Switches ---------------------------------------------------------------------------------------

TEST_F(Server, ASwitchIsToldAndShowsAtTheNextRequest) {
    sp::sql("UPDATE agent_parameter SET Value = 'by-agent' WHERE Name = 'ServerHostNameShort'");
    const struct {
        Lines verb;
        const char *said;
        Lines units;
        const char *shown;
    } cases[] = {
        {{"supply", "pull", "2"}, "PSU2 is out of slot 2\n", {"PSU1", "PSU4"}, "Degraded Redundancy"},
        {{"supply", "pull", "2"}, "PSU2 is out of slot 2\n", {"PSU1", "PSU4"}, "Degraded Redundancy"},
        {{"supply", "pull", "1"}, "PSU1 is out of slot 1\n", {"PSU4"}, "Redundancy Lost"},
        {{"supply", "plug", "1"}, "PSU1 is in slot 1\n", {"PSU1", "PSU4"}, "Degraded Redundancy"},
        {{"supply", "plug", "2"}, "PSU2 is in slot 2\n", {"PSU1", "PSU2", "PSU4"}, "Fully Redundant"},
        {{"blade", "on"}, "the server is a blade\n", {"PSU1", "PSU2", "PSU4"}, "Mon-Thu 18:00, Fri 16:00"},
        {{"blade", "off"}, "the server stands alone\n", {"PSU1", "PSU2", "PSU4"}, "Mon-Thu 22:00, Fri 18:00"},
        {{"agent", "disconnect"}, "the agent is disconnected\n", {"PSU1", "PSU2", "PSU4"}, "db-node-21"},
        {{"agent", "connect"}, "the agent is connected\n", {"PSU1", "PSU2", "PSU4"}, "by-agent"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.verb));
        Lines arguments = one.verb, units;
        arguments.insert(arguments.begin(), "sp");
        const Ended ended = vch(arguments);
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.out, one.said);
        for (const std::string &line : overviewLines("PSU"))
            units.push_back(line.substr(0, line.find(' ')));
        EXPECT_EQ(units, one.units);
        EXPECT_EQ(overviewLines(one.shown).size(), 1U);
    }
}

// --- selfcheck --------------------------------------------------------------------------------------

TEST_F(Server, TheSampleServersClassesAllConformWhileReadingsMove) {
    sp::sql("UPDATE simulation SET Walk = 1; UPDATE sensor_reading SET Amplitude = 100");
    environment["TMPDIR"] = folder + "/it's temporary";
    std::filesystem::create_directory(environment["TMPDIR"]);
    const std::string before = storeContent();
    const Ended ended = vch({"selfcheck"});
    EXPECT_EQ(ended.code, 0) << ended.out << ended.err;
    EXPECT_EQ(ended.err, "");
    const Lines lines = linesOf(ended.out);
    EXPECT_EQ(lines.size(), linesOf(vch({"instance", "count"}).out).size()) << "as many as are served";
    for (const std::string &line : lines)
        EXPECT_EQ(line.substr(line.find(':')), ": ok") << line;
    EXPECT_TRUE(storeContent() == before) << "the store has changed";
    EXPECT_TRUE(std::filesystem::is_empty(environment["TMPDIR"])) << "the copy of the store is gone";
}

TEST_F(Server, AnInterruptedSelfcheckLeavesNoCopyOfTheStore) {
    environment["TMPDIR"] = folder + "/temporary";
    std::filesystem::create_directory(environment["TMPDIR"]);
    int output[2];
    ASSERT_EQ(pipe(output), 0);
    close(output[0]); // nobody reads
    const pid_t child = start({"selfcheck"}, output[1]);
    close(output[1]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) << status;
    EXPECT_TRUE(std::filesystem::is_empty(environment["TMPDIR"]));
}

TEST_F(Server, OnlyTheClassesThatAreMeantAreChecked) {
    const std::pair<Lines, Lines> cases[] = {
        {{"cim_powersupply"}, {"PowerSupply"}},
        {{"PSRedundancySet", "Base*", "BaseServer"},
         {"BaseServer", "BaseServerCapabilities", "PSRedundancySet"}},
        {{"CIM_EnabledLogicalElementCapabilities"},
         {"BaseServerCapabilities", "FanCapabilities", "PowerSupplyCapabilities"}},
    };
    for (const auto &[targets, classes] : cases) {
        Lines arguments = targets, expected;
        arguments.insert(arguments.begin(), "selfcheck");
        for (const std::string &name : classes)
            expected.push_back("TRV_oVTA" + name + ": ok");
        EXPECT_EQ(linesOf(vch(arguments).out), expected) << testing::PrintToString(targets);
    }
}

// The first enumeration reads 14 temperatures. Where it fails itself, nothing else is asked.
TEST_F(Server, AFindingNamesClassPropertyAndCause) {
    environment["VCH_FAULTS"] = "ZBR_CIM_GetFullSensorReading@15;zbr_oemdb_get_all_reg_prof_info";
    const Ended ended = vch({"selfcheck", "RegisteredProfile", "TemperatureSensor", "FanCapabilities"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "vch: 2 of 3 classes don't conform\n");
    for (const char *text :
         {"TRV_oVTARegisteredProfile: 1 finding\n  TRV_oVTARegisteredProfile: enumerating "
          "instances fails: rc 1 \"Failed to Enumerate Instance\"\n",
          "TRV_oVTATemperatureSensor: 2 findings\n",
          "  TRV_oVTATemperatureSensor.CurrentReading: a second enumeration gives 0 and not 23 for ",
          "TRV_oVTAFanCapabilities: ok\n"})
        EXPECT_NE(ended.out.find(text), std::string::npos) << text << " in " << ended.out;
}

TEST_F(Server, BadInputIsNamedAndLeavesTheStoreAsItWas) {
    const struct {
        Lines arguments;
        int code;
        const char *said;
    } cases[] = {
        {{"sp", "supply", "pull", "5"}, 2, "number 5: there are 1, 2, 3, 4"},
        {{"sp", "supply", "plug", "0"}, 2, "number 0: there are 1, 2, 3, 4"},
        {{"sp", "supply", "plug", "two"}, 2, "SLOT"},
        {{"sp", "supply", "pull"}, 2, "SLOT"},
        {{"sp", "supply"}, 2, "--help"},
        {{"sp", "blade"}, 2, "--help"},
        {{"sp", "agent", "perhaps"}, 2, "--help"},
        {{"overview", "-o", "xml"}, 2, "table and json"},
        {{"log", "show", "all"}, 2, "'all': give sel, the system event log, or iel"},
        {{"log", "show", "--severity", "9"}, 2, "'9': give one of informational, minor, major, critical, or"},
        {{"log", "show", "--severity", "bad"}, 2, "'bad'"},
        {{"log", "show", "--since", "2025-02-30"}, 2, "'2025-02-30' is no time"},
        {{"log", "show", "--until", "2025-01-01 24:00"}, 2, "is no time"},
        {{"log", "show", "--until", "5"}, 2, "is no time"},
        {{"log", "show", "--since", "1h", "--until", "2h"}, 2, "--since 1h is later than --until 2h"},
        {{"log", "show", "--last", "0"}, 2, "--last"},
        {{"log", "show", "--last", "-3"}, 2, "--last"},
        {{"log", "show", "--follow", "-o", "json"}, 2, "for the table"},
        {{"log", "show", "--follow", "--until", "1h"}, 2, "leave --until out"},
        {{"log", "show", "--folow"}, 2, "see 'vch log show --help'"},
        {{"log", "clear"}, 2, "LOG"},
        {{"log", "note", ""}, 2, "has 0"},
        {{"log", "note", std::string(256, 'x')}, 2, "has 256"},
        {{"selfcheck", "PowerSuply"}, 1, "PowerSupply?"},
        {{"selfcheck", "PowerSupply", "Nothing*"}, 2, "Nothing*"},
        {{"selfcheck", "CIM_ConcreteJob"}, 2, "CIM_ConcreteJob"},
    };
    const std::string before = storeContent();
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.arguments));
        const Ended ended = vch(one.arguments);
        EXPECT_EQ(ended.code, one.code);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(linesOf(ended.err).size(), 1U) << ended.err;
        EXPECT_NE(ended.err.find(one.said), std::string::npos) << ended.err;
    }
    EXPECT_TRUE(storeContent() == before) << "the store has changed";

    environment["VCH_STORE"] = folder + "/missing";
    for (const Lines &arguments : {Lines{"overview"},
                                   {"selfcheck"},
                                   {"log", "show"},
                                   {"log", "clear", "sel"},
                                   {"sp", "supply", "pull", "1"},
                                   {"sp", "blade", "on"},
                                   {"sp", "agent", "connect"}}) {
        const Ended ended = vch(arguments);
        EXPECT_EQ(ended.code, 3) << arguments.front();
        EXPECT_NE(ended.err.find("vch sp create"), std::string::npos) << ended.err;
    }
}

TEST_F(Server, TheShellCompletesTheVerbsAndTheManPageTellsThem) {
    const struct {
        const char *words; // before the one that is completed
        Lines choices;
        const char *documented;
    } cases[] = {
        {"", {"overview", "health", "log", "selfcheck"}, ".B overview\n"},
        {"sp", {"supply", "blade", "agent"}, "supply | blade | agent"},
        {"sp supply", {"pull", "plug"}, "sp supply pull"},
        {"sp blade", {"on", "off"}, "sp blade on"},
        {"sp agent", {"connect", "disconnect"}, "sp agent connect"},
        {"selfcheck PowerSupply", {"PowerSupply", "TRV_oVTAFan"}, "selfcheck "},
        {"log", {"show", "clear", "note"}, "show | clear | note"},
        {"log show --since 2h", {"sel", "--follow"}, "log show "},
        {"log show --severity", {"critical"}, "--severity"},
        {"overview -o", {"json"}, "-o json"},
    };
    const std::string page = contentOf(MAN_PAGE), script = folder + "/script";
    for (const auto &one : cases) {
        SCOPED_TRACE(one.words);
        std::ofstream(script) << "source '" COMPLETION "'\n"
                              << "COMP_WORDS=('" VCH "' " << one.words << " '')\n"
                              << "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                              << "_vch\n"
                              << "printf '%s\\n' \"${COMPREPLY[@]}\" >'" << folder << "/choices'\n";
        ASSERT_EQ(system(("bash '" + script + "'").c_str()), 0);
        const Lines choices = linesOf(contentOf(folder + "/choices"));
        for (const std::string &choice : one.choices) {
            EXPECT_EQ(std::count(choices.begin(), choices.end(), choice), 1) << choice;
        }
        EXPECT_NE(page.find(one.documented), std::string::npos);
    }
}

} // namespace
