// TRV_oVTABaseServer: the single instance that stands for the managed server. It starts from the row that the
// helper library delivers and adds status, identifying information, times, administration URLs, location,
// contact and what the agent in the operating system tells, from six back ends. Nearly every read may fail
// and leave its field empty; what has to be there is the helper library's row, a session and memory.
#include "TRVBaseServerProfile/TRV_oVTABaseServer.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/HelperLibrary.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"
#include "Utilities/Text.h"

#include "libCIMBaseHooks.h"
#include "libcorestore.h"
#include "libzbr_LCM.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <iterator>
#include <strings.h>

namespace {

using R = BaseServerRecord;

constexpr Key<R> keys[] = {
    {"CreationClassName", FIELD(R, host.CreationClassName),
     "Class of the server. Helper library: host system."},
    {"Name", FIELD(R, host.Name), "Name of the server. Helper library: host system."},
};

constexpr Property<R> properties[] = {
    {"AdminURLDNS", CMPI_chars, FIELD(R, AdminURLDNS),
     "Address of the web interface by name. Host name and configuration variables 0x144D, 0x1425 and 0x1420 "
     "or 0x1421."},
    {"AdminURLIPv4", CMPI_chars, FIELD(R, AdminURLIPv4),
     "The same by the IPv4 address of the management LAN."},
    {"AdminURLIPv6", CMPI_chars, FIELD(R, AdminURLIPv6),
     "The same by the unique local IPv6 address. Configuration variables 0x1A22, 0x1A24 and 0x1A25."},
    {"Caption", CMPI_chars, FIELD(R, Caption), "Model of the chassis. Configuration variable 0x0206."},
    {"ElementName", CMPI_chars, FIELD(R, host.ElementName),
     "Name of the host. Agent: short host name; without an agent, configuration variable 0x0201."},
    {"EnabledState", CMPI_uint16, FIELD(R, host.EnabledState),
     "Whether the server runs. Helper library: host system."},
    {"HealthState", CMPI_uint16, FIELD(R, host.HealthState), "Health, mapped from the error LED."},
    {"LastPowerOffReason", CMPI_uint16, FIELD(R, LastPowerOffReason),
     "Why the server was last powered off, 255 for unknown. OEM IPMI command 0x01 0x16: byte 5."},
    {"LastPowerOnReason", CMPI_uint16, FIELD(R, LastPowerOnReason),
     "Why the server was last powered on, 255 for unknown. OEM IPMI command 0x01 0x15: byte 5."},
    {"ManagementIPAddress", CMPI_chars, FIELD(R, ManagementIPAddress), "IPv4 address of the management LAN."},
    {"PrimaryStatus", CMPI_uint16, FIELD(R, PrimaryStatus), "Primary status, mapped from the error LED."},
    {"RequestedState", CMPI_uint16, FIELD(R, host.RequestedState),
     "State that was last requested. Helper library: host system."},
    {"Status", CMPI_chars, FIELD(R, Status), "Status in words, mapped from the error LED."},
    {"ServerUpdateStatus", CMPI_uint16, FIELD(R, ServerUpdateStatus),
     "State of the update manager. Agent: UMServerStatus; 0 without an agent."},
    {"UnitLocation", CMPI_chars, FIELD(R, UnitLocation),
     "Where the server stands. Configuration variable 0x0200."},
    {"PrimaryOwnerContact", CMPI_chars, FIELD(R, host.PrimaryOwnerContact),
     "Whom to ask. Configuration variable 0x0204."},
    {"LastBootTime", CMPI_dateTime, FIELD(R, LastBootTime),
     "When the server last booted. OEM IPMI command 0x01 0x18: bytes 5 to 8, seconds."},
    {.name = "OperationalStatus",
     .type = CMPI_uint16A,
     .field = FIELD(R, host.OperationalStatus),
     .description = "Status of the server. Helper library: host system.",
     .flags = PH_OEM_PROP_TERMINATED},
    {.name = "Dedicated",
     .type = CMPI_uint16A,
     .field = FIELD(R, host.Dedicated),
     .description = "What the server is for. Helper library: host system.",
     .flags = PH_OEM_PROP_TERMINATED},
    {.name = "IdentifyingDescriptions",
     .type = CMPI_stringA,
     .field = FIELD(R, host.IdentifyingDescriptions),
     .description = "What the entries of OtherIdentifyingInfo are. Constant.",
     .flags = PH_OEM_PROP_TERMINATED},
    {.name = "OtherIdentifyingInfo",
     .type = CMPI_stringA,
     .field = FIELD(R, host.OtherIdentifyingInfo),
     .description =
         "GUID (OEM DB: system information), serial number (Core DB: FRU 2 of the service processor) and "
         "asset tag (configuration variable 0x0210).",
     .flags = PH_OEM_PROP_TERMINATED},
    {.name = "OtherDedicatedDescriptions",
     .type = CMPI_stringA,
     .field = FIELD(R, OtherDedicatedDescriptions),
     .description = "One empty text.",
     .flags = PH_OEM_PROP_TERMINATED},
};

constexpr std::size_t text_size = 256; // of the record's own texts

// --- The helper library's row

// Copies the row into a zeroed record, without the texts that are the row's own.
void TakeRow(R &record, const HostComputerSystemRow &row) {
    record.host = row;
    std::ranges::fill(record.host.OtherIdentifyingInfo, nullptr);
    std::ranges::fill(record.host.IdentifyingDescriptions, nullptr);
    EndText(record.host.Name);
    EndText(record.host.CreationClassName);
    EndText(record.host.ElementName);
    EndText(record.host.PrimaryOwnerContact);
}

// The record with its head; NULL, with *failed telling whether that is a failure.
R *ReadHost(void *library, int namesOnly, bool *failed) {
    *failed = false;
    auto *enumerate = library == nullptr ? nullptr
                                         : reinterpret_cast<PH_Enum_All_HostComputerSystemFunction *>(
                                               dlsym(library, "PH_Enum_All_HostComputerSystem"));
    auto *clean = enumerate == nullptr ? nullptr
                                       : reinterpret_cast<PH_Clean_HostComputerSystemFunction *>(
                                             dlsym(library, "PH_Clean_HostComputerSystem"));
    if (clean == nullptr) {
        TRACE(TraceFailure, "dlopen/dlsym failed errno=%d", errno);
        return nullptr;
    }
    HostComputerSystemRow *rows = nullptr;
    int number = 0;
    enumerate(&rows, &number, namesOnly);
    if (number != 1 || rows == nullptr) {
        TRACE(TraceFailure, "Number of instance is not expected (num=%d)", number);
        if (rows != nullptr) {
            clean(rows, number);
        }
        return nullptr;
    }
    auto *record = static_cast<R *>(std::malloc(sizeof(R)));
    if (record == nullptr) {
        clean(rows, number);
        TRACE(TraceFailure, "Failed to allocate memory");
        *failed = true;
        return nullptr;
    }
    std::memset(static_cast<void *>(record), 0, sizeof *record);
    TakeRow(*record, *rows);
    clean(rows, number);
    return record;
}

// --- Status

bool ReadErrorLED(std::uint8_t &state) {
    IpmiSession session{}; // of its own
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI Session failed");
        return false;
    }
    if (const int result = ZBR_CIM_GetErrorLED(&session, &state, backend_timeout); result != 0) {
        TRACE(TraceFailure, "Get Error LED failed %d", result);
        return false;
    }
    return true;
}

void FillStatus(R &record) {
    std::uint8_t state = 0;
    const bool isRead = ReadErrorLED(state);
    state = isRead ? state : 0;
    record.host.HealthState = Zbr_CimIpmi_GetBaseSrvHealthState(state);
    record.PrimaryStatus = Zbr_CimIpmi_GetBaseSrvPrimaryStatus(state);
    if (isRead) {
        Zbr_CimIpmi_GetBaseSrvStatus(state, record.Status, sizeof record.Status);
        EndText(record.Status);
    } else {
        SetText(record.Status, "Unknown");
    }
}

// --- Identifying information

void ReadGUID(char *text) {
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (PH_OEM_InitOEMDB(&handle) != 0) {
        TRACE(TraceFailure, "PH_OEM_InitOEMDB failed");
        return;
    }
    char guid[SYSTEM_GUID_SIZE] = {};
    if (zbr_oemdb_get_sys_info(handle, guid) == 1) {
        TRACE(TraceFailure, "zbr_oemdb_get_sys_info call failed");
        return;
    }
    if (strnlen(guid, sizeof guid) == sizeof guid) {
        TRACE(TraceFailure, "buffer size is not sufficient");
        return;
    }
    CopyBounded(text, text_size, guid, sizeof guid);
}

// Finds the FRU device that holds the model's serial number: number 2 behind the service processor.
bool FindModelFru(std::uint32_t &fruId) {
    constexpr std::uint32_t service_processor_address = 0x20;
    constexpr std::uint32_t device_type = 0x80;
    constexpr std::uint32_t model_fru = 2;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (PH_OEM_InitOEMDB(&handle) != 0) {
        TRACE(TraceFailure, "PH_OEM_InitOEMDB failed");
        return false;
    }
    FruDeviceSdrRow *rows = nullptr;
    int count = 0;
    const int result = zbr_oemdb_get_all_frudevice_sdr_info(handle, &count, &rows);
    const Block<FruDeviceSdrRow> rowsOwner{rows};
    if (result != 0) {
        TRACE(TraceFailure, "zbr_oemdb_get_all_frudevice_sdr_info call failed");
        return false;
    }
    for (int i = 0; rows != nullptr && i < count; ++i) {
        if (rows[i].DeviceAddress == service_processor_address && rows[i].DeviceType == device_type &&
            rows[i].FruDeviceId == model_fru) {
            fruId = rows[i].FruDeviceId;
            return true;
        }
    }
    TRACE(TraceFailure, "fru device sdr data is not present in cim db");
    return false;
}

void ReadSerialNumber(char *text) {
    std::uint32_t fruId = 0;
    if (!FindModelFru(fruId)) {
        return;
    }
    std::uint32_t handle = 0;
    const CoreDBOwner handleOwner{&handle};
    if (PH_OEM_InitCoreDB(&handle) != 0) {
        TRACE(TraceFailure, "PH_OEM_InitCoreDB failed");
        return;
    }
    FruRow *row = nullptr;
    const int result = db_get_fru_info(handle, static_cast<int>(fruId), 0, 0, 0, &row);
    const Block<FruRow> rowOwner{row};
    if (result != 0) {
        TRACE(TraceFailure, "db_get_all_fru_info call failed");
        return;
    }
    if (row == nullptr) {
        TRACE(TraceFailure, "fru data is not present in cim db");
        return;
    }
    CopyBounded(text, text_size, row->ProductSerialNumber, sizeof row->ProductSerialNumber);
}

// Reads a text variable of `length` bytes at most into a field of `size`; a failure is traced with `failure`
// and leaves the text empty.
void ReadTextOrTrace(IpmiSession *session, std::uint16_t id, char *text, std::size_t size,
                     std::uint16_t length, const char *failure) {
    std::memset(text, 0, size);
    if (ReadVariable(session, id, 0, text, length) != 0) {
        TRACE(TraceFailure, "%s", failure);
    }
    text[size - 1] = '\0';
}

template <std::size_t N>
void ReadTextOrTrace(IpmiSession *session, std::uint16_t id, char (&text)[N], const char *failure) {
    ReadTextOrTrace(session, id, text, N, N, failure);
}

// Zeroed texts of the record's own, one for each of the first entries of a list.
template <std::size_t N> bool NewTexts(char *(&list)[N], std::size_t number) {
    for (std::size_t i = 0; i < number; ++i) {
        list[i] = NewRecords<char>(text_size);
        if (list[i] == nullptr) {
            return false;
        }
    }
    return true;
}

bool FillIdentification(IpmiSession *session, R &record) {
    constexpr const char *descriptions[] = {"CIM:GUID", "CIM:Model:SerialNumber", "CIM:Tag"};
    auto &info = record.host.OtherIdentifyingInfo;
    if (!NewTexts(info, std::size(descriptions))) {
        return false;
    }
    ReadGUID(info[0]);
    ReadSerialNumber(info[1]);
    ReadTextOrTrace(session, 0x0210, info[2], text_size, text_size, "Failed to get ConfBMCAssetTag");
    if (!NewTexts(record.host.IdentifyingDescriptions, std::size(descriptions))) {
        return false;
    }
    for (std::size_t i = 0; i < std::size(descriptions); ++i) {
        CopyBounded(record.host.IdentifyingDescriptions[i], text_size, descriptions[i], text_size);
    }
    return true;
}

// --- Times

// Sends one of the commands for the server's times; the response has the number of bytes asked.
template <std::size_t N> bool SendTimeCommand(std::uint8_t subCommand, std::uint8_t (&response)[N]) {
    const std::uint8_t request[] = {0x80, 0x28, 0x00, subCommand};
    std::uint32_t length = N;
    return PH_OEM_SendIPMICommand(oem_netfn, 0x01, request, sizeof request, response, &length) == 0 &&
           response[0] == 0 && length == N;
}

void FillTimes(R &record) {
    constexpr std::uint8_t last_boot = 0x18;
    constexpr std::uint8_t power_off_reason = 0x16;
    constexpr std::uint8_t power_on_reason = 0x15;
    constexpr std::uint16_t unknown_reason = 0xFF;
    std::uint8_t boot[9] = {};
    if (SendTimeCommand(last_boot, boot)) {
        std::uint32_t seconds;
        std::memcpy(&seconds, boot + 5, sizeof seconds);
        record.LastBootTime = static_cast<std::uint64_t>(std::int64_t{seconds} * 1'000'000);
    } else {
        TRACE(TraceFailure, "Failed to get LastBootTime");
    }
    std::uint8_t reason[6] = {};
    if (SendTimeCommand(power_off_reason, reason)) {
        record.LastPowerOffReason = reason[5];
    } else {
        TRACE(TraceFailure, "Failed to get LastPowerOffReason");
        record.LastPowerOffReason = unknown_reason;
    }
    if (SendTimeCommand(power_on_reason, reason)) {
        record.LastPowerOnReason = reason[5];
    } else {
        TRACE(TraceFailure, "Failed to get LastPowerOffReason");
        record.LastPowerOnReason = unknown_reason;
    }
}

// --- URLs

// What the three URLs share.
struct UrlParts {
    const char *secure; // "s" or empty
    std::uint16_t port;
};

void TraceUnread(const char *name, int result, std::uint8_t completionCode) {
    TRACE(TraceFailure, "failed to get the %s value (ret=0x%4x, cc=0x%2x)", name,
          static_cast<unsigned>(result), completionCode);
}

// A value that can't be read stays zero or empty: the URL is formed all the same.
template <typename Value>
int ReadUrlPart(IpmiSession *session, std::uint16_t id, std::uint8_t index, const char *name, Value &value) {
    std::uint8_t completionCode = 0;
    const int result = ReadNumber(session, id, index, value, &completionCode);
    if (result != 0) {
        TraceUnread(name, result, completionCode);
    }
    return result;
}

UrlParts ReadUrlParts(IpmiSession *session) {
    std::uint8_t forceHttps = 0;
    ReadUrlPart(session, 0x1425, 0, "ConfBMCForceHttps", forceHttps);
    UrlParts parts = {forceHttps != 0 ? "s" : "", 0};
    if (forceHttps != 0) {
        ReadUrlPart(session, 0x1421, 0, "ConfBMCHttpsPort", parts.port);
    } else {
        ReadUrlPart(session, 0x1420, 0, "ConfBMCHttpPort", parts.port);
    }
    return parts;
}

void FillIPv4(IpmiSession *session, const UrlParts &parts, R &record) {
    constexpr int management_channel = 2;
    std::uint32_t address = 0;
    if (LIBIPMI_HL_GetIPv4Address(session, &address, management_channel, backend_timeout) != 0) {
        TRACE(TraceFailure, "failed in to DRX_GetIPv4Address");
        return;
    }
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address, text, sizeof text);
    JoinText(record.AdminURLIPv4, "http", parts.secure, "://", text, ":", parts.port, "/");
    SetText(record.ManagementIPAddress, text);
}

// Walks the list of addresses to the unique local one.
void FillIPv6(IpmiSession *session, const UrlParts &parts, R &record) {
    constexpr std::uint8_t unique_local = 9;
    std::uint8_t enabled = 0;
    ReadUrlPart(session, 0x1A22, 0, "ConfBmcIpv6Enabled", enabled);
    if (enabled == 0) {
        TRACE(TraceProgress, "IPv6 is disabled");
        return;
    }
    for (std::uint8_t index = 0; index < 255; ++index) {
        std::uint8_t type = 0;
        std::uint8_t completionCode = 0;
        if (const int result = ReadNumber(session, 0x1A24, index, type, &completionCode); result != 0) {
            if (result == index_past_end) {
                TRACE(TraceFailure, "IPv6 Unique Local address is not found");
            } else {
                TraceUnread("ConfBmcIpv6AddressType", result, completionCode);
            }
            return;
        }
        if (type == unique_local) {
            std::uint8_t address[16];
            if (ReadUrlPart(session, 0x1A25, index, "ConfBmcIpv6Addr", address) == 0) {
                char text[INET6_ADDRSTRLEN] = "";
                inet_ntop(AF_INET6, address, text, sizeof text);
                JoinText(record.AdminURLIPv6, "http", parts.secure, "://[", text, "]:", parts.port, "/");
            }
            return;
        }
    }
}

void FillUrls(IpmiSession *session, R &record) {
    DNSGeneralSettingRecord settings{};
    char host[256] = "";
    PH_OEM_GetDNSGeneralSettingData(session, &settings);
    PH_OEM_GetHostname(session, &settings, host, sizeof host);
    char domain[48 + 1] = "";
    std::uint8_t completionCode = 0;
    if (const int result = ReadVariable(session, 0x144D, 0, domain, sizeof domain - 1, &completionCode);
        result != 0) {
        TraceUnread("ConfBMCDNSDomain", result, completionCode);
    }
    const UrlParts parts = ReadUrlParts(session);
    // Cut where it doesn't fit: a host name may fill the whole field.
    if (!JoinText(record.AdminURLDNS, "http", parts.secure, "://", host, ".", domain, ":", parts.port, "/")) {
        TRACE(TraceFailure, "AdminURLDNS is cut");
    }
    FillIPv4(session, parts, record);
    FillIPv6(session, parts, record);
}

// --- Agent parameters

// A parameter of the agent, which lives as long as its table.
struct AgentParameter {
    LCMParameterEntry *table;
    int entries;
};
void DestroyTable(AgentParameter *parameter) {
    LCMParamDb_destroyParameterTable(&parameter->table, parameter->entries);
}
using AgentParameterOwner = std::unique_ptr<AgentParameter, Closer<DestroyTable>>;

// The value of a parameter, or NULL with a trace line.
const char *AgentValue(AgentParameter &parameter, const char *name) {
    constexpr char group[] = "System Information";
    constexpr std::uint32_t last_good_status = 1;
    parameter.table = LCMParam_update(0, group, name, -1, &parameter.entries);
    if (parameter.table == nullptr || parameter.entries < 1) {
        TRACE(TraceFailure, "no entry for %s.%s in LCM DB", group, name);
        return nullptr;
    }
    const LCMParameterEntry &entry = parameter.table[0];
    if (entry.Status > last_good_status) {
        TRACE(TraceFailure, "failed to read an entry for %s.%s in LCM DB (status=0x%02x)", group, name,
              entry.Status);
        return nullptr;
    }
    if (entry.Value == nullptr) {
        TRACE(TraceFailure, "output is NULL for %s.%s in LCM DB (status=0x%02x)", group, name, entry.Status);
    }
    return static_cast<const char *>(entry.Value);
}

void FillAgentParameters(R &record) {
    constexpr std::size_t name_limit = 64; // characters that are taken
    if (OpenMTLIConnection() == -1) {
        return;
    }
    {
        AgentParameter name{};
        const AgentParameterOwner owner{&name};
        const char *value = AgentValue(name, "ServerHostNameShort");
        CopyBounded(record.host.ElementName, sizeof record.host.ElementName,
                    value != nullptr ? value : "- unknown -", name_limit);
    }
    AgentParameter status{};
    const AgentParameterOwner owner{&status};
    const char *value = AgentValue(status, "UMServerStatus");
    record.ServerUpdateStatus = value != nullptr ? static_cast<std::uint8_t>(*value) : 0;
}

// --- The whole

bool FillRecord(R &record) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return false;
    }
    FillStatus(record);
    if (!FillIdentification(&session, record)) {
        return false;
    }
    constexpr std::uint16_t name_length = 64;
    ReadTextOrTrace(&session, 0x0201, record.host.ElementName, sizeof record.host.ElementName, name_length,
                    "Failed to get ConfSystemName");
    ReadTextOrTrace(&session, 0x0206, record.Caption, "Failed to get ConfServerChassisModel");
    FillTimes(record);
    FillUrls(&session, record);
    ReadTextOrTrace(&session, 0x0200, record.UnitLocation, "Failed to get ConfCabinetLocation");
    ReadTextOrTrace(&session, 0x0204, record.host.PrimaryOwnerContact, "Failed to get ConfSystemContact");
    FillAgentParameters(record);
    return NewTexts(record.OtherDedicatedDescriptions, 1);
}

} // namespace

int PH_OEM_Enum_BaseServer_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    const LibraryOwner library{dlopen(VCH_CLASS_HELPER, RTLD_LAZY)}; // open until the record is whole
    bool failed = false;
    R *record = ReadHost(library.get(), namesOnly, &failed);
    if (record == nullptr) {
        return failed ? -1 : 0;
    }
    if (namesOnly == 0 && !FillRecord(*record)) {
        PH_OEM_Clean_BaseServer(&record, 1);
        return -1;
    }
    *records = record;
    *count = 1;
    return 0;
}

void PH_OEM_Clean_BaseServer(R **records, int count) {
    TRACE(TraceProgress, "Entering %s", __func__);
    for (int i = 0; *records != nullptr && i < count; ++i) {
        R &record = (*records)[i];
        FreeTexts(record.host.IdentifyingDescriptions);
        FreeTexts(record.host.OtherIdentifyingInfo);
        FreeTexts(record.OtherDedicatedDescriptions);
    }
    std::free(*records);
    *records = nullptr;
}

// --- Methods

namespace {

constexpr CMPIUint32 method_failed = 2;

// OEM IPMI command 0x03 0x10.
CMPIUint32 StartFanTest(const MethodCall &call, CMPIStatus &status) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        SetStatus(call.broker, &status, CMPI_RC_ERR_FAILED, "Create IPMI session failed");
        return method_failed;
    }
    const std::uint8_t request[] = {0x80, 0x28, 0x00, 0x10};
    std::uint8_t response[4] = {};
    std::uint32_t length = sizeof response;
    const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, oem_netfn, 0x03, request, sizeof request,
                                                        response, &length, backend_timeout);
    if (result != 0 || length == 0 || response[0] != 0) {
        TRACE(TraceFailure, "Send IPMI command failed CC=%d", response[0]);
        SetStatus(call.broker, &status, CMPI_RC_ERR_FAILED, "Send IPMI command failed");
        return method_failed;
    }
    return 0;
}

// Its own operation answers it: the helper library gives the return value.
constexpr MethodParameter state_change_parameters[] = {
    {.name = "RequestedState",
     .type = CMPI_uint16,
     .description = "The state that the server is to be brought into."},
    {.name = "Job",
     .type = CMPI_ref,
     .description = "The job that does it, where one was started.",
     .isOut = true,
     .referenceClass = "CIM_ConcreteJob"},
    {.name = "TimeoutPeriod", .type = CMPI_dateTime, .description = "How long it may take, an interval."},
};
constexpr Method methods[] = {
    {"RequestStateChange", nullptr,
     "Brings the server into a state; which ones are accepted is the helper library's business. "
     "Returns 0 on success, 2 on failure.",
     state_change_parameters},
    {"StartFanTest", StartFanTest, "Starts a test of the fans. Returns 0 on success, 2 on failure."},
};

} // namespace

EXPORT_OWNING_CLASS(BaseServer, "The managed server itself.", .superclass = "CIM_ComputerSystem",
                    .keyNamedInTrace = true, .setting = Setting::ByHelpersUntested,
                    .methods = Untagged<methods>, .noSuchMethod = method_failed);

CMPIStatus PH_OEM_IM_BaseServer(const CMPIBroker *broker, void *handle, const CMPIContext *ctx,
                                const CMPIObjectPath *cop, const char *method, const CMPIArgs *in,
                                const CMPIResult *rslt, CMPIArgs *out) {
    if (method != nullptr && strcasecmp(method, methods[0].name) == 0) {
        TRACE(TraceProgress, "Entering %s", __func__);
        return PH_OEM_BaseServer_RequestStateChange(broker, handle, ctx, cop, method, in, rslt, out);
    }
    return InvokeMethod(BaseServerClass, broker, ctx, cop, method, in, rslt, out);
}

CMPIStatus PH_OEM_BaseServer_RequestStateChange(const CMPIBroker *broker, void *, const CMPIContext *,
                                                const CMPIObjectPath *cop, const char *, const CMPIArgs *in,
                                                const CMPIResult *rslt, CMPIArgs *out) {
    TRACE(TraceProgress, "Entering %s", __func__);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const char *names[max_keys];
    CMPIString *keyValues[max_keys] = {};
    const bool isValid =
        PH_OEM_CheckForValidObjectPath(broker, cop, KeyNames(BaseServerClass, names), keyValues,
                                       static_cast<int>(std::size(keys)), &status) == 0;
    // A key that came as an integer has no text, and the helper library isn't known to cope with that.
    const bool isWhole = isValid && keyValues[0] != nullptr && keyValues[1] != nullptr;
    if (isValid && !isWhole) {
        SetStatus(broker, &status, CMPI_RC_ERR_FAILED, "Invalid Key Properties");
    }
    if (isWhole) {
        const LibraryOwner library{dlopen(VCH_CLASS_HELPER, RTLD_LAZY)};
        auto *requestStateChange = library == nullptr
                                       ? nullptr
                                       : reinterpret_cast<PH_HostRequestStateChangeFunction *>(
                                             dlsym(library.get(), "PH_HostRequestStateChange"));
        if (requestStateChange != nullptr) {
            if (requestStateChange(broker, rslt, cop, in, out, keyValues, &status) == 0) {
                status = {CMPI_RC_OK, nullptr};
                CMReturnDone(rslt);
            }
            return status;
        }
        TRACE(TraceFailure, "dlopen/dlsym failed errno=%d", errno);
    } else {
        TRACE(TraceFailure, "Failed in CheckForValidObjectPath\n");
    }
    ReturnMethodValue(rslt, method_failed);
    return status;
}
