#include "class_library.h"

#include <dlfcn.h>
#include <strings.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <mutex>

namespace {

constexpr char libraryName[] = "libVendorClassHelper.so";
constexpr char classPrefix[] = "TRV_oVTA";
constexpr size_t classPrefixLength = sizeof classPrefix - 1;

// A class of the library has at least one of these.
constexpr const char *operationsOfAClass[] = {"PH_OEM_GI_", "PH_OEM_MakeInst_", "PH_OEM_MI_", "PH_OEM_IM_"};

std::mutex mutex; // guards what follows
void *library = nullptr;
unsigned mis = 0;
unsigned requests = 0;

// Path of the library beside this module; false when there is none. It is worked out here and not left to a
// RUNPATH, which is that of dlopen's caller: where a sanitizer or a preloaded library wraps dlopen, that
// isn't us.
bool findBesideModule(char *path, size_t size) {
    Dl_info module;
    if (dladdr(reinterpret_cast<const void *>(&findBesideModule), &module) == 0) {
        return false;
    }
    const char *slash = strrchr(module.dli_fname, '/');
    const int folder = slash == nullptr ? 0 : static_cast<int>(slash + 1 - module.dli_fname);
    const int length = snprintf(path, size, "%.*s%s", folder, module.dli_fname, libraryName);
    return length > 0 && static_cast<size_t>(length) < size && access(path, F_OK) == 0;
}

// Takes the library that the process has already, else the one beside this module, else the one that the
// dynamic loader finds by name.
void *openLibrary() {
    if (void *present = dlopen(libraryName, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD)) {
        return present;
    }
    char path[4096];
    return dlopen(findBesideModule(path, sizeof path) ? path : libraryName, RTLD_NOW | RTLD_LOCAL);
}

// The function of a class. The class's name stands in the function's as the schema spells it.
void *classFunction(void *handle, const char *symbol, const char *shortName) {
    char name[256];
    const int length = snprintf(name, sizeof name, "%s%s", symbol, shortName);
    if (length < 0 || static_cast<size_t>(length) >= sizeof name) {
        return nullptr;
    }
    return dlsym(handle, name);
}

bool hasClass(void *handle, const char *shortName) {
    for (const char *symbol : operationsOfAClass) {
        if (classFunction(handle, symbol, shortName) != nullptr) {
            return true;
        }
    }
    return false;
}

const char *className(const CMPIObjectPath *cop) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIString *name = cop == nullptr ? nullptr : CMGetClassName(cop, &status);
    const char *text = name == nullptr ? nullptr : CMGetCharsPtr(name, nullptr);
    return text == nullptr ? "" : text;
}

} // namespace

CMPIStatus failed(const CMPIBroker *broker, CMPIrc rc, const char *message) {
    return {rc, CMNewString(broker, message, nullptr)};
}

void EndUse::operator()(void *) const {
    const std::lock_guard<std::mutex> lock(mutex);
    --requests;
}

LibraryUse useLibrary(const CMPIBroker *broker, CMPIStatus *status) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (library == nullptr) {
        library = openLibrary();
    }
    if (library == nullptr) {
        const char *reason = dlerror();
        char message[1024];
        snprintf(message, sizeof message, "The class library can't be opened: %s",
                 reason == nullptr ? libraryName : reason);
        *status = failed(broker, CMPI_RC_ERR_FAILED, message);
        return nullptr;
    }
    ++requests;
    return LibraryUse(library);
}

void *findOperation(const LibraryUse &use, const CMPIBroker *broker, const Operation &operation,
                    const CMPIObjectPath *cop, CMPIStatus *status) {
    const char *fullName = className(cop);
    const bool ours = strncasecmp(fullName, classPrefix, classPrefixLength) == 0;
    const char *shortName = fullName + (ours ? classPrefixLength : 0);
    void *function = nullptr;
    if (operation.scope == Scope::Library) {
        function = dlsym(use.get(), operation.symbol);
    } else if (ours) {
        function = classFunction(use.get(), operation.symbol, shortName);
    }
    if (function != nullptr) {
        return function;
    }
    char message[512];
    if (operation.scope == Scope::Library || (ours && hasClass(use.get(), shortName))) {
        snprintf(message, sizeof message, "%s isn't supported by class %.256s", operation.name, fullName);
        *status = failed(broker, CMPI_RC_ERR_NOT_SUPPORTED, message);
    } else {
        snprintf(message, sizeof message,
                 "Class %.256s isn't one of %s (names are taken in the schema's spelling)", fullName,
                 libraryName);
        *status = failed(broker, CMPI_RC_ERR_INVALID_CLASS, message);
    }
    return nullptr;
}

void addMi() {
    const std::lock_guard<std::mutex> lock(mutex);
    ++mis;
}

bool removeMi() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (requests > 0) {
        return false;
    }
    if (--mis == 0 && library != nullptr) {
        dlclose(library);
        library = nullptr;
    }
    return true;
}
