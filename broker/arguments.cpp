// CMPIArgs: arguments of a method by name.
#include "objects.h"

namespace broker {

namespace {

CMPIStatus release(CMPIArgs *arguments) {
    return releaseObject(objectOf(arguments));
}

CMPIArgs *clone(const CMPIArgs *arguments, CMPIStatus *status) {
    return cloneOf(*objectOf(arguments), copyArguments, status);
}

CMPIStatus addArg(const CMPIArgs *arguments, const char *name, const CMPIValue *value, const CMPIType type) {
    ArgumentsObject &object = *objectOf(arguments);
    return statusOf(putValue(*object.memory, object.values, name, value, type));
}

CMPIData getArg(const CMPIArgs *arguments, const char *name, CMPIStatus *status) {
    return namedValue(objectOf(arguments)->values, name, CMPI_RC_ERR_NOT_FOUND, status);
}

CMPIData getArgAt(const CMPIArgs *arguments, CMPICount index, CMPIString **name, CMPIStatus *status) {
    const ArgumentsObject &object = *objectOf(arguments);
    return namedValueAt(*object.memory, object.values, index, name, status);
}

CMPICount getArgCount(const CMPIArgs *arguments, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(arguments)->values.count;
}

} // namespace

const CMPIArgsFT argumentsTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .addArg = addArg,
    .getArg = getArg,
    .getArgAt = getArgAt,
    .getArgCount = getArgCount,
};

ArgumentsObject *newArguments(Memory &memory) {
    auto *arguments = allocateObject<ArgumentsObject>(memory);
    if (arguments != nullptr) {
        *arguments = {{arguments, &argumentsTable}, &memory, {}};
    }
    return arguments;
}

ArgumentsObject *copyArguments(Memory &memory, const ArgumentsObject &source) {
    ArgumentsObject *copy = newArguments(memory);
    return copy != nullptr && copyValues(memory, source.values, copy->values) ? copy : nullptr;
}

} // namespace broker
