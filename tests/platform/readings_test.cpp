#include <algorithm>
#include <set>

#include "libzbr_cim.h"
#include "stand_ins.h"
#include "walk.h"

namespace {

TEST(Walk, StaysWithinItsAmplitudeReachesBothSidesAndGoesInSmallSteps) {
    using namespace std::chrono_literals;
    constexpr std::chrono::system_clock::time_point start{1'751'702'400s};
    for (const uint64_t seed : {0u, 1u, 0x20u, 0xFFu}) {
        int64_t least = 0, most = 0;
        for (auto time = start; time < start + 1h; time += 500ms) {
            const int64_t distance = sp::walk(100, seed, time);
            least = std::min(least, distance);
            most = std::max(most, distance);
            // From one end to the other, 200, in ten seconds at the most.
            EXPECT_LE(std::abs(sp::walk(100, seed, time + 500ms) - distance), 11);
        }
        EXPECT_TRUE(least >= -100 && least <= -80 && most >= 80 && most <= 100) << seed;
    }
}

struct Readings : SessionOpen {
    uint8_t status = 0, reading = 0, state = 0;
    int read(uint8_t sensor) {
        return ZBR_CIM_GetFullSensorReading(&session, sensor, &status, &reading, &state, 30);
    }
};

TEST_F(Readings, MoveWithinTheBoundsOfTheirSensor) {
    const struct {
        int stored, amplitude, minimum, maximum;
    } cases[] = {{52, 4, 0, 255}, {250, 200, 0, 255}, {3, 200, 0, 255}, {52, 200, 50, 53}};
    for (const auto &[stored, amplitude, minimum, maximum] : cases) {
        // Another seed takes the place of another time.
        std::set<int> seen;
        for (int seed = 0; seed < 40; ++seed) {
            char change[200];
            snprintf(
                change, sizeof change,
                "UPDATE simulation SET Walk = 1; UPDATE sensor_reading SET Reading = %d, Amplitude = %d, "
                "Minimum = %d, Maximum = %d, Seed = %d WHERE SensorNumber = 4",
                stored, amplitude, minimum, maximum, seed);
            sp::sql(change);
            ASSERT_EQ(read(4), 0);
            seen.insert(reading);
        }
        EXPECT_GE(*seen.begin(), std::max(minimum, stored - amplitude));
        EXPECT_LE(*seen.rbegin(), std::min(maximum, stored + amplitude));
        EXPECT_GE(seen.size(), 2u);
    }
}

TEST_F(Readings, AddTheBitsOfTheThresholdsThatTheyPass) {
    // Lower critical 1, upper 88, 95 and 100; a sensor's thresholds of 0 are none.
    const struct {
        uint8_t sensor;
        int stored, stored_state;
        uint8_t expected;
    } cases[] = {{0x04, 87, 0, 0x00},    {0x04, 88, 0, 0x08}, {0x04, 95, 0, 0x18}, {0x04, 100, 0, 0x38},
                 {0x04, 2, 0, 0x00},     {0x04, 1, 0, 0x02},  {0x04, 88, 1, 0x09}, {0x20, 255, 0, 0x00},
                 {0x20, 14, 0xC0, 0xC2}, {0x34, 0, 0, 0x00}};
    for (const auto &[sensor, stored, stored_state, expected] : cases) {
        sp::sql("UPDATE sensor_reading SET Reading = " + std::to_string(stored) + ", State = " +
                std::to_string(stored_state) + " WHERE SensorNumber = " + std::to_string(sensor));
        EXPECT_EQ(read(sensor), 0);
        EXPECT_EQ(reading, stored) << "it stands still without the walk";
        EXPECT_EQ(state, expected) << int{sensor} << ' ' << stored;
    }
}

TEST_F(Readings, FailForASensorThatIsUnavailableOrNotThere) {
    uint16_t bits = 0x5555;
    status = reading = state = 0x55;
    for (const uint8_t sensor : std::initializer_list<uint8_t>{0x0D, 0xFE}) {
        EXPECT_EQ(read(sensor), 0x1CB);
        EXPECT_EQ(ZBR_CIM_GetCompactSensorReading(&session, sensor, 0, &bits, 30), 0x1CB);
    }
    EXPECT_TRUE(status == 0x55 && reading == 0x55 && state == 0x55 && bits == 0x5555);
}

} // namespace
