#include "ipmi.h"
#include "libzbr_cim.h"
#include "sensors.h"
#include "standin.h"

using namespace sp;

namespace {

/// Reads a sensor in a session; a result of the library.
int read(const IpmiSession *session, uint8_t number, SensorReading &now) {
    if (!is_open(session)) {
        return NoAnswer;
    }
    const uint8_t code = read_sensor(number, now);
    return code == IpmiOk ? 0 : CompletionCode + code;
}

template <class Number> void store(Number *out, Number value) {
    if (out != nullptr) {
        *out = value;
    }
}

} // namespace

int ZBR_CIM_GetFullSensorReading(IpmiSession *session, uint8_t sensorNumber, uint8_t *status,
                                 uint8_t *reading, uint8_t *state, int) {
    return call("ZBR_CIM_GetFullSensorReading", {Hex{sensorNumber}}, [&] {
        SensorReading now;
        if (reading == nullptr) {
            return NoAnswer;
        }
        if (const int failed = read(session, sensorNumber, now)) {
            return failed;
        }
        store(status, now.status);
        store(reading, now.reading);
        store(state, static_cast<uint8_t>(now.state));
        return 0;
    });
}

int ZBR_CIM_GetCompactSensorReading(IpmiSession *session, uint8_t sensorNumber, int, uint16_t *state, int) {
    return call("ZBR_CIM_GetCompactSensorReading", {Hex{sensorNumber}}, [&] {
        SensorReading now;
        if (state == nullptr) {
            return NoAnswer;
        }
        if (const int failed = read(session, sensorNumber, now)) {
            return failed;
        }
        *state = now.state;
        return 0;
    });
}
