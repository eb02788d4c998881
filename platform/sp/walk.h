/// How live readings move.
#pragma once

#include <chrono>
#include <cstdint>

namespace sp {

/// The distance of a reading from the stored one at a time: a walk that the seed alone decides, so that all
/// processes see the same. It is at most `amplitude` either way, and gets from one end to the other in no
/// less than the ten seconds of a step.
int64_t walk(int64_t amplitude, uint64_t seed, std::chrono::system_clock::time_point time);

} // namespace sp
