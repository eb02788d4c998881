// CMPIString: a text that never changes.
#include "objects.h"

#include <cstring>

namespace broker {

namespace {

CMPIStatus release(CMPIString *string) {
    return releaseObject(objectOf(string));
}

// The copy of a text for a clone lies in the clone's memory, so it is never the source itself.
CMPIString *clone(const CMPIString *string, CMPIStatus *status) {
    return cloneOf(*objectOf(string), copyString, status);
}

const char *getCharPtr(const CMPIString *string, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return static_cast<const char *>(string->hdl);
}

} // namespace

const CMPIStringFT stringTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .getCharPtr = getCharPtr,
};

StringObject *newString(Memory &memory, std::string_view text) {
    auto *string = allocateObject<StringObject>(memory, text.size() + 1);
    if (string == nullptr) {
        return nullptr;
    }
    char *copy = reinterpret_cast<char *>(string + 1);
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    *string = {{copy, &stringTable}, &memory, text.size()};
    return string;
}

StringObject *copyString(Memory &memory, const StringObject &source) {
    if (source.memory == &memory) {
        return const_cast<StringObject *>(&source);
    }
    return newString(memory, {static_cast<const char *>(source.cmpi.hdl), source.length});
}

} // namespace broker
