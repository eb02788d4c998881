// Times that the service processor stores as minutes in 16 bits, and CIM shows as intervals in microseconds.
#pragma once

#include <cstdint>

constexpr std::uint64_t microseconds_per_minute = 60'000'000;

// A day of a weekly schedule without a time, as it is stored and as the interval of 99,999,999 days.
constexpr std::uint16_t no_time_stored = 0xFFFF;
constexpr std::uint64_t no_time_interval = 0x77E772250D88A000;
static_assert(no_time_interval == 99'999'999ULL * 24 * 60 * microseconds_per_minute);

constexpr std::uint64_t IntervalOfMinutes(std::uint16_t minutes) {
    return minutes * microseconds_per_minute;
}

// The same for a time of a schedule, which may be none.
constexpr std::uint64_t IntervalOfDayTime(std::uint16_t stored) {
    return stored == no_time_stored ? no_time_interval : IntervalOfMinutes(stored);
}

// Whole minutes of an interval, cut to 16 bits.
constexpr std::uint16_t MinutesOfInterval(std::uint64_t interval) {
    return static_cast<std::uint16_t>(interval / microseconds_per_minute);
}

// The same for a time of a schedule.
constexpr std::uint16_t DayTimeOfInterval(std::uint64_t interval) {
    return interval == no_time_interval ? no_time_stored : MinutesOfInterval(interval);
}
