// CMPIObjectPath: namespace, class and keys.
#include "objects.h"

#include <cstring>

namespace broker {

namespace {

CMPIStatus release(CMPIObjectPath *path) {
    return releaseObject(objectOf(path));
}

CMPIObjectPath *clone(const CMPIObjectPath *path, CMPIStatus *status) {
    return cloneOf(*objectOf(path), copyPath, status);
}

// Sets one of the texts of a path.
CMPIStatus setText(const CMPIObjectPath *path, StringObject *PathBody::*member, const char *text) {
    PathObject &object = *objectOf(path);
    PathBody *body = ownBody(object);
    StringObject *string = body == nullptr ? nullptr : newString(*object.memory, text == nullptr ? "" : text);
    if (string == nullptr) {
        return statusOf(CMPI_RC_ERR_FAILED);
    }
    body->*member = string;
    return statusOf(CMPI_RC_OK);
}

CMPIString *getText(StringObject *text, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return &text->cmpi;
}

CMPIStatus setNameSpace(const CMPIObjectPath *path, const char *nameSpace) {
    return setText(path, &PathBody::nameSpace, nameSpace);
}

CMPIString *getNameSpace(const CMPIObjectPath *path, CMPIStatus *status) {
    return getText(objectOf(path)->body->nameSpace, status);
}

CMPIStatus setHostname(const CMPIObjectPath *path, const char *host) {
    return setText(path, &PathBody::host, host);
}

CMPIString *getHostname(const CMPIObjectPath *path, CMPIStatus *status) {
    const PathObject &object = *objectOf(path);
    StringObject *host = object.body->host;
    if (host == nullptr) {
        host = newString(*object.memory, "");
    }
    if (host == nullptr) {
        setStatus(status, CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    return getText(host, status);
}

CMPIStatus setClassName(const CMPIObjectPath *path, const char *className) {
    const CMPIStatus status = setText(path, &PathBody::className, className);
    if (status.rc == CMPI_RC_OK) {
        const PathObject &object = *objectOf(path);
        object.body->cls = classOf(*object.memory, className == nullptr ? "" : className);
    }
    return status;
}

CMPIString *getClassName(const CMPIObjectPath *path, CMPIStatus *status) {
    return getText(objectOf(path)->body->className, status);
}

CMPIStatus addKey(const CMPIObjectPath *path, const char *key, const CMPIValue *value, const CMPIType type) {
    PathObject &object = *objectOf(path);
    PathBody *body = ownBody(object);
    if (body == nullptr) {
        return statusOf(CMPI_RC_ERR_FAILED);
    }
    if (type & CMPI_ARRAY) {
        return statusOf(CMPI_RC_ERR_INVALID_DATA_TYPE);
    }
    return statusOf(putValue(*object.memory, body->keys, key, value, type));
}

CMPIData asKey(CMPIData data) {
    if (!(data.state & CMPI_notFound)) {
        data.state = static_cast<CMPIValueState>(data.state | CMPI_keyValue);
    }
    return data;
}

CMPIData getKey(const CMPIObjectPath *path, const char *key, CMPIStatus *status) {
    return asKey(namedValue(objectOf(path)->body->keys, key, CMPI_RC_ERR_NOT_FOUND, status));
}

CMPIData getKeyAt(const CMPIObjectPath *path, CMPICount index, CMPIString **name, CMPIStatus *status) {
    const PathObject &object = *objectOf(path);
    return asKey(namedValueAt(*object.memory, object.body->keys, index, name, status));
}

CMPICount getKeyCount(const CMPIObjectPath *path, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(path)->body->keys.count;
}

CMPIStatus setNameSpaceFromObjectPath(const CMPIObjectPath *path, const CMPIObjectPath *source) {
    if (source == nullptr) {
        return statusOf(CMPI_RC_ERR_INVALID_PARAMETER);
    }
    return setNameSpace(path, CMGetCharPtr(getNameSpace(source, nullptr)));
}

CMPIStatus setHostAndNameSpaceFromObjectPath(const CMPIObjectPath *path, const CMPIObjectPath *source) {
    const CMPIStatus status = setNameSpaceFromObjectPath(path, source);
    const StringObject *host = status.rc == CMPI_RC_OK ? objectOf(source)->body->host : nullptr;
    return host == nullptr ? status : setHostname(path, CMGetCharPtr(&host->cmpi));
}

// Qualifiers are for clients; no CIM server needs to offer them to providers.
CMPIData noQualifier(CMPIStatus *status) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return notFoundData();
}

CMPIData getClassQualifier(const CMPIObjectPath *, const char *, CMPIStatus *status) {
    return noQualifier(status);
}

CMPIData getPropertyQualifier(const CMPIObjectPath *, const char *, const char *, CMPIStatus *status) {
    return noQualifier(status);
}

CMPIData getParameterQualifier(const CMPIObjectPath *, const char *, const char *, const char *,
                               CMPIStatus *status) {
    return noQualifier(status);
}

CMPIString *toString(const CMPIObjectPath *path, CMPIStatus *status) {
    StringObject *text = newString(*objectOf(path)->memory, textOfPath(path, true));
    setStatus(status, text == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK);
    return text == nullptr ? nullptr : &text->cmpi;
}

bool isText(const StringObject *string, std::string_view text) {
    return string != nullptr && string->length == text.size() &&
           std::memcmp(string->cmpi.hdl, text.data(), text.size()) == 0;
}

// Namespace and class of a body. Most paths repeat those of the path before, and take its texts.
bool setNames(Memory &memory, PathBody &body, std::string_view nameSpace, std::string_view className) {
    if (!isText(memory.nameSpace, nameSpace)) {
        memory.nameSpace = newString(memory, nameSpace);
    }
    if (!isText(memory.className, className)) {
        memory.className = newString(memory, className);
        memory.cls = classOf(memory, className);
    }
    body.nameSpace = memory.nameSpace;
    body.className = memory.className;
    body.cls = memory.cls;
    return body.nameSpace != nullptr && body.className != nullptr;
}

std::string_view textOf(const StringObject &string) {
    return {static_cast<const char *>(string.cmpi.hdl), string.length};
}

// A body of another class with namespace and host of the source, without keys.
PathBody *newBody(Memory &memory, const PathBody &source, std::string_view className) {
    auto *body = allocateArray<PathBody>(memory, 1);
    if (body == nullptr || !setNames(memory, *body, textOf(*source.nameSpace), className)) {
        return nullptr;
    }
    if (source.host != nullptr && (body->host = copyString(memory, *source.host)) == nullptr) {
        return nullptr;
    }
    return body;
}

PathBody *copyBody(Memory &memory, const PathBody &source) {
    PathBody *body = newBody(memory, source, textOf(*source.className));
    return body != nullptr && copyValues(memory, source.keys, body->keys) ? body : nullptr;
}

PathObject *newObject(Memory &memory, PathBody *body) {
    auto *path = body == nullptr ? nullptr : allocateObject<PathObject>(memory);
    if (path != nullptr) {
        *path = {{path, &pathTable}, &memory, body};
    }
    return path;
}

} // namespace

const CMPIObjectPathFT pathTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .setNameSpace = setNameSpace,
    .getNameSpace = getNameSpace,
    .setHostname = setHostname,
    .getHostname = getHostname,
    .setClassName = setClassName,
    .getClassName = getClassName,
    .addKey = addKey,
    .getKey = getKey,
    .getKeyAt = getKeyAt,
    .getKeyCount = getKeyCount,
    .setNameSpaceFromObjectPath = setNameSpaceFromObjectPath,
    .setHostAndNameSpaceFromObjectPath = setHostAndNameSpaceFromObjectPath,
    .getClassQualifier = getClassQualifier,
    .getPropertyQualifier = getPropertyQualifier,
    .getMethodQualifier = getPropertyQualifier,
    .getParameterQualifier = getParameterQualifier,
    .toString = toString,
};

const Class *classOf(const Memory &memory, std::string_view name) {
    return findClass(memory.broker->schema, name);
}

PathObject *newPath(Memory &memory, const char *nameSpace, const char *className) {
    auto *body = allocateArray<PathBody>(memory, 1);
    if (body == nullptr || !setNames(memory, *body, nameSpace == nullptr ? "" : nameSpace,
                                     className == nullptr ? "" : className)) {
        return nullptr;
    }
    return newObject(memory, body);
}

PathObject *sharePath(Memory &memory, PathBody *body) {
    body->isShared = true;
    return newObject(memory, body);
}

PathBody *ownBody(PathObject &path) {
    if (!path.body->isShared) {
        return path.body;
    }
    PathBody *copy = copyBody(*path.memory, *path.body);
    if (copy != nullptr) {
        path.body = copy;
    }
    return copy;
}

PathObject *copyPath(Memory &memory, const PathObject &source) {
    if (source.memory == &memory) {
        return sharePath(memory, source.body);
    }
    return newObject(memory, copyBody(memory, *source.body));
}

PathObject *pathOfClass(Memory &memory, const PathObject &model, const Class &cls) {
    return newObject(memory, newBody(memory, *model.body, cls.name));
}

PathObject *pathOfInstance(Memory &memory, const InstanceObject &instance) {
    const InstanceBody &body = *instance.body;
    if (body.path->keys.count > 0) {
        return sharePath(memory, body.path);
    }
    PathBody *path = newBody(memory, *body.path, textOf(*body.path->className));
    if (path == nullptr) {
        return nullptr;
    }
    const Class &cls = *body.layout->cls;
    for (size_t k = 0; k < cls.keys.size(); ++k) {
        const char *name = cls.properties[cls.keys[k]].name.c_str();
        const CMPIData *data = keyValueOf(body, k);
        if (data != nullptr && !CMIsNullValue(*data) &&
            putValue(memory, path->keys, name, &data->value, data->type) != CMPI_RC_OK) {
            return nullptr;
        }
    }
    return newObject(memory, path);
}

} // namespace broker
