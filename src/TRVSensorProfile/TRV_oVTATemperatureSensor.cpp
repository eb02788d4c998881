// TRV_oVTATemperatureSensor: the temperature sensors of the server, one instance for each full SDR of that
// type. A reading that fails never removes a sensor: it shows as a state of "Unknown".
#include "TRVSensorProfile/TRV_oVTATemperatureSensor.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

namespace {

using R = TemperatureSensorRecord;

constexpr Property<R> properties[] = {
    {"UpperThresholdNonCritical", CMPI_sint32, FIELD(R, UpperThresholdNonCritical),
     "Degrees C. OEM DB, full SDRs: upper non-critical threshold by the sensor's formula."},
    {"UpperThresholdCritical", CMPI_sint32, FIELD(R, UpperThresholdCritical),
     "Degrees C. OEM DB, full SDRs: upper critical threshold by the sensor's formula."},
};

constexpr SensorKind kind = {.sensorType = 2, .enabledState = 5, .baseUnits = 2, .unitModifier = 0};
constexpr PossibleStates possible_states = {.number = Zbr_CimIpmi_GetTmpSensorNumOfPossibleState,
                                            .text = Zbr_CimIpmi_GetTmpSensorPossibleState,
                                            .size = 64};
constexpr std::uint8_t unknown_state = 255;

void FillRecord(IpmiSession *session, const FullSdrRow &row, R &record) {
    SetSensorName(record);
    SetKind(record, kind);
    SetThresholds(record, {1, 3});
    FillPossibleStates(record, possible_states);
    record.UpperThresholdNonCritical = ConvertReading(row.UpperThresholdNonCritical, row);
    record.UpperThresholdCritical = ConvertReading(row.UpperThresholdCritical, row);
    SetWell(record);
    std::uint8_t reading = 0;
    std::uint8_t state = 0;
    if (ZBR_CIM_GetFullSensorReading(session, row.SensorNumber, nullptr, &reading, &state, backend_timeout) !=
        0) {
        reading = 0;
        state = unknown_state;
    }
    record.CurrentReading = ConvertReading(reading, row);
    if (state == unknown_state) {
        SetText(record.CurrentState, "Unknown");
    } else {
        Zbr_CimIpmi_GetTmpCurrentState(state, record.CurrentState, current_state_size);
    }
}

} // namespace

int PH_OEM_GetTemperatureSensorInfo(FullSdrRow **rows, int *count) {
    constexpr int temperature = 1;
    constexpr int any_entity = 255;
    TRACE(TraceProgress, "Entering %s", __func__);
    return GetFullSdrs(temperature, any_entity, rows, count);
}

namespace {

int List(Listing<R> listing) {
    FullSdrRow *rows = nullptr;
    int rowCount = 0;
    if (PH_OEM_GetTemperatureSensorInfo(&rows, &rowCount) != 0) {
        return -1;
    }
    const Block<FullSdrRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    return ListSensors(
        listing, rowCount, [=](int i) -> auto & { return rows[i].SensorName; },
        [=](IpmiSession *session, int i, R &record) { FillRecord(session, rows[i], record); });
}

} // namespace

EXPORT_SENSOR_CLASS(TemperatureSensor, "A temperature sensor of the server.");
