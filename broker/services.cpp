// The broker's table of services: threads, mutexes and conditions over POSIX threads.
#include "internal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace broker {

namespace {

pthread_t threadOf(CMPI_THREAD_TYPE thread) {
    return reinterpret_cast<pthread_t>(thread);
}

// The name of the file in which the loader finds a library, in memory that the caller frees.
char *resolveFileName(const char *libraryName) {
    return strdup((std::string("lib") + libraryName + ".so").c_str());
}

CMPI_THREAD_TYPE newThread(CMPIThreadFunc start, void *parameter, int detached) {
    pthread_t thread;
    if (pthread_create(&thread, nullptr, start, parameter) != 0) {
        return nullptr;
    }
    if (detached) {
        pthread_detach(thread);
    }
    return reinterpret_cast<CMPI_THREAD_TYPE>(thread); // NOLINT(performance-no-int-to-ptr): CMPI's type
}

int joinThread(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN *result) {
    return pthread_join(threadOf(thread), result);
}

int exitThread(CMPI_THREAD_RETURN result) {
    pthread_exit(result);
}

int cancelThread(CMPI_THREAD_TYPE thread) {
    return pthread_cancel(threadOf(thread));
}

int threadSleep(CMPIUint32 milliseconds) {
    timespec left = {static_cast<time_t>(milliseconds / 1000),
                     static_cast<long>(milliseconds % 1000) * 1000000};
    while (nanosleep(&left, &left) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

// *once is 0 until the function has run.
int threadOnce(int *once, CMPIThreadOnceFunc function) {
    static std::recursive_mutex lock;
    const std::lock_guard guard(lock);
    if (*once == 0) {
        *once = 1;
        function();
    }
    return 0;
}

int createThreadKey(CMPI_THREAD_KEY_TYPE *key, CMPIThreadKeyCleanupFunc cleanup) {
    return pthread_key_create(key, cleanup);
}

int destroyThreadKey(CMPI_THREAD_KEY_TYPE key) {
    return pthread_key_delete(key);
}

void *getThreadSpecific(CMPI_THREAD_KEY_TYPE key) {
    return pthread_getspecific(key);
}

int setThreadSpecific(CMPI_THREAD_KEY_TYPE key, void *value) {
    return pthread_setspecific(key, value);
}

CMPI_MUTEX_TYPE newMutex(int) {
    auto *mutex = new (std::nothrow) pthread_mutex_t;
    if (mutex != nullptr) {
        pthread_mutex_init(mutex, nullptr);
    }
    return mutex;
}

void destroyMutex(CMPI_MUTEX_TYPE mutex) {
    pthread_mutex_destroy(static_cast<pthread_mutex_t *>(mutex));
    delete static_cast<pthread_mutex_t *>(mutex);
}

void lockMutex(CMPI_MUTEX_TYPE mutex) {
    pthread_mutex_lock(static_cast<pthread_mutex_t *>(mutex));
}

void unlockMutex(CMPI_MUTEX_TYPE mutex) {
    pthread_mutex_unlock(static_cast<pthread_mutex_t *>(mutex));
}

CMPI_COND_TYPE newCondition(int) {
    auto *condition = new (std::nothrow) pthread_cond_t;
    if (condition != nullptr) {
        pthread_cond_init(condition, nullptr);
    }
    return condition;
}

void destroyCondition(CMPI_COND_TYPE condition) {
    pthread_cond_destroy(static_cast<pthread_cond_t *>(condition));
    delete static_cast<pthread_cond_t *>(condition);
}

int condWait(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex) {
    return pthread_cond_wait(static_cast<pthread_cond_t *>(condition), static_cast<pthread_mutex_t *>(mutex));
}

int timedCondWait(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex, timespec *wait) {
    return pthread_cond_timedwait(static_cast<pthread_cond_t *>(condition),
                                  static_cast<pthread_mutex_t *>(mutex), wait);
}

int signalCondition(CMPI_COND_TYPE condition) {
    return pthread_cond_signal(static_cast<pthread_cond_t *>(condition));
}

} // namespace

const CMPIBrokerExtFT serviceTable = {
    .ftVersion = CMPIVersion200,
    .resolveFileName = resolveFileName,
    .newThread = newThread,
    .joinThread = joinThread,
    .exitThread = exitThread,
    .cancelThread = cancelThread,
    .threadSleep = threadSleep,
    .threadOnce = threadOnce,
    .createThreadKey = createThreadKey,
    .destroyThreadKey = destroyThreadKey,
    .getThreadSpecific = getThreadSpecific,
    .setThreadSpecific = setThreadSpecific,
    .newMutex = newMutex,
    .destroyMutex = destroyMutex,
    .lockMutex = lockMutex,
    .unlockMutex = unlockMutex,
    .newCondition = newCondition,
    .destroyCondition = destroyCondition,
    .condWait = condWait,
    .timedCondWait = timedCondWait,
    .signalCondition = signalCondition,
};

} // namespace broker
