#include <atomic>
#include <thread>

#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "stand_ins.h"

namespace {

TEST_F(SampleServer, AnswersEightThreadsAtOnceAndFailsExactlyOneOfTheirCalls) {
    constexpr int threads = 8, rounds = 25;
    std::atomic<int> wrong = 0, failed = 0;
    sp::fail("db_init", {.at = threads * rounds / 2});
    std::vector<std::thread> all;
    for (uint8_t thread = 0; thread < threads; ++thread) {
        all.emplace_back([&, thread] {
            for (int round = 0; round < rounds; ++round) {
                uint32_t oem = 0, core = 0;
                int count = 0;
                RegisteredProfileRow *profiles = nullptr;
                IpmiSession session{};
                failed += db_init(&core) != 0;
                wrong += zbr_oemdb_init(&oem) != 0;
                wrong += zbr_oemdb_get_all_reg_prof_info(oem, &count, &profiles) != 0 || count != 24;
                wrong += log_in(&session) != 0;
                wrong += ZBR_CIM_SetConfigSpaceVariables(&session, 0x00A2, 0, &thread, 1, 30) != 0;
                wrong += CIM_Close_Session(&session) != 0 || zbr_oemdb_close(oem) != 0;
                db_close(core);
                free(profiles);
            }
        });
    }
    for (std::thread &thread : all) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(sp::calls("zbr_oemdb_close"), threads * rounds);
    EXPECT_LT(std::stoi(sp::sql("SELECT value FROM configuration_variable WHERE id = 0x00A2")[0][0]),
              threads);
}

TEST_F(SampleServer, IsSwitchedForThreadsThatHaveItOpen) {
    const Folder folder;
    sp::create_store(folder / "other.db");
    std::atomic<int> switched = 0;
    std::thread reader([&] {
        const std::string before = sp::sql("SELECT count(*) FROM principal")[0][0];
        switched = 1;
        switched.notify_one();
        switched.wait(1);
        EXPECT_NE(sp::sql("SELECT count(*) FROM principal")[0][0], before);
    });
    switched.wait(0);
    sp::use_store(folder / "other.db");
    sp::sql("DELETE FROM principal");
    switched = 2;
    switched.notify_one();
    reader.join();
}

} // namespace
