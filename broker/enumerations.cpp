// CMPIEnumeration: what an up-call answered, read from front to back or taken as an array.
#include "objects.h"

namespace broker {

namespace {

CMPIStatus release(CMPIEnumeration *enumeration) {
    return releaseObject(objectOf(enumeration));
}

// Copies of the items in a memory; null when it is exhausted.
EnumerationObject *copyEnumeration(Memory &memory, const EnumerationObject &source) {
    void **items = allocateArray<void *>(memory, source.count);
    if (items == nullptr && source.count > 0) {
        return nullptr;
    }
    for (size_t i = 0; i < source.count; ++i) {
        if (source.type == CMPI_instance) {
            items[i] = copyInstance(memory, *static_cast<InstanceObject *>(source.items[i]));
        } else {
            items[i] = copyPath(memory, *static_cast<PathObject *>(source.items[i]));
        }
        if (items[i] == nullptr) {
            return nullptr;
        }
    }
    EnumerationObject *copy = newEnumeration(memory, source.type, items, source.count);
    if (copy != nullptr) {
        copy->position = source.position;
    }
    return copy;
}

CMPIEnumeration *clone(const CMPIEnumeration *enumeration, CMPIStatus *status) {
    return cloneOf(*objectOf(enumeration), copyEnumeration, status);
}

CMPIData itemAt(const EnumerationObject &enumeration, size_t index) {
    CMPIData data = {enumeration.type, CMPI_goodValue, {}};
    if (enumeration.type == CMPI_instance) {
        data.value.inst = &static_cast<InstanceObject *>(enumeration.items[index])->cmpi;
    } else {
        data.value.ref = &static_cast<PathObject *>(enumeration.items[index])->cmpi;
    }
    return data;
}

CMPIData getNext(const CMPIEnumeration *enumeration, CMPIStatus *status) {
    EnumerationObject &object = *objectOf(enumeration);
    if (object.position == object.count) {
        setStatus(status, CMPI_RC_ERR_NOT_FOUND);
        return notFoundData();
    }
    setStatus(status, CMPI_RC_OK);
    return itemAt(object, object.position++);
}

CMPIBoolean hasNext(const CMPIEnumeration *enumeration, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(enumeration)->position < objectOf(enumeration)->count;
}

// All items, however many were read. Some CIM servers leave the status as it was, so it is left here
// too: a caller that counts on it being cleared would fail there.
CMPIArray *toArray(const CMPIEnumeration *enumeration, CMPIStatus *status) {
    const EnumerationObject &object = *objectOf(enumeration);
    ArrayObject *array = newArray(*object.memory, object.type, static_cast<CMPICount>(object.count));
    if (array == nullptr) {
        setStatus(status, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    for (size_t i = 0; i < object.count; ++i) {
        array->elements[i] = itemAt(object, i);
    }
    return &array->cmpi;
}

} // namespace

const CMPIEnumerationFT enumerationTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .getNext = getNext,
    .hasNext = hasNext,
    .toArray = toArray,
};

EnumerationObject *newEnumeration(Memory &memory, CMPIType type, void **items, size_t count) {
    auto *enumeration = allocateObject<EnumerationObject>(memory);
    if (enumeration != nullptr) {
        *enumeration = {{enumeration, &enumerationTable}, &memory, type, items, count, 0};
    }
    return enumeration;
}

} // namespace broker
