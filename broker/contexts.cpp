// CMPIContext: facts of a request by name.
#include "objects.h"

namespace broker {

namespace {

CMPIStatus release(CMPIContext *context) {
    return releaseObject(objectOf(context));
}

CMPIContext *clone(const CMPIContext *context, CMPIStatus *status) {
    return cloneOf(*objectOf(context), copyContext, status);
}

CMPIData getEntry(const CMPIContext *context, const char *name, CMPIStatus *status) {
    return namedValue(objectOf(context)->entries, name, CMPI_RC_ERR_NO_SUCH_PROPERTY, status);
}

CMPIData getEntryAt(const CMPIContext *context, CMPICount index, CMPIString **name, CMPIStatus *status) {
    const ContextObject &object = *objectOf(context);
    return namedValueAt(*object.memory, object.entries, index, name, status);
}

CMPICount getEntryCount(const CMPIContext *context, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(context)->entries.count;
}

CMPIStatus addEntry(const CMPIContext *context, const char *name, const CMPIValue *value,
                    const CMPIType type) {
    ContextObject &object = *objectOf(context);
    return statusOf(putValue(*object.memory, object.entries, name, value, type));
}

} // namespace

const CMPIContextFT contextTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .getEntry = getEntry,
    .getEntryAt = getEntryAt,
    .getEntryCount = getEntryCount,
    .addEntry = addEntry,
};

ContextObject *newContext(Memory &memory) {
    auto *context = allocateObject<ContextObject>(memory);
    if (context != nullptr) {
        *context = {{context, &contextTable}, &memory, {}, nullptr, false};
    }
    return context;
}

ContextObject *copyContext(Memory &memory, const ContextObject &source) {
    ContextObject *copy = newContext(memory);
    return copy != nullptr && copyValues(memory, source.entries, copy->entries) ? copy : nullptr;
}

} // namespace broker
