#include "notify.h"

#include <sys/ipc.h>
#include <sys/msg.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace sp {
namespace {

constexpr int Registration = 1, Notification = 2; // projects of the queues' keys

/// Messages of both queues. A registration's body begins with what the process registers for, low byte first.
struct Message {
    long type; // the process's pid
    unsigned char body[8];
};
constexpr unsigned char TraceMask[] = {0x41, 0x25};

[[noreturn]] void refuse(const std::string &what, const std::string &way_out) {
    throw std::runtime_error(what + ": " + strerror(errno) + "; " + way_out);
}

key_t key(const std::string &file, int project) {
    const key_t found = ftok(file.c_str(), project);
    if (found == -1) {
        refuse("no message queue can be named after '" + file + "'", "create the file");
    }
    return found;
}

int open_queue(const std::string &file, int project) {
    const int queue = msgget(key(file, project), 0660);
    if (queue == -1) {
        refuse("the message queues of '" + file + "' can't be opened", "create them first");
    }
    return queue;
}

} // namespace

std::string notify_file() {
    return VCH_NOTIFY_FILE;
}

void create_notify_queues(const std::string &file) {
    for (const int project : {Registration, Notification}) {
        if (msgget(key(file, project), IPC_CREAT | 0660) == -1) {
            refuse("the message queues of '" + file + "' can't be created",
                   "look at the limits with 'ipcs -l'");
        }
    }
}

std::vector<pid_t> take_registrations(const std::string &file) {
    const int queue = open_queue(file, Registration);
    std::vector<pid_t> pids;
    Message message;
    ssize_t length;
    while ((length = msgrcv(queue, &message, sizeof message.body, 0, IPC_NOWAIT | MSG_NOERROR)) != -1) {
        if (length == sizeof message.body && memcmp(message.body, TraceMask, sizeof TraceMask) == 0) {
            pids.push_back(static_cast<pid_t>(message.type));
        }
    }
    if (errno != ENOMSG) {
        refuse("the registrations of '" + file + "' can't be read", "create the message queues again");
    }
    return pids;
}

void post_notification(pid_t pid, const std::string &file) {
    if (pid <= 0) {
        throw std::runtime_error("no process has the pid " + std::to_string(pid) +
                                 ": take one that has registered itself");
    }
    const Message message{pid, {}};
    if (msgsnd(open_queue(file, Notification), &message, sizeof message.body, IPC_NOWAIT) != 0) {
        refuse("the process " + std::to_string(pid) + " can't be notified",
               "look at its queue with 'ipcs -q'");
    }
}

void remove_notify_queues(const std::string &file) {
    for (const int project : {Registration, Notification}) {
        const int queue = msgget(key(file, project), 0);
        if (queue != -1 ? msgctl(queue, IPC_RMID, nullptr) != 0 : errno != ENOENT) {
            refuse("the message queues of '" + file + "' can't be removed", "remove them with 'ipcrm'");
        }
    }
}

} // namespace sp
