// The broker's life, its requests, and the threads that providers attach.
#include "mof.h"
#include "objects.h"

#include <cassert>
#include <utility>

namespace broker {

namespace {

thread_local Request *current = nullptr;

// Makes a request the calling thread's, and known to the broker.
Request *enter(Broker &broker) {
    auto *request = new Request;
    request->broker = &broker;
    request->memory.broker = &broker;
    request->enclosing = current;
    current = request;
    const std::lock_guard lock(broker.requestsLock);
    request->older = broker.requests;
    if (request->older != nullptr) {
        request->older->newer = request;
    }
    broker.requests = request;
    return request;
}

void leave(Request *request) {
    Request **link = &current;
    while (*link != nullptr && *link != request) {
        link = &(*link)->enclosing;
    }
    assert(*link == request && "a request ends on the thread that began it");
    *link = request->enclosing;
    {
        const std::lock_guard lock(request->broker->requestsLock);
        if (request->older != nullptr) {
            request->older->newer = request->newer;
        }
        (request->newer != nullptr ? request->newer->older : request->broker->requests) = request->older;
    }
    freeAll(request->memory);
    delete request;
}

void addText(CMPIContext *context, const char *name, const std::string &text) {
    CMAddContextEntry(context, name, text.c_str(), CMPI_chars);
}

void freeContext(ContextObject *context) {
    Memory *memory = context->memory;
    freeAll(*memory);
    delete memory;
}

} // namespace

Request *currentRequest() {
    return current;
}

Request *makeCurrent(Request *request) {
    return std::exchange(current, request);
}

BrokerPointer openBroker(const Settings &settings, std::string &error) {
    BrokerPointer broker(new Broker);
    broker->settings = settings;
    broker->cmpi = {broker.get(), &upcallTable, &creationTable, &serviceTable, &memoryTable};
    for (const std::string &file : settings.mofFiles) {
        error = readMof(file, broker->schema);
        if (!error.empty()) {
            return nullptr;
        }
    }
    for (const auto &cls : broker->schema.classes) {
        for (const std::string &glob : settings.providedClasses) {
            if (!cls->isAbstract && matchesGlob(cls->name, glob)) {
                broker->provided.try_emplace(cls.get());
            }
        }
    }
    error = loadProviders(*broker);
    return error.empty() ? std::move(broker) : nullptr;
}

void closeBroker(Broker *broker) {
    assert(broker->requests == nullptr && "all requests end before their broker closes");
    {
        const RequestPointer request = beginRequest(*broker, {});
        unloadProviders(*broker, contextOf(*request));
    }
    while (broker->prepared != nullptr) {
        ContextObject *context = broker->prepared;
        broker->prepared = context->nextPrepared;
        freeContext(context);
    }
    delete broker;
}

const Schema &schemaOf(const Broker &broker) {
    return broker.schema;
}

const std::string &nameSpaceOf(const Broker &broker) {
    return broker.settings.nameSpace;
}

const Class *classNamed(const Broker &broker, std::string_view name) {
    const Class *cls = findClass(broker.schema, name);
    return cls != nullptr ? cls : findClass(broker.schema, broker.settings.classPrefix + std::string(name));
}

const CMPIBroker *cmpiBroker(const Broker &broker) {
    return &broker.cmpi;
}

RequestPointer beginRequest(Broker &broker, const Client &client) {
    Request *request = enter(broker);
    request->context = newContext(request->memory);
    if (request->context == nullptr) {
        throw std::bad_alloc();
    }
    CMPIContext *context = &request->context->cmpi;
    const CMPIUint32 flags = client.flags;
    CMAddContextEntry(context, CMPIInvocationFlags, &flags, CMPI_uint32);
    addText(context, CMPIPrincipal, client.principal);
    addText(context, CMPIInitNameSpace, broker.settings.nameSpace);
    const std::pair<const char *, const std::string &> optional[] = {
        {CMPIRole, client.role},
        {CMPIAcceptLanguage, client.acceptLanguage},
        {"CMPIRemoteIP", client.remoteAddress},
    };
    for (const auto &[name, text] : optional) {
        if (!text.empty()) {
            addText(context, name, text);
        }
    }
    return RequestPointer(request);
}

void endRequest(Request *request) {
    leave(request);
}

CMPIContext *contextOf(Request &request) {
    return &request.context->cmpi;
}

Broker &brokerOf(Request &request) {
    return *request.broker;
}

size_t liveObjects(const Broker &broker) {
    auto &lock = const_cast<std::mutex &>(broker.requestsLock);
    const std::lock_guard guard(lock);
    size_t objects = 0;
    for (const Request *request = broker.requests; request != nullptr; request = request->older) {
        objects += request->memory.objects.load(std::memory_order_relaxed);
    }
    return objects;
}

size_t liveClones(const Broker &broker) {
    return broker.liveClones.load(std::memory_order_relaxed);
}

void setStatus(CMPIStatus *status, CMPIrc rc) {
    if (status != nullptr) {
        *status = {rc, nullptr};
    }
}

CMPIStatus statusOf(CMPIrc rc, const std::string &message) {
    StringObject *text = current == nullptr ? nullptr : newString(current->memory, message);
    return {rc, text == nullptr ? nullptr : &text->cmpi};
}

// --- Threads of providers -----------------------------------------------------------------------------

// A copy of the context that outlives the request: the broker keeps it until the thread detaches.
CMPIContext *prepareAttachThread(const CMPIBroker *mb, const CMPIContext *source) {
    Broker &broker = *brokerOf(mb);
    auto *memory = source == nullptr ? nullptr : new (std::nothrow) Memory;
    if (memory == nullptr) {
        return nullptr;
    }
    memory->broker = &broker;
    ContextObject *context = copyContext(*memory, *objectOf(source));
    if (context == nullptr) {
        freeAll(*memory);
        delete memory;
        return nullptr;
    }
    context->isPrepared = true;
    const std::lock_guard lock(broker.requestsLock);
    context->nextPrepared = broker.prepared;
    broker.prepared = context;
    return &context->cmpi;
}

CMPIStatus attachThread(const CMPIBroker *mb, const CMPIContext *context) {
    if (context == nullptr || !objectOf(context)->isPrepared) {
        return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
    }
    Request *request = enter(*brokerOf(mb));
    request->context = objectOf(context);
    request->attachedBy = objectOf(context);
    return statusOf(CMPI_RC_OK);
}

CMPIStatus detachThread(const CMPIBroker *mb, const CMPIContext *context) {
    if (context == nullptr || current == nullptr || current->attachedBy != objectOf(context)) {
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    }
    leave(current);
    Broker &broker = *brokerOf(mb);
    {
        const std::lock_guard lock(broker.requestsLock);
        ContextObject **link = &broker.prepared;
        while (*link != objectOf(context)) {
            link = &(*link)->nextPrepared;
        }
        *link = (*link)->nextPrepared;
    }
    freeContext(objectOf(context));
    return {CMPI_RC_OK, nullptr};
}

} // namespace broker
