#include "routing.h"

namespace broker {

namespace {

const char **asList(PropertyList properties) {
    return const_cast<const char **>(properties);
}

Outcome failed(CMPIrc rc, const std::string &message) {
    return {.status = statusOf(rc, message)};
}

Outcome outOfMemory() {
    return failed(CMPI_RC_ERR_FAILED, "out of memory");
}

// The class that a request is about; null with a status if it can't be served.
const Class *targetOf(const Call &call, CMPIStatus &status) {
    if (call.path == nullptr || call.context == nullptr) {
        status = statusOf(CMPI_RC_ERR_INVALID_PARAMETER, "a request needs an object path and a context");
        return nullptr;
    }
    const PathBody &path = *objectOf(call.path)->body;
    const std::string nameSpace = CMGetCharPtr(&path.nameSpace->cmpi);
    const std::string &served = call.request.broker->settings.nameSpace;
    if (!sameName(nameSpace, served)) {
        status = statusOf(CMPI_RC_ERR_INVALID_NAMESPACE,
                          "namespace \"" + nameSpace + "\" isn't served here, only \"" + served + '"');
        return nullptr;
    }
    if (path.cls == nullptr) {
        status =
            statusOf(CMPI_RC_ERR_INVALID_CLASS,
                     std::string("class \"") + CMGetCharPtr(&path.className->cmpi) + "\" isn't declared");
    }
    return path.cls;
}

bool isProvided(const Broker &broker, const Class &cls) {
    return broker.provided.contains(&cls);
}

// The class itself or its nearest superclass that has a provider; null if there is none.
const Class *providedClass(const Broker &broker, const Class &cls) {
    const Class *c = &cls;
    while (c != nullptr && !isProvided(broker, *c)) {
        c = c->superclass;
    }
    return c;
}

CMPIStatus noProvider(const Class &cls) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED, "class " + cls.name + " has no provider");
}

CMPIStatus noFunction(const Class &cls) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED, "the provider of class " + cls.name + " lacks this operation");
}

// The path that a provider gets, a copy of its own. Numbers in its keys have lost their type on the way,
// as in CIM servers: they are uint64, or sint64 if negative.
PathObject *pathForProvider(Memory &memory, const CMPIObjectPath *path) {
    PathObject *copy = copyPath(memory, *objectOf(path));
    for (CMPICount i = 0; copy != nullptr && i < copy->body->keys.count; ++i) {
        const CMPIData &data = copy->body->keys.values[i].data;
        if (!isInteger(data.type) || CMIsNullValue(data)) {
            continue;
        }
        const Integer number = integerOf(data);
        const CMPIType type = number.isNegative ? CMPI_sint64 : CMPI_uint64;
        PathBody *body = data.type == type ? copy->body : ownBody(*copy);
        if (body == nullptr) {
            return nullptr;
        }
        body->keys.values[i].data.type = type;
        body->keys.values[i].data.value.uint64 = number.bits;
    }
    return copy;
}

// What became of a provider's call: a fault in what it returned counts before its own status.
CMPIStatus statusOfCall(const ResultObject &result, const CMPIStatus &returned) {
    return result.failure.rc != CMPI_RC_OK ? result.failure : returned;
}

// Runs a call of one class's instance provider. slot is the function in its table, arguments what follows
// the result.
template <typename Slot, typename... Arguments>
CMPIStatus askInstances(const Call &call, const Class &cls, ResultObject &result, const Slot &slot,
                        Arguments... arguments) {
    CMPIStatus status = statusOf(CMPI_RC_OK);
    CMPIInstanceMI *mi = instanceProvider(*call.request.broker, cls, call.context, status);
    if (mi == nullptr) {
        return status;
    }
    if (mi->ft->*slot == nullptr) {
        return noFunction(cls);
    }
    return statusOfCall(result, (mi->ft->*slot)(mi, call.context, &result.cmpi, arguments...));
}

// The same for a request about one instance, served by the nearest class with a provider.
template <typename Slot, typename... Arguments>
Outcome askOne(const Call &call, Expected expected, const Slot &slot, Arguments... arguments) {
    Outcome outcome;
    const Class *cls = targetOf(call, outcome.status);
    if (cls == nullptr) {
        return outcome;
    }
    const Class *served = providedClass(*call.request.broker, *cls);
    if (served == nullptr) {
        return {.status = noProvider(*cls)};
    }
    Memory &memory = call.request.memory;
    ResultObject *result = newResult(memory, expected);
    PathObject *path = pathForProvider(memory, call.path);
    if (result == nullptr || path == nullptr) {
        return outOfMemory();
    }
    result->cls = cls;
    outcome.status = askInstances(call, *served, *result, slot, &path->cmpi, arguments...);
    if (outcome.status.rc == CMPI_RC_OK) {
        outcome.items = result->items;
        outcome.count = result->count;
    }
    return outcome;
}

// The same for one association provider, whose answer is added to the result.
template <typename Slot, typename... Arguments>
CMPIStatus askAssociations(const Call &call, const Class &cls, ResultObject &result, const Slot &slot,
                           Arguments... arguments) {
    CMPIStatus status = statusOf(CMPI_RC_OK);
    CMPIAssociationMI *mi = associationProvider(*call.request.broker, cls, call.context, status);
    if (mi == nullptr) {
        return status;
    }
    if (mi->ft->*slot == nullptr) {
        return noFunction(cls);
    }
    return statusOfCall(result, (mi->ft->*slot)(mi, call.context, &result.cmpi, arguments...));
}

// What several providers' statuses come to. Any error fails the whole, but for providers that don't
// support the operation as long as another one does.
struct Together {
    bool isSupported = false;
    CMPIStatus unsupported = {CMPI_RC_OK, nullptr}; // of the last one
    CMPIStatus failure = {CMPI_RC_OK, nullptr};
};

void add(Together &together, const CMPIStatus &status) {
    if (status.rc == CMPI_RC_ERR_NOT_SUPPORTED) {
        together.unsupported = status;
    } else if (status.rc == CMPI_RC_OK) {
        together.isSupported = true;
    } else {
        together.failure = status;
    }
}

Outcome outcomeOf(const Together &together, const ResultObject &result) {
    if (together.failure.rc != CMPI_RC_OK) {
        return {.status = together.failure};
    }
    if (!together.isSupported && together.unsupported.rc != CMPI_RC_OK) {
        return {.status = together.unsupported};
    }
    return {.items = result.items, .count = result.count};
}

bool isRelated(const Class *a, const Class *b) {
    return a != nullptr && b != nullptr && (isA(*a, *b) || isA(*b, *a));
}

// May an association link instances of the source class, in its role, to the wanted ones? For
// references, where no other end is asked for, resultClass is null and so is resultRole.
bool mayLink(const Schema &schema, const Class &association, const Class &source, const char *role,
             const Class *resultClass, const char *resultRole) {
    for (const Property &here : association.properties) {
        const Class *end = here.type == CMPI_ref ? findClass(schema, here.referenceClass) : nullptr;
        if (end == nullptr || !isA(source, *end) || (role != nullptr && !sameName(role, here.name))) {
            continue;
        }
        for (const Property &there : association.properties) {
            if (&there == &here || there.type != CMPI_ref) {
                continue;
            }
            const bool isClass =
                resultClass == nullptr || isRelated(findClass(schema, there.referenceClass), resultClass);
            if (isClass && (resultRole == nullptr || sameName(resultRole, there.name))) {
                return true;
            }
        }
    }
    return false;
}

// A class named in a filter; false with a status if it isn't declared.
bool namedClass(const Schema &schema, const char *name, const Class *&cls, CMPIStatus &status) {
    cls = name == nullptr || *name == '\0' ? nullptr : findClass(schema, name);
    if (cls == nullptr && name != nullptr && *name != '\0') {
        status =
            statusOf(CMPI_RC_ERR_INVALID_PARAMETER, std::string("class \"") + name + "\" isn't declared");
        return false;
    }
    return true;
}

// Asks all providers that may know an instance's associations: that of its own class, which gets the
// filter's class as it is, and those of the association classes in question, which get their own name.
// ask(cls, className, path, result) makes the call.
template <typename Ask>
Outcome collectAssociations(const Call &call, Form form, const char *associationName, const char *resultName,
                            const Association &filter, Ask ask) {
    Outcome outcome;
    const Schema &schema = call.request.broker->schema;
    const Class *association = nullptr, *resultClass = nullptr;
    const Class *source = targetOf(call, outcome.status);
    if (source == nullptr || !namedClass(schema, associationName, association, outcome.status) ||
        !namedClass(schema, resultName, resultClass, outcome.status)) {
        return outcome;
    }
    Memory &memory = call.request.memory;
    ResultObject *result = newResult(memory, form == Form::Names ? Expected::Paths : Expected::Instances);
    PathObject *path = pathForProvider(memory, call.path);
    if (result == nullptr || path == nullptr) {
        return outOfMemory();
    }

    Together together;
    if (isProvided(*call.request.broker, *source) && !source->isAssociation) {
        add(together, ask(*source, associationName, &path->cmpi, *result));
    }
    for (const auto &cls : schema.classes) {
        if (together.failure.rc == CMPI_RC_OK && cls->isAssociation &&
            isProvided(*call.request.broker, *cls) && (association == nullptr || isA(*cls, *association)) &&
            mayLink(schema, *cls, *source, filter.role, resultClass, filter.resultRole)) {
            add(together, ask(*cls, cls->name.c_str(), &path->cmpi, *result));
        }
    }
    return outcomeOf(together, *result);
}

} // namespace

Outcome routeGet(const Call &call, PropertyList properties) {
    Outcome outcome = askOne(call, Expected::Instances, &CMPIInstanceMIFT::getInstance, asList(properties));
    if (outcome.status.rc == CMPI_RC_OK && outcome.count != 1) {
        return failed(CMPI_RC_ERR_FAILED, "the provider of class " + objectOf(call.path)->body->cls->name +
                                              " answered a request for one instance with " +
                                              std::to_string(outcome.count));
    }
    return outcome;
}

// A class is answered by its own provider and those of its subclasses.
Outcome routeEnumerate(const Call &call, Form form, PropertyList properties) {
    Outcome outcome;
    const Class *target = targetOf(call, outcome.status);
    if (target == nullptr) {
        return outcome;
    }
    Memory &memory = call.request.memory;
    ResultObject *result = newResult(memory, form == Form::Names ? Expected::Paths : Expected::Instances);
    if (result == nullptr) {
        return outOfMemory();
    }
    Together together = {.unsupported = noProvider(*target)};
    for (const Class *cls : withSubclasses(*target)) {
        if (together.failure.rc != CMPI_RC_OK) {
            break;
        }
        if (!isProvided(*call.request.broker, *cls)) {
            continue;
        }
        PathObject *path = pathOfClass(memory, *objectOf(call.path), *cls);
        if (path == nullptr) {
            return outOfMemory();
        }
        result->cls = cls;
        if (form == Form::Names) {
            add(together,
                askInstances(call, *cls, *result, &CMPIInstanceMIFT::enumerateInstanceNames, &path->cmpi));
        } else {
            add(together, askInstances(call, *cls, *result, &CMPIInstanceMIFT::enumerateInstances,
                                       &path->cmpi, asList(properties)));
        }
    }
    return outcomeOf(together, *result);
}

Outcome routeCreate(const Call &call, const CMPIInstance *instance) {
    if (instance == nullptr) {
        return failed(CMPI_RC_ERR_INVALID_PARAMETER, "there is no instance to create");
    }
    return askOne(call, Expected::Paths, &CMPIInstanceMIFT::createInstance, instance);
}

Outcome routeModify(const Call &call, const CMPIInstance *instance, PropertyList properties) {
    if (instance == nullptr) {
        return failed(CMPI_RC_ERR_INVALID_PARAMETER, "there is no instance to modify");
    }
    return askOne(call, Expected::Nothing, &CMPIInstanceMIFT::modifyInstance, instance, asList(properties));
}

Outcome routeDelete(const Call &call) {
    return askOne(call, Expected::Nothing, &CMPIInstanceMIFT::deleteInstance);
}

Outcome routeInvoke(const Call &call, const char *name, const CMPIArgs *in, CMPIArgs *out) {
    Outcome outcome;
    if (name == nullptr || in == nullptr || out == nullptr) {
        return failed(CMPI_RC_ERR_INVALID_PARAMETER, "a method call needs a name, and arguments in and out");
    }
    const Class *cls = targetOf(call, outcome.status);
    if (cls == nullptr) {
        return outcome;
    }
    Broker &broker = *call.request.broker;
    const Class *served = providedClass(broker, *cls);
    if (served == nullptr) {
        return {.status = noProvider(*cls)};
    }
    CMPIMethodMI *mi = methodProvider(broker, *served, call.context, outcome.status);
    if (mi == nullptr) {
        return outcome;
    }
    if (mi->ft->invokeMethod == nullptr) {
        return {.status = noFunction(*served)};
    }
    ResultObject *result = newResult(call.request.memory, Expected::Value);
    PathObject *path = pathForProvider(call.request.memory, call.path);
    if (result == nullptr || path == nullptr) {
        return outOfMemory();
    }
    result->method = findMethod(*cls, name); // CIM servers pass undeclared ones on as well
    outcome.status = statusOfCall(
        *result, mi->ft->invokeMethod(mi, call.context, &result->cmpi, &path->cmpi, name, in, out));
    if (outcome.status.rc != CMPI_RC_OK) {
        return outcome;
    }
    if (const std::string fault = faultOfOutArguments(objectOf(out)->values, *cls, result->method);
        !fault.empty()) {
        return failed(CMPI_RC_ERR_FAILED, fault);
    }
    outcome.value = result->value;
    return outcome;
}

Outcome routeAssociators(const Call &call, Form form, const Association &filter, PropertyList properties) {
    const auto ask = [&](const Class &cls, const char *name, const CMPIObjectPath *path,
                         ResultObject &result) {
        if (form == Form::Names) {
            return askAssociations(call, cls, result, &CMPIAssociationMIFT::associatorNames, path, name,
                                   filter.resultClass, filter.role, filter.resultRole);
        }
        return askAssociations(call, cls, result, &CMPIAssociationMIFT::associators, path, name,
                               filter.resultClass, filter.role, filter.resultRole, asList(properties));
    };
    return collectAssociations(call, form, filter.associationClass, filter.resultClass, filter, ask);
}

Outcome routeReferences(const Call &call, Form form, const Association &filter, PropertyList properties) {
    const auto ask = [&](const Class &cls, const char *name, const CMPIObjectPath *path,
                         ResultObject &result) {
        if (form == Form::Names) {
            return askAssociations(call, cls, result, &CMPIAssociationMIFT::referenceNames, path, name,
                                   filter.role);
        }
        return askAssociations(call, cls, result, &CMPIAssociationMIFT::references, path, name, filter.role,
                               asList(properties));
    };
    return collectAssociations(call, form, filter.resultClass, nullptr, {.role = filter.role}, ask);
}

} // namespace broker
