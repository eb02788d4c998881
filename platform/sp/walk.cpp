#include "walk.h"

#include <cmath>
#include <random>

namespace sp {
namespace {

constexpr int64_t StepMilliseconds = 10'000;

/// A number in [-1, 1] that a seed has for a step.
double height(uint64_t seed, uint64_t step) {
    std::minstd_rand numbers(static_cast<uint32_t>(seed * 1'000'003 + step));
    numbers.discard(3); // the first ones of neighbouring steps are neighbours
    return 2 * static_cast<double>(numbers()) / static_cast<double>(std::minstd_rand::max()) - 1;
}

} // namespace

int64_t walk(int64_t amplitude, uint64_t seed, std::chrono::system_clock::time_point time) {
    const int64_t milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const auto step = static_cast<uint64_t>(milliseconds / StepMilliseconds);
    const double way = static_cast<double>(milliseconds % StepMilliseconds) / StepMilliseconds;
    const double distance = height(seed, step) * (1 - way) + height(seed, step + 1) * way;
    return std::llround(distance * static_cast<double>(amplitude));
}

} // namespace sp
