#include "parts.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace generator {

namespace {

template <typename T> constexpr MofType integer(CMPIType type, const char *name) {
    return {type, name, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}

constexpr MofType types[] = {
    {CMPI_boolean, "boolean", 0, 0},
    {CMPI_char16, "char16", 0, 0},
    integer<CMPIUint8>(CMPI_uint8, "uint8"),
    integer<CMPIUint16>(CMPI_uint16, "uint16"),
    integer<CMPIUint32>(CMPI_uint32, "uint32"),
    integer<CMPIUint64>(CMPI_uint64, "uint64"),
    integer<CMPISint8>(CMPI_sint8, "sint8"),
    integer<CMPISint16>(CMPI_sint16, "sint16"),
    integer<CMPISint32>(CMPI_sint32, "sint32"),
    integer<CMPISint64>(CMPI_sint64, "sint64"),
    {CMPI_real32, "real32", 0, 0},
    {CMPI_real64, "real64", 0, 0},
    {CMPI_dateTime, "datetime", 0, 0},
    {CMPI_string, "string", 0, 0},
};

CMPIType elementOf(CMPIType type) {
    return static_cast<CMPIType>(type & ~CMPI_ARRAY);
}

const char *brackets(CMPIType type) {
    return (type & CMPI_ARRAY) != 0 ? "[]" : "";
}

// The length of the code that the text begins with, "12 " or "-1 "; 0 if it doesn't begin with one.
std::size_t codeLength(std::string_view text) {
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    const std::size_t end = std::min(text.find_first_not_of("0123456789", sign), text.size());
    return end > sign && end < text.size() && text[end] == ' ' ? end : 0;
}

} // namespace

CMPIType declaredType(CMPIType type) {
    return elementOf(type) == CMPI_chars ? static_cast<CMPIType>(CMPI_string | (type & CMPI_ARRAY)) : type;
}

const MofType *mofType(CMPIType type) {
    const auto *found = std::ranges::find(types, elementOf(declaredType(type)), &MofType::type);
    return found == std::end(types) ? nullptr : found;
}

std::string typeName(CMPIType type) {
    const MofType *known = mofType(type);
    return std::string(known == nullptr ? "REF" : known->name) + brackets(type);
}

std::string typedName(const std::string &name, CMPIType type, const char *referenceClass) {
    const std::string element =
        referenceClass != nullptr ? std::string(referenceClass) + " REF" : mofType(type)->name;
    return element + ' ' + name + brackets(type);
}

std::vector<ValueCode> readValueCodes(std::string_view text) {
    std::vector<ValueCode> codes;
    while (!text.empty()) {
        const std::size_t length = codeLength(text);
        if (length == 0) {
            return {};
        }
        const std::string code(text.substr(0, length));
        text.remove_prefix(length + 1);
        std::size_t comma = text.find(", ");
        while (comma != std::string_view::npos && codeLength(text.substr(comma + 2)) == 0) {
            comma = text.find(", ", comma + 2);
        }
        const std::string meaning(text.substr(0, comma));
        if (meaning.empty()) {
            return {};
        }
        codes.push_back({code, meaning});
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 2);
    }
    return codes;
}

std::vector<ValueCode> declaredValueCodes(const broker::Feature &feature) {
    const broker::Qualifier *map = broker::findQualifier(feature.qualifiers, "ValueMap");
    const broker::Qualifier *meanings = broker::findQualifier(feature.qualifiers, "Values");
    std::vector<ValueCode> codes;
    for (std::size_t i = 0;
         map != nullptr && meanings != nullptr && i < map->values.size() && i < meanings->values.size();
         ++i) {
        codes.push_back({map->values[i], meanings->values[i]});
    }
    return codes;
}

} // namespace generator
