#include "sensors.h"

#include <algorithm>

#include "ipmi.h"
#include "standin.h"
#include "walk.h"

namespace sp {
namespace {

/// The thresholds of the query below, in its order, and the bits that a reading beyond them sets.
constexpr uint8_t upper_bits[] = {AboveUpperNonCritical, AboveUpperCritical, AboveUpperNonRecoverable};

SensorReading reading_of(const Query &query) {
    int column = 0;
    const auto next = [&] { return query.number(column++); };
    SensorReading now;
    now.status = static_cast<uint8_t>(next());
    now.state = static_cast<uint16_t>(next());
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

} // namespace

uint8_t read_sensor(uint8_t number, SensorReading &now) {
    Query query("SELECT Status, State, Reading, Amplitude * (SELECT Walk FROM simulation), Seed, Minimum, "
                "Maximum, LowerThresholdCritical, UpperThresholdNonCritical, UpperThresholdCritical, "
                "UpperThresholdNonRecoverable FROM sensor_reading LEFT JOIN full_sdr USING (SensorNumber) "
                "WHERE SensorNumber = ?",
                {number});
    if (!query.next()) {
        return query.failed ? IpmiUnspecifiedError : IpmiNotPresent;
    }
    now = reading_of(query);
    return (now.status & ReadingUnavailable) == 0 ? IpmiOk : IpmiNotPresent;
}

} // namespace sp
