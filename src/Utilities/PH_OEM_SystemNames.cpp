#include "Utilities/PH_OEM_SystemNames.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/HelperLibrary.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Debug.h"
#include "Utilities/Text.h"

#include "libCIMVendorHooks.h"

#include <cstdio>
#include <cstring>

// --- The chassis

namespace {

constexpr int name_size = 256;

// IPMI entity ids of a chassis.
constexpr bool IsChassis(std::int32_t entityId) {
    return entityId == 23 || entityId == 24;
}

const FruRow *FindChassis(const FruRow *rows, int count) {
    for (int i = 0; i < count; ++i) {
        if (IsChassis(rows[i].EntityId)) {
            return &rows[i];
        }
    }
    return nullptr;
}

} // namespace

int GetChassisFruInfo(FruRow **row, int *count) {
    *row = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const CoreDBOwner handleOwner{&handle};
    if (PH_OEM_InitCoreDB(&handle) != 0) {
        TRACE(TraceFailure, "PH_OEM_InitCoreDB failed");
        return -1;
    }
    FruRow *rows = nullptr;
    int rowCount = 0;
    const int result = db_get_all_fru_info(handle, &rowCount, &rows);
    const Block<FruRow> rowsOwner{rows};
    if (result != 0) {
        TRACE(TraceFailure, "db_get_all_fru_info call failed");
        return -1;
    }
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "fru data is not present in cim db");
        return 0;
    }
    const FruRow *chassis = FindChassis(rows, rowCount);
    if (chassis == nullptr) {
        TRACE(TraceProgress, "chassis fru entry is not present in cim db");
        return 0;
    }
    auto *copy = static_cast<FruRow *>(std::malloc(sizeof(FruRow)));
    if (copy == nullptr) {
        TRACE(TraceFailure, "memory allocation failed");
        return -1;
    }
    *copy = *chassis;
    *row = copy;
    *count = 1;
    return 0;
}

int PH_OEM_GetChassisSerialNumber(char *dst, int size) {
    if (size < name_size) {
        return -1;
    }
    FruRow *row = nullptr;
    int count = 0;
    const int result = GetChassisFruInfo(&row, &count);
    const Block<FruRow> rowOwner{row};
    if (result != 0) {
        TRACE(TraceFailure, "Failed in GetChassisFruInfo");
        return -1;
    }
    if (count == 0) {
        TRACE(TraceFailure, "No Chassis instance Found\n");
        return -1;
    }
    CopyBounded(dst, name_size, row->ProductSerialNumber, sizeof row->ProductSerialNumber);
    return 0;
}

// --- The systems' names

int PH_OEM_GetBaseServerName(char *out, int size) {
    if (size < 1) {
        return 0;
    }
    if (PH_OEM_GetChassisSerialNumber(out, size) != 0 || out[0] == '\0') {
        TRACE(TraceFailure, "Failed to get valid serial number");
        constexpr char unknown[] = "- unknown -";
        CopyBounded(out, static_cast<std::size_t>(size), unknown, sizeof unknown);
    }
    return 0;
}

int PH_OEM_GetServiceProcessorName(char *buffer, int length) {
    if (length < name_size) {
        return -1;
    }
    const int result = CallHelper<PH_GetSPSystemNameFunction>("PH_GetSPSystemName", -1, buffer);
    buffer[name_size - 1] = '\0';
    return result == -1 ? -1 : 0;
}

// --- The host name

namespace {

// The LAN channel whose address the host name's serial number is taken from.
constexpr std::uint8_t management_channel = 2;

void TraceUnread(const char *name, int result, std::uint8_t completionCode) {
    if (result != 0) {
        TRACE(TraceFailure, "failed to get the %s value for the target instance (ret=0x%4x, cc=0x%2x)", name,
              static_cast<unsigned>(result), completionCode);
    }
}

void ReadFlag(IpmiSession *session, std::uint16_t id, const char *name, std::uint8_t &flag) {
    std::uint8_t completionCode = 0;
    const int result = ReadNumber(session, id, 0, flag, &completionCode);
    TraceUnread(name, result, completionCode);
}

void ReadName(IpmiSession *session, std::uint16_t id, const char *name, char (&text)[name_size]) {
    std::uint8_t completionCode = 0;
    const int result = ReadText(session, id, 0, text, &completionCode);
    TraceUnread(name, result, completionCode);
}

// Appends what fits.
template <std::size_t N> void Append(char *dst, std::size_t size, const char (&text)[N]) {
    const std::size_t length = strnlen(dst, size - 1);
    CopyBounded(dst + length, size - length, text, N);
}

} // namespace

void PH_OEM_GetDNSGeneralSettingData(IpmiSession *session, DNSGeneralSettingRecord *settings) {
    ReadFlag(session, 0x1433, "ConfBMCAddSerialNumber", settings->ConfBMCAddSerialNumber);
    ReadFlag(session, 0x1431, "ConfBMCUseNetworkName", settings->ConfBMCUseNetworkName);
    ReadFlag(session, 0x1434, "ConfBMCAddExtension", settings->ConfBMCAddExtension);
    ReadName(session, 0x1432, "ConfBMCNameExtension", settings->ConfBMCNameExtension);
    ReadName(session, 0x1430, "ConfBMCNetworkName", settings->ConfBMCNetworkName);
    auto &[serial, extension] = settings->DNSSuffixesToAppend;
    if (settings->ConfBMCAddSerialNumber != 0) {
        std::uint8_t address[6] = {};
        if (const int result = CIM_Get_MACAddress(session, address, management_channel, backend_timeout);
            result != 0) {
            TRACE(TraceFailure, "failed in CIM_Get_MACAddress (ret=0x%4x)", static_cast<unsigned>(result));
            std::memset(address, 0, sizeof address);
        }
        std::snprintf(serial, sizeof serial, "%02X%02X%02X", address[3], address[4], address[5]);
    }
    if (settings->ConfBMCAddExtension != 0) {
        CopyText(extension, settings->ConfBMCNameExtension);
    }
}

int PH_OEM_GetHostname(IpmiSession *session, DNSGeneralSettingRecord *settings, char *dst, int size) {
    if (size < 1) {
        return -1;
    }
    const auto room = static_cast<std::size_t>(size);
    if (settings->ConfBMCUseNetworkName == 0) {
        const auto length = static_cast<std::uint16_t>(room > UINT16_MAX ? UINT16_MAX : room);
        const int result = ReadVariable(session, 0x0201, 0, dst, length);
        dst[length - 1] = '\0';
        if (result != 0) {
            return -1;
        }
    } else {
        CopyBounded(dst, room, settings->ConfBMCNetworkName, sizeof settings->ConfBMCNetworkName);
    }
    for (const auto &suffix : settings->DNSSuffixesToAppend) {
        Append(dst, room, suffix);
    }
    return 0;
}
