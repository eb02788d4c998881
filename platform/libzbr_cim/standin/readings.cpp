#include <algorithm>

#include "ipmi.h"
#include "libzbr_cim.h"
#include "standin.h"
#include "walk.h"

using namespace sp;

namespace {

/// Steps a query for a sensor's reading to its row, whose first column is the status; a result of the
/// library.
int find_reading(const IpmiSession *session, Query &query) {
    if (!is_open(session)) {
        return NoAnswer;
    }
    if (query.next()) {
        return (query.number(0) & ReadingUnavailable) == 0 ? 0 : CompletionCode + IpmiNotPresent;
    }
    return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
}

/// A threshold sensor at the time of the call.
struct FullReading {
    uint8_t status, reading, state;
};

/// The thresholds of the query below, in its order, and the bits that a reading beyond them sets.
constexpr uint8_t upper_bits[] = {AboveUpperNonCritical, AboveUpperCritical, AboveUpperNonRecoverable};

FullReading full_reading(const Query &query) {
    int column = 0;
    const auto next = [&] { return query.number(column++); };
    FullReading now;
    now.status = static_cast<uint8_t>(next());
    now.state = static_cast<uint8_t>(next());
    const int64_t stored = next(), amplitude = next(), seed = next(), minimum = next(), maximum = next();
    const int64_t moved =
        stored + walk(amplitude, static_cast<uint64_t>(seed), std::chrono::system_clock::now());
    const int64_t reading = std::max(minimum, std::min(moved, maximum));
    now.reading = static_cast<uint8_t>(reading);
    if (const int64_t lower = next(); lower != 0 && reading <= lower) {
        now.state |= BelowLowerCritical;
    }
    for (const uint8_t bit : upper_bits) {
        if (const int64_t upper = next(); upper != 0 && reading >= upper) {
            now.state |= bit;
        }
    }
    return now;
}

void store(uint8_t *out, uint8_t value) {
    if (out != nullptr) {
        *out = value;
    }
}

} // namespace

int ZBR_CIM_GetFullSensorReading(IpmiSession *session, uint8_t sensorNumber, uint8_t *status,
                                 uint8_t *reading, uint8_t *state, int) {
    return call("ZBR_CIM_GetFullSensorReading", {Hex{sensorNumber}}, [&] {
        if (reading == nullptr) {
            return NoAnswer;
        }
        Query query(
            "SELECT Status, State, Reading, Amplitude * (SELECT Walk FROM simulation), Seed, Minimum, "
            "Maximum, LowerThresholdCritical, UpperThresholdNonCritical, UpperThresholdCritical, "
            "UpperThresholdNonRecoverable FROM sensor_reading LEFT JOIN full_sdr USING (SensorNumber) "
            "WHERE SensorNumber = ?",
            {sensorNumber});
        if (const int failed = find_reading(session, query)) {
            return failed;
        }
        const FullReading now = full_reading(query);
        store(status, now.status);
        store(reading, now.reading);
        store(state, now.state);
        return 0;
    });
}

int ZBR_CIM_GetCompactSensorReading(IpmiSession *session, uint8_t sensorNumber, int, uint16_t *state, int) {
    return call("ZBR_CIM_GetCompactSensorReading", {Hex{sensorNumber}}, [&] {
        if (state == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT Status, State FROM sensor_reading WHERE SensorNumber = ?", {sensorNumber});
        if (const int failed = find_reading(session, query)) {
            return failed;
        }
        *state = static_cast<uint16_t>(query.number(1));
        return 0;
    });
}
