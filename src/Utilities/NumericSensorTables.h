// The tables that all sensor classes share.
#pragma once

#include "Utilities/PH_OEM_Common.h"

// The keys, and the orders in which most sensor classes give them to paths and instances.
inline constexpr Key<NumericSensorRecord> sensor_keys[] = {
    {"SystemCreationClassName", FIELD(NumericSensorRecord, SystemCreationClassName),
     "Class of the system. Constant."},
    {"CreationClassName", FIELD(NumericSensorRecord, CreationClassName), "Class of the sensor. Constant."},
    {"SystemName", FIELD(NumericSensorRecord, SystemName), "Name of the system."},
    {"DeviceID", FIELD(NumericSensorRecord, DeviceID), "Name of the sensor. OEM DB, SDRs: sensor name."},
};
inline constexpr KeyOrder sensor_path_order = {0, 3, 1, 2};
inline constexpr KeyOrder sensor_instance_order = {0, 2, 1, 3};

// The properties of every sensor, in the order in which they are set, before a class's own.
inline constexpr Property<NumericSensorRecord> numeric_sensor_properties[] = {
    {"BaseUnits", CMPI_uint16, FIELD(NumericSensorRecord, BaseUnits),
     "Unit of CurrentReading and of the thresholds."},
    {"Caption", CMPI_chars, FIELD(NumericSensorRecord, Caption), "Name for people."},
    {"CurrentReading", CMPI_sint32, FIELD(NumericSensorRecord, CurrentReading),
     "The reading in BaseUnits times ten to the power of UnitModifier. Sensor reading by the linear formula "
     "of its SDR."},
    {"CurrentState", CMPI_chars, FIELD(NumericSensorRecord, CurrentState),
     "State of the sensor, one of PossibleStates. Sensor reading."},
    {"ElementName", CMPI_chars, FIELD(NumericSensorRecord, ElementName), "Name for people."},
    {"EnabledState", CMPI_uint16, FIELD(NumericSensorRecord, EnabledState), "Whether the sensor is enabled."},
    {"RateUnits", CMPI_uint16, FIELD(NumericSensorRecord, RateUnits),
     "Unit of time, where the reading is a rate."},
    {"RequestedState", CMPI_uint16, FIELD(NumericSensorRecord, RequestedState),
     "State that was last requested."},
    {"UnitModifier", CMPI_sint32, FIELD(NumericSensorRecord, UnitModifier),
     "Power of ten that BaseUnits is multiplied by."},
    {"HealthState", CMPI_uint16, FIELD(NumericSensorRecord, HealthState),
     "Health of what the sensor watches. Sensor reading."},
    {"SensorType", CMPI_uint16, FIELD(NumericSensorRecord, SensorType), "What the sensor measures."},
    {"EnabledThresholds", CMPI_uint16A, FIELD(NumericSensorRecord, EnabledThresholds),
     "Thresholds that are enabled."},
    {"OperationalStatus", CMPI_uint16A, FIELD(NumericSensorRecord, OperationalStatus),
     "Status of what the sensor watches. Sensor reading."},
    {"SettableThresholds", CMPI_uint16A, FIELD(NumericSensorRecord, SettableThresholds),
     "Thresholds that clients may set."},
    {"SupportedThresholds", CMPI_uint16A, FIELD(NumericSensorRecord, SupportedThresholds),
     "Thresholds that the sensor has. OEM DB, SDRs."},
    {"PossibleStates", CMPI_stringA, FIELD(NumericSensorRecord, PossibleStates),
     "States that the sensor can be in."},
};
