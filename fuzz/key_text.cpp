// What a person types for an instance: paths and values as text, and what they become when written again.
//
// Input: a path; or a type by its number, after "=", and a text of that type.
#include "server.h"
#include "target.h"

#include <iterator>

namespace {

void tryPath(broker::Request &request, std::string_view text) {
    std::string error;
    const CMPIObjectPath *path = broker::parsePath(request, text, error);
    require((path == nullptr) != error.empty(), "a path is refused with a cause, or read without one", error);
    if (path == nullptr) {
        return;
    }
    // An empty namespace, which nobody serves, has no text of its own.
    const bool hasNameSpace = *CMGetCharsPtr(CMGetNameSpace(path, nullptr), nullptr) != '\0';
    const std::string written = broker::textOfPath(path, hasNameSpace);
    const CMPIObjectPath *again = broker::parsePath(request, written, error);
    require(again != nullptr, "a path that was written can be read", written + ": " + error);
    requireEqual("a path written twice", written, broker::textOfPath(again, hasNameSpace));
}

void tryValue(broker::Request &request, CMPIType type, const std::string &text) {
    CMPIData value{};
    std::string error;
    const bool isRead = broker::parseValue(request, type, {text}, value, error);
    require(isRead == error.empty(), "a value is refused with a cause, or read without one", error);
    if (!isRead) {
        return;
    }
    const std::string written = broker::textOfValue(value);
    require(broker::parseValue(request, type, {written}, value, error),
            "a value that was written can be read", written + ": " + error);
    requireEqual("a value written twice", written, broker::textOfValue(value));
}

constexpr CMPIType types[] = {
    CMPI_boolean, CMPI_char16, CMPI_uint8,  CMPI_uint16, CMPI_uint32, CMPI_uint64,   CMPI_sint8, CMPI_sint16,
    CMPI_sint32,  CMPI_sint64, CMPI_real32, CMPI_real64, CMPI_string, CMPI_dateTime, CMPI_ref,
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool ready = (restoreServer(), true);
    const broker::RequestPointer request = beginRequest();
    const std::string_view text = textOf(data, size);
    if (ready && size >= 2 && text[0] == '=') {
        tryValue(*request, types[data[1] % std::size(types)], std::string(text.substr(2)));
    } else {
        tryPath(*request, text.substr(0, text.find('\0'))); // as an argument of a program ends
    }
    return 0;
}
