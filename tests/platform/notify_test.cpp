#include "notify.h"

#include <sys/ipc.h>
#include <sys/msg.h>
#include <unistd.h>

#include <cstring>
#include <fstream>

#include <gtest/gtest.h>

#include "support/folder.h"

namespace {

struct Wire {
    long type;
    unsigned char body[8];
};

/// Queues on a file of the test's own.
struct Queues : testing::Test {
    Folder folder;
    std::string file = folder / "notify";
    Queues() {
        std::ofstream(file) << "";
        sp::remove_notify_queues(file); // of a test that broke off and whose file had the same number
        sp::create_notify_queues(file);
    }
    ~Queues() override { sp::remove_notify_queues(file); }

    int queue(int project) const { return msgget(ftok(file.c_str(), project), 0); }
    void register_process(long pid, std::initializer_list<unsigned char> body) const {
        Wire message{pid, {}};
        std::copy(body.begin(), body.end(), message.body);
        ASSERT_EQ(msgsnd(queue(1), &message, body.size(), 0), 0);
    }
};

TEST_F(Queues, GiveTheProcessesThatRegisteredForTheMaskInTheirOrder) {
    register_process(77, {0x41, 0x25, 0, 0, 0, 0, 0, 0});
    register_process(78, {0x25, 0x41, 0, 0, 0, 0, 0, 0}); // for something else
    register_process(79, {0x41, 0x25});                   // too short
    register_process(76, {0x41, 0x25, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(sp::take_registrations(file), (std::vector<pid_t>{77, 76}));
    EXPECT_TRUE(sp::take_registrations(file).empty());
}

} // namespace
