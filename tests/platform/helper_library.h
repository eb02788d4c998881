/// The base helper library as its callers open it.
#pragma once

#include <dlfcn.h>

#include <stdexcept>

#include "libClassHelper.h"

/// A function of the library, which is open as long as this lives.
template <class Function> struct HelperFunction {
    void *library = dlopen(CLASS_HELPER, RTLD_LAZY);
    Function *function;
    explicit HelperFunction(const char *name)
        : function(reinterpret_cast<Function *>(library != nullptr ? dlsym(library, name) : nullptr)) {
        if (function == nullptr) {
            throw std::runtime_error(dlerror());
        }
    }
    ~HelperFunction() { dlclose(library); }
    HelperFunction(const HelperFunction &) = delete;
    HelperFunction &operator=(const HelperFunction &) = delete;
};
