// The broker and its requests, as the broker's own files see them.
#pragma once

#include "broker.h"
#include "memory.h"

#include <atomic>
#include <mutex>
#include <unordered_map>

namespace broker {

struct ContextObject;

// The three management interfaces of one class, each made when it is first needed.
struct Provider {
    std::atomic<CMPIInstanceMI *> instances{nullptr};
    std::atomic<CMPIAssociationMI *> associations{nullptr};
    std::atomic<CMPIMethodMI *> methods{nullptr};
};

struct Broker {
    CMPIBroker cmpi = {}; // what providers hold; hdl is this broker
    Settings settings;
    Schema schema;
    void *module = nullptr;                               // from dlopen
    std::unordered_map<const Class *, Provider> provided; // classes that have a provider; fixed once open
    std::recursive_mutex providersLock; // held while a provider is made, which may ask for others
    bool keepModule = false;            // a provider forbade unloading

    // What every request writes, on cache lines of its own: all threads read the rest for each call.
    alignas(64) std::mutex requestsLock;
    Request *requests = nullptr;       // that haven't ended
    ContextObject *prepared = nullptr; // contexts handed out for threads that haven't detached
    std::atomic<size_t> liveClones{0};
};

// A thread's request. Threads that a provider attaches have requests of their own.
struct Request {
    Broker *broker = nullptr;
    Memory memory;
    ContextObject *context = nullptr;
    Request *enclosing = nullptr;               // of the same thread
    Request *newer = nullptr, *older = nullptr; // in the broker's list
    const ContextObject *attachedBy = nullptr;  // for a provider's thread: its prepared context
};

// The calling thread's request, null outside of any.
Request *currentRequest();

// Makes a request of the calling thread the one in whose memory objects are made; returns the one before.
Request *makeCurrent(Request *request);

inline Broker *brokerOf(const CMPIBroker *broker) {
    return static_cast<Broker *>(const_cast<void *>(broker->hdl));
}

// Fills a status that may be missing.
void setStatus(CMPIStatus *status, CMPIrc rc);

// A status with a message in the calling thread's request.
CMPIStatus statusOf(CMPIrc rc, const std::string &message);
constexpr CMPIStatus statusOf(CMPIrc rc) {
    return {rc, nullptr};
}

// --- The broker's tables --------------------------------------------------------------------------

extern const CMPIBrokerFT upcallTable;
extern const CMPIBrokerEncFT creationTable;
extern const CMPIBrokerExtFT serviceTable;
extern const CMPIBrokerMemFT memoryTable;

// Attachment of providers' threads, as the table of up-calls offers it.
CMPIContext *prepareAttachThread(const CMPIBroker *mb, const CMPIContext *context);
CMPIStatus attachThread(const CMPIBroker *mb, const CMPIContext *context);
CMPIStatus detachThread(const CMPIBroker *mb, const CMPIContext *context);

// --- Providers ------------------------------------------------------------------------------------

// Loads the module; a text why not, or an empty one.
std::string loadProviders(Broker &broker);

// Cleans all providers up and unloads the module. Needs a request of this thread.
void unloadProviders(Broker &broker, const CMPIContext *context);

// The class's management interface, made if need be; null with a status otherwise.
CMPIInstanceMI *instanceProvider(Broker &broker, const Class &cls, const CMPIContext *context,
                                 CMPIStatus &status);
CMPIAssociationMI *associationProvider(Broker &broker, const Class &cls, const CMPIContext *context,
                                       CMPIStatus &status);
CMPIMethodMI *methodProvider(Broker &broker, const Class &cls, const CMPIContext *context,
                             CMPIStatus &status);

} // namespace broker
