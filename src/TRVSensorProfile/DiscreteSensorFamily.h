// The service processor's OEM status sensors: each reports a state and no number, so that their numeric
// properties have neutral values. The classes differ in a sensor type and a text.
#pragma once

#include "TRVSensorProfile/SensorFamily.h"

// The keys in the order of these classes.
inline constexpr Key<NumericSensorRecord> discrete_sensor_keys[] = {
    sensor_keys[1],
    sensor_keys[3],
    sensor_keys[0],
    sensor_keys[2],
};
inline constexpr KeyOrder discrete_sensor_path_order = {0, 1, 3, 2};
inline constexpr KeyOrder discrete_sensor_instance_order = {2, 3, 0, 1};

// What they set between the properties of every sensor.
inline constexpr Property<NumericSensorRecord> discrete_sensor_properties[] = {
    {"OtherSensorTypeDescription", CMPI_chars, FIELD(NumericSensorRecord, OtherSensorTypeDescription),
     "Constant."},
};
template <const auto &...own>
inline constexpr auto discrete_sensor_columns =
    joined_columns<numeric_sensor_properties, discrete_sensor_properties, sensor_status_properties, own...>;

struct DiscreteSensorClass {
    int sensorType; // OEM
    const char *otherSensorTypeDescription;
    const char *fetchFailure; // trace
};

// The compact SDRs of the class's sensor type, for the caller to free. 0, or -1 on failure.
int GetDiscreteSensorRows(const DiscreteSensorClass &sensorClass, CompactSdrRow **rows, int *count);

// Everything but the keys. The state bits are returned; 0xFFFF when they can't be read.
std::uint16_t FillDiscreteSensor(const DiscreteSensorClass &sensorClass, IpmiSession *session,
                                 const CompactSdrRow &row, NumericSensorRecord &record);

constexpr std::uint16_t unread_state = 0xFFFF;

// Lists a class; `fill(state, record)` fills what its records have besides the sensor.
template <typename R, typename Fill>
int ListDiscreteSensors(const DiscreteSensorClass &sensorClass, Listing<R> listing, Fill fill) {
    CompactSdrRow *rows = nullptr;
    int rowCount = 0;
    if (GetDiscreteSensorRows(sensorClass, &rows, &rowCount) != 0) {
        return -1;
    }
    const Block<CompactSdrRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    return ListSensors(
        listing, rowCount, [=](int i) -> auto & { return rows[i].SensorName; },
        [&](IpmiSession *session, int i, R &record) {
            fill(FillDiscreteSensor(sensorClass, session, rows[i], SensorOf(record)), record);
        });
}

// The same for a class whose record is the NumericSensorRecord.
int ListDiscreteSensors(const DiscreteSensorClass &sensorClass, Listing<NumericSensorRecord> listing);

// The column of a class whose possible states come from the back end, each text a block of its own.
template <typename R> void FreeForeignStates(void *record) {
    FreeTexts(SensorOf(*static_cast<R *>(record)).PossibleStates);
}

// clang-format off

#define DECLARE_DISCRETE_SENSOR_CLASS(C)                                                                     \
    using C##Record = NumericSensorRecord;                                                                   \
    DECLARE_OWNING_CLASS(C)

#define EXPORT_DISCRETE_SENSOR_COLUMNS(C, text, free, propertyColumns)                                       \
    EXPORT_SENSOR_COLUMNS(C, text, free, Untagged<discrete_sensor_keys>, propertyColumns,                    \
                          .pathOrder = discrete_sensor_path_order,                                           \
                          .instanceOrder = discrete_sensor_instance_order)

#define EXPORT_DISCRETE_SENSOR_CLASS(C, type, otherType, text)                                               \
    static int List(Listing<C##Record> listing) {                                                            \
        return ListDiscreteSensors({type, otherType, "Failed to get " text " info"}, listing);               \
    }                                                                                                        \
    EXPORT_DISCRETE_SENSOR_COLUMNS(C, "State of the server's: " text ".", FreeForeignStates<C##Record>,      \
                                   discrete_sensor_columns<>)
// clang-format on
