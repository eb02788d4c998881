#include "ipmi.h"
#include "libzbr_cim.h"
#include "standin.h"

using namespace sp;

namespace {

/// Steps a query for a sensor's reading to its row; a result of the library.
int find_reading(const IpmiSession *session, Query &query) {
    if (!is_open(session)) {
        return NoAnswer;
    }
    if (query.next()) {
        return 0;
    }
    return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
}

void store(uint8_t *out, const Query &query, int column) {
    if (out != nullptr) {
        *out = static_cast<uint8_t>(query.number(column));
    }
}

} // namespace

int ZBR_CIM_GetFullSensorReading(IpmiSession *session, uint8_t sensorNumber, uint8_t *status,
                                 uint8_t *reading, uint8_t *state, int) {
    return call("ZBR_CIM_GetFullSensorReading", {Hex{sensorNumber}}, [&] {
        if (reading == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT Status, Reading, State FROM sensor_reading WHERE SensorNumber = ?",
                    {sensorNumber});
        if (const int failed = find_reading(session, query)) {
            return failed;
        }
        store(status, query, 0);
        store(reading, query, 1);
        store(state, query, 2);
        return 0;
    });
}

int ZBR_CIM_GetCompactSensorReading(IpmiSession *session, uint8_t sensorNumber, int, uint16_t *state, int) {
    return call("ZBR_CIM_GetCompactSensorReading", {Hex{sensorNumber}}, [&] {
        if (state == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT State FROM sensor_reading WHERE SensorNumber = ?", {sensorNumber});
        if (const int failed = find_reading(session, query)) {
            return failed;
        }
        *state = static_cast<uint16_t>(query.number(0));
        return 0;
    });
}
