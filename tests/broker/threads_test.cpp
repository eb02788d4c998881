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
        threads.emplace_back([&] {
            for (int i = 0; i < rounds; ++i) {
                const broker::RequestPointer own = broker::beginRequest(*broker, {});
                std::string error;
                const CMPIObjectPath *things = broker::parsePath(*own, "Thing", error);
                failures += broker::enumerateInstances(*own, things, nullptr).instances.size() != 6;
                CMPIString *clone = CMClone(CMNewString(cmpi, "text", nullptr), nullptr);
                CMRelease(clone);
                // A thread of a provider's asks as well.
                CMPIContext *context = CBPrepareAttachThread(cmpi, broker::contextOf(*own));
                std::thread([&] {
                    failures += CBAttachThread(cmpi, context).rc != CMPI_RC_OK;
                    CMPIEnumeration *names = CBEnumInstanceNames(cmpi, context, things, nullptr);
                    failures += CMGetArrayCount(CMToArray(names, nullptr), nullptr) != 6;
                    failures += CBDetachThread(cmpi, context).rc != CMPI_RC_OK;
                }).join();
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
    CMPIObjectPath *target = path("Thing");
    CMPIContext *context = CBPrepareAttachThread(cmpi, broker::contextOf(*request));
    std::thread([&] {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(CMNewString(cmpi, "text", &status), nullptr);
        EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
        EXPECT_EQ(CMNewObjectPath(cmpi, "root/cimv2", "T_Thing", nullptr), nullptr);
        EXPECT_EQ(CMNewDateTime(cmpi, nullptr), nullptr);
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(CBEnumInstances(cmpi, context, target, nullptr, &status), nullptr);
        EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
        EXPECT_EQ(CBDetachThread(cmpi, context).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    }).join();
    EXPECT_EQ(CBAttachThread(cmpi, broker::contextOf(*request)).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    CMRelease(context); // the broker's until the thread detaches: harmless
}

TEST_F(Threads, AnAttachedThreadOutlivesTheRequest) {
    CMPIContext *context = CBPrepareAttachThread(cmpi, broker::contextOf(*request));
    request.reset();
    std::thread([&] {
        CBAttachThread(cmpi, context);
        EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIPrincipal, nullptr).value.string), "operator");
        EXPECT_EQ(broker::liveObjects(*broker), 0U);
        CMNewString(cmpi, "text", nullptr);
        EXPECT_EQ(broker::liveObjects(*broker), 1U);
        EXPECT_EQ(CBDetachThread(cmpi, context).rc, CMPI_RC_OK);
    }).join();
}

TEST_F(Threads, TheServicesRunAThreadAndAFunctionOnce) {
    const CMPIBrokerExtFT &services = *cmpi->xft;
    static std::atomic<int> runs;
    runs = 0;
    int once = 0;
    CMPI_THREAD_TYPE thread = services.newThread([](void *argument) { return argument; }, &once, 0);
    for (int i = 0; i < 2; ++i) {
        services.threadOnce(&once, [] { ++runs; });
    }
    EXPECT_EQ(runs, 1);
    void *result = nullptr;
    EXPECT_EQ(services.joinThread(thread, &result), 0);
    EXPECT_EQ(result, &once);
}

} // namespace
