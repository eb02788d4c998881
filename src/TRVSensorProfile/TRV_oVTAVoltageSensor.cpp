// TRV_oVTAVoltageSensor: the voltages of the system board and of the battery, in hundredths of a volt: first
// all sensors of the one, then all of the other.
#include "TRVSensorProfile/TRV_oVTAVoltageSensor.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

namespace {

using R = VoltageSensorRecord;

constexpr Property<R> properties[] = {
    {"LowerThresholdCritical", CMPI_sint32, FIELD(R, LowerThresholdCritical),
     "Hundredths of a volt. OEM DB, full SDRs: lower critical threshold by the sensor's formula."},
    {"UpperThresholdCritical", CMPI_sint32, FIELD(R, UpperThresholdCritical),
     "Hundredths of a volt. OEM DB, full SDRs: upper critical threshold by the sensor's formula."},
};

constexpr SensorKind kind = {.sensorType = 3, .enabledState = 5, .baseUnits = 5, .unitModifier = -2};
constexpr PossibleStates possible_states = {.number = Zbr_CimIpmi_GetVolSensorNumOfPossibleState,
                                            .text = Zbr_CimIpmi_GetVolSensorPossibleState,
                                            .size = 64};

std::int32_t ConvertScaled(std::uint8_t reading, const FullSdrRow &row) {
    return TruncateReading(PH_OEM_ConvertLinearSensorReading(reading, &row) *
                           ph_oem_power(10, -kind.unitModifier));
}

void FillRecord(IpmiSession *session, const FullSdrRow &row, R &record) {
    SetSensorName(record);
    SetKind(record, kind);
    SetThresholds(record, {2, 3});
    SetWell(record);
    record.LowerThresholdCritical = ConvertScaled(row.LowerThresholdCritical, row);
    record.UpperThresholdCritical = ConvertScaled(row.UpperThresholdCritical, row);
    FillPossibleStates(record, possible_states);
    // A reading that fails shows as a raw reading of 0 and as the state 0, whatever the sensor before had.
    std::uint8_t reading = 0;
    std::uint8_t state = 0;
    if (ZBR_CIM_GetFullSensorReading(session, row.SensorNumber, nullptr, &reading, &state, backend_timeout) !=
        0) {
        reading = 0;
        state = 0;
    }
    record.CurrentReading = ConvertScaled(reading, row);
    Zbr_CimIpmi_GetVolCurrentState(state, record.CurrentState, current_state_size);
}

// The rows of the board and of the battery, for the caller to free. 0, or -1 on failure.
struct VoltageRows {
    FullSdrRow *board;
    FullSdrRow *battery;
    int boardCount;
    int batteryCount;
};
int GetVoltageRows(VoltageRows &rows) {
    constexpr int voltage = 2;
    constexpr int system_board = 7;
    constexpr int battery = 40;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle) ||
        GetFullSdrs(handle, voltage, system_board, &rows.board, &rows.boardCount) != 0 ||
        GetFullSdrs(handle, voltage, battery, &rows.battery, &rows.batteryCount) != 0) {
        return -1;
    }
    rows.boardCount = UsedRows(rows.board, rows.boardCount);
    rows.batteryCount = UsedRows(rows.battery, rows.batteryCount);
    return 0;
}

int List(Listing<R> listing) {
    VoltageRows rows{};
    const int result = GetVoltageRows(rows);
    const Block<FullSdrRow> boardOwner{rows.board};
    const Block<FullSdrRow> batteryOwner{rows.battery};
    if (result != 0) {
        return -1;
    }
    if (rows.boardCount + rows.batteryCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    const auto rowAt = [=](int i) -> const FullSdrRow & {
        return i < rows.boardCount ? rows.board[i] : rows.battery[i - rows.boardCount];
    };
    return ListSensors(
        listing, rows.boardCount + rows.batteryCount, [=](int i) -> auto & { return rowAt(i).SensorName; },
        [=](IpmiSession *session, int i, R &record) { FillRecord(session, rowAt(i), record); });
}

} // namespace

EXPORT_SENSOR_CLASS(VoltageSensor, "A voltage sensor of the system board or of the battery.");
