// The trace mask's message queues, which all processes of the machine share: this test runs alone.

#include "tool.h"

#include <platform/sp/notify.h>
#include <platform/sp/sp.h>

#include <signal.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

namespace {

// A message of either queue. Its type is the process's pid.
struct Message {
    long type;
    unsigned char body[8];
};

struct Notify : Tool {
    void SetUp() override {
        Tool::SetUp();
        ASSERT_EQ(vch({"sp", "notify", "create"}).code, 0);
    }
    void TearDown() override { sp::remove_notify_queues(); }

    static int queue(int project) { return msgget(ftok(sp::notify_file().c_str(), project), 0); }

    // Takes a notification for this process; waits until there is one if `wait`.
    static bool notified(bool wait) {
        Message message;
        return msgrcv(queue(2), &message, sizeof message.body, getpid(), wait ? 0 : IPC_NOWAIT) != -1;
    }
};

TEST_F(Notify, APostIsOneMessageForTheProcess) {
    const Ended ended = vch({"sp", "notify", "post", std::to_string(getpid())});
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_TRUE(notified(false));
    EXPECT_FALSE(notified(false));
}

TEST_F(Notify, WithoutQueuesAPostSaysHowToGetThem) {
    EXPECT_EQ(vch({"sp", "notify", "remove"}).code, 0);
    EXPECT_EQ(queue(1), -1);
    EXPECT_EQ(queue(2), -1);
    const Ended ended = vch({"sp", "notify", "post", std::to_string(getpid())});
    EXPECT_EQ(ended.code, 3);
    EXPECT_NE(ended.err.find("create"), std::string::npos) << ended.err;
    EXPECT_EQ(vch({"sp", "notify", "remove"}).code, 0);
}

TEST_F(Notify, TheWatchNotifiesARegisteredProcessOfANewMask) {
    const pid_t watch = fork();
    if (watch == 0) {
        setenv("VCH_STORE", store.c_str(), 1);
        if (freopen((folder + "/watch").c_str(), "w", stdout) != nullptr)
            execl(VCH, VCH, "sp", "notify", "watch", nullptr);
        _exit(127);
    }
    const Message registration = {getpid(), {0x41, 0x25}};
    ASSERT_EQ(msgsnd(queue(1), &registration, sizeof registration.body, 0), 0);
    const std::string registered = "process " + std::to_string(getpid()) + " registered itself\n";
    while (contentOf(folder + "/watch").find(registered) == std::string::npos &&
           waitpid(watch, nullptr, WNOHANG) == 0)
        usleep(1000);
    EXPECT_FALSE(notified(false)) << "the mask is as it was";
    EXPECT_EQ(vch({"sp", "mask", "768"}).code, 0);
    EXPECT_TRUE(notified(true));
    kill(watch, SIGTERM);
    waitpid(watch, nullptr, 0);
    EXPECT_FALSE(notified(false)) << "one notification for one change";
}

} // namespace
