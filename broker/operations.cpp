// The operations of a client: routed like up-calls, then filtered by the property list.
#include "routing.h"

#include <new>

namespace broker {

namespace {

// Routes an operation. The request is the thread's current one meanwhile, so that what providers make
// lies in its memory, even if others were begun after it.
template <typename Route, typename... Arguments>
Outcome routed(Route route, Request &request, const CMPIObjectPath *path, Arguments... arguments) {
    const struct Until {
        Request *before;
        ~Until() { makeCurrent(before); }
    } end = {makeCurrent(&request)};
    return route(Call{request, &request.context->cmpi, path}, arguments...);
}

Answer answerOf(const Outcome &outcome, Form form, PropertyList properties) {
    Answer answer;
    answer.rc = outcome.status.rc;
    if (outcome.status.msg != nullptr) {
        answer.message = CMGetCharPtr(outcome.status.msg);
    }
    answer.value = outcome.value;
    if (form == Form::Names) {
        answer.paths.reserve(outcome.count);
    } else {
        answer.instances.reserve(outcome.count);
    }
    for (size_t i = 0; i < outcome.count; ++i) {
        if (form == Form::Names) {
            answer.paths.push_back(&static_cast<PathObject *>(outcome.items[i])->cmpi);
            continue;
        }
        auto *instance = static_cast<InstanceObject *>(outcome.items[i]);
        if (properties != nullptr && !keepProperties(*instance, properties)) {
            throw std::bad_alloc();
        }
        answer.instances.push_back(&instance->cmpi);
    }
    return answer;
}

} // namespace

Answer getInstance(Request &request, const CMPIObjectPath *path, PropertyList properties) {
    return answerOf(routed(routeGet, request, path, properties), Form::Instances, properties);
}

Answer enumerateInstances(Request &request, const CMPIObjectPath *classPath, PropertyList properties) {
    return answerOf(routed(routeEnumerate, request, classPath, Form::Instances, properties), Form::Instances,
                    properties);
}

Answer enumerateInstanceNames(Request &request, const CMPIObjectPath *classPath) {
    return answerOf(routed(routeEnumerate, request, classPath, Form::Names, nullptr), Form::Names, nullptr);
}

Answer createInstance(Request &request, const CMPIObjectPath *classPath, const CMPIInstance *instance) {
    return answerOf(routed(routeCreate, request, classPath, instance), Form::Names, nullptr);
}

Answer modifyInstance(Request &request, const CMPIObjectPath *path, const CMPIInstance *instance,
                      PropertyList properties) {
    return answerOf(routed(routeModify, request, path, instance, properties), Form::Instances, nullptr);
}

Answer deleteInstance(Request &request, const CMPIObjectPath *path) {
    return answerOf(routed(routeDelete, request, path), Form::Instances, nullptr);
}

Answer invokeMethod(Request &request, const CMPIObjectPath *path, const char *method, const CMPIArgs *in,
                    CMPIArgs *out) {
    return answerOf(routed(routeInvoke, request, path, method, in, out), Form::Instances, nullptr);
}

Answer associators(Request &request, const CMPIObjectPath *path, const Association &filter,
                   PropertyList properties) {
    return answerOf(routed(routeAssociators, request, path, Form::Instances, filter, properties),
                    Form::Instances, properties);
}

Answer associatorNames(Request &request, const CMPIObjectPath *path, const Association &filter) {
    return answerOf(routed(routeAssociators, request, path, Form::Names, filter, nullptr), Form::Names,
                    nullptr);
}

Answer references(Request &request, const CMPIObjectPath *path, const Association &filter,
                  PropertyList properties) {
    return answerOf(routed(routeReferences, request, path, Form::Instances, filter, properties),
                    Form::Instances, properties);
}

Answer referenceNames(Request &request, const CMPIObjectPath *path, const Association &filter) {
    return answerOf(routed(routeReferences, request, path, Form::Names, filter, nullptr), Form::Names,
                    nullptr);
}

} // namespace broker
