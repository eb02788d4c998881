#pragma once

#include <cmpidt.h>

#include <cstdint>
#include <string>
#include <string_view>

/** A DMTF interval taken apart. */
struct Interval {
    int days, hours, minutes, seconds;
};

/** False for what isn't an interval of DMTF's 25 characters. */
bool parseInterval(const std::string &text, Interval &interval);

/** "1 d 2 h 5 min" of an interval; any other value as it is, for a terminal. */
std::string textOfDuration(const CMPIData &value);

/** "2025-07-05 08:00:00 UTC+02:00" of a date-time; any other value as it is, for a terminal. */
std::string textOfMoment(const CMPIData &value);

/**
 * A point in time as somebody types it, in seconds since 1970.
 *
 * Either in UTC, "2025-07-05", "2025-07-05 08:00" or "2025-07-05 08:00:00", a T for the blank and " UTC" or Z
 * behind it as wanted; a date alone is its first second. Or so long ago: "90s", "30m", "2h", "7d".
 *
 * @param now seconds since 1970
 * @throws Failure for any other text
 */
int64_t parseMoment(std::string_view text, int64_t now);
