// vch log: what is shown of the logs, erasing, notes, and the language of the texts.

#include "tool.h"

#include <platform/sp/sp.h>

#include <nlohmann/json.hpp>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace {

using Json = nlohmann::json;
using Lines = std::vector<std::string>;

struct Log : Tool {};

// Dates and ids alone of what is shown.
TEST_F(Log, TheLogsAreShownByTimeAndFiltered) {
    sp::sql(
        "DELETE FROM sel; DELETE FROM iel;"
        "INSERT INTO sel (RecordId, TimeStamp, ErrorCode, Device) VALUES"
        " (3, 1700000000, 0x010109, 'CPU1'), (5, 1700000100, 0x018107, 'CPU1'),"
        " (4, 1700000200, 0x040102, 'FAN1 SYS');"
        "INSERT INTO iel (RecordId, TimeStamp, Flags, ErrorCode, AlertGroup, LanguageCode, Message) VALUES"
        " (1, 1700000050, 0x10, 0x2011, 20, 1033, 'Log' || char(27) || 'in'),"
        " (2, unixepoch() - 5400, 0x00, 0x2010, 20, 1033, 'Late')");
    const std::string sel3 = "LogMessage_3", sel5 = "LogMessage_5", sel4 = "LogMessage_4",
                      iel1 = "InternalEventLog_1", iel2 = "InternalEventLog_2";
    const struct {
        Lines arguments, shown;
    } cases[] = {
        {{}, {sel3, iel1, sel5, sel4, iel2}},
        {{"sel"}, {sel3, sel5, sel4}},
        {{"iel"}, {iel1, iel2}},
        {{"--severity", "minor"}, {sel3, iel1, sel4}},
        {{"-s", "Major", "sel"}, {sel3, sel4}},
        {{"-s", "3"}, {sel3}},
        {{"-s", "7"}, {}},
        {{"--since", "2023-11-14 22:14:10"}, {iel1, sel5, sel4, iel2}},
        {{"--since", "2023-11-14T22:14:11Z", "--until", "2023-11-14 22:15 UTC"}, {sel5}},
        {{"--until", "2023-11-14"}, {}},
        {{"--since", "2h"}, {iel2}},
        {{"--since", "100m", "--until", "3600s"}, {iel2}},
        {{"--until", "1d", "--last", "2"}, {sel5, sel4}},
        {{"--last", "9", "iel"}, {iel1, iel2}},
    };
    for (const auto &one : cases) {
        Lines arguments = one.arguments, shown, inJson;
        arguments.insert(arguments.begin(), {"log", "show"});
        const Ended ended = vch(arguments);
        EXPECT_EQ(ended.code, 0) << ended.err;
        for (const std::string &line : linesOf(ended.out))
            shown.push_back(line.substr(25, line.find(' ', 25) - 25));
        EXPECT_EQ(shown, one.shown) << testing::PrintToString(arguments);
        arguments.insert(arguments.end(), {"-o", "json"});
        for (const Json &entry : Json::parse(vch(arguments).out))
            inJson.push_back(entry["properties"]["InstanceID"]);
        EXPECT_EQ(inJson, one.shown) << testing::PrintToString(arguments);
    }
    EXPECT_EQ(
        linesOf(vch({"log", "show", "--details", "--until", "1d"}).out),
        (Lines{"2023-11-14 22:13:20 UTC  LogMessage_3            Critical       Temperature critical: CPU1",
               "    A temperature is critical; the server may switch itself off",
               "    cause   Air inlets are blocked", "    cause   A fan has failed",
               "    action  Clear the air inlets", "    action  Replace failed fans",
               "    action  Reduce the load",
               "2023-11-14 22:14:10 UTC  InternalEventLog_1      Minor          Log\\x1Bin",
               "2023-11-14 22:15:00 UTC  LogMessage_5            Informational  Temperature OK again: CPU1",
               "    A temperature is normal again",
               "2023-11-14 22:16:40 UTC  LogMessage_4            Major          Fan speed critical: FAN1 SYS",
               "    A fan turns too slowly", "    cause   Dust", "    cause   Worn bearings",
               "    cause   A cable is in the way", "    action  Clean the fan",
               "    action  Replace the fan"}));
}

TEST_F(Log, AnErasedLogIsEmptyForTheNextProcess) {
    // Another requester reserves after each reservation, and so cancels it.
    sp::sql("CREATE TRIGGER rival AFTER UPDATE OF Reservation ON sel_state "
            "BEGIN UPDATE sel_state SET Reservation = NEW.Reservation + 1; END");
    const size_t entries = linesOf(vch({"log", "show", "sel"}).out).size();
    EXPECT_GT(entries, 300U);
    const Ended refused = vch({"log", "clear", "sel"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.err, "vch: the system event log isn't erased: ClearLog returned 2\n");
    EXPECT_EQ(linesOf(vch({"log", "show", "sel"}).out).size(), entries);

    sp::sql("DROP TRIGGER rival");
    EXPECT_EQ(vch({"log", "clear", "sel"}).out, "erased the system event log\n");
    EXPECT_EQ(vch({"log", "show", "sel"}).out, "");
    EXPECT_EQ(linesOf(vch({"log", "show"}).out).size(), 48U) << "the other log is as it was";
    EXPECT_EQ(vch({"log", "clear", "iel"}).code, 0);
    EXPECT_EQ(vch({"log", "note", "Fan replaced"}).out, "added the note to the internal event log\n");
    const Lines left = linesOf(vch({"log", "show"}).out);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_NE(left[0].find("Informational  Fan replaced"), std::string::npos) << left[0];
}

// From the method to the texts, each step in a process of its own.
TEST_F(Log, TheLanguageOfTheLogIsTheOneThatWasSet) {
    const struct {
        const char *language;
        int code;
        const char *text;
    } cases[] = {
        {"de_DE", 0,
         "Lüfter langsam: FAN PSU2\n    Ein Lüfter dreht langsamer als vorgesehen\n"
         "    cause   Staub\n    action  Lüfter reinigen\n"},
        {"fr_FR", 1, "Lüfter langsam: FAN PSU2\n"},
        {"en_US", 0,
         "Fan slow: FAN PSU2\n    A fan turns more slowly than it should\n"
         "    cause   Dust\n    action  Clean the fan\n"},
    };
    for (const auto &[language, code, text] : cases) {
        const Ended ended =
            vch({"cm", "GeneralRecordLogConfigSettings", "SetLanguage", std::string("localID=") + language});
        EXPECT_EQ(ended.code, code) << ended.err;
        EXPECT_NE((ended.out + ended.err).find(code == 0 ? "0" : "Selected language is not supported"),
                  std::string::npos);
        const std::string shown = vch({"log", "show", "--details", "sel", "--last", "2"}).out;
        EXPECT_NE(shown.find(text), std::string::npos) << language << ": " << shown;
    }
}

TEST_F(Log, FollowingShowsEntriesAsTheyComeAndAfterAnErasure) {
    environment["VCH_FAULTS"] = "zbr_oemdb_get_all_iel_rec@2"; // passes
    int output[2];
    ASSERT_EQ(pipe(output), 0);
    const pid_t child = start({"log", "show", "iel", "--follow", "--last", "1"}, output[1]);
    close(output[1]);
    environment.erase("VCH_FAULTS");
    FILE *follower = fdopen(output[0], "r");
    ASSERT_NE(follower, nullptr);
    const auto next = [&] {
        char line[256] = "";
        EXPECT_NE(fgets(line, sizeof line, follower), nullptr);
        return std::string(line).substr(25);
    };
    EXPECT_EQ(next().rfind("InternalEventLog_48 ", 0), 0U);
    EXPECT_EQ(vch({"log", "note", "first"}).code, 0);
    EXPECT_EQ(next(), "InternalEventLog_49     Informational  first\n");
    EXPECT_EQ(vch({"log", "clear", "iel"}).code, 0);
    EXPECT_EQ(vch({"log", "note", "second"}).code, 0);
    EXPECT_EQ(next(), "InternalEventLog_1      Informational  second\n");
    kill(child, SIGINT);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it would have gone on";
    fclose(follower);
}

} // namespace
