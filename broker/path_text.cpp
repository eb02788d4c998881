// Object paths as text and back: [namespace:]Class[.Key=value[,Key=value]...]
#include "objects.h"
#include "quoting.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace broker {

namespace {

// The quoted text at the start of rest, which moves behind it; false if the closing quote is missing.
bool takeQuoted(std::string_view &rest, std::string &text) {
    size_t i = 1;
    for (; i < rest.size() && rest[i] != '"'; ++i) {
        const bool isEscape = rest[i] == '\\' && i + 1 < rest.size();
        text += isEscape ? escaped(rest[++i]) : rest[i];
    }
    if (i >= rest.size()) {
        return false;
    }
    rest.remove_prefix(i + 1);
    return true;
}

// Adds one key from its text to the path.
bool addKey(Request &request, CMPIObjectPath *path, const Property &key, bool isQuoted,
            const std::string &text, std::string &error) {
    const bool wantsQuotes = key.type == CMPI_string || key.type == CMPI_ref || key.type == CMPI_dateTime;
    if (isQuoted != wantsQuotes) {
        error = "key " + key.name + " is a " + textOfType(key.type) +
                (wantsQuotes ? ": write it as " + key.name + "=" + quotedText(text)
                             : ": write it without quotes");
        return false;
    }
    CMPIData value;
    if (!parseValue(request, key.type, {text}, value, error)) {
        error = "key " + key.name + ": " + error;
        return false;
    }
    CMAddKey(path, key.name.c_str(), &value.value, value.type);
    return true;
}

bool readKeys(Request &request, CMPIObjectPath *path, const Class &cls, std::string_view rest,
              std::string &error) {
    while (true) {
        const size_t equals = rest.find('=');
        const std::string name(rest.substr(0, equals));
        if (equals == std::string_view::npos || name.empty()) {
            error = "expected Key=value at \"" + std::string(rest) + '"';
            return false;
        }
        const Property *key = findProperty(cls, name);
        if (key == nullptr || !key->isKey) {
            error = "class " + cls.name + " has no key \"" + name + "\"; its keys are";
            for (size_t k = 0; k < cls.keys.size(); ++k) {
                error += (k == 0 ? " " : ", ") + cls.properties[cls.keys[k]].name;
            }
            return false;
        }
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        CMGetKey(path, key->name.c_str(), &status);
        if (status.rc == CMPI_RC_OK) {
            error = "key " + key->name + " is given twice";
            return false;
        }
        rest.remove_prefix(equals + 1);
        const bool isQuoted = rest.starts_with('"');
        std::string text;
        if (!isQuoted) {
            const size_t end = std::min(rest.find(','), rest.size());
            text = rest.substr(0, end);
            rest.remove_prefix(end);
        } else if (!takeQuoted(rest, text)) {
            error = "the value of key " + key->name + " has no closing quote";
            return false;
        }
        if (!addKey(request, path, *key, isQuoted, text, error)) {
            return false;
        }
        if (rest.empty()) {
            return true;
        }
        if (rest[0] != ',') {
            error = "expected a comma after key " + key->name + ", found \"" + std::string(rest) + '"';
            return false;
        }
        rest.remove_prefix(1);
    }
}

} // namespace

CMPIObjectPath *parsePath(Request &request, std::string_view text, std::string &error) {
    // A namespace ends with the last colon before the first key; values may hold colons too.
    const size_t keysAt = text.find('.');
    const std::string_view head = text.substr(0, keysAt);
    const size_t colon = head.rfind(':');
    const std::string nameSpace(colon == std::string_view::npos ? nameSpaceOf(*request.broker)
                                                                : head.substr(0, colon));
    const std::string_view className = colon == std::string_view::npos ? head : head.substr(colon + 1);
    const Class *cls = classNamed(*request.broker, className);
    if (cls == nullptr) {
        error = "class \"" + std::string(className) + "\" isn't declared";
        return nullptr;
    }
    PathObject *path = newPath(request.memory, nameSpace.c_str(), cls->name.c_str());
    if (path == nullptr) {
        error = "out of memory";
        return nullptr;
    }
    const bool isRead = keysAt == std::string_view::npos ||
                        readKeys(request, &path->cmpi, *cls, text.substr(keysAt + 1), error);
    return isRead ? &path->cmpi : nullptr;
}

namespace {

// The place of a key in the class's declaration; undeclared ones come last.
size_t placeOf(const Class *cls, std::string_view key) {
    size_t place = 0;
    while (cls != nullptr && place < cls->keys.size() &&
           !sameName(cls->properties[cls->keys[place]].name, key)) {
        ++place;
    }
    return place;
}

// The keys in the order of their declaration: a path's text doesn't depend on who made it.
std::vector<const NamedValue *> orderedKeys(const PathBody &body) {
    std::vector<const NamedValue *> keys;
    for (CMPICount i = 0; i < body.keys.count; ++i) {
        keys.push_back(&body.keys.values[i]);
    }
    std::ranges::stable_sort(keys, {}, [&](const NamedValue *key) { return placeOf(body.cls, key->name); });
    return keys;
}

} // namespace

std::string textOfPath(const CMPIObjectPath *path, bool withNameSpace) {
    const PathBody &body = *objectOf(path)->body;
    std::string text;
    if (withNameSpace && body.nameSpace->length > 0) {
        text = std::string(CMGetCharPtr(&body.nameSpace->cmpi)) + ':';
    }
    text += CMGetCharPtr(&body.className->cmpi);
    const char *separator = ".";
    for (const NamedValue *key : orderedKeys(body)) {
        const auto &[name, data] = *key;
        text += std::exchange(separator, ",") + std::string(name) + '=' +
                (data.type == CMPI_boolean && !CMIsNullValue(data) ? (data.value.boolean ? "TRUE" : "FALSE")
                                                                   : mofOfValue(data));
    }
    return text;
}

} // namespace broker
