// A class library for the provider module's tests: class Toy has every operation, class Partial only one that
// no client asks for. Its operations write down what they were given.
#pragma once

#include <cmpidt.h>

#include <atomic>

struct FakeCall {
    const char *function = nullptr;
    const CMPIBroker *broker = nullptr;
    const CMPIContext *context = nullptr;
    const CMPIObjectPath *path = nullptr;
    const CMPIResult *result = nullptr;
    const char **properties = nullptr;
    const CMPIInstance *instance = nullptr;
    const void *handle = nullptr;   ///< the MI, or what is passed for the opaque handle
    const char *text = nullptr;     ///< method or query
    const char *language = nullptr; ///< of a query
    const CMPIArgs *in = nullptr;
    const CMPIArgs *out = nullptr;
};

/** The library's state, which it exports as `fake_state`. */
struct FakeState {
    FakeCall last;                                    ///< of a call while `recording`
    bool recording = true;                            ///< off while several threads call
    CMPIStatus answer = {CMPI_RC_OK, nullptr};        ///< of every operation
    CMPIStatus statusOnEntry = {CMPI_RC_OK, nullptr}; ///< what the last read found in its status
    void (*during)() = nullptr;                       ///< called by every operation
    std::atomic<int> calls = 0;
};
