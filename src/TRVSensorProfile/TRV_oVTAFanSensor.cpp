// TRV_oVTAFanSensor: the speeds of the fans. A fan has two SDRs, a full one with the speed and a compact one
// with the state, which are joined here; fans inside a power supply count only while the unit is plugged. It
// is the only sensor class that can be modified: what happens when a fan fails is written by the fan's entity
// instance, which only the fans of the system have.
#include "TRVSensorProfile/TRV_oVTAFanSensor.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "Utilities/ConfigSpace.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

#include <cstring>
#include <iterator>

namespace {

using R = FanSensorRecord;

constexpr Property<R> properties[] = {
    {"CriticalBehavior", CMPI_uint16, FIELD(R, CriticalBehavior),
     "What happens when the fan fails, to be modified; no instance shows it. Configuration variable 0x71, "
     "the fan's "
     "entity instance as index.",
     When::Never},
    {"FailDelay", CMPI_uint16, FIELD(R, FailDelay),
     "Seconds until the server is switched off then, 0 to 600, likewise. Configuration variable 0x72.",
     When::Never},
    {"Quality", CMPI_uint16, FIELD(R, Quality),
     "Maximum speed at the last test in per cent of what it was when the fan was new. "
     "Service processor: maximum speed."},
};

constexpr SensorKind kind = {.sensorType = 5, .enabledState = 5, .baseUnits = 19, .unitModifier = 0};
constexpr PossibleStates possible_states = {.number = Zbr_CimIpmi_GetFanSensorNumOfPossibleState,
                                            .text = Zbr_CimIpmi_GetFanSensorPossibleState,
                                            .size = 64};

constexpr int fan_type = 4;
constexpr int fan_entity = 29;
constexpr int power_supply_entity = 10;

constexpr std::uint16_t critical_behavior_variable = 0x71;
constexpr std::uint16_t fail_delay_variable = 0x72;

// --- Joining the SDRs

// What the fans are chosen from; all blocks are freed together.
struct FanTables {
    FullSdrRow *full;
    CompactSdrRow *compact;
    PsuRow *supplies;
    int fullCount;
    int compactCount;
    int supplyCount;
};
void FreeTables(FanTables *tables) {
    std::free(tables->full);
    std::free(tables->compact);
    std::free(tables->supplies);
}
using FanTablesOwner = std::unique_ptr<FanTables, Closer<FreeTables>>;

bool ReadTables(FanTables &tables) {
    constexpr int fan_state_type = 230;
    constexpr int any_entity = 255;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle)) {
        return false;
    }
    if (zbr_oemdb_get_specific_full_sdrs(handle, fan_type, any_entity, &tables.fullCount, &tables.full) ==
        1) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_specific_full_sdrs");
        return false;
    }
    if (zbr_oemdb_get_specific_compact_sdrs(handle, fan_state_type, any_entity, &tables.compactCount,
                                            &tables.compact) == 1) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_specific_compact_sdrs");
        return false;
    }
    if (zbr_oemdb_get_all_psu_info(handle, &tables.supplyCount, &tables.supplies) == 1) {
        TRACE(TraceFailure, "db_get_all_compact_sdrs call failed");
        return false;
    }
    tables.fullCount = UsedRows(tables.full, tables.fullCount);
    tables.compactCount = UsedRows(tables.compact, tables.compactCount);
    tables.supplyCount = UsedRows(tables.supplies, tables.supplyCount);
    return true;
}

// Whether a fan is of that entity and has the mark in its name.
bool IsFanOf(const FullSdrRow &row, int entity, const char *mark) {
    char name[sizeof row.SensorName + 1];
    CopyText(name, row.SensorName);
    return row.EntityId == entity && std::strstr(name, mark) != nullptr;
}

// Whether the power supply that the fan is in is plugged.
bool IsInPluggedSupply(IpmiSession *session, const FanTables &tables, const FullSdrRow &row) {
    for (int i = 0; i < tables.supplyCount; ++i) {
        const PsuRow &supply = tables.supplies[i];
        if (supply.EntityInstance != row.EntityInstance) {
            continue;
        }
        std::uint16_t state = 0;
        return ZBR_CIM_GetCompactSensorReading(session, supply.StatusSensor, 0, &state, backend_timeout) ==
                   0 &&
               Zbr_CimIpmi_IsPsuPresent(static_cast<std::uint8_t>(state)) != 0;
    }
    return false;
}

// Numbers of the full rows that are chosen, in order.
struct ChosenRows {
    std::uint8_t numbers[256];
    int count;
};
void Choose(ChosenRows &chosen, int number) {
    if (number <= UINT8_MAX && chosen.count < static_cast<int>(std::size(chosen.numbers))) {
        chosen.numbers[chosen.count++] = static_cast<std::uint8_t>(number);
    }
}

bool ChooseFans(const FanTables &tables, ChosenRows &chosen) {
    for (int i = 0; i < tables.fullCount; ++i) {
        if (IsFanOf(tables.full[i], fan_entity, "SYS")) {
            Choose(chosen, i);
        }
    }
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return false;
    }
    for (int i = 0; tables.supplyCount > 0 && i < tables.fullCount; ++i) {
        const FullSdrRow &row = tables.full[i];
        if (IsFanOf(row, power_supply_entity, "PSU") && IsInPluggedSupply(&session, tables, row)) {
            Choose(chosen, i);
        }
    }
    return true;
}

void Join(const FanTables &tables, const FullSdrRow &full, FanSensorRow &joined) {
    joined.full = full;
    for (int i = 0; i < tables.compactCount; ++i) {
        const CompactSdrRow &compact = tables.compact[i];
        if (compact.EntityInstance == full.EntityInstance && compact.EntityId == full.EntityId) {
            joined.compact = compact;
            return;
        }
    }
}

// --- Filling

template <typename Number>
void ReadFanVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, Number &value) {
    if (ReadNumber(session, id, index, value) != 0) {
        TRACE(TraceFailure, "ZBR_CIM_GetConfigSpaceVariables failed varid=0x%x index=%d", id, index);
    }
}

// Reads the fan's variables in a session of their own. No property shows them.
void ReadFanVariables(const FullSdrRow &row, R &record) {
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return;
    }
    const auto index = static_cast<std::uint8_t>(row.EntityInstance);
    std::uint8_t behavior = 0;
    ReadFanVariable(&session, critical_behavior_variable, index, behavior);
    record.CriticalBehavior = behavior;
    ReadFanVariable(&session, fail_delay_variable, index, record.FailDelay);
}

std::uint16_t ReadQuality(IpmiSession *session, std::uint8_t sensorNumber) {
    std::uint32_t measured = 0;
    std::uint32_t reference = 0;
    const int result =
        ZBR_CIM_ReadMaximumSpeed(session, sensorNumber, &measured, &reference, backend_timeout);
    if (result == 0) {
        TRACE(TraceFailure, "ZBR_CIM_ReadMaximumSpeed failed SensorNumber=%d, ret=0x%x", sensorNumber,
              static_cast<unsigned>(result));
        return 0;
    }
    const std::uint32_t quality = reference == 0 ? 0 : measured * 100U / reference;
    return static_cast<std::uint16_t>(quality);
}

void FillRecord(IpmiSession *session, const FanSensorRow &row, R &record) {
    NumericSensorRecord &sensor = record.sensor;
    SetSensorName(sensor);
    SetKind(sensor, kind);
    FillPossibleStates(sensor, possible_states);
    SetWell(sensor);
    sensor.CurrentReading = ConvertReading(ReadRaw(session, row.full), row.full);
    record.Quality = ReadQuality(session, row.full.SensorNumber);
    const std::uint16_t state = ReadState(session, row.compact, no_state);
    Zbr_CimIpmi_GetFanCurrentState(state, sensor.CurrentState, current_state_size);
}

} // namespace

int PH_OEM_GetFanSensorInfo(FanSensorRow **rows, int *count) {
    TRACE(TraceProgress, "Entering %s", __func__);
    FanTables tables{};
    const FanTablesOwner tablesOwner{&tables};
    if (!ReadTables(tables)) {
        return -1;
    }
    if (tables.fullCount < 1 || tables.compactCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    ChosenRows chosen{};
    if (!ChooseFans(tables, chosen)) {
        return -1;
    }
    auto *joined =
        NewRecords<FanSensorRow>(std::max(chosen.count, 1)); // also with none, the caller frees a block
    if (joined == nullptr) {
        return -1;
    }
    for (int i = 0; i < chosen.count; ++i) {
        Join(tables, tables.full[chosen.numbers[i]], joined[i]);
    }
    *rows = joined;
    *count = chosen.count;
    return 0;
}

namespace {

int List(Listing<R> listing) {
    FanSensorRow *rows = nullptr;
    int rowCount = 0;
    if (PH_OEM_GetFanSensorInfo(&rows, &rowCount) != 0) {
        return -1;
    }
    const Block<FanSensorRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No Fan Sensor sdr\n");
        return 0;
    }
    return ListSensors(
        listing, rowCount, [=](int i) -> auto & { return rows[i].full.SensorName; },
        [=](IpmiSession *session, int i, R &record) {
            ReadFanVariables(rows[i].full, record);
            FillRecord(session, rows[i], record);
        });
}

} // namespace

// --- Modifying

namespace {

constexpr ModifiableProperty modifiable[] = {
    {"CriticalBehavior", CMPI_uint16, critical_behavior_variable, 1},
    {"FailDelay", CMPI_uint16, fail_delay_variable, 2},
};

// The largest valid value of each, and the message for one beyond it.
struct Range {
    std::uint16_t last;
    const char *message;
};
constexpr Range ranges[] = {
    {1, "The requested value for CriticalBehavior is out of range"},
    {600, "The requested value for FailDelay is out of range"},
};

constexpr StatusText failed = {CMPI_RC_ERR_FAILED, "Failed in Modify Instance\n"};
constexpr StatusText no_instance_id = {CMPI_RC_ERR_FAILED,
                                       "Failed to get the instance id for the target instance"};

// Every failure is rc 1, but for a value out of range.
constexpr ModifyTable modify = {
    .properties = modifiable,
    .variant = ModifyVariant::CheckPath,
    .texts = {.noInstance = {},
              .notSorted = {CMPI_RC_ERR_FAILED, "Invalid Property: %s "},
              .refused = {CMPI_RC_ERR_FAILED, "Invalid Property: %s "},
              .noSession = failed,
              .unreadable = failed,
              .unwritable = {CMPI_RC_ERR_FAILED, "failed to get the instance id for the target instance"},
              .badPath = failed},
};

// The entity instance of the system's fan whose name begins with the given one; false when there is none.
bool GetFanSensorEntityInstance(const char *name, std::int32_t &instance) {
    FullSdrRow *rows = nullptr;
    int count = 0;
    if (GetFullSdrs(fan_type, fan_entity, &rows, &count) != 0) {
        return false;
    }
    const Block<FullSdrRow> rowsOwner{rows};
    for (int i = 0; *name != '\0' && i < UsedRows(rows, count); ++i) {
        char rowName[sizeof rows[i].SensorName + 1];
        CopyText(rowName, rows[i].SensorName);
        if (std::strncmp(name, rowName, std::strlen(name)) == 0) {
            instance = rows[i].EntityInstance;
            return true;
        }
    }
    TRACE(TraceFailure, "No entry is found to match the specified key %s", name);
    return false;
}

// Writes one change, or says why not.
bool WriteChange(Modification &modification, IpmiSession *session, const ModifiableProperty &property,
                 const Range &range, const char *deviceId) {
    const CMPIData data = CMGetProperty(modification.inst, property.name, nullptr);
    if (CMIsNullValue(data) || data.type != CMPI_uint16) {
        return Refuse(modification, failed);
    }
    if (data.value.uint16 > range.last) {
        return Refuse(modification, {CMPI_RC_ERR_INVALID_PARAMETER, range.message});
    }
    // A fan of a power supply has no row, and must not be taken for the fan of index 0.
    std::int32_t instance = 0;
    if (!GetFanSensorEntityInstance(deviceId, instance)) {
        return Refuse(modification, no_instance_id);
    }
    const int result = WriteVariable(session, property.id, static_cast<std::uint8_t>(instance),
                                     &data.value.uint16, property.width);
    return result == 0 || Refuse(modification, modify.texts.unwritable, "", result);
}

bool WriteChanges(Modification &modification, IpmiSession *session, const ModifiablePropertyList &changes,
                  const char *deviceId) {
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    for (int i = 0; i < changes.count && i < room; ++i) {
        for (std::size_t p = 0; p < std::size(modifiable); ++p) {
            if (NamesProperty(changes.entries[i].name, modifiable[p]) &&
                !WriteChange(modification, session, modifiable[p], ranges[p], deviceId)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

EXPORT_SENSOR_CLASS(FanSensor, "A fan's tachometer.", .modify = &modify);

CMPIStatus PH_OEM_MI_FanSensor(const CMPIBroker *broker, void *, const CMPIContext *ctx,
                               const CMPIObjectPath *cop, const CMPIInstance *inst, const char **wanted) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Modification modification{FanSensorClass, modify, broker, inst};
    ModifiablePropertyList changes{};
    if (!SortChanges(modification, ctx, cop, wanted, changes) || changes.count < 1) {
        return modification.status;
    }
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (OpenSession(modification, &session)) {
        constexpr std::size_t device_id = 3; // in the key list
        const CMPIString *deviceId = modification.keyValues[device_id];
        if (deviceId == nullptr) {
            Refuse(modification, no_instance_id);
        } else {
            WriteChanges(modification, &session, changes, CMGetCharsPtr(deviceId, nullptr));
        }
    }
    return modification.status;
}
