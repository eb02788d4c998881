#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "libzbr_cimcore.h"
#include "stand_ins.h"

namespace {

namespace fs = std::filesystem;

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
    const struct {
        const char *cause;
        void (*spoil)(const std::string &path);
    } cases[] = {
        {"doesn't exist: create one with", [](const std::string &file) { fs::remove(file); }},
        {"is not a regular file: create one with",
         [](const std::string &file) { fs::remove(file), fs::create_directory(file); }},
        {"is not an SQLite file: create one with",
         [](const std::string &file) { std::ofstream(file) << std::string(5000, 'x'); }},
        {"holds another program's data: create one with",
         [](const std::string &file) { std::ofstream{file}; }},
        {"has schema version 99, not ",
         [](const std::string &file) { sp::use_store(file), sp::sql("PRAGMA user_version = 99"); }},
    };
    for (const auto &[cause, spoil] : cases) {
        fs::remove_all(path);
        sp::create_store(path);
        spoil(path);
        const std::string error = error_of([&] { sp::check_store(path); });
        EXPECT_NE(error.find("'" + path + "' " + cause), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
    EXPECT_NE(error_of([&] { sp::check_store(folder / "store.db/x"); }).find("can't be reached"),
              std::string::npos);
}

TEST(Store, LiesWhereTheEnvironmentSays) {
    const auto place_under = [](const char *store, const char *state, const char *home) {
        for (const auto &[name, value] :
             {std::pair{"VCH_STORE", store}, {"XDG_STATE_HOME", state}, {"HOME", home}}) {
            value != nullptr ? setenv(name, value, 1) : unsetenv(name);
        }
        return sp::default_store();
    };
    EXPECT_EQ(place_under("/s/own.db", "/state", "/home/u"), "/s/own.db");
    EXPECT_EQ(place_under(nullptr, "/state", "/home/u"), "/state/vch/service-processor.db");
    EXPECT_EQ(place_under("", "/state", "/home/u"), "/state/vch/service-processor.db");
    EXPECT_EQ(place_under("", nullptr, "/home/u"), "/home/u/.local/state/vch/service-processor.db");
    EXPECT_EQ(place_under("", "relative", "/home/u"), "/home/u/.local/state/vch/service-processor.db");
    EXPECT_NE(error_of([&] { place_under(nullptr, nullptr, nullptr); }).find("name a file with VCH_STORE"),
              std::string::npos);
}

TEST_F(SampleServer, AnswersSqlWithTheRowsOfTheLastStatement) {
    const auto rows = sp::sql("SELECT 1; UPDATE principal SET Name = 'x' WHERE Name = 'admin';"
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
    sp::use_store("/nowhere/missing.db");
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) {
        int count = 0;
        RegisteredProfileRow *rows = nullptr;
        EXPECT_EQ(zbr_oemdb_get_all_reg_prof_info(handle, &count, &rows), 1);
        EXPECT_EQ(rows, nullptr);
    }
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("missing.db' doesn't exist"), std::string::npos);
    EXPECT_EQ(said.find("doesn't exist"), said.rfind("doesn't exist"));
    EXPECT_EQ(zbr_oemdb_close(handle), 0);
}

} // namespace
