// The broker's table for making objects, and for the messages that it doesn't serve.
#include "datetime.h"
#include "objects.h"

#include <chrono>

namespace broker {

namespace {

// The calling thread's memory; null outside of a request, where nothing can be made.
Memory *currentMemory() {
    Request *request = currentRequest();
    return request == nullptr ? nullptr : &request->memory;
}

// The CMPI object of what was made, with a status that fits.
template <typename Object> decltype(Object::cmpi) *made(Object *object, CMPIrc rcIfNull, CMPIStatus *status) {
    setStatus(status, object == nullptr ? rcIfNull : CMPI_RC_OK);
    return object == nullptr ? nullptr : &object->cmpi;
}

CMPIInstance *newInstanceOf(const CMPIBroker *, const CMPIObjectPath *path, CMPIStatus *status) {
    Memory *memory = currentMemory();
    if (path == nullptr || memory == nullptr) {
        setStatus(status, path == nullptr ? CMPI_RC_ERR_INVALID_PARAMETER : CMPI_RC_ERR_FAILED);
        return nullptr;
    }
    const PathObject &object = *objectOf(path);
    if (object.body->cls == nullptr) {
        if (status != nullptr) {
            *status = statusOf(CMPI_RC_ERR_INVALID_CLASS, std::string("class \"") +
                                                              CMGetCharPtr(&object.body->className->cmpi) +
                                                              "\" isn't declared");
        }
        return nullptr;
    }
    return made(newInstance(*memory, object), CMPI_RC_ERR_FAILED, status);
}

CMPIObjectPath *newObjectPath(const CMPIBroker *, const char *nameSpace, const char *className,
                              CMPIStatus *status) {
    Memory *memory = currentMemory();
    return made(memory == nullptr ? nullptr : newPath(*memory, nameSpace, className), CMPI_RC_ERR_FAILED,
                status);
}

CMPIArgs *newArgs(const CMPIBroker *, CMPIStatus *status) {
    Memory *memory = currentMemory();
    return made(memory == nullptr ? nullptr : newArguments(*memory), CMPI_RC_ERR_FAILED, status);
}

CMPIString *newStringOf(const CMPIBroker *, const char *text, CMPIStatus *status) {
    Memory *memory = currentMemory();
    return made(memory == nullptr ? nullptr : newString(*memory, text == nullptr ? "" : text),
                CMPI_RC_ERR_FAILED, status);
}

CMPIArray *newArrayOf(const CMPIBroker *, CMPICount size, CMPIType type, CMPIStatus *status) {
    Memory *memory = currentMemory();
    CMPIData probe;
    if (memory == nullptr || (type & CMPI_ARRAY) || copyValue(*memory, nullptr, type, probe) != CMPI_RC_OK) {
        setStatus(status, memory == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_ERR_INVALID_DATA_TYPE);
        return nullptr;
    }
    return made(newArray(*memory, type, size), CMPI_RC_ERR_FAILED, status);
}

CMPIDateTime *dateTimeOf(CMPIUint64 microseconds, bool isInterval, CMPIStatus *status) {
    Memory *memory = currentMemory();
    return made(memory == nullptr ? nullptr : dateTimeFromBinary(*memory, microseconds, isInterval),
                CMPI_RC_ERR_INVALID_PARAMETER, status);
}

CMPIDateTime *newDateTimeNow(const CMPIBroker *, CMPIStatus *status) {
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(system_clock::now().time_since_epoch());
    return dateTimeOf(static_cast<CMPIUint64>(now.count()), false, status);
}

CMPIDateTime *newDateTimeFromBinary(const CMPIBroker *, CMPIUint64 microseconds, CMPIBoolean interval,
                                    CMPIStatus *status) {
    return dateTimeOf(microseconds, interval != 0, status);
}

CMPIDateTime *newDateTimeFromChars(const CMPIBroker *, const char *text, CMPIStatus *status) {
    Memory *memory = currentMemory();
    const bool isPossible = memory != nullptr && text != nullptr;
    return made(isPossible ? dateTimeFromText(*memory, text) : nullptr, CMPI_RC_ERR_INVALID_PARAMETER,
                status);
}

CMPIBoolean classPathIsA(const CMPIBroker *broker, const CMPIObjectPath *path, const char *className,
                         CMPIStatus *status) {
    const Class *cls = path == nullptr ? nullptr : objectOf(path)->body->cls;
    const Class *ancestor = className == nullptr ? nullptr : findClass(brokerOf(broker)->schema, className);
    if (cls == nullptr || ancestor == nullptr) {
        setStatus(status, CMPI_RC_ERR_INVALID_CLASS);
        return 0;
    }
    setStatus(status, CMPI_RC_OK);
    return isA(*cls, *ancestor);
}

// Kinds of objects by the address of their table, which follows the handle in every one of them.
struct Kind {
    const void *table;
    const char *name;
    CMPIType type; // under which textOfValue writes it; CMPI_null if it has no text
};
constexpr Kind kinds[] = {
    {&stringTable, "CMPIString", CMPI_string},       {&dateTimeTable, "CMPIDateTime", CMPI_dateTime},
    {&arrayTable, "CMPIArray", CMPI_ARRAY},          {&pathTable, "CMPIObjectPath", CMPI_ref},
    {&instanceTable, "CMPIInstance", CMPI_instance}, {&argumentsTable, "CMPIArgs", CMPI_null},
    {&contextTable, "CMPIContext", CMPI_null},       {&enumerationTable, "CMPIEnumeration", CMPI_null},
    {&resultTable, "CMPIResult", CMPI_null},
};

const Kind *kindOf(const void *object) {
    if (object == nullptr) {
        return nullptr;
    }
    const void *table = static_cast<const CMPIString *>(object)->ft;
    for (const Kind &kind : kinds) {
        if (kind.table == table) {
            return &kind;
        }
    }
    return nullptr;
}

CMPIString *toString(const CMPIBroker *broker, const void *object, CMPIStatus *status) {
    const Kind *kind = kindOf(object);
    if (kind == nullptr) {
        setStatus(status, CMPI_RC_ERR_INVALID_HANDLE);
        return nullptr;
    }
    CMPIData data = {kind->type, CMPI_goodValue, {}};
    data.value.string = static_cast<CMPIString *>(const_cast<void *>(object));
    if (kind->type == CMPI_ARRAY) {
        data.type = static_cast<CMPIType>(CMPI_ARRAY | objectOf(data.value.array)->elementType);
    }
    return newStringOf(broker, kind->type == CMPI_null ? kind->name : textOfValue(data).c_str(), status);
}

CMPIString *getType(const CMPIBroker *broker, const void *object, CMPIStatus *status) {
    const Kind *kind = kindOf(object);
    if (kind == nullptr) {
        setStatus(status, CMPI_RC_ERR_INVALID_HANDLE);
        return nullptr;
    }
    return newStringOf(broker, kind->name, status);
}

CMPIBoolean isOfType(const CMPIBroker *, const void *object, const char *type, CMPIStatus *status) {
    const Kind *kind = kindOf(object);
    setStatus(status, kind == nullptr ? CMPI_RC_ERR_INVALID_HANDLE : CMPI_RC_OK);
    return kind != nullptr && type != nullptr && std::string_view(type) == kind->name;
}

// --- Not served: queries, error objects, and messages, which CIM servers needn't have either --------------

CMPISelectExp *newSelectExp(const CMPIBroker *, const char *, const char *, CMPIArray **,
                            CMPIStatus *status) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIString *getMessage(const CMPIBroker *, const char *, const char *, CMPIStatus *status, CMPICount, ...) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIString *getMessage2(const CMPIBroker *, const char *, CMPIMsgFileHandle, const char *, CMPIStatus *status,
                        CMPICount, ...) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIStatus logMessage(const CMPIBroker *, CMPISeverity, const char *, const char *, const CMPIString *) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus trace(const CMPIBroker *, CMPILevel, const char *, const char *, const CMPIString *) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIError *newError(const CMPIBroker *, const char *, const char *, const char *, const CMPIErrorSeverity,
                    const CMPIErrorProbableCause, const CMPIrc, CMPIStatus *status) {
    setStatus(status, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIStatus openMessageFile(const CMPIBroker *, const char *, CMPIMsgFileHandle *) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus closeMessageFile(const CMPIBroker *, CMPIMsgFileHandle) {
    return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

} // namespace

const CMPIBrokerEncFT creationTable = {
    .ftVersion = CMPIVersion200,
    .newInstance = newInstanceOf,
    .newObjectPath = newObjectPath,
    .newArgs = newArgs,
    .newString = newStringOf,
    .newArray = newArrayOf,
    .newDateTime = newDateTimeNow,
    .newDateTimeFromBinary = newDateTimeFromBinary,
    .newDateTimeFromChars = newDateTimeFromChars,
    .newSelectExp = newSelectExp,
    .classPathIsA = classPathIsA,
    .toString = toString,
    .isOfType = isOfType,
    .getType = getType,
    .getMessage = getMessage,
    .logMessage = logMessage,
    .trace = trace,
    .newCMPIError = newError,
    .openMessageFile = openMessageFile,
    .closeMessageFile = closeMessageFile,
    .getMessage2 = getMessage2,
};

} // namespace broker
