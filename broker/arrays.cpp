// CMPIArray: a fixed number of values of one type, null until set.
#include "objects.h"

#include <algorithm>

namespace broker {

namespace {

CMPIStatus release(CMPIArray *array) {
    return releaseObject(objectOf(array));
}

CMPIArray *clone(const CMPIArray *array, CMPIStatus *status) {
    return cloneOf(*objectOf(array), copyArray, status);
}

CMPICount getSize(const CMPIArray *array, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(array)->count;
}

CMPIType getSimpleType(const CMPIArray *array, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(array)->elementType;
}

CMPIData getElementAt(const CMPIArray *array, CMPICount index, CMPIStatus *status) {
    const ArrayObject &object = *objectOf(array);
    if (index >= object.count) {
        setStatus(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
        return notFoundData();
    }
    setStatus(status, CMPI_RC_OK);
    return object.elements[index];
}

// Some CIM servers refuse a CMPI_chars element in an array of CMPI_string, others take it. It is taken
// here: an array of texts is otherwise filled with a string object per element for nothing.
CMPIStatus setElementAt(const CMPIArray *array, CMPICount index, const CMPIValue *value, CMPIType type) {
    ArrayObject &object = *objectOf(array);
    if (index >= object.count) {
        return statusOf(CMPI_RC_ERR_NO_SUCH_PROPERTY);
    }
    if (storedType(type) != object.elementType) {
        return statusOf(CMPI_RC_ERR_TYPE_MISMATCH);
    }
    return statusOf(copyValue(*object.memory, value, type, object.elements[index]));
}

} // namespace

const CMPIArrayFT arrayTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .getSize = getSize,
    .getSimpleType = getSimpleType,
    .getElementAt = getElementAt,
    .setElementAt = setElementAt,
};

ArrayObject *newArray(Memory &memory, CMPIType elementType, CMPICount count) {
    auto *array = allocateObject<ArrayObject>(memory);
    CMPIData *elements = allocateArray<CMPIData>(memory, count);
    if (array == nullptr || (elements == nullptr && count > 0)) {
        return nullptr;
    }
    *array = {{array, &arrayTable}, &memory, storedType(elementType), count, elements};
    std::fill_n(elements, count, nullData(array->elementType));
    return array;
}

ArrayObject *copyArray(Memory &memory, const ArrayObject &source) {
    ArrayObject *copy = newArray(memory, source.elementType, source.count);
    for (CMPICount i = 0; copy != nullptr && i < source.count; ++i) {
        const CMPIData &element = source.elements[i];
        if (!CMIsNullValue(element) &&
            copyValue(memory, &element.value, element.type, copy->elements[i]) != CMPI_RC_OK) {
            return nullptr;
        }
    }
    return copy;
}

} // namespace broker
