#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "functions.h"
#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "sample_server.h"

namespace {

TEST_F(SampleServer, RecordsACallWithArgumentsResultAndTime) {
    uint32_t handle = 0;
    db_init(&handle);
    CapabilitiesRow *row = nullptr;
    db_get_elec(handle, "FanCapabilities1", &row);
    free(row);
    db_close(handle);
    db_close(handle);

    const auto journal = sp::take_journal();
    ASSERT_EQ(journal.size(), 4u);
    char arguments[64];
    snprintf(arguments, sizeof arguments, "0x%X, \"FanCapabilities1\"", handle);
    EXPECT_STREQ(journal[1].function, "db_get_elec");
    EXPECT_EQ(journal[1].arguments, arguments);
    EXPECT_EQ(journal[1].result, 0);
    EXPECT_GT(journal[1].nanoseconds, 0);
    EXPECT_FALSE(journal[1].fault);
    EXPECT_EQ(journal[3].result, 1) << "the handle was closed before";
    EXPECT_TRUE(sp::take_journal().empty()) << "taken entries are gone";
}

TEST_F(SampleServer, NeverRecordsAPassword) {
    IpmiSession session{};
    EXPECT_EQ(log_in(&session, "k7-Vaterite-42"), 0);
    IpmiSession other{};
    EXPECT_NE(log_in(&other, "wrong-Aragonite-9"), 0);
    CIM_Close_Session(&session);
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        EXPECT_EQ(entry.arguments.find("Vaterite"), std::string::npos);
        EXPECT_EQ(entry.arguments.find("Aragonite"), std::string::npos);
        if (std::string_view(entry.function) == "CIM_Create_IPMI20_Session") {
            EXPECT_EQ(entry.arguments, "\"127.0.0.1\", 623, \"cimprovider\", ********, 6, 1, 4, 1, 1, 30");
        }
    }
}

TEST_F(SampleServer, FailsTheCallThatItIsToldTo) {
    struct Case {
        sp::Fault fault;
        int expected[3];
    };
    const Case cases[] = {{{}, {1, 1, 1}},
                          {{.at = 2}, {0, 1, 0}},
                          {{.at = 1, .result = 7}, {7, 0, 0}},
                          {{.result = -3}, {-3, -3, -3}}};
    for (const Case &told : cases) {
        sp::clear_faults();
        sp::fail("zbr_oemdb_init", told.fault);
        for (const int expected : told.expected) {
            uint32_t handle = 0;
            EXPECT_EQ(zbr_oemdb_init(&handle), expected);
            EXPECT_EQ(sp::take_journal().back().fault, expected != 0);
            EXPECT_EQ(handle == 0, expected != 0) << "a failed call opens nothing";
            if (expected == 0) {
                zbr_oemdb_close(handle);
            }
        }
    }
}

TEST_F(SampleServer, ClosesWhatACloseThatIsToldToFailWasGiven) {
    uint32_t core = 0, oem = 0;
    IpmiSession session{};
    db_init(&core);
    zbr_oemdb_init(&oem);
    log_in(&session);
    for (const char *function : {"db_close", "zbr_oemdb_close", "CIM_Close_Session"}) {
        sp::fail(function);
    }
    EXPECT_EQ(db_close(core), 1);
    EXPECT_EQ(zbr_oemdb_close(oem), 1);
    EXPECT_NE(CIM_Close_Session(&session), 0);
    for (const sp::Handle kind : {sp::Handle::CoreDb, sp::Handle::OemDb, sp::Handle::Session}) {
        EXPECT_EQ(sp::open_handles(kind), 0);
    }
}

TEST_F(SampleServer, TakesFaultsFromAText) {
    sp::fail_by_text("zbr_oemdb_init@2=0x11;;db_init;");
    uint32_t handle = 0, other = 0;
    EXPECT_EQ(zbr_oemdb_init(&handle), 0);
    EXPECT_EQ(zbr_oemdb_init(&other), 0x11);
    EXPECT_EQ(db_init(&other), 1);
    zbr_oemdb_close(handle);
}

TEST_F(SampleServer, RefusesAMalformedFaultTextWhole) {
    const struct {
        const char *text, *names;
    } cases[] = {
        {"db_init;zbr_oemdb_open", "'zbr_oemdb_open'"},
        {"db_init;db_close@", "''"},
        {"db_init;db_close@x", "'x'"},
        {"db_init;db_close@0", "'db_close@0'"},
        {"db_init;db_close@-1", "'db_close@-1'"},
        {"db_init;db_close=", "''"},
        {"db_init;db_close=1x", "'1x'"},
        {"db_init;db_close=0x", "'0x'"},
        {"db_init;db_close=99999999999", "'99999999999'"},
        {"db_init; db_close", "' db_close'"},
    };
    for (const auto &malformed : cases) {
        const std::string error = error_of([&] { sp::fail_by_text(malformed.text); });
        EXPECT_NE(error.find(malformed.names), std::string::npos) << malformed.text << ": " << error;
    }
    uint32_t handle = 0;
    EXPECT_EQ(db_init(&handle), 0) << "part of a refused text was taken";
    db_close(handle);
}

/// Exits with the result of the process's first call.
[[noreturn]] void call_and_exit() {
    uint32_t handle = 0;
    _exit(db_init(&handle));
}

[[noreturn]] void check_environment_and_exit() {
    fputs(error_of(sp::check_environment).c_str(), stderr);
    _exit(0);
}

TEST(EnvironmentDeathTest, TellsAProcessToFailFromItsStart) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a new process, which takes the variable when it starts
    setenv("VCH_FAULTS", "db_close=2;db_init@1=7", 1);
    EXPECT_EXIT(call_and_exit(), testing::ExitedWithCode(7), "^$");
    EXPECT_EXIT(check_environment_and_exit(), testing::ExitedWithCode(0), "^$");
    setenv("VCH_FAULTS", "db_init=7;db_init@x", 1);
    EXPECT_EXIT(call_and_exit(), testing::ExitedWithCode(0),
                "^VCH_FAULTS: 'x' in the fault 'db_init@x' is no number");
    EXPECT_EXIT(check_environment_and_exit(), testing::ExitedWithCode(0),
                "^VCH_FAULTS: 'x' in the fault 'db_init@x'");
    unsetenv("VCH_FAULTS");
}

} // namespace
