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
constexpr std::size_t state_size = 64;

// The host system's name.
int GetHostSystemName(char *name, int size) {
    const LibraryOwner library{OpenLibrary(VCH_CLASS_HELPER)};
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
    SetThresholds(record, "1, 3");
    SetWell(record);
    FillPossibleStates(record, Zbr_CimIpmi_GetPwlSensorNumOfPossibleState,
                       Zbr_CimIpmi_GetPwlSensorPossibleState, state_size);
}

void FillFromCompact(IpmiSession *session, const CompactSdrRow &row, R &record) {
    const std::uint16_t state = ReadState(session, row, no_state);
    char text[32] = "";
    Zbr_CimIpmi_GetPwlCurrentState(state, text, sizeof text);
    CopyText(record.CurrentState, text);
}

void FillFromFull(IpmiSession *session, const FullSdrRow &row, R &record) {
    record.UnitModifier = row.UnitModifier;
    record.UpperThresholdCritical = ConvertReading(row.UpperThresholdCritical, row);
    record.LowerThresholdCritical = ConvertReading(row.LowerThresholdCritical, row); // no property shows it
    record.CurrentReading = ConvertReading(ReadRaw(session, row), row);
    SetText(record.CurrentState, "Normal");
}

// The compact SDRs of power levels. 0, or -1 on failure.
int GetPowerLevelRows(CompactSdrRow **rows, int *count) {
    constexpr int power_level = 221;
    constexpr int any_entity = 255;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (PH_OEM_InitOEMDB(&handle) != 0) {
        TRACE(TraceFailure, "Failed to create handle for OEM DB Access");
        return -1;
    }
    if (zbr_oemdb_get_specific_compact_sdrs_ex(handle, power_level, any_entity, 0, count, rows) == 1) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_specific_compact_sdrs_ex");
        return -1;
    }
    return 0;
}

} // namespace

int PH_OEM_Enum_PowerConsumptionSensor_Instance(R **records, int *count, int namesOnly) {
    constexpr int other_units_based = 11;
    constexpr int any_entity = 255;
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    CompactSdrRow *compactRows = nullptr;
    int compactCount = 0;
    const int result = GetPowerLevelRows(&compactRows, &compactCount);
    const Block<CompactSdrRow> compactOwner{compactRows};
    if (result != 0) {
        return -1;
    }
    compactCount = UsedRows(compactRows, compactCount);
    if (compactCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    FullSdrRow *fullRows = nullptr;
    int fullCount = 0;
    if (GetFullSdrs(other_units_based, any_entity, &fullRows, &fullCount) != 0) {
        return -1;
    }
    const Block<FullSdrRow> fullOwner{fullRows};
    fullCount = UsedRows(fullRows, fullCount);
    return EnumerateSensors<R>(
        {.className = "TRV_oVTAPowerConsumptionSensor",
         .clean = PH_OEM_Clean_PowerConsumptionSensor,
         .systemName = GetHostSystemName},
        compactCount + fullCount, records, count, namesOnly,
        [=](int i) -> const auto & {
            if (i < compactCount) {
                return compactRows[i].SensorName;
            }
            return fullRows[i - compactCount].SensorName;
        },
        [=](IpmiSession *session, int i, R &record) {
            FillCommon(record);
            if (i < compactCount) {
                FillFromCompact(session, compactRows[i], record);
            } else {
                FillFromFull(session, fullRows[i - compactCount], record);
            }
        });
}

void PH_OEM_Clean_PowerConsumptionSensor(R **records, int count) {
    TRACE(TraceProgress, "Entering %s", __func__);
    CleanSensors(records, count);
}

EXPORT_SENSOR_CLASS(PowerConsumptionSensor, "A sensor of power that is consumed.");
