#include "by_hand.h"

#include "libCIMVendorHooks.h"
#include "libClassHelper.h"
#include "libcorestore.h"
#include "libzbr_LCM.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <arpa/inet.h>
#include <cstdio>
#include <dlfcn.h>

namespace {

constexpr char class_name[] = "TRV_oVTABaseServer";

// What is read before the instance is made. Texts are terminated; the first three are the same in all
// instances.
struct Server {
    HostComputerSystemRow host;
    std::uint16_t primaryStatus, lastPowerOffReason, lastPowerOnReason, updateStatus;
    std::uint64_t lastBootTime;
    char status[256], guid[256], serialNumber[256], tag[256], caption[256], location[256];
    char urlByName[256], urlByIPv4[256], urlByIPv6[256], address[INET_ADDRSTRLEN];
};

struct Library {
    void *handle = dlopen(VCH_CLASS_HELPER, RTLD_LAZY);
    Library() = default;
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
    ~Library() {
        if (handle != nullptr) {
            dlclose(handle);
        }
    }
};

bool ReadHost(void *library, int namesOnly, HostComputerSystemRow &host) {
    auto *enumerate = library == nullptr ? nullptr
                                         : reinterpret_cast<PH_Enum_All_HostComputerSystemFunction *>(
                                               dlsym(library, "PH_Enum_All_HostComputerSystem"));
    auto *clean = enumerate == nullptr ? nullptr
                                       : reinterpret_cast<PH_Clean_HostComputerSystemFunction *>(
                                             dlsym(library, "PH_Clean_HostComputerSystem"));
    if (clean == nullptr) {
        return false;
    }
    HostComputerSystemRow *rows = nullptr;
    int count = 0;
    enumerate(&rows, &count, namesOnly);
    const bool isOne = count == 1 && rows != nullptr;
    if (isOne) {
        host = rows[0];
        Ended(host.Name);
        Ended(host.CreationClassName);
        Ended(host.ElementName);
    }
    if (rows != nullptr) {
        clean(rows, count);
    }
    return isOne;
}

void ReadStatus(Server &server) {
    std::uint8_t led = 0;
    bool isRead;
    {
        Session session;
        isRead = session.isOpen && ZBR_CIM_GetErrorLED(&session.session, &led, backend_timeout) == 0;
    }
    led = isRead ? led : 0;
    server.host.HealthState = Zbr_CimIpmi_GetBaseSrvHealthState(led);
    server.primaryStatus = Zbr_CimIpmi_GetBaseSrvPrimaryStatus(led);
    if (isRead) {
        Zbr_CimIpmi_GetBaseSrvStatus(led, server.status, sizeof server.status);
        Ended(server.status);
    } else {
        Format(server.status, "Unknown");
    }
}

void ReadGuid(Server &server) {
    std::uint32_t handle = 0;
    if (zbr_oemdb_init(&handle) == 0 && (zbr_oemdb_get_sys_info(handle, server.guid) == 1 ||
                                         strnlen(server.guid, sizeof server.guid) == sizeof server.guid)) {
        server.guid[0] = '\0';
    }
    zbr_oemdb_close(handle);
}

bool HasModelFru() {
    std::uint32_t handle = 0;
    FruDeviceSdrRow *rows = nullptr;
    int count = 0;
    bool isFound = false;
    if (zbr_oemdb_init(&handle) == 0 && zbr_oemdb_get_all_frudevice_sdr_info(handle, &count, &rows) == 0) {
        for (int i = 0; rows != nullptr && i < count && !isFound; ++i) {
            isFound = rows[i].DeviceAddress == 0x20 && rows[i].DeviceType == 0x80 && rows[i].FruDeviceId == 2;
        }
    }
    std::free(rows);
    zbr_oemdb_close(handle);
    return isFound;
}

void ReadSerialNumber(Server &server) {
    if (!HasModelFru()) {
        return;
    }
    std::uint32_t handle = 0;
    FruRow *row = nullptr;
    if (db_init(&handle) == 0 && db_get_fru_info(handle, 2, 0, 0, 0, &row) == 0 && row != nullptr) {
        std::memcpy(server.serialNumber, Ended(row->ProductSerialNumber), sizeof server.serialNumber);
    }
    std::free(row);
    db_close(handle);
}

template <std::size_t N> void ReadText(IpmiSession *session, std::uint16_t id, char (&text)[N]) {
    ReadVariable(session, id, 0, text, N);
    Ended(text);
}

// One of the commands for the server's times.
template <std::size_t N> bool ReadTime(std::uint8_t subCommand, std::uint8_t (&response)[N]) {
    const std::uint8_t request[] = {0x80, 0x28, 0x00, subCommand};
    std::uint32_t length = N;
    return SendCommand(0xB8, 0x01, request, sizeof request, response, &length) && length == N;
}

void ReadTimes(Server &server) {
    std::uint8_t boot[9];
    if (ReadTime(0x18, boot)) {
        std::uint32_t seconds;
        std::memcpy(&seconds, boot + 5, sizeof seconds);
        server.lastBootTime = seconds * UINT64_C(1000000);
    }
    std::uint8_t reason[6];
    server.lastPowerOffReason = ReadTime(0x16, reason) ? reason[5] : 0xFF;
    server.lastPowerOnReason = ReadTime(0x15, reason) ? reason[5] : 0xFF;
}

void ReadHostName(IpmiSession *session, char (&name)[256]) {
    std::uint8_t addSerial = 0;
    std::uint8_t useNetworkName = 0;
    std::uint8_t addExtension = 0;
    char extension[256];
    char networkName[256];
    ReadVariable(session, 0x1433, 0, &addSerial, 1);
    ReadVariable(session, 0x1431, 0, &useNetworkName, 1);
    ReadVariable(session, 0x1434, 0, &addExtension, 1);
    ReadText(session, 0x1432, extension);
    ReadText(session, 0x1430, networkName);
    char serial[7] = "";
    if (addSerial != 0) {
        std::uint8_t address[6] = {};
        if (CIM_Get_MACAddress(session, address, 2, backend_timeout) != 0) {
            std::memset(address, 0, sizeof address);
        }
        Format(serial, "%02X%02X%02X", address[3], address[4], address[5]);
    }
    if (useNetworkName == 0) {
        ReadText(session, 0x0201, networkName);
    }
    const std::size_t length = strlen(networkName);
    std::memcpy(name, networkName, length + 1);
    std::strncat(name, serial, sizeof name - 1 - length);
    if (addExtension != 0) {
        std::strncat(name, extension, sizeof name - 1 - strlen(name));
    }
}

void ReadIPv6(IpmiSession *session, const char *secure, std::uint16_t port, Server &server) {
    std::uint8_t isEnabled = 0;
    ReadVariable(session, 0x1A22, 0, &isEnabled, 1);
    for (std::uint8_t index = 0; isEnabled != 0 && index < 255; ++index) {
        std::uint8_t type = 0;
        if (!ReadVariable(session, 0x1A24, index, &type, 1)) {
            return;
        }
        if (type == 9) {
            std::uint8_t address[16];
            if (ReadVariable(session, 0x1A25, index, address, sizeof address)) {
                char text[INET6_ADDRSTRLEN] = "";
                inet_ntop(AF_INET6, address, text, sizeof text);
                Format(server.urlByIPv6, "http%s://[%s]:%d/", secure, text, port);
            }
            return;
        }
    }
}

void ReadUrls(IpmiSession *session, Server &server) {
    char host[256];
    ReadHostName(session, host);
    char domain[49] = "";
    ReadVariable(session, 0x144D, 0, domain, sizeof domain - 1);
    std::uint8_t forceHttps = 0;
    ReadVariable(session, 0x1425, 0, &forceHttps, 1);
    const char *secure = forceHttps != 0 ? "s" : "";
    std::uint16_t port = 0;
    ReadVariable(session, forceHttps != 0 ? 0x1421 : 0x1420, 0, &port, sizeof port);
    Format(server.urlByName, "http%s://%s.%s:%d/", secure, host, domain, port);
    std::uint32_t address = 0;
    if (LIBIPMI_HL_GetIPv4Address(session, &address, 2, backend_timeout) == 0) {
        inet_ntop(AF_INET, &address, server.address, sizeof server.address);
        Format(server.urlByIPv4, "http%s://%s:%d/", secure, server.address, port);
    }
    ReadIPv6(session, secure, port, server);
}

// A value that the agent tells, to be used before the table is destroyed; NULL when there is none.
struct Parameter {
    int entries = 0;
    LCMParameterEntry *table;
    explicit Parameter(const char *name)
        : table(LCMParam_update(0, "System Information", name, -1, &entries)) {}
    Parameter(const Parameter &) = delete;
    Parameter &operator=(const Parameter &) = delete;
    ~Parameter() { LCMParamDb_destroyParameterTable(&table, entries); }
    const char *Value() const {
        return table != nullptr && entries > 0 && table->Status <= 1 ? static_cast<const char *>(table->Value)
                                                                     : nullptr;
    }
};

void ReadAgent(Server &server) {
    if (OpenMTLIConnection() == -1) {
        return;
    }
    {
        const Parameter name("ServerHostNameShort");
        const char *value = name.Value();
        Format(server.host.ElementName, "%.64s", value != nullptr ? value : "- unknown -");
    }
    const Parameter status("UMServerStatus");
    server.updateStatus = status.Value() != nullptr ? static_cast<std::uint8_t>(*status.Value()) : 0;
}

bool ReadServer(Server &server) {
    const Library library;
    if (!ReadHost(library.handle, 0, server.host)) {
        return false;
    }
    Session session;
    if (!session.isOpen) {
        return false;
    }
    ReadStatus(server);
    ReadGuid(server);
    ReadSerialNumber(server);
    ReadText(&session.session, 0x0210, server.tag);
    ReadVariable(&session.session, 0x0201, 0, server.host.ElementName, 64);
    server.host.ElementName[64] = '\0';
    ReadText(&session.session, 0x0206, server.caption);
    ReadTimes(server);
    ReadUrls(&session.session, server);
    ReadText(&session.session, 0x0200, server.location);
    ReadText(&session.session, 0x0204, server.host.PrimaryOwnerContact);
    ReadAgent(server);
    return true;
}

// The class's values go through the service processor library's conversion.
void SetConverted(const Instance &instance, const char *name, std::uint16_t number) {
    if (IsWanted(instance, name)) {
        CMPIValue value;
        ZBR_CIM_CreateCMPIValue(&value, &number, CMPI_uint16);
        CMSetProperty(instance.inst, name, &value, CMPI_uint16);
    }
}

void SetList(const CMPIBroker *broker, const Instance &instance, const char *name,
             const std::int32_t (&list)[4]) {
    if (!IsWanted(instance, name)) {
        return;
    }
    CMPICount count = 0;
    while (count < 4 && list[count] >= 0) {
        ++count;
    }
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    const CMPIArray *array = CMNewArray(broker, count, CMPI_uint16, &st);
    if (array == nullptr) {
        return;
    }
    for (CMPICount i = 0; i < count; ++i) {
        CMPIValue value;
        ZBR_CIM_CreateCMPIValue(&value, list + i, CMPI_uint16);
        CMSetArrayElementAt(array, i, &value, CMPI_uint16);
    }
    CMSetProperty(instance.inst, name, &array, CMPI_uint16A);
}

template <CMPICount N>
void SetTexts(const CMPIBroker *broker, const Instance &instance, const char *name,
              const char *const (&texts)[N]) {
    if (!IsWanted(instance, name)) {
        return;
    }
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    const CMPIArray *array = CMNewArray(broker, N, CMPI_string, &st);
    for (CMPICount i = 0; array != nullptr && i < N; ++i) {
        CMPIString *string = CMNewString(broker, texts[i], nullptr);
        CMSetArrayElementAt(array, i, &string, CMPI_string);
    }
    if (array != nullptr) {
        CMSetProperty(instance.inst, name, &array, CMPI_stringA);
    }
}

bool ReturnServer(const CMPIBroker *broker, const CMPIObjectPath *cop, const char **properties,
                  const CMPIResult *rslt, const Server &server) {
    const HostComputerSystemRow &host = server.host;
    const Instance instance = NewInstance(broker, cop, class_name, properties);
    if (instance.inst == nullptr) {
        return false;
    }
    if (!SetKey(instance, "CreationClassName", host.CreationClassName) ||
        !SetKey(instance, "Name", host.Name)) {
        CMRelease(instance.inst);
        return false;
    }
    SetText(instance, "AdminURLDNS", server.urlByName);
    SetText(instance, "AdminURLIPv4", server.urlByIPv4);
    SetText(instance, "AdminURLIPv6", server.urlByIPv6);
    SetText(instance, "Caption", server.caption);
    SetText(instance, "ElementName", host.ElementName);
    SetConverted(instance, "EnabledState", host.EnabledState);
    SetConverted(instance, "HealthState", host.HealthState);
    SetConverted(instance, "LastPowerOffReason", server.lastPowerOffReason);
    SetConverted(instance, "LastPowerOnReason", server.lastPowerOnReason);
    SetText(instance, "ManagementIPAddress", server.address);
    SetConverted(instance, "PrimaryStatus", server.primaryStatus);
    SetConverted(instance, "RequestedState", host.RequestedState);
    SetText(instance, "Status", server.status);
    SetConverted(instance, "ServerUpdateStatus", server.updateStatus);
    SetText(instance, "UnitLocation", server.location);
    SetText(instance, "PrimaryOwnerContact", host.PrimaryOwnerContact);
    if (IsWanted(instance, "LastBootTime")) {
        const CMPIDateTime *time = CMNewDateTimeFromBinary(broker, server.lastBootTime, 0, nullptr);
        if (time != nullptr) {
            CMSetProperty(instance.inst, "LastBootTime", &time, CMPI_dateTime);
        }
    }
    SetList(broker, instance, "OperationalStatus", host.OperationalStatus);
    SetList(broker, instance, "Dedicated", host.Dedicated);
    SetTexts(broker, instance, "IdentifyingDescriptions", {"CIM:GUID", "CIM:Model:SerialNumber", "CIM:Tag"});
    SetTexts(broker, instance, "OtherIdentifyingInfo", {server.guid, server.serialNumber, server.tag});
    SetTexts(broker, instance, "OtherDedicatedDescriptions", {""});
    CMReturnInstance(rslt, instance.inst);
    return true;
}

} // namespace

EXPORTED void PH_OEM_GI_BaseServer(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *cop,
                                   const char **properties, const CMPIResult *rslt, CMPIStatus *status) {
    constexpr const char *names[] = {"CreationClassName", "Name"};
    CMPIString *keys[2];
    Server server{};
    if (ReadKeys(cop, names, keys, 2)) {
        const char *className = CMGetCharsPtr(keys[0], nullptr);
        const char *name = CMGetCharsPtr(keys[1], nullptr);
        if (ReadServer(server) && std::strcmp(className, server.host.CreationClassName) == 0 &&
            std::strcmp(name, server.host.Name) == 0 && ReturnServer(broker, cop, properties, rslt, server)) {
            return;
        }
    }
    Fail(broker, status, "Failed to Get Instance");
}

EXPORTED void PH_OEM_EI_BaseServer(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *cop,
                                   const char **properties, const CMPIResult *rslt, CMPIStatus *status) {
    Server server{};
    if (ReadServer(server) && !ReturnServer(broker, cop, properties, rslt, server)) {
        Fail(broker, status, "Failed to Enumerate Instance");
    }
}

EXPORTED void PH_OEM_EIN_BaseServer(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *cop,
                                    const CMPIResult *rslt, CMPIStatus *status) {
    HostComputerSystemRow host;
    {
        const Library library;
        if (!ReadHost(library.handle, 1, host)) {
            return;
        }
    }
    CMPIObjectPath *path = NewPath(broker, cop, class_name);
    if (path == nullptr || host.CreationClassName[0] == '\0' || host.Name[0] == '\0' ||
        !AddKey(path, "CreationClassName", host.CreationClassName) || !AddKey(path, "Name", host.Name)) {
        if (path != nullptr) {
            CMRelease(path);
        }
        return Fail(broker, status, "Failed to Enumerate Instance Names");
    }
    CMReturnObjectPath(rslt, path);
}
