// The trace log and its hooks, against real message queues on a file of their own.
#include "Utilities/PH_OEM_Debug.h"
#include "platform/sp/notify.h"
#include "support/fixture.h"

#include <chrono>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

struct PH_OEM_Debug : ServiceProcessorTest {};

TEST_F(PH_OEM_Debug, ALineNamesLevelFileAndText) {
    zbr_debugout_oemcim(TraceFailure, "Utilities/Somewhere.cpp", 42, "%s failed with %d\n", "something", -7);
    zbr_debugout_oemcim(TraceProgress, "Utilities/Somewhere.cpp", 43, "on the way");
    EXPECT_TRUE(traced("Utilities/Somewhere.cpp:42"));
    EXPECT_TRUE(traced("something failed with -7\n"));
    EXPECT_TRUE(traced("on the way\n"));
    EXPECT_STREQ(zbr_debug_oemcim.name, "oemcim");
}

TEST_F(PH_OEM_Debug, TheMaskDecidesWhichLevelsAreWritten) {
    for (const int mask : {256, 512, 256 + 512}) { // the last for the tests behind this one
        setVariable(sp::trace_mask_variable, std::to_string(mask));
        zbr_debugmaskreconfig();
        TRACE(TraceFailure, "failure under %d", mask);
        TRACE(TraceProgress, "progress under %d", mask);
    }
    EXPECT_TRUE(traced("failure under 256"));
    EXPECT_FALSE(traced("progress under 256"));
    EXPECT_FALSE(traced("failure under 512"));
    EXPECT_TRUE(traced("progress under 512"));
}

// --- Configuration read hook

TEST_F(PH_OEM_Debug, TheReadHookDeliversAVariableAndTellsNoSessionFromAFailedRead) {
    std::uint8_t buffer[16] = {};
    std::uint16_t returned = 0;
    const auto read = [&] {
        return zbr_debughook_readconfig(sp::trace_mask_variable, 0, buffer, sizeof buffer, &returned);
    };
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(returned, 2);
    EXPECT_EQ(buffer[0] | buffer[1] << 8, 768);
    returned = 99;
    sp::fail("ZBR_CIM_GetConfigSpaceVariables");
    EXPECT_EQ(read(), 19);
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(returned, 99);
    EXPECT_EQ(sp::calls("CIM_Close_Session"), 3) << "also when opening failed";
    EXPECT_EQ(trace(), "") << "the hook is silent";
}

// --- Mask notification

// Waits for something that another thread does; a test that never sees it fails, it isn't timed.
template <typename Condition> bool eventually(Condition condition) {
    for (int i = 0; i < 2000 && !condition(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return condition();
}

TEST_F(PH_OEM_Debug, WithoutQueuesTheRegistrationFails) {
    sp::remove_notify_queues(VCH_NOTIFY_FILE);
    EXPECT_NE(zbr_debughook_init(), 0);
    EXPECT_TRUE(traced("Config notify registration failed"));
}

TEST_F(PH_OEM_Debug, EachNotificationForThisProcessReloadsTheMaskOnce) {
    sp::create_notify_queues(VCH_NOTIFY_FILE);
    ASSERT_EQ(zbr_debughook_init(), 0);
    EXPECT_EQ(sp::take_registrations(VCH_NOTIFY_FILE), std::vector<pid_t>{getpid()});

    const auto reloads = [] { return sp::calls("zbr_debugmaskreconfig"); };
    sp::post_notification(getpid() + 1, VCH_NOTIFY_FILE); // another process's business
    sp::post_notification(getpid(), VCH_NOTIFY_FILE);
    EXPECT_TRUE(eventually([&] { return reloads() == 1; })) << reloads();
    sp::post_notification(getpid(), VCH_NOTIFY_FILE);
    EXPECT_TRUE(eventually([&] { return reloads() == 2; })) << reloads();
    const auto closedSessions = [] { return sp::calls("CIM_Close_Session"); };
    EXPECT_TRUE(eventually([&] { return closedSessions() == 2; })) << "both have read the mask to the end";
    sp::remove_notify_queues(VCH_NOTIFY_FILE);
}

} // namespace
