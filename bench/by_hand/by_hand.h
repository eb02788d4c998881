// What the classes by hand share: what a careful engineer who has no frame would still write only once.
//
// A class by hand is the code for that one class and nothing else: rows go straight into properties, without
// records between them and without tables. It makes the same calls of back ends and of the broker as the
// class library's, in the same order and with the same values; the test `frame_calls` compares them.
#pragma once

#include "libCIMBaseHooks.h"

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#define EXPORTED extern "C" __attribute__((visibility("default")))

constexpr int backend_timeout = 30;

struct FreeBlock {
    void operator()(void *block) const { std::free(block); }
};
template <typename T> using Block = std::unique_ptr<T, FreeBlock>;

// A session with the service processor.
struct Session {
    IpmiSession session{};
    bool isOpen;
    Session();
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
};

// The name of the base server: the chassis serial number.
void ReadServerName(char (&name)[256]);

// Sends one command in a session of its own. False when it fails.
bool SendCommand(std::uint8_t netFnLun, std::uint8_t command, const std::uint8_t *request, std::uint32_t size,
                 std::uint8_t *response, std::uint32_t *length);

// Reads a variable of the configuration space; all zeros when it can't be read.
bool ReadVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, void *value,
                  std::uint16_t size);

// The text of a row's field, which is ended in the row.
template <std::size_t N> const char *Ended(char (&field)[N]) {
    field[N - 1] = '\0';
    return field;
}

// A formatted text, cut where it doesn't fit.
template <std::size_t N>
__attribute__((format(printf, 2, 3))) void Format(char (&text)[N], const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, N, format, arguments);
    va_end(arguments);
}

// Sets the status of a request that fails.
void Fail(const CMPIBroker *broker, CMPIStatus *status, const char *message);

// The values of a path's keys, in the order of the names; false for a path with other keys.
bool ReadKeys(const CMPIObjectPath *path, const char *const *names, CMPIString **values, int count);

// A new path in the namespace of the request's.
CMPIObjectPath *NewPath(const CMPIBroker *broker, const CMPIObjectPath *cop, const char *className);

// A new instance, and the client's property list, which ends with NULL; NULL is all properties.
struct Instance {
    CMPIInstance *inst;
    const char **properties;
};
Instance NewInstance(const CMPIBroker *broker, const CMPIObjectPath *cop, const char *className,
                     const char **properties);
bool IsListed(const char **properties, const char *name);
inline bool IsWanted(const Instance &instance, const char *name) {
    return instance.properties == nullptr || IsListed(instance.properties, name);
}

inline bool SetKey(const Instance &instance, const char *name, const char *text) {
    return *text != '\0' && CMSetProperty(instance.inst, name, text, CMPI_chars).rc == CMPI_RC_OK;
}
inline bool SetText(const Instance &instance, const char *name, const char *text) {
    return !IsWanted(instance, name) || CMSetProperty(instance.inst, name, text, CMPI_chars).rc == CMPI_RC_OK;
}
template <typename Number>
bool SetNumber(const Instance &instance, const char *name, Number number, CMPIType type) {
    return !IsWanted(instance, name) || CMSetProperty(instance.inst, name, &number, type).rc == CMPI_RC_OK;
}
inline bool AddKey(const CMPIObjectPath *path, const char *name, const char *text) {
    return CMAddKey(path, name, text, CMPI_chars).rc == CMPI_RC_OK;
}

// Sets an array, or null where there is none, and releases it.
bool SetArray(const Instance &instance, const char *name, CMPIArray *array, CMPIType type);

// A new array of numbers, or of those in a comma text; NULL without any.
CMPIArray *NewNumbers(const CMPIBroker *broker, const std::uint16_t *numbers, CMPICount count);
CMPIArray *NewNumbers(const CMPIBroker *broker, const char *text);

// A new array of texts; NULL without any.
CMPIArray *NewTexts(const CMPIBroker *broker, const char *const *texts, CMPICount count);
