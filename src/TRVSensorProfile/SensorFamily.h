// What all sensor classes share: the properties that the head of their records becomes, the constants, the
// texts of the possible states and their ownership.
#pragma once

#include "Utilities/NumericSensorTables.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"

#include <algorithm>
#include <array>
#include <span>

// What every sensor sets behind them.
inline constexpr Property<NumericSensorRecord> sensor_status_properties[] = {
    {"DetailedStatus", CMPI_uint16, FIELD(NumericSensorRecord, DetailedStatus), "Constant."},
    {"OperatingStatus", CMPI_uint16, FIELD(NumericSensorRecord, OperatingStatus), "Constant."},
    {"PrimaryStatus", CMPI_uint16, FIELD(NumericSensorRecord, PrimaryStatus), "Constant."},
    {"Status", CMPI_chars, FIELD(NumericSensorRecord, Status), "Constant."},
};

// The columns of several tables, one behind the other. Their records begin with the NumericSensorRecord.
template <std::size_t... sizes>
consteval auto JoinColumns(const std::array<PropertyColumn, sizes> &...tables) {
    std::array<PropertyColumn, (sizes + ...)> joined{};
    auto next = joined.begin();
    ((next = std::ranges::copy(tables, next).out), ...);
    return joined;
}
template <const auto &...tables> inline constexpr auto joined_columns = JoinColumns(Untagged<tables>...);

// --- Filling a record

// Makes all list fields empty; for each record before anything else.
void ClearLists(NumericSensorRecord &record);

// The four keys; the sensor's name comes from a field of its SDR.
void SetSensorKeys(NumericSensorRecord &record, const char *className, const char *systemName,
                   const char *name, std::size_t nameLimit);
template <std::size_t N>
void SetSensorKeys(NumericSensorRecord &record, const char *className, const char *systemName,
                   const char (&name)[N]) {
    SetSensorKeys(record, className, systemName, name, N);
}

// ElementName and Caption: the sensor's name, which the keys have already.
void SetSensorName(NumericSensorRecord &record);

// What every sensor says of its own health: that it is well.
void SetWell(NumericSensorRecord &record);

// The constants of a kind of sensor.
struct SensorKind {
    std::uint16_t sensorType;
    std::uint16_t enabledState;
    std::uint16_t baseUnits;
    std::int32_t unitModifier;
};
void SetKind(NumericSensorRecord &record, const SensorKind &kind);

// Supported and enabled thresholds.
void SetThresholds(NumericSensorRecord &record, std::initializer_list<std::int32_t> codes);

// Where the texts of a class's possible states come from.
struct PossibleStates {
    int (*number)();
    void (*text)(int index, char *text, int size);
    int size; // room for one text, at most `largest_state`
    bool perSlot =
        false; // the number is asked anew before each text, and only a text that has a slot is asked for
};
constexpr int largest_state = 256;

// The texts of the possible states, zeroed before they are asked for. They lie in one heap block of the
// record's, that of its first text; a record that has one is given it again, as large as it must be. A text
// without memory leaves its slot empty, with a trace line, and ends the list.
void FillPossibleStates(NumericSensorRecord &record, const PossibleStates &states);

// The head of a record: the record itself, or its first member.
inline NumericSensorRecord &SensorOf(NumericSensorRecord &record) {
    return record;
}
template <typename R> NumericSensorRecord &SensorOf(R &record) {
    return record.sensor;
}

// Columns of a sensor class: the empty lists of its record, and the blocks of one that owns nothing but its
// possible states.
template <typename R> void ClearSensor(void *record) {
    ClearLists(SensorOf(*static_cast<R *>(record)));
}
template <typename R> void FreePossibleStates(void *record) {
    std::free(SensorOf(*static_cast<R *>(record)).PossibleStates[0]);
}

// Another for those whose possible states come from FillPossibleStates, which takes the block that is there.
template <typename R> void RecycleSensor(void *record) {
    constexpr std::size_t behind_keys = offsetof(NumericSensorRecord, SensorType);
    constexpr std::size_t states = offsetof(NumericSensorRecord, PossibleStates);
    constexpr std::size_t behind_states = states + sizeof(NumericSensorRecord::PossibleStates);
    auto *bytes = static_cast<char *>(record);
    std::memset(bytes + behind_keys, 0, states - behind_keys);
    std::memset(bytes + behind_states, 0, sizeof(R) - behind_states);
    ClearSensor<R>(record);
}

// What a mapping of states is given of CurrentState: behind it the field stays zero, whatever the mapping
// leaves open.
constexpr int current_state_size = 32;
static_assert(current_state_size < sizeof NumericSensorRecord::CurrentState);

// The raw reading of a threshold sensor; 0 when it can't be read.
std::uint8_t ReadRaw(IpmiSession *session, const FullSdrRow &row);

// The state bits of a discrete sensor; `unread` when they can't be read.
std::uint16_t ReadState(IpmiSession *session, const CompactSdrRow &row, std::uint16_t unread);

// What some classes take for a state that can't be read.
constexpr std::uint16_t no_state = 0x8000;

// A reading by the sensor's formula, cut to an integer.
std::int32_t ConvertReading(std::uint8_t reading, const FullSdrRow &row);

// --- Listing

// Whether a session is opened also where nothing is read but names.
enum class NamesNeed : std::uint8_t { NoSession, Session };

// One record for each of `rowCount` rows. `nameAt(i)` gives the text field with a sensor's name and
// `fill(session, i, record)` everything but the keys, where it is wanted; `getSystemName(name, size)` gives
// the name of the system that has the sensors, and 0, or -1 on failure. 0, or -1 on failure.
template <typename R, typename NameAt, typename Fill,
          typename GetSystemName = decltype(&PH_OEM_GetBaseServerName)>
int ListSensors(Listing<R> listing, int rowCount, NameAt nameAt, Fill fill,
                GetSystemName getSystemName = PH_OEM_GetBaseServerName,
                NamesNeed namesNeed = NamesNeed::Session) {
    if (!StartRecords(listing, rowCount)) {
        return -1;
    }
    char systemName[256] = "";
    if (getSystemName(systemName, sizeof systemName) != 0) {
        return -1;
    }
    IpmiSession session{};
    SessionOwner sessionOwner;
    if (!listing.namesOnly || namesNeed == NamesNeed::Session) {
        sessionOwner.reset(&session);
        if (PH_OEM_CreateIPMISession(&session) != 0) {
            TRACE(TraceFailure, "Create IPMI session failed");
            return -1;
        }
    }
    if (listing.namesOnly) {
        sessionOwner.reset();
    }
    for (int i = 0; i < rowCount; ++i) {
        R &record = NextRecord(listing);
        SetSensorKeys(SensorOf(record), listing.records.table.className, systemName, nameAt(i));
        if (FillsEach(listing)) {
            fill(&session, i, record);
        }
    }
    return 0;
}

// One record of settings for each of `rowCount` sensors; `fill(session, i, record)` fills it, but for the
// names only its InstanceID, which `nameRecord(i, record)` sets. 0, or -1 on failure.
template <typename R, typename NameRecord, typename Fill>
int EnumerateSensorSettings(int rowCount, R **records, int *count, int namesOnly, NameRecord nameRecord,
                            Fill fill) {
    Block<R> block{NewRecords<R>(rowCount)};
    if (block == nullptr) {
        return -1;
    }
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    for (int i = 0; i < rowCount; ++i) {
        R &record = block.get()[i];
        nameRecord(i, record);
        if (namesOnly == 0) {
            fill(&session, i, record);
        }
    }
    *records = block.release();
    *count = rowCount;
    return 0;
}

// --- Rows

// The full SDRs of a sensor type and entity (255 for any), for the caller to free. 0, or -1 with no rows on
// failure. The second opens a handle of its own.
int GetFullSdrs(std::uint32_t handle, int sensorType, int entityId, FullSdrRow **rows, int *count);
int GetFullSdrs(int sensorType, int entityId, FullSdrRow **rows, int *count);

// clang-format off

// Exports a class of sensors that lists them by `List`; `free` is the column that frees what a record owns.
#define EXPORT_SENSOR_COLUMNS(C, text, free, keyColumns, propertyColumns, ...)                               \
    EXPORT_COLUMNS(C, text, keyColumns, propertyColumns, .superclass = "TRV_NumericSensor",                  \
                   .list = ListUntyped<C##Record, List>, .listsInSession = true,                             \
                   .clear = ClearSensor<C##Record>, .freeOwned = free, __VA_ARGS__);                         \
    void PH_OEM_Clean_##C(C##Record **records, int count) {                                                  \
        CleanRecords(C##Class, records, count);                                                               \
    }                                                                                                        \
    int PH_OEM_Enum_##C##_Instance(C##Record **records, int *count, int namesOnly) {                         \
        *records = nullptr;                                                                                  \
        *count = 0;                                                                                          \
        return EnumerateListed(C##Class, records, count, namesOnly);                                         \
    }                                                                                                        \
    static_assert(true)

// The same for one whose own properties are in the table `properties`. The record is a NumericSensorRecord, or has one
// as its first member.
#define EXPORT_SENSOR_CLASS(C, text, ...)                                                                    \
    EXPORT_SENSOR_COLUMNS(C, text, FreePossibleStates<C##Record>, Untagged<sensor_keys>,                     \
                          (joined_columns<numeric_sensor_properties, sensor_status_properties, properties>), \
                          .recycle = RecycleSensor<C##Record>, .pathOrder = sensor_path_order,               \
                          .instanceOrder = sensor_instance_order, __VA_ARGS__)
// clang-format on
