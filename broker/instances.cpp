// CMPIInstance: properties by name.
//
// Providers make many instances of few classes and set the same properties in the same order on each.
// So the names stand once, in a layout that all instances of a class share, and each slot remembers
// which one was set after it: setting a property costs one comparison of its name, not a search.
#include "objects.h"

#include <algorithm>
#include <cstring>

namespace broker {

// A property list, and per slot of the layout whether it lets the property pass.
struct PropertyFilter {
    const char **properties; // end with a null pointer
    const char **keys;       // likewise; null if the provider gave none
    enum Verdict : unsigned char { Unknown, Pass, Drop } * verdicts;
    uint32_t count;
};

namespace {

uint32_t *bucketOf(const Layout &layout, std::string_view name) {
    uint32_t b = static_cast<uint32_t>(NameHash{}(name)) & (layout.bucketCount - 1);
    while (layout.buckets[b] != noSlot && !sameName(layout.slots[layout.buckets[b]].name, name)) {
        b = (b + 1) & (layout.bucketCount - 1);
    }
    return &layout.buckets[b];
}

bool growLayout(Memory &memory, Layout &layout, uint32_t capacity) {
    Slot *slots = allocateArray<Slot>(memory, capacity);
    uint32_t bucketCount = 16;
    while (bucketCount < capacity * 2) {
        bucketCount *= 2;
    }
    uint32_t *buckets = allocateArray<uint32_t>(memory, bucketCount);
    if (slots == nullptr || buckets == nullptr) {
        return false;
    }
    std::copy_n(layout.slots, layout.count, slots);
    std::fill_n(buckets, bucketCount, noSlot);
    layout.slots = slots;
    layout.capacity = capacity;
    layout.buckets = buckets;
    layout.bucketCount = bucketCount;
    for (uint32_t s = 0; s < layout.count; ++s) {
        *bucketOf(layout, slots[s].name) = s;
    }
    return true;
}

// The class's layout in this memory, made if there is none. The one used last stands first.
Layout *layoutOf(Memory &memory, const Class &cls) {
    for (Layout **link = &memory.layouts; *link != nullptr; link = &(*link)->older) {
        Layout *layout = *link;
        if (layout->cls == &cls) {
            *link = layout->older;
            layout->older = memory.layouts;
            return memory.layouts = layout;
        }
    }
    Layout *layout = allocateArray<Layout>(memory, 1);
    if (layout == nullptr) {
        return nullptr;
    }
    *layout = {};
    layout->cls = &cls;
    layout->first = noSlot;
    layout->keySlots = allocateArray<uint32_t>(memory, cls.keys.size() + 1);
    if (layout->keySlots == nullptr || !growLayout(memory, *layout, 8)) {
        return nullptr;
    }
    std::fill_n(layout->keySlots, cls.keys.size(), noSlot);
    layout->older = memory.layouts;
    return memory.layouts = layout;
}

// The slot of a property, a new one if need be; noSlot when memory is exhausted.
uint32_t slotNamed(Memory &memory, Layout &layout, const char *name) {
    const uint32_t present = *bucketOf(layout, name);
    if (present != noSlot) {
        return present;
    }
    if (layout.count == layout.capacity && !growLayout(memory, layout, layout.capacity * 2)) {
        return noSlot;
    }
    const Property *property = findProperty(*layout.cls, name);
    const char *kept = property == nullptr ? copyText(memory, name) : property->name.c_str();
    if (kept == nullptr) {
        return noSlot;
    }
    for (size_t k = 0; property != nullptr && k < layout.cls->keys.size(); ++k) {
        if (property == &layout.cls->properties[layout.cls->keys[k]]) {
            layout.keySlots[k] = layout.count;
        }
    }
    layout.slots[layout.count] = {kept, property, noSlot};
    *bucketOf(layout, kept) = layout.count;
    return layout.count++;
}

bool growValues(Memory &memory, InstanceBody &body, uint32_t capacity) {
    CMPIData *values = allocateArray<CMPIData>(memory, capacity);
    if (values == nullptr) {
        return false;
    }
    std::copy_n(body.values, body.capacity, values);
    body.values = values;
    body.capacity = capacity;
    return true;
}

// An object over a new body with room for as many properties as instances of the class had so far.
InstanceObject *newObject(Memory &memory, const Class &cls, PathObject *path) {
    auto *instance = allocateObject<InstanceObject>(memory);
    auto *body = allocateArray<InstanceBody>(memory, 1);
    Layout *layout = layoutOf(memory, cls);
    if (instance == nullptr || body == nullptr || layout == nullptr || path == nullptr) {
        return nullptr;
    }
    path->body->isShared = true; // with whoever the path came from, and with those who ask for it
    *body = {};
    body->layout = layout;
    body->path = path->body;
    body->lastSet = noSlot;
    body->refusedSlot = noSlot;
    if (!growValues(memory, *body, std::max(layout->count, 4U))) {
        return nullptr;
    }
    *instance = {{instance, &instanceTable}, &memory, body};
    return instance;
}

InstanceBody *copyBody(InstanceObject &instance) {
    const InstanceBody &body = *instance.body;
    auto *copy = allocateArray<InstanceBody>(*instance.memory, 1);
    if (copy == nullptr) {
        return nullptr;
    }
    *copy = body;
    copy->isShared = false;
    copy->capacity = 0;
    if (!growValues(*instance.memory, *copy, body.capacity)) {
        return nullptr;
    }
    std::copy_n(body.values, body.capacity, copy->values);
    return instance.body = copy;
}

// An instance's body that may be changed; null when memory is exhausted.
InstanceBody *ownBody(InstanceObject &instance) {
    return instance.body->isShared ? copyBody(instance) : instance.body;
}

bool isSet(const CMPIData &data) {
    return data.type != CMPI_null;
}

const CMPIData *valueAt(const InstanceBody &body, uint32_t slot) {
    return slot < body.capacity && isSet(body.values[slot]) ? &body.values[slot] : nullptr;
}

bool isListed(const char *const *names, std::string_view name) {
    while (*names != nullptr && !sameName(*names, name)) {
        ++names;
    }
    return *names != nullptr;
}

// Does the filter let the slot's property pass? Keys that the class declares always pass.
bool passes(Memory &memory, PropertyFilter &filter, const Layout &layout, uint32_t slot) {
    if (slot >= filter.count) {
        auto *verdicts = allocateArray<PropertyFilter::Verdict>(memory, layout.capacity);
        if (verdicts == nullptr) {
            return true;
        }
        std::copy_n(filter.verdicts, filter.count, verdicts);
        filter.verdicts = verdicts;
        filter.count = layout.capacity;
    }
    PropertyFilter::Verdict &verdict = filter.verdicts[slot];
    if (verdict == PropertyFilter::Unknown) {
        const Slot &s = layout.slots[slot];
        const bool isKey = s.property != nullptr && s.property->isKey;
        const bool isWanted = isKey || isListed(filter.properties, s.name) ||
                              (filter.keys != nullptr && isListed(filter.keys, s.name));
        verdict = isWanted ? PropertyFilter::Pass : PropertyFilter::Drop;
    }
    return verdict == PropertyFilter::Pass;
}

// --- Table --------------------------------------------------------------------------------------------

CMPIStatus release(CMPIInstance *instance) {
    return releaseObject(objectOf(instance));
}

CMPIInstance *clone(const CMPIInstance *instance, CMPIStatus *status) {
    return cloneOf(*objectOf(instance), copyInstance, status);
}

CMPIData getProperty(const CMPIInstance *instance, const char *name, CMPIStatus *status) {
    const CMPIData *data = name == nullptr ? nullptr : valueOf(*objectOf(instance)->body, name);
    setStatus(status, data == nullptr ? CMPI_RC_ERR_NO_SUCH_PROPERTY : CMPI_RC_OK);
    return data == nullptr ? notFoundData() : *data;
}

CMPIData getPropertyAt(const CMPIInstance *instance, CMPICount index, CMPIString **name, CMPIStatus *status) {
    const InstanceObject &object = *objectOf(instance);
    const InstanceBody &body = *object.body;
    if (index >= body.setCount) {
        setStatus(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
        return notFoundData();
    }
    uint32_t slot = 0;
    if (body.setCount == body.layout->count) {
        slot = index; // as nearly always: every slot is set
    } else {
        for (CMPICount before = index; !isSet(body.values[slot]) || before-- > 0;) {
            ++slot;
        }
    }
    setStatus(status, CMPI_RC_OK);
    if (name != nullptr) {
        StringObject *text = newString(*object.memory, body.layout->slots[slot].name);
        *name = text == nullptr ? nullptr : &text->cmpi;
    }
    return body.values[slot];
}

CMPICount getPropertyCount(const CMPIInstance *instance, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(instance)->body->setCount;
}

// A property that the class doesn't declare is taken as CIM servers take it; what comes of it is told
// when the instance is delivered.
CMPIStatus setProperty(const CMPIInstance *instance, const char *name, const CMPIValue *value,
                       CMPIType type) {
    InstanceObject &object = *objectOf(instance);
    Memory &memory = *object.memory;
    InstanceBody *body = ownBody(object);
    if (body == nullptr) {
        return statusOf(CMPI_RC_ERR_FAILED);
    }
    if (name == nullptr) {
        return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
    }

    Layout &layout = *body->layout;
    uint32_t slot = body->lastSet == noSlot ? layout.first : layout.slots[body->lastSet].next;
    if (slot == noSlot || std::strcmp(layout.slots[slot].name, name) != 0) {
        slot = slotNamed(memory, layout, name);
        if (slot == noSlot) {
            return statusOf(CMPI_RC_ERR_FAILED);
        }
        (body->lastSet == noSlot ? layout.first : layout.slots[body->lastSet].next) = slot;
    }
    body->lastSet = slot;

    const Property *property = layout.slots[slot].property;
    const CMPIType stored = storedType(type);
    if (property != nullptr && stored != property->type && !fits(stored, *property)) {
        body->refusedSlot = slot;
        body->refusedType = type;
        return statusOf(CMPI_RC_ERR_INVALID_DATA_TYPE);
    }
    if (body->filter != nullptr && !passes(memory, *body->filter, layout, slot)) {
        return statusOf(CMPI_RC_OK);
    }
    if (slot >= body->capacity && !growValues(memory, *body, layout.capacity)) {
        return statusOf(CMPI_RC_ERR_FAILED);
    }

    CMPIData &data = body->values[slot];
    const bool wasSet = isSet(data);
    const CMPIrc rc = copyValue(memory, value, type, data);
    if (rc == CMPI_RC_OK && !wasSet) {
        ++body->setCount;
        body->hasUndeclared |= property == nullptr;
    }
    return statusOf(rc);
}

CMPIStatus setPropertyWithOrigin(const CMPIInstance *instance, const char *name, const CMPIValue *value,
                                 const CMPIType type, const char *) {
    return setProperty(instance, name, value, type);
}

CMPIObjectPath *getObjectPath(const CMPIInstance *instance, CMPIStatus *status) {
    InstanceObject &object = *objectOf(instance);
    PathObject *path = pathOfInstance(*object.memory, object);
    setStatus(status, path == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK);
    return path == nullptr ? nullptr : &path->cmpi;
}

CMPIStatus setObjectPath(const CMPIInstance *instance, const CMPIObjectPath *path) {
    InstanceObject &object = *objectOf(instance);
    if (path == nullptr || objectOf(path)->body->cls != object.body->layout->cls) {
        return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
    }
    InstanceBody *body = ownBody(object);
    PathObject *copy = copyPath(*object.memory, *objectOf(path));
    if (body == nullptr || copy == nullptr) {
        return statusOf(CMPI_RC_ERR_FAILED);
    }
    copy->body->isShared = true;
    body->path = copy->body;
    return statusOf(CMPI_RC_OK);
}

bool sameList(const char *const *a, const char *const *b) {
    if (a == nullptr || b == nullptr) {
        return a == b;
    }
    while (*a != nullptr && *b != nullptr && std::strcmp(*a, *b) == 0) {
        ++a;
        ++b;
    }
    return *a == *b;
}

const char **copyList(Memory &memory, const char *const *names) {
    size_t count = 0;
    while (names[count] != nullptr) {
        ++count;
    }
    const char **copy = allocateArray<const char *>(memory, count + 1);
    for (size_t i = 0; copy != nullptr && i < count; ++i) {
        if ((copy[i] = copyText(memory, names[i])) == nullptr) {
            return nullptr;
        }
    }
    return copy;
}

// Providers set the same filter on each instance of an answer: the last one is kept with its verdicts.
CMPIStatus setPropertyFilter(const CMPIInstance *instance, const char **properties, const char **keys) {
    InstanceObject &object = *objectOf(instance);
    Memory &memory = *object.memory;
    InstanceBody *body = ownBody(object);
    if (body == nullptr) {
        return statusOf(CMPI_RC_ERR_FAILED);
    }
    if (properties == nullptr) {
        body->filter = nullptr;
        return statusOf(CMPI_RC_OK);
    }
    PropertyFilter *last = body->layout->filter;
    if (last == nullptr || !sameList(last->properties, properties) || !sameList(last->keys, keys)) {
        last = allocateArray<PropertyFilter>(memory, 1);
        if (last == nullptr) {
            return statusOf(CMPI_RC_ERR_FAILED);
        }
        last->properties = copyList(memory, properties);
        last->keys = keys == nullptr ? nullptr : copyList(memory, keys);
        if (last->properties == nullptr || (keys != nullptr && last->keys == nullptr)) {
            return statusOf(CMPI_RC_ERR_FAILED);
        }
        body->layout->filter = last;
    }
    body->filter = last;
    return statusOf(CMPI_RC_OK);
}

} // namespace

const CMPIInstanceFT instanceTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .getProperty = getProperty,
    .getPropertyAt = getPropertyAt,
    .getPropertyCount = getPropertyCount,
    .setProperty = setProperty,
    .getObjectPath = getObjectPath,
    .setPropertyFilter = setPropertyFilter,
    .setObjectPath = setObjectPath,
    .setPropertyWithOrigin = setPropertyWithOrigin,
};

InstanceObject *newInstance(Memory &memory, const PathObject &path) {
    return newObject(memory, *path.body->cls, copyPath(memory, path));
}

InstanceObject *shareInstance(Memory &memory, InstanceBody *body) {
    body->isShared = true;
    auto *instance = allocateObject<InstanceObject>(memory);
    if (instance != nullptr) {
        *instance = {{instance, &instanceTable}, &memory, body};
    }
    return instance;
}

InstanceObject *copyInstance(Memory &memory, const InstanceObject &source) {
    if (source.memory == &memory) {
        return shareInstance(memory, source.body);
    }
    const InstanceBody &body = *source.body;
    PathObject *path = copyPath(memory, {{}, source.memory, body.path});
    InstanceObject *copy = newObject(memory, *body.layout->cls, path);
    for (uint32_t s = 0; copy != nullptr && s < body.capacity; ++s) {
        const CMPIData &data = body.values[s];
        if (isSet(data) && setProperty(&copy->cmpi, body.layout->slots[s].name,
                                       CMIsNullValue(data) ? nullptr : &data.value, data.type)
                                   .rc != CMPI_RC_OK) {
            return nullptr;
        }
    }
    return copy;
}

const CMPIData *valueOf(const InstanceBody &body, std::string_view name) {
    return valueAt(body, *bucketOf(*body.layout, name));
}

const CMPIData *keyValueOf(const InstanceBody &body, size_t key) {
    return valueAt(body, body.layout->keySlots[key]);
}

bool keepProperties(InstanceObject &instance, PropertyList properties) {
    InstanceBody *body = ownBody(instance);
    PathObject *path = pathOfInstance(*instance.memory, instance); // while the key properties are there
    if (body == nullptr || path == nullptr) {
        return false;
    }
    path->body->isShared = true;
    body->path = path->body;
    for (uint32_t s = 0; s < std::min(body->capacity, body->layout->count); ++s) {
        if (isSet(body->values[s]) && !isListed(properties, body->layout->slots[s].name)) {
            body->values[s] = {};
            --body->setCount;
        }
    }
    return true;
}

} // namespace broker
