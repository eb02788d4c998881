// TRV_oVTAFan: the fans that are in the server. The OEM DB's table names all that there can be, also those
// inside power supplies; which of them are shown depends on the chassis power and on live sensors, also for
// the names. With the power off nobody asks a fan for its state.
#include "TRVFanProfile/TRV_oVTAFan.h"

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"
#include "Utilities/Text.h"

#include "libCIMBaseHooks.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <algorithm>

namespace {

using R = FanRecord;

constexpr Key<R> keys[] = {
    {"SystemCreationClassName", FIELD(R, SystemCreationClassName), "Class of the system. Constant."},
    {"CreationClassName", FIELD(R, CreationClassName), "Class of the fan. Constant."},
    {"SystemName", FIELD(R, SystemName), "Name of the base server: the chassis serial number."},
    {"DeviceID", FIELD(R, DeviceID), "Name of the fan. OEM DB, fans: Name."},
};

constexpr Property<R> properties[] = {
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Name of the fan, up to 63 characters.",
     When::NotEmpty},
    {"Description", CMPI_chars, FIELD(R, Description), "The same in words.", When::NotEmpty},
    {"VariableSpeed", CMPI_boolean, FIELD(R, VariableSpeed), "Constant."},
    {"DesiredSpeed", CMPI_uint64, FIELD(R, DesiredSpeed), "Constant."},
    {"OperationalStatus", CMPI_uint16A, FIELD(R, OperationalStatus), "Constant: other."},
    {"HealthState", CMPI_uint16, FIELD(R, HealthState),
     "Health, mapped from the fan's status sensor; 0 with the power off."},
    {"EnabledState", CMPI_uint16, FIELD(R, EnabledState),
     "Whether the fan turns, by the reading of its speed sensor; 0 with the power off."},
    {"RequestedState", CMPI_uint16, FIELD(R, RequestedState), "Constant: not applicable."},
    {"ActiveCooling", CMPI_boolean, FIELD(R, ActiveCooling), "Constant."},
    {.name = "CoolingDeviceType",
     .type = CMPI_uint16,
     .field = FIELD(R, CoolingDeviceType),
     .description = "Kind of cooling device. OEM DB, fans: bits 4 and 5 of the attributes.",
     .values = "0 Unknown, 1 Fan, 2 Centrifugal Blower"},
};

enum Entity { PowerSupplyEntity = 10, FanEntity = 29 };

// A status sensor that is read tells by one of these bits that the fan isn't there.
bool ReadFanState(IpmiSession *session, const FanRow &row, std::uint16_t &state) {
    constexpr std::uint16_t not_there = 0x60;
    if (const int result =
            ZBR_CIM_GetCompactSensorReading(session, row.StatusSensor, 0, &state, backend_timeout);
        result != 0) {
        TRACE(TraceFailure, "Failed to get fan state (ret=%d)", result);
        return false;
    }
    return (state & not_there) == 0;
}

bool IsPsuPresent(IpmiSession *session, const FanRow &row, std::uint16_t &state) {
    if (row.PsuPresenceSensor == 0) {
        return false;
    }
    const auto sensor = static_cast<std::uint8_t>(row.PsuPresenceSensor);
    if (const int result = ZBR_CIM_GetCompactSensorReading(session, sensor, 0, &state, backend_timeout);
        result != 0) {
        TRACE(TraceFailure, "Failed to get psu presence (ret=%d)", result);
        return false;
    }
    return (state & 1) != 0;
}

// Whether the fan is there, with the state that was last read of it; one of another entity is never read, and
// its state is 0 rather than the fan's before it.
bool IsPresent(IpmiSession *session, const FanRow &row, bool isPowered, std::uint16_t &state) {
    switch (row.EntityId) {
    case FanEntity: return !isPowered || ReadFanState(session, row, state);
    case PowerSupplyEntity:
        return IsPsuPresent(session, row, state) && (!isPowered || ReadFanState(session, row, state));
    default: return true;
    }
}

std::uint16_t CoolingDeviceType(std::int32_t attributes) {
    constexpr std::uint16_t types[] = {1, 2, 0, 0}; // fan, centrifugal blower
    return types[(attributes >> 4) & 3];
}

void FillRecord(IpmiSession *session, const FanRow &row, bool isPowered, std::uint16_t state, R &record) {
    constexpr std::uint16_t not_applicable = 12;
    constexpr std::uint8_t no_reading = 255;
    std::uint8_t reading = 0;
    if (const int result = ZBR_CIM_GetFullSensorReading(session, row.SpeedSensor, nullptr, &reading, nullptr,
                                                        backend_timeout);
        result != 0) {
        TRACE(TraceFailure, "Failed to get fan speed: %x", static_cast<unsigned>(result));
        reading = no_reading;
    }
    CopyText(record.ElementName, row.Name);
    FormatWithName(record.Description, "Logical Device for %s", row.Name);
    record.VariableSpeed = 1;
    record.ActiveCooling = 1;
    record.RequestedState = not_applicable;
    std::ranges::fill(record.OperationalStatus, -1);
    record.OperationalStatus[0] = 1;
    if (isPowered) {
        constexpr std::uint16_t enabled = 2;
        constexpr std::uint16_t disabled = 3;
        record.HealthState = Zbr_CimIpmi_GetFanHealthState(state);
        record.EnabledState = reading == no_reading ? 0 : reading != 0 ? enabled : disabled;
    }
    record.CoolingDeviceType = CoolingDeviceType(row.Attributes);
}

} // namespace

int PH_OEM_Enum_Fan_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle)) {
        return -1;
    }
    FanRow *rows = nullptr;
    int rowCount = 0;
    const int result = zbr_oemdb_get_all_fan_info(handle, &rowCount, &rows);
    const Block<FanRow> rowsOwner{rows};
    if (result != 0) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_all_fan_info");
        return -1;
    }
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    char systemName[256] = "";
    PH_OEM_GetBaseServerName(systemName, sizeof systemName);
    ChassisStatus status{};
    if (LIBIPMI_HL_GetChassisStatus(&session, backend_timeout, &status) != 0) {
        TRACE(TraceFailure, "Failed to get chassis status");
        return -1;
    }
    const bool isPowered = status.PowerState != 0;
    RecordList<R> list;
    for (int i = 0; i < rowCount; ++i) {
        std::uint16_t state = 0;
        if (!IsPresent(&session, rows[i], isPowered, state)) {
            continue;
        }
        R *record = AppendRecord(list, "Failed to allocate memory");
        if (record == nullptr) {
            return -1;
        }
        SetText(record->SystemCreationClassName, "TRV_oVTABaseServer");
        SetText(record->CreationClassName, "TRV_oVTAFan");
        CopyText(record->SystemName, systemName);
        CopyText(record->DeviceID, rows[i].Name);
        if (namesOnly == 0) {
            FillRecord(&session, rows[i], isPowered, state, *record);
        }
    }
    Deliver(list, records, count);
    return 0;
}

EXPORT_CLASS(Fan, "A fan that is in the server.", .superclass = "CIM_Fan", .pathOrder = {3, 0, 1, 2});
