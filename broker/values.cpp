// Values: kept copies of what CMPI passes as pointer and type, and named lists of them.
#include "objects.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace broker {

namespace {

// Bytes of the values that hold no object, by type; 0 for other types. Every such type is below 256.
constexpr std::array<unsigned char, 256> plainSizes = [] {
    std::array<unsigned char, 256> sizes = {};
    for (const CMPIType type : {CMPI_boolean, CMPI_uint8, CMPI_sint8}) {
        sizes[type] = 1;
    }
    for (const CMPIType type : {CMPI_char16, CMPI_uint16, CMPI_sint16}) {
        sizes[type] = 2;
    }
    for (const CMPIType type : {CMPI_uint32, CMPI_sint32, CMPI_real32}) {
        sizes[type] = 4;
    }
    for (const CMPIType type : {CMPI_uint64, CMPI_sint64, CMPI_real64}) {
        sizes[type] = 8;
    }
    return sizes;
}();

constexpr size_t plainSize(CMPIType type) {
    return type < plainSizes.size() ? plainSizes[type] : 0;
}

// memcpy of a fixed size is one instruction, of a variable one a call.
void copyPlain(CMPIValue &copy, const CMPIValue *value, size_t size) {
    switch (size) {
    case 1: std::memcpy(&copy, value, 1); break;
    case 2: std::memcpy(&copy, value, 2); break;
    case 4: std::memcpy(&copy, value, 4); break;
    default: std::memcpy(&copy, value, 8); break;
    }
}

// May a value of this type be kept at all?
constexpr bool isKept(CMPIType type) {
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    return plainSize(element) != 0 || element == CMPI_string || element == CMPI_dateTime ||
           element == CMPI_ref || element == CMPI_instance;
}

// Copies the object that value points to.
CMPIrc copyObject(Memory &memory, const CMPIValue *from, CMPIType type, CMPIValue &copy) {
    CMPIValue value = {};
    constexpr size_t pointerSize = sizeof(void *);
    std::memcpy(&value, from, pointerSize); // a pointer variable may be aligned less than the union
    if (value.string == nullptr) {          // any object pointer is: all share the union's room
        return CMPI_RC_ERR_INVALID_PARAMETER;
    }
    const auto keep = [](auto *&target, auto *object) {
        target = object == nullptr ? nullptr : &object->cmpi;
        return object == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK;
    };
    if (type & CMPI_ARRAY) {
        const ArrayObject &array = *objectOf(value.array);
        if ((array.elementType | CMPI_ARRAY) != type) {
            return CMPI_RC_ERR_TYPE_MISMATCH;
        }
        return keep(copy.array, copyArray(memory, array));
    }
    switch (type) {
    case CMPI_string: return keep(copy.string, copyString(memory, *objectOf(value.string)));
    case CMPI_dateTime: return keep(copy.dateTime, copyDateTime(memory, *objectOf(value.dateTime)));
    case CMPI_ref: return keep(copy.ref, copyPath(memory, *objectOf(value.ref)));
    default: return keep(copy.inst, copyInstance(memory, *objectOf(value.inst)));
    }
}

} // namespace

CMPIData nullData(CMPIType type) {
    return {storedType(type), CMPI_nullValue, {}};
}

CMPIData notFoundData() {
    return {CMPI_null, CMPI_notFound | CMPI_nullValue, {}};
}

CMPIrc copyValue(Memory &memory, const CMPIValue *value, CMPIType type, CMPIData &data) {
    const CMPIType stored = storedType(type);
    const size_t size = plainSize(stored);
    if (size != 0 && value != nullptr) {
        data = {stored, CMPI_goodValue, {}};
        copyPlain(data.value, value, size);
        return CMPI_RC_OK;
    }
    if (!isKept(stored)) {
        return CMPI_RC_ERR_INVALID_DATA_TYPE;
    }
    if (value == nullptr) {
        data = nullData(stored);
        return CMPI_RC_OK;
    }
    CMPIData copy = {stored, CMPI_goodValue, {}};
    if (type == CMPI_chars) {
        StringObject *text = newString(memory, reinterpret_cast<const char *>(value));
        if (text == nullptr) {
            return CMPI_RC_ERR_FAILED;
        }
        copy.value.string = &text->cmpi;
    } else if (const CMPIrc rc = copyObject(memory, value, stored, copy.value); rc != CMPI_RC_OK) {
        return rc;
    }
    data = copy;
    return CMPI_RC_OK;
}

bool fits(CMPIType stored, const Feature &declared) {
    if (stored == declared.type) {
        return true;
    }
    // An embedded instance is declared as a string with a qualifier.
    return (stored & ~CMPI_ARRAY) == CMPI_instance &&
           storedType(declared.type) == ((stored & CMPI_ARRAY) | CMPI_string) &&
           (findQualifier(declared.qualifiers, "EmbeddedInstance") != nullptr ||
            findQualifier(declared.qualifiers, "EmbeddedObject") != nullptr);
}

bool isInteger(CMPIType type) {
    return plainSize(type) != 0 && (type & CMPI_UINT) != 0;
}

Integer integerOf(const CMPIData &data) {
    const auto of = [](CMPISint64 v) { return Integer{static_cast<CMPIUint64>(v), v < 0}; };
    switch (data.type) {
    case CMPI_uint8: return {data.value.uint8, false};
    case CMPI_uint16: return {data.value.uint16, false};
    case CMPI_uint32: return {data.value.uint32, false};
    case CMPI_uint64: return {data.value.uint64, false};
    case CMPI_sint8: return of(data.value.sint8);
    case CMPI_sint16: return of(data.value.sint16);
    case CMPI_sint32: return of(data.value.sint32);
    default: return of(data.value.sint64);
    }
}

bool equalValues(const CMPIData &a, const CMPIData &b) {
    if (CMIsNullValue(a) || CMIsNullValue(b)) {
        return CMIsNullValue(a) && CMIsNullValue(b);
    }
    if (isInteger(a.type) && isInteger(b.type)) {
        const Integer x = integerOf(a), y = integerOf(b);
        return x.bits == y.bits && x.isNegative == y.isNegative;
    }
    if (a.type != b.type) {
        return false;
    }
    if (a.type == CMPI_string) {
        return std::strcmp(CMGetCharPtr(a.value.string), CMGetCharPtr(b.value.string)) == 0;
    }
    return textOfValue(a) == textOfValue(b);
}

const NamedValue *findValue(const NamedValues &values, std::string_view name) {
    for (CMPICount i = 0; i < values.count; ++i) {
        if (sameName(values.values[i].name, name)) {
            return &values.values[i];
        }
    }
    return nullptr;
}

CMPIrc putValue(Memory &memory, NamedValues &values, const char *name, const CMPIValue *value,
                CMPIType type) {
    if (name == nullptr || *name == '\0') {
        return CMPI_RC_ERR_INVALID_PARAMETER;
    }
    CMPIData data;
    if (const CMPIrc rc = copyValue(memory, value, type, data); rc != CMPI_RC_OK) {
        return rc;
    }
    if (const NamedValue *present = findValue(values, name)) {
        const_cast<NamedValue *>(present)->data = data;
        return CMPI_RC_OK;
    }
    if (values.count == values.capacity) {
        const CMPICount capacity = values.capacity == 0 ? 4 : values.capacity * 2;
        auto *grown = allocateArray<NamedValue>(memory, capacity);
        if (grown == nullptr) {
            return CMPI_RC_ERR_FAILED;
        }
        std::copy_n(values.values, values.count, grown);
        values.values = grown;
        values.capacity = capacity;
    }
    const char *copy = copyText(memory, name);
    if (copy == nullptr) {
        return CMPI_RC_ERR_FAILED;
    }
    values.values[values.count++] = {copy, data};
    return CMPI_RC_OK;
}

bool copyValues(Memory &memory, const NamedValues &source, NamedValues &copy) {
    for (CMPICount i = 0; i < source.count; ++i) {
        const auto &[name, data] = source.values[i];
        const CMPIValue *value = CMIsNullValue(data) ? nullptr : &data.value;
        if (putValue(memory, copy, name, value, data.type) != CMPI_RC_OK) {
            return false;
        }
    }
    return true;
}

CMPIData namedValue(const NamedValues &values, const char *name, CMPIrc missing, CMPIStatus *status) {
    const NamedValue *found = name == nullptr ? nullptr : findValue(values, name);
    setStatus(status, found == nullptr ? missing : CMPI_RC_OK);
    return found == nullptr ? notFoundData() : found->data;
}

CMPIData namedValueAt(Memory &memory, const NamedValues &values, CMPICount index, CMPIString **name,
                      CMPIStatus *status) {
    if (index >= values.count) {
        setStatus(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
        return notFoundData();
    }
    setStatus(status, CMPI_RC_OK);
    if (name != nullptr) {
        StringObject *text = newString(memory, values.values[index].name);
        *name = text == nullptr ? nullptr : &text->cmpi;
    }
    return values.values[index].data;
}

} // namespace broker
