#include <atomic>
#include <cstdlib>
#include <thread>

#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "sample_server.h"

namespace {

void run(int threads, void (*work)(int)) {
    std::vector<std::thread> all;
    for (int i = 0; i < threads; ++i) {
        all.emplace_back(work, i);
    }
    for (std::thread &thread : all) {
        thread.join();
    }
}

constexpr int Threads = 8, Rounds = 25;

TEST_F(SampleServer, AnswersEightThreadsAtOnce) {
    static std::atomic<int> wrong;
    wrong = 0;
    run(Threads, [](int thread) {
        for (int round = 0; round < Rounds; ++round) {
            uint32_t oem = 0, core = 0;
            int count = 0;
            RegisteredProfileRow *profiles = nullptr;
            CapabilitiesRow *capabilities = nullptr;
            IpmiSession session{};
            wrong += zbr_oemdb_init(&oem) != 0 || db_init(&core) != 0;
            wrong += zbr_oemdb_get_all_reg_prof_info(oem, &count, &profiles) != 0 || count != 24;
            wrong += db_get_elec(core, "FanCapabilities1", &capabilities) != 0 || capabilities == nullptr;
            wrong += SampleServer::log_in(&session) != 0;
            const auto delay = static_cast<uint8_t>(thread);
            wrong += ZBR_CIM_SetConfigSpaceVariables(&session, 0x00A2, 0, &delay, 1, 30) != 0;
            wrong += CIM_Close_Session(&session) != 0 || zbr_oemdb_close(oem) != 0 || db_close(core) != 0;
            free(profiles);
            free(capabilities);
        }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(sp::calls("zbr_oemdb_close"), Threads * Rounds);
    const int delay =
        std::stoi(sp::sql("SELECT value FROM configuration_variable WHERE name = 'ConfPowerCycleDelay'")
                      .front()
                      .front());
    EXPECT_TRUE(delay >= 0 && delay < Threads);
}

TEST_F(SampleServer, FailsExactlyOneOfManyCallsAtOnce) {
    static std::atomic<int> failed;
    failed = 0;
    sp::fail("db_init", {.at = Threads * Rounds / 2});
    run(Threads, [](int) {
        for (int round = 0; round < Rounds; ++round) {
            uint32_t handle = 0;
            db_init(&handle) == 0 ? db_close(handle) : ++failed;
        }
    });
    EXPECT_EQ(failed, 1);
}

TEST_F(SampleServer, IsSwitchedForThreadsThatHaveItOpen) {
    sp::create_store(folder / "other.db");
    static std::atomic<int> switched;
    static std::string other;
    switched = 0;
    other = folder / "other.db";
    std::thread reader([] {
        const std::string before = sp::sql("SELECT count(*) FROM principal").front().front();
        switched = 1;
        while (switched != 2) {
            std::this_thread::yield();
        }
        EXPECT_NE(sp::sql("SELECT count(*) FROM principal").front().front(), before);
    });
    while (switched != 1) {
        std::this_thread::yield();
    }
    sp::use_store(other);
    sp::sql("DELETE FROM principal");
    switched = 2;
    reader.join();
}

} // namespace
