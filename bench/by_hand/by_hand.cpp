#include "by_hand.h"

#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"

#include <algorithm>
#include <strings.h>
#include <unistd.h>

Session::Session() : isOpen(false) {
    std::uint32_t handle = 0;
    if (zbr_oemdb_init(&handle) != 0) {
        return;
    }
    IpmiSessionInformation *row = nullptr;
    const int result = zbr_oemdb_get_ipmi_session_info(handle, &row);
    zbr_oemdb_close(handle);
    const Block<IpmiSessionInformation> owner{row};
    if ((result & 0xFFFF) == 1 || row == nullptr) {
        return;
    }
    const auto number = [](char(&text)[64]) {
        return static_cast<std::uint8_t>(std::strtol(Ended(text), nullptr, 0));
    };
    std::uint8_t confidentiality = number(row->ConfidentialityAlgorithm);
    const std::uint8_t privilege = number(row->PrivilegeLevel);
    const std::uint8_t authenticationType = number(row->AuthenticationType);
    const std::uint8_t authentication = number(row->AuthenticationAlgorithm);
    const std::uint8_t integrity = number(row->IntegrityAlgorithm);
    for (int attempt = 0; attempt < 5 && !isOpen; ++attempt) {
        isOpen = CIM_Create_IPMI20_Session(&session, Ended(row->Target), row->Port, Ended(row->UserName),
                                           Ended(row->Password), authenticationType, 0, 0, &confidentiality,
                                           privilege == 0 ? 4 : privilege, authentication, integrity, 0, 0,
                                           backend_timeout) == 0;
        if (!isOpen) {
            sleep(5);
        }
    }
    explicit_bzero(row, sizeof *row);
}

Session::~Session() {
    CIM_Close_Session(&session);
}

void ReadServerName(char (&name)[256]) {
    std::uint32_t handle = 0;
    FruRow *rows = nullptr;
    int count = 0;
    name[0] = '\0';
    if (db_init(&handle) == 0 && db_get_all_fru_info(handle, &count, &rows) == 0) {
        for (int i = 0; rows != nullptr && i < count; ++i) {
            if (rows[i].EntityId == 23 || rows[i].EntityId == 24) {
                std::memcpy(name, Ended(rows[i].ProductSerialNumber), sizeof name);
                break;
            }
        }
    }
    std::free(rows);
    db_close(handle);
    if (name[0] == '\0') {
        Format(name, "- unknown -");
    }
}

bool SendCommand(std::uint8_t netFnLun, std::uint8_t command, const std::uint8_t *request, std::uint32_t size,
                 std::uint8_t *response, std::uint32_t *length) {
    Session session;
    if (!session.isOpen) {
        return false;
    }
    std::uint8_t buffer[61440];
    std::uint32_t received = sizeof buffer;
    buffer[0] = 0xFF;
    if (LIBIPMI_Send_RAW_IPMI2_0_Command(&session.session, 0, netFnLun, command, request, size, buffer,
                                         &received, backend_timeout) != 0 ||
        buffer[0] != 0) {
        return false;
    }
    *length = std::min(*length, received);
    std::memcpy(response, buffer, *length);
    return true;
}

bool ReadVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, void *value,
                  std::uint16_t size) {
    std::uint8_t completionCode = 0;
    std::uint16_t length = size;
    std::memset(value, 0, size);
    if (ZBR_CIM_GetConfigSpaceVariables(session, id, index, &completionCode, value, &length,
                                        backend_timeout) != 0) {
        std::memset(value, 0, size);
        return false;
    }
    return true;
}

void Fail(const CMPIBroker *broker, CMPIStatus *status, const char *message) {
    CMSetStatusWithChars(broker, status, CMPI_RC_ERR_FAILED, message);
}

bool ReadKeys(const CMPIObjectPath *path, const char *const *names, CMPIString **values, int count) {
    const CMPICount keys = CMGetKeyCount(path, nullptr);
    if (keys < static_cast<CMPICount>(count)) {
        return false;
    }
    for (CMPICount i = 0; i < keys; ++i) {
        CMPIString *name = nullptr;
        const CMPIData key = CMGetKeyAt(path, i, &name, nullptr);
        const char *nameText = CMGetCharsPtr(name, nullptr);
        int position = 0;
        while (position < count && std::strcmp(names[position], nameText) != 0) {
            ++position;
        }
        if (position == count || key.type != CMPI_string || CMIsNullValue(key)) {
            return false;
        }
        const char *text = CMGetCharsPtr(key.value.string, nullptr);
        if (text == nullptr || std::strpbrk(text, "\"'") != nullptr) {
            return false;
        }
        values[position] = key.value.string;
    }
    return true;
}

CMPIObjectPath *NewPath(const CMPIBroker *broker, const CMPIObjectPath *cop, const char *className) {
    const CMPIString *nameSpace = CMGetNameSpace(cop, nullptr);
    if (nameSpace == nullptr) {
        return nullptr;
    }
    CMPIObjectPath *path = CMNewObjectPath(broker, CMGetCharsPtr(nameSpace, nullptr), className, nullptr);
    return CMIsNullObject(path) ? nullptr : path;
}

Instance NewInstance(const CMPIBroker *broker, const CMPIObjectPath *cop, const char *className,
                     const char **properties) {
    const CMPIObjectPath *path = NewPath(broker, cop, className);
    CMPIInstance *inst = path == nullptr ? nullptr : CMNewInstance(broker, path, nullptr);
    return {CMIsNullObject(inst) ? nullptr : inst, properties};
}

bool IsListed(const char **properties, const char *name) {
    while (*properties != nullptr && strcasecmp(*properties, name) != 0) {
        ++properties;
    }
    return *properties != nullptr;
}

bool SetArray(const Instance &instance, const char *name, CMPIArray *array, CMPIType type) {
    if (array == nullptr) {
        return CMSetProperty(instance.inst, name, nullptr, type).rc == CMPI_RC_OK;
    }
    const CMPIStatus st = CMSetProperty(instance.inst, name, &array, type);
    CMRelease(array);
    return st.rc == CMPI_RC_OK;
}

CMPIArray *NewNumbers(const CMPIBroker *broker, const char *text) {
    constexpr CMPICount room = 8;
    std::uint16_t numbers[room];
    CMPICount count = 0;
    while (*text != '\0' && count < room) {
        char *end = nullptr;
        numbers[count++] = static_cast<std::uint16_t>(std::strtol(text, &end, 10));
        text = *end == ',' ? end + 1 : end + std::strlen(end);
    }
    return NewNumbers(broker, numbers, count);
}

CMPIArray *NewNumbers(const CMPIBroker *broker, const std::uint16_t *numbers, CMPICount count) {
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = count == 0 ? nullptr : CMNewArray(broker, count, CMPI_uint16, &st);
    for (CMPICount i = 0; array != nullptr && i < count; ++i) {
        CMSetArrayElementAt(array, i, numbers + i, CMPI_uint16);
    }
    return array;
}

CMPIArray *NewTexts(const CMPIBroker *broker, const char *const *texts, CMPICount count) {
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = count == 0 ? nullptr : CMNewArray(broker, count, CMPI_string, &st);
    for (CMPICount i = 0; array != nullptr && i < count; ++i) {
        if (CMSetArrayElementAt(array, i, texts[i], CMPI_chars).rc != CMPI_RC_OK) {
            CMPIString *string = CMNewString(broker, texts[i], nullptr);
            CMSetArrayElementAt(array, i, &string, CMPI_string);
        }
    }
    return array;
}
