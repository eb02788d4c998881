// TRV_oVTAPowerConsumptionSensor: the power that is consumed, from two kinds of SDRs at once: compact ones,
// which have a state and no value, and behind them all full ones of their type, which have a value and no
// state of their own. A machine without the compact ones shows nothing. The system is the host, not the base
// server.
#include "TRVSensorProfile/TRV_oVTAPowerConsumptionSensor.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "Utilities/HelperLibrary.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

namespace {

using R = PowerConsumptionSensorRecord;

constexpr Property<R> properties[] = {
    {"UpperThresholdNonCritical", CMPI_sint32, FIELD(R, UpperThresholdNonCritical),
     "Watts. Constant: 0, since no SDR field is meant for it."},
    {"UpperThresholdCritical", CMPI_sint32, FIELD(R, UpperThresholdCritical),
     "Watts. OEM DB, full SDRs: upper critical threshold by the sensor's formula; 0 for a sensor without a "
     "value."},
};

constexpr SensorKind kind = {.sensorType = 13, .enabledState = 5, .baseUnits = 7, .unitModifier = 0};
constexpr PossibleStates possible_states = {.number = Zbr_CimIpmi_GetPwlSensorNumOfPossibleState,
                                            .text = Zbr_CimIpmi_GetPwlSensorPossibleState,
                                            .size = 64};

// The host system's name, from the helper library, which stays open for its owner to close.
int GetHostSystemName(LibraryOwner &library, char *name, int size) {
    library.reset(OpenLibrary(VCH_CLASS_HELPER));
    if (library == nullptr) {
        return -1;
    }
    auto *getName = FindFunction<PH_GetHostSystemNameFunction>(library.get(), "PH_GetHostSystemName");
    if (getName == nullptr) {
        return -1;
    }
    if (getName(name) == -1) {
        TRACE(TraceFailure, "Failed in PH_GetHostSystemName");
        return -1;
    }
    name[size - 1] = '\0';
    return 0;
}

void FillCommon(R &record) {
    SetSensorName(record);
    SetKind(record, kind);
    SetThresholds(record, {1, 3});
    SetWell(record);
    FillPossibleStates(record, possible_states);
}

void FillFromCompact(IpmiSession *session, const CompactSdrRow &row, R &record) {
    const std::uint16_t state = ReadState(session, row, no_state);
    Zbr_CimIpmi_GetPwlCurrentState(state, record.CurrentState, current_state_size);
}

void FillFromFull(IpmiSession *session, const FullSdrRow &row, R &record) {
    record.UnitModifier = row.UnitModifier;
    record.UpperThresholdCritical = ConvertReading(row.UpperThresholdCritical, row);
    record.LowerThresholdCritical = ConvertReading(row.LowerThresholdCritical, row); // no property shows it
    record.CurrentReading = ConvertReading(ReadRaw(session, row), row);
    SetText(record.CurrentState, "Normal");
}

// The rows of both kinds, for the caller to free; without compact ones the full ones aren't asked for. 0, or
// -1 on failure.
struct PowerRows {
    CompactSdrRow *compact;
    FullSdrRow *full;
    int compactCount;
    int fullCount;
};
int GetPowerRows(PowerRows &rows) {
    constexpr int power_level = 221;
    constexpr int other_units_based = 11;
    constexpr int any_entity = 255;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle)) {
        return -1;
    }
    if (zbr_oemdb_get_specific_compact_sdrs_ex(handle, power_level, any_entity, 0, &rows.compactCount,
                                               &rows.compact) == 1) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_specific_compact_sdrs_ex");
        return -1;
    }
    rows.compactCount = UsedRows(rows.compact, rows.compactCount);
    if (rows.compactCount < 1) {
        return 0;
    }
    const int result = GetFullSdrs(handle, other_units_based, any_entity, &rows.full, &rows.fullCount);
    rows.fullCount = UsedRows(rows.full, rows.fullCount);
    return result;
}

int List(Listing<R> listing) {
    PowerRows rows{};
    const int result = GetPowerRows(rows);
    const Block<CompactSdrRow> compactOwner{rows.compact};
    const Block<FullSdrRow> fullOwner{rows.full};
    if (result != 0) {
        return -1;
    }
    if (rows.compactCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    LibraryOwner library;
    const auto systemName = [&](char *name, int size) { return GetHostSystemName(library, name, size); };
    return ListSensors(
        listing, rows.compactCount + rows.fullCount,
        [=](int i) -> const auto & {
            if (i < rows.compactCount) {
                return rows.compact[i].SensorName;
            }
            return rows.full[i - rows.compactCount].SensorName;
        },
        [=](IpmiSession *session, int i, R &record) {
            FillCommon(record);
            if (i < rows.compactCount) {
                FillFromCompact(session, rows.compact[i], record);
            } else {
                FillFromFull(session, rows.full[i - rows.compactCount], record);
            }
        },
        systemName);
}

} // namespace

EXPORT_SENSOR_CLASS(PowerConsumptionSensor, "A sensor of power that is consumed.");
