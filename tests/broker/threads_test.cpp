// Several threads with requests of their own.
#include "fixture.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {

using Threads = BrokerTest;

TEST_F(Threads, RequestsRunSideBySide) {
    constexpr int threadCount = 8, rounds = 20;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < rounds; ++i) {
                const broker::RequestPointer own =
                    broker::beginRequest(*broker, {.principal = std::to_string(t)});
                std::string error;
                const char *className =
                    i % 2 == 0 ? "Thing" : "Asking"; // the second asks and attaches threads
                const size_t expected = i % 2 == 0 ? 6 : 2;
                const CMPIObjectPath *all = broker::parsePath(*own, className, error);
                const broker::Answer answer = broker::enumerateInstances(*own, all, nullptr);
                failures += answer.rc != CMPI_RC_OK || answer.instances.size() != expected;
                CMPIString *clone = CMClone(CMNewString(cmpi, "text", nullptr), nullptr);
                CMRelease(clone);
            }
        });
    }
    // The counts may be read while others work; each thread has one clone at a time.
    for (int i = 0; i < 100; ++i) {
        EXPECT_LE(broker::liveClones(*broker), static_cast<size_t>(threadCount));
        EXPECT_LT(broker::liveObjects(*broker), threadCount * 1000U);
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

TEST_F(Threads, AThreadThatIsNotAttachedMakesNothing) {
    const CMPIString *made = nullptr;
    CMPIrc detached = CMPI_RC_OK, asked = CMPI_RC_OK;
    CMPIObjectPath *target = path("Thing");
    CMPIContext *context = CBPrepareAttachThread(cmpi, broker::contextOf(*request));
    std::thread([&] {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        made = CMNewString(cmpi, "text", nullptr);
        CBEnumInstances(cmpi, context, target, nullptr, &status);
        asked = status.rc;
        detached = CBDetachThread(cmpi, context).rc;
    }).join();
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(asked, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(detached, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CBAttachThread(cmpi, broker::contextOf(*request)).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    CMRelease(context); // the broker's until the thread detaches: harmless
}

TEST_F(Threads, AnAttachedThreadOutlivesTheRequest) {
    CMPIContext *context = CBPrepareAttachThread(cmpi, broker::contextOf(*request));
    request.reset();
    std::string principal;
    std::thread([&] {
        CBAttachThread(cmpi, context);
        principal = textOf(CMGetContextEntry(context, CMPIPrincipal, nullptr).value.string);
        EXPECT_EQ(broker::liveObjects(*broker), 0U);
        CMNewString(cmpi, "text", nullptr);
        EXPECT_EQ(broker::liveObjects(*broker), 1U);
        EXPECT_EQ(CBDetachThread(cmpi, context).rc, CMPI_RC_OK);
    }).join();
    EXPECT_EQ(principal, "operator");
}

TEST_F(Threads, TheServicesLockWaitAndWake) {
    const CMPIBrokerExtFT &services = *cmpi->xft;
    struct Shared {
        const CMPIBrokerExtFT *services;
        CMPI_MUTEX_TYPE mutex;
        CMPI_COND_TYPE condition;
        bool isReady;
    } shared = {&services, services.newMutex(0), services.newCondition(0), false};
    CMPI_THREAD_TYPE thread = services.newThread(
        [](void *argument) -> void * {
            auto &s = *static_cast<Shared *>(argument);
            s.services->lockMutex(s.mutex);
            s.isReady = true;
            s.services->signalCondition(s.condition);
            s.services->unlockMutex(s.mutex);
            return argument;
        },
        &shared, 0);
    services.lockMutex(shared.mutex);
    while (!shared.isReady) {
        services.condWait(shared.condition, shared.mutex);
    }
    services.unlockMutex(shared.mutex);
    void *result = nullptr;
    EXPECT_EQ(services.joinThread(thread, &result), 0);
    EXPECT_EQ(result, &shared);
    services.destroyCondition(shared.condition);
    services.destroyMutex(shared.mutex);

    static int runs = 0;
    int once = 0;
    for (int i = 0; i < 2; ++i) {
        services.threadOnce(&once, [] { ++runs; });
    }
    EXPECT_EQ(runs, 1);
    CMPI_THREAD_KEY_TYPE key;
    ASSERT_EQ(services.createThreadKey(&key, nullptr), 0);
    services.setThreadSpecific(key, &once);
    EXPECT_EQ(services.getThreadSpecific(key), &once);
    services.destroyThreadKey(key);
}

} // namespace
