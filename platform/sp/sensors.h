/// Live values of the sensors.
#pragma once

#include <cstdint>

namespace sp {

/// A sensor at the time of the call. The state of a threshold sensor has the bits of the thresholds that its
/// reading is beyond.
struct SensorReading {
    uint8_t status, reading;
    uint16_t state;
};

/// Reads a sensor; a completion code, `IpmiNotPresent` for one that can't be read.
uint8_t read_sensor(uint8_t number, SensorReading &now);

} // namespace sp
