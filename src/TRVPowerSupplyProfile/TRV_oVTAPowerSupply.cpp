// TRV_oVTAPowerSupply: the power supply units that are in the server. The OEM DB has a row for each slot; a
// presence and a status sensor tell whether there is a unit in it, also for the names, so that names and
// instances are the same set. A unit whose sensors can't be read counts as not there.
#include "TRVPowerSupplyProfile/TRV_oVTAPowerSupply.h"

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Common.h"
#include "Utilities/PH_OEM_SystemNames.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <algorithm>

namespace {

using R = PowerSupplyRecord;

constexpr Key<R> keys[] = {
    {"SystemCreationClassName", FIELD(R, SystemCreationClassName), "Class of the system. Constant."},
    {"CreationClassName", FIELD(R, CreationClassName), "Class of the unit. Constant."},
    {"SystemName", FIELD(R, SystemName), "Name of the base server: the chassis serial number."},
    {"DeviceID", FIELD(R, DeviceID), "Designation of the unit. OEM DB, power supplies: Designation."},
};

constexpr Property<R> properties[] = {
    {"OperationalStatus", CMPI_uint16A, FIELD(R, OperationalStatus), "Status of the unit. Constant: other."},
    {"HealthState", CMPI_uint16, FIELD(R, HealthState), "Health, mapped from the unit's status sensor."},
    {"PrimaryStatus", CMPI_uint16, FIELD(R, PrimaryStatus),
     "Primary status, mapped from the unit's status sensor."},
    {"Status", CMPI_chars, FIELD(R, Status), "Status in words, mapped from the unit's status sensor.",
     When::NotEmpty},
    {"DetailedStatus", CMPI_uint16, FIELD(R, DetailedStatus),
     "Detailed status, mapped from the unit's status sensor."},
    {"TotalOutputPower", CMPI_uint32, FIELD(R, TotalOutputPower),
     "Output in watts. The unit's power sensor by the linear formula of its SDR; 0 where it has none."},
    {"EnabledState", CMPI_uint16, FIELD(R, EnabledState), "Constant: not applicable."},
    {"RequestedState", CMPI_uint16, FIELD(R, RequestedState), "Constant: not applicable."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Designation of the unit, up to 63 characters.",
     When::NotEmpty},
    {"Caption", CMPI_chars, FIELD(R, Caption), "The same.", When::NotEmpty},
    {"Description", CMPI_chars, FIELD(R, Description), "The same.", When::NotEmpty},
};

constexpr std::uint32_t not_applicable = 12;

// The output in watts; 0 without an SDR for the sensor.
std::uint32_t ReadPower(IpmiSession *session, std::uint32_t handle, const PsuRow &row) {
    std::uint8_t reading = 0;
    ZBR_CIM_GetFullSensorReading(session, static_cast<std::uint8_t>(row.PowerSensor), nullptr, &reading,
                                 nullptr, backend_timeout);
    FullSdrRow sdr{};
    if (zbr_oemdb_get_full_sdr_info_by_sensor_num(handle, row.PowerSensor, &sdr) == 1) {
        TRACE(TraceFailure, "get full sdr record failed");
        return 0;
    }
    const std::int32_t power = TruncateReading(PH_OEM_ConvertLinearSensorReading(reading, &sdr));
    return static_cast<std::uint32_t>(std::max(power, 0)); // a factor that is off gives no huge number
}

void FillRecord(R &record, const PsuRow &row, std::uint16_t state) {
    std::ranges::fill(record.OperationalStatus, -1);
    record.OperationalStatus[0] = 1;
    record.HealthState = Zbr_CimIpmi_GetPsuHealthState(state);
    record.PrimaryStatus = Zbr_CimIpmi_GetPsuPrimaryStatus(state);
    Zbr_CimIpmi_GetPsuStatus(state, record.Status, sizeof record.Status);
    EndText(record.Status);
    record.DetailedStatus = Zbr_CimIpmi_GetPsuDetailedStatus(state);
    record.EnabledState = not_applicable;
    record.RequestedState = not_applicable;
    CopyText(record.ElementName, row.Designation);
    CopyText(record.Caption, row.Designation);
    CopyText(record.Description, row.Designation);
}

} // namespace

int PH_OEM_Enum_PowerSupply_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (PH_OEM_InitOEMDB(&handle) != 0) {
        TRACE(TraceFailure, "Failed in db_init");
        return -1;
    }
    PsuRow *rows = nullptr;
    int rowCount = 0;
    const int result = zbr_oemdb_get_all_psu_info(handle, &rowCount, &rows);
    const Block<PsuRow> rowsOwner{rows};
    if (result != 0) {
        TRACE(TraceFailure, "db_get_all_compact_sdrs call failed");
        return -1;
    }
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    char systemName[256];
    PH_OEM_GetBaseServerName(systemName, sizeof systemName);

    RecordList<R> list;
    for (int i = 0; rows != nullptr && i < rowCount; ++i) {
        std::uint16_t state = 0;
        if (PH_OEM_Common_GetPSUPresentAndState(&session, &rows[i], &state) != 1) {
            continue;
        }
        R *record = AppendRecord(list, "Allocation error");
        if (record == nullptr) {
            return -1;
        }
        SetText(record->SystemCreationClassName, "TRV_oVTABaseServer");
        CopyText(record->SystemName, systemName);
        SetText(record->CreationClassName, "TRV_oVTAPowerSupply");
        CopyText(record->DeviceID, rows[i].Designation);
        if (namesOnly == 0) {
            record->TotalOutputPower = ReadPower(&session, handle, rows[i]);
            FillRecord(*record, rows[i], state);
        }
    }
    Deliver(list, records, count);
    return 0;
}

EXPORT_CLASS(PowerSupply, "A power supply unit that is in the server.", .superclass = "CIM_PowerSupply",
             .pathOrder = {3, 0, 1, 2});
