// The base helper library, which is opened for each call and closed again after it.
#pragma once

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Debug.h"

#include "libClassHelper.h"

#include <cerrno>

// Opens a library with lazy binding, or traces why not.
inline void *OpenLibrary(const char *path, const char *file = __builtin_FILE(), int line = __builtin_LINE()) {
    void *library = dlopen(path, RTLD_LAZY);
    if (library == nullptr) {
        TRACE_FROM(file, line, TraceFailure, "dlopen failed errno=%d", errno);
    }
    return library;
}

// The function of that name, or NULL with a trace line.
template <typename F>
F *FindFunction(void *library, const char *name, const char *file = __builtin_FILE(),
                int line = __builtin_LINE()) {
    auto *function = reinterpret_cast<F *>(dlsym(library, name));
    if (function == nullptr) {
        TRACE_FROM(file, line, TraceFailure, "dlsym failed errno=%d", errno);
    }
    return function;
}

// Calls a function of the helper library with the library open for that call. Gives `failed` when library or
// function can't be had.
template <typename F, typename... Arguments>
int CallHelper(const char *name, int failed, Arguments... arguments) {
    const LibraryOwner library{OpenLibrary(VCH_CLASS_HELPER)};
    if (library == nullptr) {
        return failed;
    }
    F *function = FindFunction<F>(library.get(), name);
    return function == nullptr ? failed : function(arguments...);
}
