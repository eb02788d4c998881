// CMPIResult: what a provider returns, each item checked against its class as it comes.
#include "objects.h"

#include <algorithm>

namespace broker {

namespace {

CMPIStatus release(CMPIResult *) {
    return statusOf(CMPI_RC_OK);
}

CMPIResult *clone(const CMPIResult *, CMPIStatus *status) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

// The first fault decides the request, whatever the provider makes of this status.
CMPIStatus failed(ResultObject &result, const std::string &fault) {
    const CMPIStatus status = statusOf(CMPI_RC_ERR_FAILED, fault);
    if (result.failure.rc == CMPI_RC_OK) {
        result.failure = status;
    }
    return status;
}

CMPIStatus addItem(ResultObject &result, void *item) {
    if (item != nullptr && result.count == result.capacity) {
        const size_t capacity = std::max<size_t>(result.capacity * 2, 16);
        void **grown = allocateArray<void *>(*result.memory, capacity);
        if (grown != nullptr) {
            std::copy_n(result.items, result.count, grown);
            result.items = grown;
            result.capacity = capacity;
        } else {
            item = nullptr;
        }
    }
    if (item == nullptr) {
        return failed(result, "out of memory");
    }
    result.items[result.count++] = item;
    return statusOf(CMPI_RC_OK);
}

CMPIStatus returnInstance(const CMPIResult *result, const CMPIInstance *instance) {
    ResultObject &object = *objectOf(result);
    if (object.expected != Expected::Instances) {
        return failed(object, "the provider returned an instance where none was asked for");
    }
    if (instance == nullptr) {
        return failed(object, "the provider returned a null instance");
    }
    const std::string fault = faultOfInstance(*objectOf(instance)->body, object.cls);
    if (!fault.empty()) {
        return failed(object, fault);
    }
    return addItem(object, copyInstance(*object.memory, *objectOf(instance)));
}

CMPIStatus returnObjectPath(const CMPIResult *result, const CMPIObjectPath *path) {
    ResultObject &object = *objectOf(result);
    if (object.expected != Expected::Paths) {
        return failed(object, "the provider returned an object path where none was asked for");
    }
    if (path == nullptr) {
        return failed(object, "the provider returned a null object path");
    }
    const std::string fault = faultOfPath(*objectOf(path)->body, object.cls);
    if (!fault.empty()) {
        return failed(object, fault);
    }
    return addItem(object, copyPath(*object.memory, *objectOf(path)));
}

CMPIStatus returnData(const CMPIResult *result, const CMPIValue *value, const CMPIType type) {
    ResultObject &object = *objectOf(result);
    if (object.expected != Expected::Value) {
        return failed(object, "the provider returned a value where none was asked for");
    }
    if (object.hasValue) {
        return failed(object, "the provider returned a second value");
    }
    const CMPIrc rc = copyValue(*object.memory, value, type, object.value);
    if (rc != CMPI_RC_OK) {
        failed(object, "the provider returned a value of type " + textOfType(type) + ", which can't be kept");
        return statusOf(rc);
    }
    object.hasValue = true;
    const std::string fault = faultOfReturnValue(object.value, object.method);
    return fault.empty() ? statusOf(CMPI_RC_OK) : failed(object, fault);
}

CMPIStatus returnDone(const CMPIResult *) {
    return statusOf(CMPI_RC_OK);
}

CMPIStatus returnError(const CMPIResult *, const CMPIError *) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

} // namespace

const CMPIResultFT resultTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .returnData = returnData,
    .returnInstance = returnInstance,
    .returnObjectPath = returnObjectPath,
    .returnDone = returnDone,
    .returnError = returnError,
};

ResultObject *newResult(Memory &memory, Expected expected) {
    auto *result = allocateObject<ResultObject>(memory);
    if (result != nullptr) {
        *result = {};
        result->cmpi = {result, &resultTable};
        result->memory = &memory;
        result->expected = expected;
        result->value = nullData(CMPI_null);
    }
    return result;
}

} // namespace broker
