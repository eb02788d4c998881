#include <unistd.h>

#include "libcorestore.h"
#include "libzbr_cimcore.h"
#include "stand_ins.h"

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
    for (const char *password : {"k7-Vaterite-42", "wrong-Aragonite-9"}) {
        IpmiSession session{};
        log_in(&session, password);
        EXPECT_EQ(sp::take_journal().at(0).arguments,
                  "\"127.0.0.1\", 623, \"cimprovider\", ********, 6, 1, 4, 1, 1, 30");
        CIM_Close_Session(&session);
        sp::take_journal();
    }
}

TEST_F(SampleServer, FailsTheCallThatItIsToldTo) {
    const struct {
        const char *told;
        std::vector<int> expected;
    } cases[] = {{"zbr_oemdb_init", {1, 1, 1}},
                 {"zbr_oemdb_init@2", {0, 1, 0}},
                 {";db_close;zbr_oemdb_init@1=0x11;", {0x11, 0, 0}},
                 {"zbr_oemdb_init=-3", {-3, -3, -3}}};
    for (const auto &[told, expected] : cases) {
        sp::clear_faults();
        sp::fail_by_text(told);
        for (const int result : expected) {
            uint32_t handle = 0;
            EXPECT_EQ(zbr_oemdb_init(&handle), result) << told;
            EXPECT_EQ(sp::take_journal().back().fault, result != 0);
            EXPECT_EQ(handle == 0, result != 0) << "a failed call opens nothing";
            zbr_oemdb_close(handle);
        }
    }
}

TEST_F(SampleServer, ClosesWhatACloseThatIsToldToFailWasGiven) {
    uint32_t core = 0, oem = 0;
    IpmiSession session{};
    db_init(&core);
    zbr_oemdb_init(&oem);
    log_in(&session);
    sp::fail_by_text("db_close;zbr_oemdb_close;CIM_Close_Session");
    EXPECT_EQ(db_close(core), 1);
    EXPECT_EQ(zbr_oemdb_close(oem), 1);
    EXPECT_NE(CIM_Close_Session(&session), 0);
    for (const sp::Handle kind : {sp::Handle::CoreDb, sp::Handle::OemDb, sp::Handle::Session}) {
        EXPECT_EQ(sp::open_handles(kind), 0);
    }
}

TEST_F(SampleServer, RefusesAMalformedFaultTextWhole) {
    const struct {
        const char *text, *names;
    } cases[] = {
        {"db_init;zbr_oemdb_open", "'zbr_oemdb_open'"},
        {"db_init;db_close@", "''"},
        {"db_init;db_close@0", "'db_close@0'"},
        {"db_init;db_close@-1", "'db_close@-1'"},
        {"db_init;db_close=1x", "'1x'"},
        {"db_init;db_close=0x", "'0x'"},
        {"db_init;db_close=99999999999", "'99999999999'"},
        {"db_init; db_close", "' db_close'"},
    };
    for (const auto &[text, names] : cases) {
        const std::string error = error_of([&] { sp::fail_by_text(text); });
        EXPECT_NE(error.find(names), std::string::npos) << text << ": " << error;
    }
    uint32_t handle = 0;
    EXPECT_EQ(db_init(&handle), 0) << "part of a refused text was taken";
    db_close(handle);
}

/// Exits with the result of the process's first call, having said what is wrong with the environment.
[[noreturn]] void call_and_exit() {
    uint32_t handle = 0;
    fputs(error_of(sp::check_environment).c_str(), stderr);
    fputs("; ", stderr);
    _exit(db_init(&handle));
}

TEST(EnvironmentDeathTest, TellsAProcessToFailFromItsStart) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a new process, which takes the variable when it starts
    setenv("VCH_FAULTS", "db_close=2;db_init@1=7", 1);
    EXPECT_EXIT(call_and_exit(), testing::ExitedWithCode(7), "^; $");
    setenv("VCH_FAULTS", "db_init=7;db_init@x", 1);
    EXPECT_EXIT(call_and_exit(), testing::ExitedWithCode(0),
                "^VCH_FAULTS: 'x' in the fault 'db_init@x' is no number.*; VCH_FAULTS: 'x' in the fault");
    unsetenv("VCH_FAULTS");
}

} // namespace
