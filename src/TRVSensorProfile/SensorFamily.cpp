#include "TRVSensorProfile/SensorFamily.h"

#include "Utilities/Owners.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

// --- Filling a record

void ClearLists(NumericSensorRecord &record) {
    constexpr int all_ones = 0xFF;
    std::memset(record.OperationalStatus, all_ones, sizeof record.OperationalStatus);
    for (auto *thresholds :
         {&record.SupportedThresholds, &record.EnabledThresholds, &record.SettableThresholds}) {
        std::memset(*thresholds, all_ones, sizeof *thresholds);
    }
}

void SetSensorKeys(NumericSensorRecord &record, const char *className, const char *systemName,
                   const char *name, std::size_t nameLimit) {
    if (record.SystemName[0] == '\0') { // a record in the place of another has what they share
        SetText(record.SystemCreationClassName, "TRV_oVTABaseServer");
        SetText(record.SystemName, systemName);
        SetText(record.CreationClassName, className);
    }
    CopyBounded(record.DeviceID, sizeof record.DeviceID, name, nameLimit);
}

void SetSensorName(NumericSensorRecord &record) {
    const std::size_t size = std::strlen(record.DeviceID) + 1;
    static_assert(sizeof record.ElementName == sizeof record.DeviceID &&
                  sizeof record.Caption == sizeof record.DeviceID);
    std::memcpy(record.ElementName, record.DeviceID, size);
    std::memcpy(record.Caption, record.DeviceID, size);
}

void SetWell(NumericSensorRecord &record) {
    constexpr std::uint16_t health_ok = 5;
    constexpr std::int32_t operational_ok = 2;
    constexpr std::uint16_t no_additional_information = 1;
    constexpr std::uint16_t operating_not_available = 1;
    constexpr std::uint16_t primary_ok = 1;
    record.HealthState = health_ok;
    record.OperationalStatus[0] = operational_ok;
    record.DetailedStatus = no_additional_information;
    record.OperatingStatus = operating_not_available;
    record.PrimaryStatus = primary_ok;
    SetText(record.Status, "OK");
}

void SetKind(NumericSensorRecord &record, const SensorKind &kind) {
    constexpr std::uint16_t not_applicable = 12;
    record.SensorType = kind.sensorType;
    record.EnabledState = kind.enabledState;
    record.RequestedState = not_applicable;
    record.BaseUnits = kind.baseUnits;
    record.UnitModifier = kind.unitModifier;
    record.RateUnits = 0;
}

void SetThresholds(NumericSensorRecord &record, std::initializer_list<std::int32_t> codes) {
    std::size_t used = 0;
    for (const std::int32_t code : codes) {
        record.SupportedThresholds[used] = code;
        record.EnabledThresholds[used] = code;
        ++used;
    }
}

namespace {

// Makes room for `number` texts and lets the slots point to them. False, and the slots as they were, without
// memory.
bool ReserveTexts(NumericSensorRecord &record, int number, int size) {
    const std::size_t room = static_cast<std::size_t>(number) * static_cast<std::size_t>(size);
    auto *text = static_cast<char *>(std::realloc(record.PossibleStates[0], room));
    if (text == nullptr) {
        return false;
    }
    for (int i = 0; i < number; ++i, text += size) {
        record.PossibleStates[i] = text;
    }
    return true;
}

} // namespace

void FillPossibleStates(NumericSensorRecord &record, const PossibleStates &states) {
    constexpr int slots = std::extent_v<decltype(record.PossibleStates)>;
    char lost[largest_state] = "";
    int number = std::min(states.number(), slots);
    int room = 0; // in the block, for texts
    int i = 0;
    for (; i < number; ++i) {
        if (i == room && ReserveTexts(record, number, states.size)) {
            room = number;
        }
        const bool hasSlot = i < room;
        if (!hasSlot) {
            TRACE(TraceFailure, "Memory Allocation Failed for PossibleStates");
        }
        if (hasSlot || !states.perSlot) {
            char *text = hasSlot ? record.PossibleStates[i] : lost;
            std::memset(text, 0, static_cast<std::size_t>(states.size));
            states.text(i, text, states.size);
            text[states.size - 1] = '\0';
        }
        if (states.perSlot) {
            number = std::min(states.number(), slots);
        }
    }
    const int used = std::min(i, room);
    if (used == 0) {
        std::free(record.PossibleStates[0]);
    }
    for (int slot = used; slot < slots && record.PossibleStates[slot] != nullptr; ++slot) {
        record.PossibleStates[slot] = nullptr;
    }
}

std::uint8_t ReadRaw(IpmiSession *session, const FullSdrRow &row) {
    std::uint8_t reading = 0;
    const int result =
        ZBR_CIM_GetFullSensorReading(session, row.SensorNumber, nullptr, &reading, nullptr, backend_timeout);
    return result == 0 ? reading : 0;
}

std::uint16_t ReadState(IpmiSession *session, const CompactSdrRow &row, std::uint16_t unread) {
    std::uint16_t state = unread;
    const int result = ZBR_CIM_GetCompactSensorReading(session, row.SensorNumber, 0, &state, backend_timeout);
    return result == 0 ? state : unread;
}

std::int32_t ConvertReading(std::uint8_t reading, const FullSdrRow &row) {
    return TruncateReading(PH_OEM_ConvertLinearSensorReading(reading, &row));
}

// --- Rows

int GetFullSdrs(int sensorType, int entityId, FullSdrRow **rows, int *count) {
    *rows = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    return OpenOEMDB(&handle) ? GetFullSdrs(handle, sensorType, entityId, rows, count) : -1;
}

int GetFullSdrs(std::uint32_t handle, int sensorType, int entityId, FullSdrRow **rows, int *count) {
    *rows = nullptr;
    *count = 0;
    if (zbr_oemdb_get_specific_full_sdrs(handle, sensorType, entityId, count, rows) == 1) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_specific_full_sdrs");
        std::free(*rows);
        *rows = nullptr;
        *count = 0;
        return -1;
    }
    return 0;
}
