#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "libzbr_cimcore.h"
#include "sample_server.h"

namespace {

namespace fs = std::filesystem;
using testing::Test;

void write_file(const std::string &path, const std::string &text) {
    std::ofstream(path) << text;
}

/// An environment variable that has its old value again at the end of the scope.
struct Environment {
    const char *name;
    std::optional<std::string> old;
    Environment(const char *variable, const char *value) : name(variable) {
        if (const char *before = getenv(variable)) {
            old = before;
        }
        value != nullptr ? setenv(name, value, 1) : unsetenv(name);
    }
    ~Environment() { old ? setenv(name, old->c_str(), 1) : unsetenv(name); }
};

TEST(Store, HasNothingOfTheLogOfADeletedOne) {
    const Folder folder;
    const std::string path = folder / "store.db";
    sp::create_store(path);
    sp::use_store(path);
    sp::sql("PRAGMA application_id = 1");
    fs::remove(path); // and not the log beside it
    ASSERT_TRUE(fs::exists(path + "-wal"));
    sp::create_store(path);
    EXPECT_EQ(error_of([&] { sp::check_store(path); }), "");
}

TEST(Store, ThatCannotBeUsedIsRefusedWithCauseAndWayOut) {
    const Folder folder;
    const std::string path = folder / "store.db";
    struct Case {
        const char *cause;
        void (*spoil)(const std::string &path);
    };
    const Case cases[] = {
        {"doesn't exist: create one with", [](const std::string &file) { fs::remove(file); }},
        {"is not a regular file: create one with",
         [](const std::string &file) { fs::remove(file), fs::create_directory(file); }},
        {"is not an SQLite file: create one with",
         [](const std::string &file) { write_file(file, std::string(5000, 'x')); }},
        {"holds another program's data: create one with",
         [](const std::string &file) { write_file(file, ""); }},
        {"holds another program's data: create one with",
         [](const std::string &file) { sp::use_store(file), sp::sql("PRAGMA application_id = 1"); }},
        {"has schema version 99, not ",
         [](const std::string &file) { sp::use_store(file), sp::sql("PRAGMA user_version = 99"); }},
    };
    for (const Case &spoilt : cases) {
        fs::remove_all(path);
        sp::create_store(path);
        spoilt.spoil(path);
        const std::string error = error_of([&] { sp::check_store(path); });
        EXPECT_NE(error.find("'" + path + "' " + spoilt.cause), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
    EXPECT_NE(error_of([&] { sp::check_store(folder / "store.db/x"); }).find("can't be reached"),
              std::string::npos);
}

TEST(Store, LiesWhereTheEnvironmentSays) {
    struct Case {
        const char *store, *state, *home, *expected;
    };
    const Case cases[] = {
        {"/s/own.db", "/state", "/home/u", "/s/own.db"},
        {nullptr, "/state", "/home/u", "/state/vch/service-processor.db"},
        {"", "/state", "/home/u", "/state/vch/service-processor.db"},
        {nullptr, "relative", "/home/u", "/home/u/.local/state/vch/service-processor.db"},
        {nullptr, nullptr, "/home/u", "/home/u/.local/state/vch/service-processor.db"},
    };
    for (const Case &place : cases) {
        const Environment store("VCH_STORE", place.store), state("XDG_STATE_HOME", place.state),
            home("HOME", place.home);
        EXPECT_EQ(sp::default_store(), place.expected);
    }
    const Environment store("VCH_STORE", nullptr), state("XDG_STATE_HOME", nullptr), home("HOME", nullptr);
    EXPECT_NE(error_of([] { sp::default_store(); }).find("name a file with VCH_STORE"), std::string::npos);
}

TEST_F(SampleServer, AnswersSqlWithTheRowsOfTheLastStatement) {
    const auto rows = sp::sql("UPDATE principal SET Name = 'x' WHERE Name = 'admin';"
                              "SELECT Name, NULL, 7 FROM principal WHERE Name = 'x'; -- done");
    EXPECT_EQ(rows, (std::vector<std::vector<std::string>>{{"x", "", "7"}}));
    EXPECT_NE(error_of([] { sp::sql("SELECT * FROM fan_of_nobody"); }).find("no such table: fan_of_nobody"),
              std::string::npos);
    EXPECT_NE(
        error_of([] { sp::sql("INSERT INTO principal VALUES ('x')"); }).find("UNIQUE constraint failed"),
        std::string::npos);
}

TEST_F(SampleServer, WithoutItsStoreFailsEveryReadAndSaysWhyOnce) {
    uint32_t handle = 0;
    ASSERT_EQ(zbr_oemdb_init(&handle), 0);
    sp::use_store(folder / "missing.db");
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) {
        int count = 0;
        RegisteredProfileRow *rows = nullptr;
        EXPECT_EQ(zbr_oemdb_get_all_reg_prof_info(handle, &count, &rows), 1);
        EXPECT_EQ(rows, nullptr);
    }
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said.find("doesn't exist"), said.rfind("doesn't exist"));
    EXPECT_NE(said.find("missing.db' doesn't exist"), std::string::npos);
    EXPECT_EQ(zbr_oemdb_close(handle), 0);
}

} // namespace
