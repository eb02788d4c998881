// The encapsulated objects behind the CMPI pointers. Each begins with its CMPI structure, so that a
// pointer to one is a pointer to the other, and lies in the memory of a request or of a clone.
#pragma once

#include "internal.h"

#include <cstdint>

namespace broker {

// A text's handle is the text itself; every other object's handle is the object.
struct StringObject {
    CMPIString cmpi;
    Memory *memory;
    size_t length;
};

struct DateTimeObject {
    CMPIDateTime cmpi;
    Memory *memory;
    CMPISint64 microseconds; // since 1970-01-01 00:00 UTC, or of the interval
    bool isInterval;
    char text[26]; // DMTF form, with the offset that was given
};

struct ArrayObject {
    CMPIArray cmpi;
    Memory *memory;
    CMPIType elementType;
    CMPICount count;
    CMPIData *elements;
};

// Named values in order, of a path (keys), of arguments and of a context. Names are found without
// regard to case and kept as given.
struct NamedValue {
    const char *name;
    CMPIData data;
};
struct NamedValues {
    NamedValue *values;
    CMPICount count, capacity;
};

// A path's body is shared by its copies until one of them changes: being shared lasts, and whoever
// changes a shared body takes a copy first.
struct PathBody {
    StringObject *nameSpace;
    StringObject *className;
    StringObject *host;
    const Class *cls; // null if no such class is declared
    NamedValues keys;
    bool isShared;
};
struct PathObject {
    CMPIObjectPath cmpi;
    Memory *memory;
    PathBody *body;
};

// What instances of one class in one memory have in common: which property has which slot. Properties
// get slots in the order in which they are first set, so an instance has room for those that are used.
struct Slot {
    const char *name;
    const Property *property; // null if the class doesn't declare it
    uint32_t next;            // slot that was set after this one last time: providers repeat their order
};
struct PropertyFilter;
struct Layout {
    const Class *cls;
    Layout *older;
    Slot *slots;
    uint32_t count, capacity;
    uint32_t first;    // slot that was set first last time
    uint32_t *buckets; // slots by name's hash; twice the capacity or more, a power of two
    uint32_t bucketCount;
    uint32_t *keySlots;     // of the class's keys in their order; noSlot where never set
    PropertyFilter *filter; // last filter used
};

struct InstanceBody {
    Layout *layout;
    PathBody *path;
    CMPIData *values; // by slot; type CMPI_null where never set
    uint32_t capacity;
    uint32_t lastSet; // slot, or noSlot
    uint32_t setCount;
    PropertyFilter *filter; // null lets everything pass
    uint32_t refusedSlot;   // of a property that was set with another type than declared, or noSlot
    CMPIType refusedType;
    bool hasUndeclared;
    bool isShared;
};
struct InstanceObject {
    CMPIInstance cmpi;
    Memory *memory;
    InstanceBody *body;
};
constexpr uint32_t noSlot = UINT32_MAX;

struct ArgumentsObject {
    CMPIArgs cmpi;
    Memory *memory;
    NamedValues values;
};

struct ContextObject {
    CMPIContext cmpi;
    Memory *memory;
    NamedValues entries;
    ContextObject *nextPrepared; // in the broker's list of contexts for threads
    bool isPrepared;
};

// Instances or paths in order, all of one type.
struct EnumerationObject {
    CMPIEnumeration cmpi;
    Memory *memory;
    CMPIType type; // CMPI_instance or CMPI_ref
    void **items;
    size_t count;
    size_t position;
};

// What a provider may return through a result.
enum class Expected { Nothing, Instances, Paths, Value };
struct ResultObject {
    CMPIResult cmpi;
    Memory *memory;
    Expected expected;
    const Class *cls;     // of which instances and paths must be; null for any declared class
    const Method *method; // whose value is returned; null if it isn't declared
    void **items;         // InstanceObject* or PathObject*
    size_t count, capacity;
    CMPIData value;
    bool hasValue;
    CMPIStatus failure; // first fault in what was returned
};

// From a CMPI pointer to its object. Objects are never constant themselves: CMPI's const only says that
// the handle and the table stay.
inline StringObject *objectOf(const CMPIString *s) {
    return reinterpret_cast<StringObject *>(const_cast<CMPIString *>(s));
}
inline DateTimeObject *objectOf(const CMPIDateTime *d) {
    return reinterpret_cast<DateTimeObject *>(const_cast<CMPIDateTime *>(d));
}
inline ArrayObject *objectOf(const CMPIArray *a) {
    return reinterpret_cast<ArrayObject *>(const_cast<CMPIArray *>(a));
}
inline PathObject *objectOf(const CMPIObjectPath *p) {
    return reinterpret_cast<PathObject *>(const_cast<CMPIObjectPath *>(p));
}
inline InstanceObject *objectOf(const CMPIInstance *i) {
    return reinterpret_cast<InstanceObject *>(const_cast<CMPIInstance *>(i));
}
inline ArgumentsObject *objectOf(const CMPIArgs *a) {
    return reinterpret_cast<ArgumentsObject *>(const_cast<CMPIArgs *>(a));
}
inline ContextObject *objectOf(const CMPIContext *c) {
    return reinterpret_cast<ContextObject *>(const_cast<CMPIContext *>(c));
}
inline EnumerationObject *objectOf(const CMPIEnumeration *e) {
    return reinterpret_cast<EnumerationObject *>(const_cast<CMPIEnumeration *>(e));
}
inline ResultObject *objectOf(const CMPIResult *r) {
    return reinterpret_cast<ResultObject *>(const_cast<CMPIResult *>(r));
}

// The tables, which also tell what kind of object a pointer of unknown kind is.
extern const CMPIStringFT stringTable;
extern const CMPIDateTimeFT dateTimeTable;
extern const CMPIArrayFT arrayTable;
extern const CMPIObjectPathFT pathTable;
extern const CMPIInstanceFT instanceTable;
extern const CMPIArgsFT argumentsTable;
extern const CMPIContextFT contextTable;
extern const CMPIEnumerationFT enumerationTable;
extern const CMPIResultFT resultTable;

// --- Made in a memory; null when it is exhausted --------------------------------------------------------

StringObject *newString(Memory &memory, std::string_view text);
DateTimeObject *newDateTime(Memory &memory, CMPISint64 microseconds, bool isInterval, const char *text);
ArrayObject *newArray(Memory &memory, CMPIType elementType, CMPICount count);
PathObject *newPath(Memory &memory, const char *nameSpace, const char *className);
InstanceObject *newInstance(Memory &memory, const PathObject &path); // of a declared class
ArgumentsObject *newArguments(Memory &memory);
ContextObject *newContext(Memory &memory);
EnumerationObject *newEnumeration(Memory &memory, CMPIType type, void **items, size_t count);
ResultObject *newResult(Memory &memory, Expected expected);

// Copies in a memory, of objects that may lie in another. Texts and date-times never change, so one
// that lies in the memory already is handed back itself.
StringObject *copyString(Memory &memory, const StringObject &source);
DateTimeObject *copyDateTime(Memory &memory, const DateTimeObject &source);
ArrayObject *copyArray(Memory &memory, const ArrayObject &source);
PathObject *copyPath(Memory &memory, const PathObject &source);
InstanceObject *copyInstance(Memory &memory, const InstanceObject &source);
ArgumentsObject *copyArguments(Memory &memory, const ArgumentsObject &source);
ContextObject *copyContext(Memory &memory, const ContextObject &source);

// clone and release of any kind of object: a clone is a copy that owns its memory, and releasing
// anything else does nothing, since it goes with its request.
template <typename Object>
decltype(Object::cmpi) *cloneOf(const Object &source, Object *(*copy)(Memory &, const Object &),
                                CMPIStatus *status) {
    Memory *memory = newCloneMemory(source.memory->broker);
    Object *clone = memory == nullptr ? nullptr : copy(*memory, source);
    if (clone == nullptr) {
        if (memory != nullptr) {
            releaseClone(memory);
        }
        setStatus(status, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    memory->clone = clone;
    setStatus(status, CMPI_RC_OK);
    return &clone->cmpi;
}
template <typename Object> CMPIStatus releaseObject(Object *object) {
    if (object->memory->clone == object) {
        releaseClone(object->memory);
    }
    return statusOf(CMPI_RC_OK);
}

// --- Values -----------------------------------------------------------------------------------------

// Type under which a value is kept: texts of any kind are strings.
constexpr CMPIType storedType(CMPIType type) {
    if ((type & ~CMPI_ARRAY) == CMPI_chars) {
        return static_cast<CMPIType>((type & CMPI_ARRAY) | CMPI_string);
    }
    return type;
}

// Copies a value as CMPI passes it (for CMPI_chars the text itself) into data; a null pointer is null
// of the type. 61 for a type that no value has, 13 for an array of another type than said, 4 for a null
// object, 1 when memory is exhausted; data is unchanged then.
CMPIrc copyValue(Memory &memory, const CMPIValue *value, CMPIType type, CMPIData &data);

// May a value of this kept type stand where the declared type is asked for?
bool fits(CMPIType stored, const Feature &declared);

// Equal in kind and value; integers compare across their types.
bool equalValues(const CMPIData &a, const CMPIData &b);

bool isInteger(CMPIType type);

// Value of the integers as unsigned 64 bits and whether it is negative.
struct Integer {
    CMPIUint64 bits;
    bool isNegative;
};
Integer integerOf(const CMPIData &data);

CMPIData nullData(CMPIType type);
CMPIData notFoundData();

// --- Named values -------------------------------------------------------------------------------------

const NamedValue *findValue(const NamedValues &values, std::string_view name);

// Adds a value or replaces the one of that name; same results as copyValue.
CMPIrc putValue(Memory &memory, NamedValues &values, const char *name, const CMPIValue *value, CMPIType type);

// Copies all of them; false when memory is exhausted.
bool copyValues(Memory &memory, const NamedValues &source, NamedValues &copy);

// The functions that the tables of paths, arguments and contexts have in common. missing is the code
// for an unknown name or an index beyond the end.
CMPIData namedValue(const NamedValues &values, const char *name, CMPIrc missing, CMPIStatus *status);
CMPIData namedValueAt(Memory &memory, const NamedValues &values, CMPICount index, CMPIString **name,
                      CMPIStatus *status);

// --- Paths and instances ------------------------------------------------------------------------------

const Class *classOf(const Memory &memory, std::string_view name);

// A path of the class without keys, or of an instance with its keys.
PathObject *pathOfClass(Memory &memory, const PathObject &model, const Class &cls);
PathObject *pathOfInstance(Memory &memory, const InstanceObject &instance);

// A second object over the same body, in the body's own memory.
PathObject *sharePath(Memory &memory, PathBody *body);
InstanceObject *shareInstance(Memory &memory, InstanceBody *body);

// A path's body that may be changed; null when memory is exhausted.
PathBody *ownBody(PathObject &path);

// Value of a property, or of the class's n-th key; null if it was never set.
const CMPIData *valueOf(const InstanceBody &body, std::string_view name);
const CMPIData *keyValueOf(const InstanceBody &body, size_t key);

// Removes all properties that aren't in the list, while the path keeps its keys; false when memory is
// exhausted.
bool keepProperties(InstanceObject &instance, PropertyList properties);

// --- Delivery -----------------------------------------------------------------------------------------

// What a provider may not answer, as a text that names class and property; empty if all is well.
std::string faultOfInstance(const InstanceBody &body, const Class *expected);
std::string faultOfPath(const PathBody &body, const Class *expected);
std::string faultOfReturnValue(const CMPIData &value, const Method *method);
std::string faultOfOutArguments(const NamedValues &arguments, const Class &cls, const Method *method);

} // namespace broker
