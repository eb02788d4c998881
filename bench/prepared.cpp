#include "prepared.h"

#include "calls.h"

#include "libCIMBaseHooks.h"
#include "libCIMVendorHooks.h"
#include "libClassHelper.h"
#include "libcorestore.h"
#include "libzbr_LCM.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <valgrind/callgrind.h>
#include <vector>

using bench::Record;

// --- Rows

namespace {

template <std::size_t N> void Fill(char (&field)[N], const std::string &text) {
    std::strncpy(field, text.c_str(), N - 1);
}

std::vector<RegisteredProfileRow> profiles;
std::vector<FullSdrRow> sensors;
std::vector<SelRow> sel_rows;
std::vector<IelRow> iel_rows;
std::vector<FruRow> frus;
std::vector<FruDeviceSdrRow> fru_devices;
IpmiSessionInformation session_information{};
HostComputerSystemRow host{};

RegisteredProfileRow NewProfile(int row) {
    RegisteredProfileRow profile{};
    Fill(profile.InstanceID, bench::ProfileId(row));
    profile.RegisteredOrganization = 2;
    Fill(profile.RegisteredName, row % 25 == 3 ? "Physical Computer System View" : "Power State Management");
    Fill(profile.RegisteredVersion, "1.0.1");
    Fill(profile.AdvertiseTypes, row % 25 == 3 ? "2,3" : "2");
    return profile;
}

FullSdrRow NewSensor(int row) {
    FullSdrRow sensor{};
    sensor.SensorNumber = static_cast<std::uint8_t>(row);
    sensor.Linear = 1;
    sensor.M = 1;
    sensor.B = -12;
    sensor.Exponents = 0x01;
    sensor.UpperThresholdCritical = 180;
    sensor.UpperThresholdNonCritical = 170;
    Fill(sensor.SensorName, bench::SensorName(row));
    return sensor;
}

SelRow NewSelRow(int row) {
    SelRow entry{};
    entry.RecordId = row + 1;
    entry.TimeStamp = 1760000000U + static_cast<std::uint32_t>(row);
    entry.Flags = 0xA0;
    entry.ErrorCode = 0x19000B;
    Fill(entry.Message, "'DIMM-1A': Memory module failed (disabled)");
    Fill(entry.Summary, "A memory module was switched off because it had an error that can't be corrected.");
    Fill(entry.Causes, "The memory module is defect");
    constexpr char resolutions[] = "Replace the memory module\0Look for a loose module";
    std::copy_n(resolutions, sizeof resolutions, entry.Resolutions);
    return entry;
}

IelRow NewIelRow(int row) {
    IelRow entry{};
    entry.RecordId = row + 1;
    entry.TimeStamp = 1760000000U + static_cast<std::uint32_t>(row);
    entry.Flags = 0x10;
    entry.ErrorCode = 0x230020;
    entry.LanguageCode = 1033;
    Fill(entry.Message, "User 'admin' login from 192.0.2.7");
    return entry;
}

FruRow NewFru(int device, int entity) {
    FruRow fru{};
    fru.DeviceId = device;
    fru.EntityId = entity;
    Fill(fru.ProductSerialNumber, bench::chassis_serial);
    return fru;
}

void PrepareSingleRows() {
    frus = {NewFru(0, 7), NewFru(1, 23)};
    FruDeviceSdrRow device{};
    device.DeviceAddress = 0x20;
    device.DeviceType = 0x80;
    device.FruDeviceId = 2;
    fru_devices = {device};

    Fill(session_information.Target, "127.0.0.1");
    session_information.Port = 623;
    Fill(session_information.UserName, "cim-provider");
    Fill(session_information.Password, "none of your business");
    Fill(session_information.AuthenticationAlgorithm, "1");
    Fill(session_information.IntegrityAlgorithm, "1");
    Fill(session_information.AuthenticationType, "0x06");
    Fill(session_information.ConfidentialityAlgorithm, "1");
    Fill(session_information.PrivilegeLevel, "4");

    Fill(host.Name, bench::chassis_serial);
    Fill(host.CreationClassName, "TRV_oVTABaseServer");
    Fill(host.ElementName, "server");
    host.EnabledState = 2;
    host.RequestedState = 12;
    std::ranges::fill(host.Dedicated, -1);
    host.Dedicated[0] = 0;
    std::ranges::fill(host.OperationalStatus, -1);
    host.OperationalStatus[0] = 2;
}

// --- The way in

// One call of a back end.
struct BackEnd {
    template <typename... Values> explicit BackEnd(const char *format, Values... values) {
        if (bench::back_ends_are_uncounted) {
            CALLGRIND_TOGGLE_COLLECT;
        }
        if (bench::recording != nullptr) {
            Record(format, values...);
        }
    }
    ~BackEnd() {
        if (bench::back_ends_are_uncounted) {
            CALLGRIND_TOGGLE_COLLECT;
        }
    }
    BackEnd(const BackEnd &) = delete;
    BackEnd &operator=(const BackEnd &) = delete;
};

template <typename Row> int GiveRows(const Row *source, std::size_t number, int *count, Row **rows) {
    *rows = static_cast<Row *>(std::malloc(number * sizeof(Row)));
    std::memcpy(*rows, source, number * sizeof(Row));
    *count = static_cast<int>(number);
    return 0;
}
template <typename Row> int GiveRows(const std::vector<Row> &source, int *count, Row **rows) {
    return GiveRows(source.data(), source.size(), count, rows);
}
template <typename Row> int GiveRow(const Row &source, Row **row) {
    int count = 0;
    return GiveRows(&source, 1, &count, row);
}

void GiveText(const char *source, char *text, int size) {
    std::snprintf(text, static_cast<std::size_t>(size), "%s", source);
}

} // namespace

namespace bench {

std::string ProfileId(int row) {
    return "MARLOVEN:Profile:DSP" + std::to_string(row) + ":1.0.1";
}

std::string SensorName(int row) {
    return "Temp. Sensor " + std::to_string(row);
}

void PrepareRows(int count, const std::string &onlyClass) {
    const auto fill = [&](auto &rows, const char *className, auto newRow, int number) {
        rows.clear();
        for (int row = 0; row < number && (onlyClass.empty() || onlyClass == className); ++row) {
            rows.push_back(newRow(row));
        }
    };
    fill(profiles, "RegisteredProfile", NewProfile, count);
    fill(sensors, "TemperatureSensor", NewSensor, count);
    fill(sel_rows, "LogEntry", NewSelRow, count / 2);
    fill(iel_rows, "LogEntry", NewIelRow, count / 2);
    PrepareSingleRows();
}

} // namespace bench

// --- Core DB

int db_init(uint32_t *handle) {
    const BackEnd call("db_init");
    *handle = 1;
    return 0;
}

int db_close(uint32_t handle) {
    const BackEnd call("db_close %u", handle);
    return 0;
}

int db_get_all_fru_info(uint32_t handle, int *count, FruRow **rows) {
    const BackEnd call("db_get_all_fru_info %u", handle);
    return GiveRows(frus, count, rows);
}

int db_get_fru_info(uint32_t handle, int deviceId, int zero1, int zero2, int zero3, FruRow **row) {
    const BackEnd call("db_get_fru_info %u %d %d %d %d", handle, deviceId, zero1, zero2, zero3);
    return GiveRow(frus[0], row);
}

// --- OEM DB

int zbr_oemdb_init(uint32_t *handle) {
    const BackEnd call("zbr_oemdb_init");
    *handle = 2;
    return 0;
}

int zbr_oemdb_close(uint32_t handle) {
    const BackEnd call("zbr_oemdb_close %u", handle);
    return 0;
}

int zbr_oemdb_get_ipmi_session_info(uint32_t handle, IpmiSessionInformation **information) {
    const BackEnd call("zbr_oemdb_get_ipmi_session_info %u", handle);
    return GiveRow(session_information, information);
}

int zbr_oemdb_get_all_reg_prof_info(uint32_t handle, int *count, RegisteredProfileRow **rows) {
    const BackEnd call("zbr_oemdb_get_all_reg_prof_info %u", handle);
    return GiveRows(profiles, count, rows);
}

int zbr_oemdb_get_sys_info(uint32_t handle, char *guid) {
    const BackEnd call("zbr_oemdb_get_sys_info %u", handle);
    GiveText("5E5D4C3B-2A19-4807-8F6E-5D4C3B2A1908", guid, SYSTEM_GUID_SIZE);
    return 0;
}

int zbr_oemdb_get_all_frudevice_sdr_info(uint32_t handle, int *count, FruDeviceSdrRow **rows) {
    const BackEnd call("zbr_oemdb_get_all_frudevice_sdr_info %u", handle);
    return GiveRows(fru_devices, count, rows);
}

int zbr_oemdb_get_specific_full_sdrs(uint32_t handle, int sensorType, int entityId, int *count,
                                     FullSdrRow **rows) {
    const BackEnd call("zbr_oemdb_get_specific_full_sdrs %u %d %d", handle, sensorType, entityId);
    return GiveRows(sensors, count, rows);
}

int zbr_oemdb_get_all_sel_rec(uint32_t handle, int *count, SelRow **rows) {
    const BackEnd call("zbr_oemdb_get_all_sel_rec %u", handle);
    return GiveRows(sel_rows, count, rows);
}

int zbr_oemdb_get_all_iel_rec(uint32_t handle, int *count, IelRow **rows) {
    const BackEnd call("zbr_oemdb_get_all_iel_rec %u", handle);
    return GiveRows(iel_rows, count, rows);
}

int zbr_oemdb_get_sel_rec(uint32_t handle, int32_t recordId, int *count, SelRow **row) {
    const BackEnd call("zbr_oemdb_get_sel_rec %u %d", handle, recordId);
    return GiveRows(&sel_rows.at(static_cast<std::size_t>(recordId - 1)), 1, count, row);
}

// --- Sessions and commands

int CIM_Create_IPMI20_Session(IpmiSession *, const char *target, uint16_t port, const char *userName,
                              const char *password, uint8_t authenticationType, int zero1, int zero2,
                              uint8_t *confidentialityAlgorithm, uint8_t privilegeLevel,
                              uint8_t authenticationAlgorithm, uint8_t integrityAlgorithm, int zero3,
                              int zero4, int timeout) {
    const BackEnd call("CIM_Create_IPMI20_Session %s %u %s %s %u %d %d %u %u %u %u %d %d %d", target, port,
                       userName, password, authenticationType, zero1, zero2, *confidentialityAlgorithm,
                       privilegeLevel, authenticationAlgorithm, integrityAlgorithm, zero3, zero4, timeout);
    return 0;
}

int CIM_Close_Session(IpmiSession *) {
    const BackEnd call("CIM_Close_Session");
    return 0;
}

int LIBIPMI_Send_RAW_IPMI2_0_Command(IpmiSession *, int zero, uint8_t netFnLun, uint8_t command,
                                     const uint8_t *request, uint32_t requestLength, uint8_t *response,
                                     uint32_t *responseLength, int timeout) {
    const BackEnd call("LIBIPMI_Send_RAW_IPMI2_0_Command %d %02x %02x %u %02x %u %d", zero, netFnLun, command,
                       requestLength, requestLength > 3 ? request[3] : 0U, *responseLength, timeout);
    // Completion code, the maker's identification where the request had it, and the data.
    constexpr std::uint8_t times[] = {0, 0x80, 0x28, 0x00, 4, 0x10, 0x20, 0x30, 0x40};
    constexpr std::uint8_t counter[] = {0, 60, 0x10, 0x20, 0, 0};
    const bool isReason = requestLength > 3 && request[3] != 0x18;
    *responseLength = requestLength == 0 || isReason ? sizeof counter : sizeof times;
    std::memcpy(response, requestLength == 0 ? counter : times, *responseLength);
    return 0;
}

int LIBIPMI_HL_GetIPv4Address(IpmiSession *, uint32_t *address, int channel, int timeout) {
    const BackEnd call("LIBIPMI_HL_GetIPv4Address %d %d", channel, timeout);
    *address = 0x0702A8C0;
    return 0;
}

int CIM_Get_MACAddress(IpmiSession *, uint8_t *address, uint8_t channel, int timeout) {
    const BackEnd call("CIM_Get_MACAddress %d %d", channel, timeout);
    constexpr std::uint8_t documented[] = {0x02, 0x00, 0x5E, 0x10, 0x00, 0x01};
    std::memcpy(address, documented, sizeof documented);
    return 0;
}

// --- Configuration space, readings, single requests

int ZBR_CIM_GetConfigSpaceVariables(IpmiSession *, uint16_t id, uint8_t index, uint8_t *completionCode,
                                    void *buffer, uint16_t *length, int timeout) {
    const BackEnd call("ZBR_CIM_GetConfigSpaceVariables %04x %u %u %d", id, index, *length, timeout);
    *completionCode = 0;
    if (id == 0x1A24) { // the types of the addresses: the third is the unique local one
        *static_cast<std::uint8_t *>(buffer) = index == 2 ? 9 : 1;
        return 0;
    }
    if (*length <= 2) {
        const std::uint16_t number = id == 0x000E ? 1033 : 1; // the language of the log is English
        std::memcpy(buffer, &number, *length);
        return 0;
    }
    constexpr char text[] = "some-text.example";
    *length = std::min<std::uint16_t>(*length, sizeof text - 1);
    std::copy_n(text, *length, static_cast<char *>(buffer));
    return 0;
}

int ZBR_CIM_GetFullSensorReading(IpmiSession *, uint8_t sensorNumber, uint8_t *, uint8_t *reading,
                                 uint8_t *state, int timeout) {
    const BackEnd call("ZBR_CIM_GetFullSensorReading %u %d", sensorNumber, timeout);
    *reading = 137;
    *state = 0;
    return 0;
}

int ZBR_CIM_GetErrorLED(IpmiSession *, uint8_t *state, int timeout) {
    const BackEnd call("ZBR_CIM_GetErrorLED %d", timeout);
    *state = 0;
    return 0;
}

int ZBR_CIM_GetBIOSRecoveryFlash(IpmiSession *, uint8_t *value, int timeout) {
    const BackEnd call("ZBR_CIM_GetBIOSRecoveryFlash %d", timeout);
    *value = 1;
    return 0;
}

void ZBR_CIM_CreateCMPIValue(CMPIValue *value, const void *source, CMPIType type) {
    const BackEnd call("ZBR_CIM_CreateCMPIValue %x", type);
    *value = {};
    std::memcpy(value, source, type == CMPI_uint16 ? 2 : type == CMPI_uint32 ? 4 : 1);
}

// --- Status mappings

uint16_t Zbr_CimIpmi_GetBaseSrvHealthState(uint8_t ledState) {
    const BackEnd call("Zbr_CimIpmi_GetBaseSrvHealthState %u", ledState);
    return 5;
}

uint16_t Zbr_CimIpmi_GetBaseSrvPrimaryStatus(uint8_t ledState) {
    const BackEnd call("Zbr_CimIpmi_GetBaseSrvPrimaryStatus %u", ledState);
    return 1;
}

void Zbr_CimIpmi_GetBaseSrvStatus(uint8_t ledState, char *text, int size) {
    const BackEnd call("Zbr_CimIpmi_GetBaseSrvStatus %u %d", ledState, size);
    GiveText("OK", text, size);
}

int Zbr_CimIpmi_GetTmpSensorNumOfPossibleState() {
    const BackEnd call("Zbr_CimIpmi_GetTmpSensorNumOfPossibleState");
    return 5;
}

void Zbr_CimIpmi_GetTmpSensorPossibleState(int index, char *text, int size) {
    const BackEnd call("Zbr_CimIpmi_GetTmpSensorPossibleState %d %d", index, size);
    constexpr const char *states[] = {"OK", "Warning", "Critical", "Non recoverable", "Unknown"};
    GiveText(states[index], text, size);
}

void Zbr_CimIpmi_GetTmpCurrentState(uint8_t state, char *text, int size) {
    const BackEnd call("Zbr_CimIpmi_GetTmpCurrentState %u %d", state, size);
    GiveText("OK", text, size);
}

void Zbr_CimIpmi_ConvSeverityString(uint8_t flags, char *text, int size) {
    const BackEnd call("Zbr_CimIpmi_ConvSeverityString %u %d", flags, size);
    GiveText("Critical", text, size);
}

void Zbr_CimIpmi_ConvBoolCSSString(uint8_t flags, char *text, int size) {
    const BackEnd call("Zbr_CimIpmi_ConvBoolCSSString %u %d", flags, size);
    GiveText("TRUE", text, size);
}

void Zbr_CimIpmi_ConvLocaleString(uint16_t language, char *text, int size) {
    const BackEnd call("Zbr_CimIpmi_ConvLocaleString %u %d", language, size);
    GiveText("en-us", text, size);
}

// --- Agent parameters

int OpenMTLIConnection() {
    const BackEnd call("OpenMTLIConnection");
    return 0;
}

LCMParameterEntry *LCMParam_update(int zero, const char *group, const char *name, int minusOne,
                                   int *entries) {
    const BackEnd call("LCMParam_update %d %s %s %d", zero, group, name, minusOne);
    static char value[] = "server";
    auto *table = static_cast<LCMParameterEntry *>(std::calloc(1, sizeof(LCMParameterEntry)));
    table->Value = value;
    *entries = 1;
    return table;
}

void LCMParamDb_destroyParameterTable(LCMParameterEntry **table, int entries) {
    const BackEnd call("LCMParamDb_destroyParameterTable %d", entries);
    std::free(*table);
    *table = nullptr;
}

// --- The helper library, which is opened at run time

namespace {

int EnumHostComputerSystem(HostComputerSystemRow **rows, int *count, int namesOnly) {
    const BackEnd call("PH_Enum_All_HostComputerSystem %d", namesOnly);
    return GiveRows(&host, 1, count, rows);
}

void CleanHostComputerSystem(HostComputerSystemRow *rows, int count) {
    const BackEnd call("PH_Clean_HostComputerSystem %d", count);
    std::free(rows);
}

char helper_library; // its address is the handle

// The dynamic loader's own functions, for every other library.
template <typename Function> Function *OfLoader(const char *name) {
    return reinterpret_cast<Function *>(dlvsym(RTLD_NEXT, name, "GLIBC_2.34"));
}

} // namespace

extern "C" {

void *dlopen(const char *file, int mode) noexcept {
    if (file != nullptr && std::strcmp(file, VCH_CLASS_HELPER) == 0) {
        const BackEnd call("dlopen %d", mode);
        return &helper_library;
    }
    static auto *const open = OfLoader<void *(const char *, int)>("dlopen");
    return open(file, mode);
}

int dlclose(void *library) noexcept {
    if (library == &helper_library) {
        const BackEnd call("dlclose");
        return 0;
    }
    static auto *const close = OfLoader<int(void *)>("dlclose");
    return close(library);
}

void *dlsym(void *library, const char *name) noexcept {
    if (library != &helper_library) {
        static auto *const find = OfLoader<void *(void *, const char *)>("dlsym");
        return find(library, name);
    }
    const BackEnd call("dlsym %s", name);
    return std::strcmp(name, "PH_Enum_All_HostComputerSystem") == 0
               ? reinterpret_cast<void *>(EnumHostComputerSystem)
               : reinterpret_cast<void *>(CleanHostComputerSystem);
}
}
