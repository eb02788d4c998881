// TRV_oVTAPowerProductionSensor: the power that the power supplies put out, one instance for each full SDR of
// that kind in a power supply. Names need no session.
#include "TRVSensorProfile/TRV_oVTAPowerProductionSensor.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

namespace {

using R = PowerProductionSensorRecord;

constexpr Property<R> properties[] = {
    {"UpperThresholdNonCritical", CMPI_sint32, FIELD(R, UpperThresholdNonCritical),
     "Watts. OEM DB, full SDRs: upper non-critical threshold by the sensor's formula."},
    {"UpperThresholdCritical", CMPI_sint32, FIELD(R, UpperThresholdCritical),
     "Watts. OEM DB, full SDRs: upper critical threshold by the sensor's formula."},
    {"UpperThresholdFatal", CMPI_sint32, FIELD(R, UpperThresholdFatal),
     "Watts. OEM DB, full SDRs: upper non-recoverable threshold by the sensor's formula."},
};

constexpr SensorKind kind = {.sensorType = 14, .enabledState = 5, .baseUnits = 7, .unitModifier = 0};
constexpr PossibleStates possible_states = {.number = Zbr_CimIpmi_GetPPSensorNumOfPossibleState,
                                            .text = Zbr_CimIpmi_GetPPSensorPossibleState,
                                            .size = 256,
                                            .perSlot = true};

void FillRecord(IpmiSession *session, const FullSdrRow &row, R &record) {
    SetSensorName(record);
    SetKind(record, kind);
    SetThresholds(record, {1, 3, 5});
    SetWell(record);
    std::uint8_t status = 0;
    std::uint8_t reading = 0;
    std::uint8_t state = 0;
    if (ZBR_CIM_GetFullSensorReading(session, row.SensorNumber, &status, &reading, &state, backend_timeout) ==
        0) {
        record.CurrentReading = ConvertReading(reading, row);
        Zbr_CimIpmi_GetPPCurrentState(status, record.CurrentState, sizeof record.CurrentState);
        EndText(record.CurrentState);
    } else {
        TRACE(TraceFailure, "Failed in ZBR_CIM_GetFullSensorReading");
        SetText(record.CurrentState, "Unknown");
    }
    FillPossibleStates(record, possible_states);
    record.UpperThresholdNonCritical = ConvertReading(row.UpperThresholdNonCritical, row);
    record.UpperThresholdCritical = ConvertReading(row.UpperThresholdCritical, row);
    record.UpperThresholdFatal = ConvertReading(row.UpperThresholdNonRecoverable, row);
}

int List(Listing<R> listing) {
    constexpr int other_units_based = 11;
    constexpr int power_supply = 10;
    FullSdrRow *rows = nullptr;
    int rowCount = 0;
    if (GetFullSdrs(other_units_based, power_supply, &rows, &rowCount) != 0) {
        return -1;
    }
    const Block<FullSdrRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    return ListSensors(
        listing, rowCount, [=](int i) -> auto & { return rows[i].SensorName; },
        [=](IpmiSession *session, int i, R &record) { FillRecord(session, rows[i], record); },
        PH_OEM_GetBaseServerName, NamesNeed::NoSession);
}

} // namespace

EXPORT_SENSOR_CLASS(PowerProductionSensor, "A sensor of the power that a power supply puts out.");
