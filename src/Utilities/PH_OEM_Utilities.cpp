#include "Utilities/PH_OEM_Utilities.h"

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Debug.h"
#include "Utilities/Text.h"

#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <strings.h>
#include <unistd.h>

// --- Sessions and handles

namespace {

constexpr int session_attempts = 5;
constexpr unsigned session_retry_seconds = 5;
constexpr std::uint8_t administrator_privilege = 4;

// The login data as the IPMI library takes it: terminated texts, whatever the row holds.
struct SessionArguments {
    char target[sizeof(IpmiSessionInformation::Target) + 1];
    std::uint16_t port;
    char userName[sizeof(IpmiSessionInformation::UserName) + 1];
    char password[sizeof(IpmiSessionInformation::Password) + 1];
    std::uint8_t authenticationType;
    std::uint8_t confidentialityAlgorithm;
    std::uint8_t privilegeLevel;
    std::uint8_t authenticationAlgorithm;
    std::uint8_t integrityAlgorithm;
};

void WipeArguments(SessionArguments *arguments) {
    explicit_bzero(arguments, sizeof *arguments);
}
using SessionArgumentsOwner = std::unique_ptr<SessionArguments, Closer<WipeArguments>>;

void WipeAndFreeRow(IpmiSessionInformation *row) {
    explicit_bzero(row, sizeof *row);
    std::free(row);
}
using SessionInfoRow = std::unique_ptr<IpmiSessionInformation, Closer<WipeAndFreeRow>>;

// A number in text form: decimal, octal with a leading 0 or hexadecimal with a leading 0x, cut to 8 bits.
template <std::size_t N> std::uint8_t NumberFromText(const char (&text)[N]) {
    char copy[N + 1];
    return static_cast<std::uint8_t>(std::strtol(EndedText(text, copy), nullptr, 0));
}

void ConvertSessionInfo(const IpmiSessionInformation &row, SessionArguments &arguments) {
    CopyText(arguments.target, row.Target);
    arguments.port = row.Port;
    CopyText(arguments.userName, row.UserName);
    CopyText(arguments.password, row.Password);
    arguments.authenticationType = NumberFromText(row.AuthenticationType);
    arguments.confidentialityAlgorithm = NumberFromText(row.ConfidentialityAlgorithm);
    arguments.privilegeLevel = NumberFromText(row.PrivilegeLevel);
    arguments.authenticationAlgorithm = NumberFromText(row.AuthenticationAlgorithm);
    arguments.integrityAlgorithm = NumberFromText(row.IntegrityAlgorithm);
    if (arguments.privilegeLevel == 0) {
        arguments.privilegeLevel = administrator_privilege;
    }
}

// Reads the login data. The DB is closed again before the session is set up.
bool ReadSessionInfo(SessionArguments &arguments, bool trace) {
    std::uint32_t handle = 0;
    if (zbr_oemdb_init(&handle) != 0) {
        if (trace) {
            TRACE(TraceFailure, "Unable to create handle for OEM DB Access");
        }
        return false;
    }
    IpmiSessionInformation *row = nullptr;
    const int result = zbr_oemdb_get_ipmi_session_info(handle, &row);
    const SessionInfoRow rowOwner{row};
    zbr_oemdb_close(handle);
    if ((result & 0xFFFF) == 1 || row == nullptr) {
        if (trace) {
            TRACE(TraceFailure, "Unable to get IPMI Session Info from OEM DB");
        }
        return false;
    }
    ConvertSessionInfo(*row, arguments);
    return true;
}

} // namespace

int PH_OEM_CreateIPMISession_Ex(IpmiSession *session, int trace) {
    SessionArguments arguments;
    const SessionArgumentsOwner argumentsOwner{&arguments};
    if (!ReadSessionInfo(arguments, trace != 0)) {
        return -1;
    }
    for (int attempt = 0; attempt < session_attempts; ++attempt) {
        if (CIM_Create_IPMI20_Session(session, arguments.target, arguments.port, arguments.userName,
                                      arguments.password, arguments.authenticationType, 0, 0,
                                      &arguments.confidentialityAlgorithm, arguments.privilegeLevel,
                                      arguments.authenticationAlgorithm, arguments.integrityAlgorithm, 0, 0,
                                      backend_timeout) == 0) {
            if (trace != 0) {
                TRACE(TraceProgress, "IPMI Connection established");
            }
            return 0;
        }
        sleep(session_retry_seconds); // also after the last attempt
    }
    if (trace != 0) {
        TRACE(TraceFailure, "IPMI Connection is not established");
    }
    return -1;
}

int PH_OEM_CreateIPMISession(IpmiSession *session) {
    return PH_OEM_CreateIPMISession_Ex(session, 1);
}

int PH_OEM_CloseIPMISession(IpmiSession *session) {
    if (session == nullptr) {
        return -1;
    }
    CIM_Close_Session(session);
    return 0;
}

int PH_OEM_CreateAuthenticatedLocalSession(IpmiSession *session, const CMPIContext *ctx) {
    if (ctx == nullptr) {
        return -1;
    }
    char *remoteIP = nullptr;
    if (ZBR_CIM_GetValueFromContext(ctx, "CMPIRemoteIP", &remoteIP, CMPI_string) != 0) {
        TRACE(TraceFailure, "Failed to get CMPIRemoteIP");
        return -1;
    }
    char *principal = nullptr;
    if (ZBR_CIM_GetValueFromContext(ctx, "CMPIPrincipal", &principal, CMPI_string) != 0) {
        TRACE(TraceFailure, "Failed to get CMPIPrincipal");
        return -1;
    }
    if (ZBR_CIM_CreateAuthenticatedLocalSession(session, remoteIP, principal, backend_timeout) != 0) {
        TRACE(TraceFailure, "Failed to create authenticated local session (%s,%s)",
              principal != nullptr ? principal : "(NULL)", remoteIP != nullptr ? remoteIP : "(NULL)");
        return -1;
    }
    return 0;
}

int PH_OEM_InitOEMDB(std::uint32_t *handle) {
    if (const int result = zbr_oemdb_init(handle); result != 0) {
        TRACE(TraceFailure, "zbr_oemdb_init failed (ret=%d)", result);
        return -1;
    }
    return 0;
}

int PH_OEM_CloseOEMDB(std::uint32_t handle) {
    return zbr_oemdb_close(handle) == 1 ? -1 : 0;
}

int PH_OEM_InitCoreDB(std::uint32_t *handle) {
    if (const int result = db_init(handle); result != 0) {
        TRACE(TraceFailure, "db_init failed (ret=%d)", result);
        return -1;
    }
    return 0;
}

int PH_OEM_CloseCoreDB(std::uint32_t handle) {
    return db_close(handle) == 1 ? -1 : 0;
}

int PH_OEM_SendIPMICommand(std::uint8_t netFnLun, std::uint8_t cmd, const std::uint8_t *request,
                           std::uint32_t requestLength, std::uint8_t *response,
                           std::uint32_t *responseLength) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    // A failed command may bring nothing, and what the caller has no room for isn't looked at.
    std::uint8_t buffer[response_limit];
    std::memset(buffer, 0, std::clamp(*responseLength, 1U, response_limit));
    std::uint32_t length = response_limit;
    const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, netFnLun, cmd, request, requestLength,
                                                        buffer, &length, backend_timeout);
    *responseLength = std::min({*responseLength, length, response_limit});
    if (response != nullptr) {
        std::memcpy(response, buffer, *responseLength);
    }
    if (result != 0) {
        TRACE(TraceFailure, "Send IPMI Command failed. NetFnLun=0x%02x, Cmd=0x%02x, CC=0x%02x, ret=0x%x\n",
              netFnLun, cmd, buffer[0], static_cast<unsigned>(result));
        return -1;
    }
    return 0;
}

// --- The request's object path

namespace {

// The integer types are those with one of these bits.
constexpr CMPIType integer_types = 0x90;

int RefusePath(const CMPIBroker *broker, CMPIStatus *status, CMPIrc rc, const char *message) {
    TRACE(TraceFailure, "%s", message);
    SetStatus(broker, status, rc, message);
    return -1;
}

// The position of a key's name in the list, or -1. Key names are case-sensitive.
int KeyPosition(const char *const *keyList, int keyCount, const char *name) {
    for (int i = 0; i < keyCount; ++i) {
        if (std::strcmp(keyList[i], name) == 0) {
            return i;
        }
    }
    return -1;
}

} // namespace

int PH_OEM_CheckForValidObjectPath(const CMPIBroker *broker, const CMPIObjectPath *cop,
                                   const char *const *keyList, CMPIString **keyValues, int keyCount,
                                   CMPIStatus *status) {
    std::fill_n(keyValues, keyCount, nullptr);
    const CMPICount pathKeys = CMGetKeyCount(cop, nullptr);
    if (pathKeys < static_cast<CMPICount>(keyCount)) {
        return RefusePath(broker, status, CMPI_RC_ERR_FAILED, "Key Property Missing");
    }
    for (CMPICount i = 0; i < pathKeys; ++i) {
        CMPIString *name = nullptr;
        const CMPIData key = CMGetKeyAt(cop, i, &name, nullptr);
        if (key.type != CMPI_string && (key.type & integer_types) == 0) {
            return RefusePath(broker, status, CMPI_RC_ERR_TYPE_MISMATCH, "Invalid Data Type");
        }
        const char *nameText = name == nullptr ? nullptr : CMGetCharsPtr(name, nullptr);
        const int position = nameText == nullptr ? -1 : KeyPosition(keyList, keyCount, nameText);
        if (position < 0) {
            return RefusePath(broker, status, CMPI_RC_ERR_NO_SUCH_PROPERTY, "No Such Key Property");
        }
        if (key.type != CMPI_string) {
            continue;
        }
        const bool hasValue = !CMIsNullValue(key) && key.value.string != nullptr;
        const char *text = hasValue ? CMGetCharsPtr(key.value.string, nullptr) : nullptr;
        if (text == nullptr) {
            return RefusePath(broker, status, CMPI_RC_ERR_INVALID_PARAMETER, "Key Value Missing");
        }
        if (std::strpbrk(text, "\"'") != nullptr) {
            return RefusePath(broker, status, CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Value");
        }
        keyValues[position] = key.value.string;
    }
    return 0;
}

// --- Lists

int PH_OEM_ExistsInList(const char *const *properties, const char *name) {
    if (properties == nullptr) {
        return 1;
    }
    if (name == nullptr) {
        return 0;
    }
    for (; *properties != nullptr; ++properties) {
        if (strcasecmp(*properties, name) == 0) {
            return 1;
        }
    }
    return 0;
}

namespace {

constexpr std::size_t comma_text_limit = 256;

bool IsTooLong(const char *text) {
    const bool isTooLong = strnlen(text, comma_text_limit) == comma_text_limit;
    if (isTooLong) {
        TRACE(TraceFailure, "comma text is longer than %zu characters", comma_text_limit - 1);
    }
    return isTooLong;
}

void FreeItems(char **items, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::free(items[i]);
    }
    std::free(items);
}

char *DuplicateText(const char *text) {
    const std::size_t size = std::strlen(text) + 1;
    auto *copy = static_cast<char *>(std::malloc(size));
    return copy == nullptr ? nullptr : static_cast<char *>(std::memcpy(copy, text, size));
}

} // namespace

int PH_OEM_GetArrayCount(const char *text, char ***items, std::uint16_t *count) {
    if (items == nullptr || count == nullptr) {
        return -1;
    }
    *count = 0;
    if (text == nullptr || *text == '\0') {
        return 0;
    }
    if (IsTooLong(text)) {
        return -1;
    }
    char tokens[comma_text_limit];
    SetText(tokens, text);
    *count = static_cast<std::uint16_t>(std::count(text, text + std::strlen(text), ',') + 1);
    auto **list = static_cast<char **>(std::calloc(*count, sizeof(char *)));
    if (list == nullptr) {
        TRACE(TraceFailure, "memory allocation failed");
        return -1;
    }
    std::size_t used = 0;
    char *rest = nullptr;
    for (char *token = strtok_r(tokens, ",", &rest); token != nullptr;
         token = strtok_r(nullptr, ",", &rest)) {
        list[used] = DuplicateText(token + std::strspn(token, " \t"));
        if (list[used] == nullptr) {
            TRACE(TraceFailure, "memory allocation failed");
            FreeItems(list, used);
            return -1;
        }
        ++used;
    }
    *items = list;
    return 0;
}

namespace {

// strtol, cut to what an entry holds on 32-bit and 64-bit processors alike. *end is behind the number.
std::int32_t NumberAt(const char *text, char **end) {
    return static_cast<std::int32_t>(
        std::clamp<long long>(std::strtoll(text, end, 10), INT32_MIN, INT32_MAX));
}

} // namespace

// The tokens are those of PH_OEM_GetArrayCount, which needs a heap block for each.
void FillValueList(const char *name, const char *text, std::int32_t *list, std::size_t max) {
    if (IsTooLong(text)) {
        TRACE(TraceFailure, "%s can't be split into its numbers", name);
        return;
    }
    for (std::size_t i = 0; i < max; ++i) {
        while (*text == ',') {
            ++text;
        }
        if (*text == '\0') {
            return;
        }
        char *rest = nullptr;
        list[i] = NumberAt(text, &rest);
        text = rest;
        while (*text != '\0' && *text != ',') {
            ++text;
        }
    }
}

CMPIArray *DupValueList(const CMPIBroker *broker, const std::int32_t *list, std::size_t max) {
    CMPICount count = 0;
    while (list != nullptr && count < max && list[count] >= 0) {
        ++count;
    }
    if (count == 0) {
        return nullptr;
    }
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = CMNewArray(broker, count, CMPI_uint16, &st);
    if (st.rc != CMPI_RC_OK || array == nullptr) {
        return nullptr;
    }
    for (CMPICount i = 0; i < count; ++i) {
        const auto value = static_cast<CMPIUint16>(list[i]);
        CMSetArrayElementAt(array, i, reinterpret_cast<const CMPIValue *>(&value), CMPI_uint16);
    }
    return array;
}

CMPIArray *PH_OEM_Dup_uint16_Array(const CMPIBroker *broker, const std::int32_t *list) {
    return DupValueList(broker, list, UINT_MAX);
}

namespace {

// An array of `count` texts; `textAt` gives each. Elements are set as CMPI_chars, so that the array takes
// copies.
template <typename TextAt> CMPIArray *TextArray(const CMPIBroker *broker, CMPICount count, TextAt textAt) {
    if (count == 0) {
        return nullptr;
    }
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = CMNewArray(broker, count, CMPI_string, &st);
    if (st.rc != CMPI_RC_OK || array == nullptr) {
        return nullptr;
    }
    for (CMPICount i = 0; i < count; ++i) {
        const CMPIStatus set =
            CMSetArrayElementAt(array, i, reinterpret_cast<const CMPIValue *>(textAt(i)), CMPI_chars);
        if (set.rc != CMPI_RC_OK) {
            // Some CIM servers take nothing but strings in an array of strings.
            if (CMPIString *string = CMNewString(broker, textAt(i), nullptr); string != nullptr) {
                CMSetArrayElementAt(array, i, reinterpret_cast<const CMPIValue *>(&string), CMPI_string);
            }
        }
    }
    return array;
}

} // namespace

CMPIArray *PH_OEM_Dup_const_string_Array(const CMPIBroker *broker, const char *base, int stride, int max) {
    if (base == nullptr) {
        return nullptr;
    }
    const auto textAt = [=](CMPICount i) { return base + static_cast<std::size_t>(stride) * i; };
    CMPICount count = 0;
    while (max > 0 && count < static_cast<CMPICount>(max) && *textAt(count) != '\0') {
        ++count;
    }
    return TextArray(broker, count, textAt);
}

CMPIArray *DupPointerList(const CMPIBroker *broker, const char *const *list, std::size_t max) {
    CMPICount count = 0;
    while (list != nullptr && count < max && list[count] != nullptr) {
        ++count;
    }
    return TextArray(broker, count, [=](CMPICount i) { return list[i]; });
}

CMPIArray *PH_OEM_Dup_variable_string_Array(const CMPIBroker *broker, const char *const *list) {
    return DupPointerList(broker, list, UINT_MAX);
}

// --- Status

void SetStatus(const CMPIBroker *broker, CMPIStatus *status, CMPIrc rc, const char *message) {
    status->rc = rc;
    status->msg = CMNewString(broker, message, nullptr);
}

// --- Association providers

namespace {

CMPIStatus NotSupported(const CMPIBroker *broker, const char *operation) {
    TRACE(TraceProgress, "Entering %s", operation);
    TRACE(TraceFailure, "CIM_ERR_NOT_SUPPORTED");
    CMPIStatus status;
    SetStatus(broker, &status, CMPI_RC_ERR_NOT_SUPPORTED, "CIM_ERR_NOT_SUPPORTED");
    return status;
}

} // namespace

CMPIStatus PH_OEM_CreateInstance_Association(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                                             const CMPIObjectPath *, const CMPIInstance *,
                                             const CMPIBroker *broker) {
    return NotSupported(broker, __func__);
}

CMPIStatus PH_OEM_SetInstance_Association(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                                          const CMPIObjectPath *, const CMPIInstance *, const char **,
                                          const CMPIBroker *broker) {
    return NotSupported(broker, __func__);
}

CMPIStatus PH_OEM_DeleteInstance_Association(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                                             const CMPIObjectPath *, const CMPIBroker *broker) {
    return NotSupported(broker, __func__);
}

CMPIStatus PH_OEM_ExecQuery_Association(CMPIInstanceMI *, const CMPIContext *, const CMPIResult *,
                                        const CMPIObjectPath *, const char *, const char *,
                                        const CMPIBroker *broker) {
    return NotSupported(broker, __func__);
}
