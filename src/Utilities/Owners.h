// Clean-up by scope: an owner closes what it holds on every way out of an operation.
//
// Sessions and handles are held by the caller, as plain values; their owner holds the address and closes them
// also when opening failed, which the back ends take without harm.
#pragma once

#include "Utilities/PH_OEM_Debug.h"
#include "Utilities/PH_OEM_Utilities.h"

#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <pthread.h>

template <auto close> struct Closer {
    template <typename T> void operator()(T *resource) const { close(resource); }
};

inline void CloseOEMDBHandle(std::uint32_t *handle) {
    PH_OEM_CloseOEMDB(*handle);
}
inline void CloseCoreDBHandle(std::uint32_t *handle) {
    PH_OEM_CloseCoreDB(*handle);
}
inline void FreeBlock(void *block) {
    std::free(block);
}
inline void CloseLibrary(void *library) {
    dlclose(library);
}
inline void UnlockMutex(pthread_mutex_t *mutex) {
    pthread_mutex_unlock(mutex);
}

using SessionOwner = std::unique_ptr<IpmiSession, Closer<PH_OEM_CloseIPMISession>>;
using OEMDBOwner = std::unique_ptr<std::uint32_t, Closer<CloseOEMDBHandle>>;
using CoreDBOwner = std::unique_ptr<std::uint32_t, Closer<CloseCoreDBHandle>>;
using LibraryOwner = std::unique_ptr<void, Closer<CloseLibrary>>;
using MutexLock = std::unique_ptr<pthread_mutex_t, Closer<UnlockMutex>>;

// Opens the OEM DB for an owner that stands already; false, with a trace line, on failure.
inline bool OpenOEMDB(std::uint32_t *handle, const char *file = __builtin_FILE(),
                      int line = __builtin_LINE()) {
    if (PH_OEM_InitOEMDB(handle) != 0) {
        TRACE_FROM(file, line, TraceFailure, "Failed to create handle for OEM DB Access");
        return false;
    }
    return true;
}

// Rows from a back end, records, and every other block that malloc gave.
template <typename T> using Block = std::unique_ptr<T, Closer<FreeBlock>>;

inline pthread_mutex_t *LockedMutex(pthread_mutex_t *mutex) {
    pthread_mutex_lock(mutex);
    return mutex;
}
