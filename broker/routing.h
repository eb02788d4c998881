// Requests on their way to providers: what clients and up-calls have in common.
#pragma once

#include "objects.h"

namespace broker {

// What the providers answered together. After an error there are no items and no value.
struct Outcome {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    void **items = nullptr; // InstanceObject* or PathObject*
    size_t count = 0;
    CMPIData value = {CMPI_null, CMPI_nullValue, {}};
};

// Which of the two forms is asked for: instances, or their names.
enum class Form { Instances, Names };

// A request as its provider is to see it.
struct Call {
    Request &request; // whose memory takes the answer
    const CMPIContext *context;
    const CMPIObjectPath *path;
};

Outcome routeGet(const Call &call, PropertyList properties);
Outcome routeEnumerate(const Call &call, Form form, PropertyList properties);
Outcome routeCreate(const Call &call, const CMPIInstance *instance);
Outcome routeModify(const Call &call, const CMPIInstance *instance, PropertyList properties);
Outcome routeDelete(const Call &call);
Outcome routeInvoke(const Call &call, const char *method, const CMPIArgs *in, CMPIArgs *out);
Outcome routeAssociators(const Call &call, Form form, const Association &filter, PropertyList properties);
Outcome routeReferences(const Call &call, Form form, const Association &filter, PropertyList properties);

} // namespace broker
