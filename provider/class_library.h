#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

#include <memory>

/**
 * The class library, libVendorClassHelper.so, as the provider module sees it: a set of functions found by
 * name.
 *
 * The library is opened by the first request and stays open until the last MI is cleaned up. Requests may
 * come from several threads at once; each holds a use of the library, and the library is never closed under
 * one.
 */

/** Ends a use of the library. */
struct EndUse {
    void operator()(void *library) const;
};

/** A use of the open library. NULL when the library couldn't be opened. */
using LibraryUse = std::unique_ptr<void, EndUse>;

/** Whose function an operation is. */
enum class Scope {
    Class,  ///< each class has its own: the class's name without its prefix follows the symbol
    Library ///< one serves all classes
};

/** A function of the library. */
struct Operation {
    Scope scope;
    const char *symbol; ///< name of the function, or what it begins with: "PH_OEM_GI_"
    const char *name;   ///< name of the operation, as a client knows it: "getInstance"
};

/**
 * Opens the library if it isn't open, and holds it until the result is dropped.
 *
 * @return NULL on failure; then `status` is rc 1 with the dynamic loader's reason.
 */
LibraryUse useLibrary(const CMPIBroker *broker, CMPIStatus *status);

/**
 * Finds the function of `operation` for the class of the object path `cop`.
 *
 * The name is asked from the dynamic loader at every request: that is one look-up in a hash table, nothing
 * against the back ends that every operation opens, and so there is nothing to keep, to lock or to forget.
 *
 * @return NULL when there is none; then `status` is rc 5 and names the class when the library has no
 * operation of it at all, and otherwise rc 7 with operation and class.
 */
void *findOperation(const LibraryUse &library, const CMPIBroker *broker, const Operation &operation,
                    const CMPIObjectPath *cop, CMPIStatus *status);

/**
 * Carries an operation out: `call` is given its function, as one of type `Function`, while the library is
 * held.
 *
 * @return what `call` returns, or the status that says why there is no function.
 */
template <typename Function, typename Call>
CMPIStatus carryOut(const CMPIBroker *broker, const Operation &operation, const CMPIObjectPath *cop,
                    Call call) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const LibraryUse library = useLibrary(broker, &status);
    void *function = library == nullptr ? nullptr : findOperation(library, broker, operation, cop, &status);
    return function == nullptr ? status : call(reinterpret_cast<Function *>(function));
}

/** Makes `rc` and the text the status, in the request's memory. */
CMPIStatus failed(const CMPIBroker *broker, CMPIrc rc, const char *message);

/** Counts an MI that a factory has made: the library may be open as long as there are any. */
void addMi();

/**
 * Counts an MI off, and closes the library with the last one.
 *
 * @return false when a request is running: nothing is changed, and the server must not unload the module.
 */
bool removeMi();
