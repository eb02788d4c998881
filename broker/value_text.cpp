// Values as text and back.
#include "datetime.h"
#include "objects.h"
#include "quoting.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace broker {

namespace {

struct TypeName {
    CMPIType type;
    const char *name;
};
constexpr TypeName typeNames[] = {
    {CMPI_null, "null"},         {CMPI_boolean, "boolean"}, {CMPI_char16, "char16"},
    {CMPI_string, "string"},     {CMPI_chars, "string"},    {CMPI_uint8, "uint8"},
    {CMPI_uint16, "uint16"},     {CMPI_uint32, "uint32"},   {CMPI_uint64, "uint64"},
    {CMPI_sint8, "sint8"},       {CMPI_sint16, "sint16"},   {CMPI_sint32, "sint32"},
    {CMPI_sint64, "sint64"},     {CMPI_real32, "real32"},   {CMPI_real64, "real64"},
    {CMPI_ref, "ref"},           {CMPI_instance, "object"}, {CMPI_args, "arguments"},
    {CMPI_dateTime, "datetime"},
};

// --- To text ----------------------------------------------------------------------------------------------

template <typename Number> std::string textOfNumber(Number number) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string textOfReal(double number, std::string shortest) {
    if (std::isfinite(number) && shortest.find_first_of(".e") == std::string::npos) {
        shortest += ".0"; // or it would read as an integer
    }
    return shortest;
}

// A UTF-16 unit in UTF-8; half of a surrogate pair is written as the replacement character.
std::string textOfChar16(CMPIChar16 c) {
    const unsigned code = c >= 0xD800 && c <= 0xDFFF ? 0xFFFD : c;
    if (code < 0x80) {
        return {static_cast<char>(code)};
    }
    if (code < 0x800) {
        return {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))};
    }
    return {static_cast<char>(0xE0 | (code >> 12)), static_cast<char>(0x80 | ((code >> 6) & 0x3F)),
            static_cast<char>(0x80 | (code & 0x3F))};
}

std::string joined(const CMPIData &array, std::string (*textOf)(const CMPIData &)) {
    std::string text = "{";
    const char *separator = "";
    for (const CMPIData &element : elementsOf(array)) {
        text += separator + textOf(element);
        separator = ", ";
    }
    return text + '}';
}

// Does MOF quote values of this type?
bool isQuoted(CMPIType type) {
    return type == CMPI_string || type == CMPI_dateTime || type == CMPI_ref || type == CMPI_instance;
}

// --- From text --------------------------------------------------------------------------------------------

template <typename Number> bool readInteger(std::string_view text, Number &number) {
    int base = 10;
    if (text.starts_with("+")) {
        text.remove_prefix(1);
    }
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    }
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return fault == std::errc() && end == text.data() + text.size() && !text.empty();
}

template <typename Number> bool readReal(std::string_view text, Number &number) {
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && end == text.data() + text.size();
}

bool readChar16(std::string_view text, CMPIChar16 &c) {
    const auto byte = [&](size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(text[i])); };
    unsigned code = 0;
    if (text.size() == 1 && byte(0) < 0x80) {
        code = byte(0);
    } else if (text.size() == 2 && byte(0) >> 5 == 6) {
        code = (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
    } else if (text.size() == 3 && byte(0) >> 4 == 14) {
        code = (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    } else {
        return false;
    }
    c = static_cast<CMPIChar16>(code);
    return textOfChar16(c) == text;
}

bool readBoolean(std::string_view text, CMPIBoolean &value) {
    value = sameName(text, "true");
    return value || sameName(text, "false");
}

// A single value; why stays empty where the type alone says what is expected.
bool readScalar(Request &request, CMPIType type, const std::string &text, CMPIValue &value,
                std::string &why) {
    Memory &memory = request.memory;
    const auto keep = [](auto *&target, auto *object) {
        target = object == nullptr ? nullptr : &object->cmpi;
        return object != nullptr;
    };
    switch (type) {
    case CMPI_boolean: return readBoolean(text, value.boolean);
    case CMPI_char16: return readChar16(text, value.char16);
    case CMPI_uint8: return readInteger(text, value.uint8);
    case CMPI_uint16: return readInteger(text, value.uint16);
    case CMPI_uint32: return readInteger(text, value.uint32);
    case CMPI_uint64: return readInteger(text, value.uint64);
    case CMPI_sint8: return readInteger(text, value.sint8);
    case CMPI_sint16: return readInteger(text, value.sint16);
    case CMPI_sint32: return readInteger(text, value.sint32);
    case CMPI_sint64: return readInteger(text, value.sint64);
    case CMPI_real32: return readReal(text, value.real32);
    case CMPI_real64: return readReal(text, value.real64);
    case CMPI_string: return keep(value.string, newString(memory, text));
    case CMPI_dateTime: return keep(value.dateTime, dateTimeFromText(memory, text.c_str()));
    case CMPI_ref: return (value.ref = parsePath(request, text, why)) != nullptr;
    default: why = "values of this type can't be written as text"; return false;
    }
}

// What a text must look like, for the types where it isn't plain.
std::string expectedForm(CMPIType type) {
    switch (type) {
    case CMPI_boolean: return "true or false";
    case CMPI_char16: return "one character";
    case CMPI_dateTime: return "yyyymmddhhmmss.mmmmmm+utc, or ddddddddhhmmss.mmmmmm:000 for an interval";
    default: return "a number in its range";
    }
}

} // namespace

std::string textOfType(CMPIType type) {
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    for (const TypeName &known : typeNames) {
        if (known.type == element) {
            return std::string(known.name) + (type & CMPI_ARRAY ? "[]" : "");
        }
    }
    return "unknown type " + std::to_string(type);
}

std::string textOfValue(const CMPIData &data) {
    if (CMIsNullValue(data)) {
        return "NULL";
    }
    if (CMIsArray(data)) {
        return joined(data, textOfValue);
    }
    const CMPIValue &value = data.value;
    switch (data.type) {
    case CMPI_boolean: return value.boolean ? "true" : "false";
    case CMPI_char16: return textOfChar16(value.char16);
    case CMPI_uint8: return textOfNumber(value.uint8);
    case CMPI_uint16: return textOfNumber(value.uint16);
    case CMPI_uint32: return textOfNumber(value.uint32);
    case CMPI_uint64: return textOfNumber(value.uint64);
    case CMPI_sint8: return textOfNumber(value.sint8);
    case CMPI_sint16: return textOfNumber(value.sint16);
    case CMPI_sint32: return textOfNumber(value.sint32);
    case CMPI_sint64: return textOfNumber(value.sint64);
    case CMPI_real32: return textOfReal(value.real32, textOfNumber(value.real32));
    case CMPI_real64: return textOfReal(value.real64, textOfNumber(value.real64));
    case CMPI_string: return CMGetCharPtr(value.string);
    case CMPI_dateTime: return objectOf(value.dateTime)->text;
    case CMPI_ref: return textOfPath(value.ref);
    case CMPI_instance: return mofOfInstance(value.inst);
    default: return textOfType(data.type);
    }
}

std::string mofOfValue(const CMPIData &value) {
    if (CMIsNullValue(value)) {
        return "NULL";
    }
    if (CMIsArray(value)) {
        return joined(value, mofOfValue);
    }
    const std::string text = textOfValue(value);
    if (value.type == CMPI_char16) {
        return '\'' + (text == "'" || text == "\\" ? '\\' + text : text) + '\'';
    }
    return isQuoted(value.type) ? quotedText(text) : text;
}

std::string mofOfInstance(const CMPIInstance *instance) {
    const InstanceBody &body = *objectOf(instance)->body;
    std::string text = "instance of " + body.layout->cls->name + " {\n";
    const CMPICount count = CMGetPropertyCount(instance, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString *name = nullptr;
        const CMPIData value = CMGetPropertyAt(instance, i, &name, nullptr);
        text += std::string("    ") + CMGetCharPtr(name) + " = " + mofOfValue(value) + ";\n";
    }
    return text + "};\n";
}

std::vector<CMPIData> elementsOf(const CMPIData &value) {
    if (CMIsNullValue(value) || !CMIsArray(value)) {
        return {};
    }
    const ArrayObject &array = *objectOf(value.value.array);
    return {array.elements, array.elements + array.count};
}

bool parseValue(Request &request, CMPIType type, const std::vector<std::string> &texts, CMPIData &value,
                std::string &error) {
    const bool isArray = (type & CMPI_ARRAY) != 0;
    const auto elementType = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    if (!isArray && texts.size() != 1) {
        error =
            "a value of type " + textOfType(type) + " is a single one, not " + std::to_string(texts.size());
        return false;
    }
    ArrayObject *array =
        isArray ? newArray(request.memory, elementType, static_cast<CMPICount>(texts.size())) : nullptr;
    if (isArray && array == nullptr) {
        error = "out of memory";
        return false;
    }
    CMPIData scalar = {elementType, CMPI_goodValue, {}};
    for (size_t i = 0; i < texts.size(); ++i) {
        std::string why;
        if (!readScalar(request, elementType, texts[i], scalar.value, why)) {
            error = '"' + texts[i] + "\" is no " + textOfType(elementType) + ": " +
                    (why.empty() ? "expected " + expectedForm(elementType) : why);
            return false;
        }
        if (isArray) {
            array->elements[i] = scalar;
        }
    }
    value = scalar;
    if (isArray) {
        value = {type, CMPI_goodValue, {}};
        value.value.array = &array->cmpi;
    }
    return true;
}

CMPIStatus setProperty(CMPIInstance *instance, const char *name, const CMPIData &value) {
    return CMSetProperty(instance, name, CMIsNullValue(value) ? nullptr : &value.value, value.type);
}

CMPIStatus addArgument(CMPIArgs *arguments, const char *name, const CMPIData &value) {
    return CMAddArg(arguments, name, CMIsNullValue(value) ? nullptr : &value.value, value.type);
}

} // namespace broker
