#include "Utilities/PH_OEM_Debug.h"

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Utilities.h"

#include "libzbr_cim.h"

#include <cerrno>
#include <cstdarg>
#include <poll.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <unistd.h>

ZbrDebugDescriptor zbr_debug_oemcim = {1, nullptr, {}};
pthread_mutex_t ph_oem_notify_mutex = PTHREAD_MUTEX_INITIALIZER;

void zbr_debugout_oemcim(int level, const char *file, int line, const char *format, ...) {
    // Several threads may write their first line at once; the one that stores the name binds the descriptor.
    const char *unnamed = nullptr;
    if (std::atomic_ref(zbr_debug_oemcim.name).compare_exchange_strong(unnamed, "oemcim")) {
        zbr_debuginit(&zbr_debug_oemcim);
    }
    va_list arguments;
    va_start(arguments, format);
    zbr_debugvout(&zbr_debug_oemcim, level, file, line, format, 0, 0, arguments);
    va_end(arguments);
}

namespace {

// The two queues exist already; this library never creates them. Who serves them keys them by this file.
enum NotifyQueue : int { RegistrationQueue = 1, NotificationQueue = 2 };

constexpr std::size_t message_body_length = 8;
constexpr std::uint16_t registered_subject = 0x2541; // what the process registers for: its configuration

struct NotifyMessage {
    long mtype; // the process's pid, both ways
    unsigned char body[message_body_length];
};

int OpenQueue(key_t key) {
    return msgget(key, 0660);
}

key_t QueueKey(NotifyQueue queue) {
    return ftok(VCH_NOTIFY_FILE, queue);
}

bool SendRegistration(key_t key) {
    const NotifyMessage registration = {
        getpid(), {registered_subject & 0xFF, registered_subject >> 8, 0, 0, 0, 0, 0, 0}};
    const MutexLock lock{LockedMutex(&ph_oem_notify_mutex)};
    const int queue = OpenQueue(key);
    return queue != -1 && msgsnd(queue, &registration, sizeof registration.body, 0) == 0;
}

int OpenNotificationQueue() {
    const key_t key = QueueKey(NotificationQueue);
    if (key == -1) {
        return -1;
    }
    const MutexLock lock{LockedMutex(&ph_oem_notify_mutex)};
    return OpenQueue(key);
}

// Waits for a queue that was removed to come back: trying again on its dead id could never succeed, and would
// only burn a core.
int ReopenNotificationQueue() {
    constexpr int once_a_second = 1000;
    int queue = -1;
    while (queue == -1) {
        poll(nullptr, 0, once_a_second);
        queue = OpenNotificationQueue();
    }
    return queue;
}

// Runs until the process ends. The body of a notification isn't read, however long: a message of the right
// type only asks for the mask to be loaded again.
void *ReceiveNotifications(void *) {
    const long pid = getpid();
    int queue = OpenNotificationQueue();
    if (queue == -1) {
        return nullptr;
    }
    for (;;) {
        NotifyMessage notification;
        if (msgrcv(queue, &notification, sizeof notification.body, pid, MSG_NOERROR) != -1) {
            zbr_debugmaskreconfig();
        } else if (errno == EIDRM || errno == EINVAL) {
            queue = ReopenNotificationQueue();
        }
    }
}

} // namespace

// --- Hooks that the diagnostic library calls

// Called when it starts: registers this process for notifications of a changed mask and starts the thread
// that receives them. pthread_create's result, or -1 when the registration failed.
EXPORTED int zbr_debughook_init() {
    const key_t key = QueueKey(RegistrationQueue);
    if (key == -1 || !SendRegistration(key)) {
        TRACE(TraceFailure, "Config notify registration failed");
        return -1;
    }
    pthread_t thread;
    const int result = pthread_create(&thread, nullptr, ReceiveNotifications, nullptr);
    if (result == 0) {
        pthread_detach(thread); // nobody ever waits for it
    }
    return result;
}

// Reads a configuration variable into `buffer` of `length` bytes and stores the number of bytes delivered. 0,
// 1 when no session could be opened, 19 when the read failed.
EXPORTED int zbr_debughook_readconfig(std::uint16_t id, std::uint8_t index, void *buffer, int length,
                                      std::uint16_t *returned) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    // Silent: the trace log isn't set up yet when this is called.
    if (PH_OEM_CreateIPMISession_Ex(&session, 0) != 0) {
        return 1;
    }
    auto delivered = static_cast<std::uint16_t>(length);
    std::uint8_t completionCode = 0;
    if (ZBR_CIM_GetConfigSpaceVariables(&session, id, index, &completionCode, buffer, &delivered,
                                        backend_timeout) != 0) {
        return 19;
    }
    if (returned != nullptr) {
        *returned = delivered;
    }
    return 0;
}
