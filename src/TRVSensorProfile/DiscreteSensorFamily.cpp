#include "TRVSensorProfile/DiscreteSensorFamily.h"

#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

int GetDiscreteSensorRows(const DiscreteSensorClass &sensorClass, CompactSdrRow **rows, int *count) {
    constexpr int any_entity = 255;
    *rows = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (PH_OEM_InitOEMDB(&handle) != 0 ||
        zbr_oemdb_get_specific_compact_sdrs(handle, sensorClass.sensorType, any_entity, count, rows) == 1) {
        TRACE(TraceFailure, "%s", sensorClass.fetchFailure);
        std::free(*rows);
        *rows = nullptr;
        return -1;
    }
    return 0;
}

std::uint16_t FillDiscreteSensor(const DiscreteSensorClass &sensorClass, IpmiSession *session,
                                 const CompactSdrRow &row, NumericSensorRecord &record) {
    constexpr std::uint16_t other_type = 1;
    constexpr std::uint16_t enabled = 2;
    SetSensorName(record);
    SetKind(record, {.sensorType = other_type,
                     .enabledState = enabled,
                     .baseUnits = static_cast<std::uint16_t>(row.BaseUnits),
                     .unitModifier = row.UnitModifier});
    record.RateUnits = Zbr_CimIpmi_ConvertRateUnit(row.RateUnits);
    SetText(record.OtherSensorTypeDescription, sensorClass.otherSensorTypeDescription);
    SetWell(record);
    Zbr_CimIpmi_GetPossibleStateString(sensorClass.sensorType, record.PossibleStates,
                                       sizeof record.PossibleStates);
    const std::uint16_t state = ReadState(session, row, unread_state);
    Zbr_CimIpmi_GetCurrentStateString(sensorClass.sensorType, state, record.CurrentState,
                                      sizeof record.CurrentState);
    EndText(record.CurrentState);
    return state;
}

int ListDiscreteSensors(const DiscreteSensorClass &sensorClass, Listing<NumericSensorRecord> listing) {
    return ListDiscreteSensors(sensorClass, listing, [](std::uint16_t, NumericSensorRecord &) {});
}
