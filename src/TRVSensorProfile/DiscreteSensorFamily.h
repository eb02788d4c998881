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
    const char *className;
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

// Enumerates a class whose record is the NumericSensorRecord; `clean` is its PH_OEM_Clean_<C>.
int EnumerateDiscreteSensors(const DiscreteSensorClass &sensorClass,
                             void (*clean)(NumericSensorRecord **, int), NumericSensorRecord **records,
                             int *count, int namesOnly);

// clang-format off

#define DECLARE_DISCRETE_SENSOR_CLASS(C)                                                                     \
    using C##Record = NumericSensorRecord;                                                                   \
    DECLARE_OWNING_CLASS(C)

#define EXPORT_DISCRETE_SENSOR_CLASS(C, type, otherType, text)                                               \
    int PH_OEM_Enum_##C##_Instance(C##Record **records, int *count, int namesOnly) {                         \
        TRACE(TraceProgress, "Entering %s", __func__);                                                       \
        return EnumerateDiscreteSensors({"TRV_oVTA" #C, type, otherType, "Failed to get " text " info"},     \
                                        PH_OEM_Clean_##C, records, count, namesOnly);                        \
    }                                                                                                        \
    void PH_OEM_Clean_##C(C##Record **records, int count) {                                                  \
        TRACE(TraceProgress, "Entering %s", __func__);                                                       \
        CleanSensors(records, count);                                                                        \
    }                                                                                                        \
    EXPORT_COLUMNS(C, "State of the server's: " text ".", Untagged<discrete_sensor_keys>,                     \
                   discrete_sensor_columns<>, .superclass = "TRV_NumericSensor",            \
                   .pathOrder = discrete_sensor_path_order, .instanceOrder = discrete_sensor_instance_order)
// clang-format on
