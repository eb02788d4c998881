#include <algorithm>
#include <set>

#include "libzbr_cim.h"
#include "sample_server.h"
#include "walk.h"

namespace {

using namespace std::chrono_literals;
using Time = std::chrono::system_clock::time_point;

const Time some_time{1'751'702'400s};

TEST(Walk, StaysWithinItsAmplitudeAndReachesBothSides) {
    for (const uint64_t seed : {0u, 1u, 0x20u, 0xFFu}) {
        int64_t least = 0, most = 0;
        for (Time time = some_time; time < some_time + 1h; time += 700ms) {
            const int64_t distance = sp::walk(5, seed, time);
            least = std::min(least, distance);
            most = std::max(most, distance);
        }
        EXPECT_TRUE(least >= -5 && least <= -4 && most >= 4 && most <= 5)
            << seed << ' ' << least << ' ' << most;
    }
}

TEST(Walk, GoesInSmallStepsAlsoWhereItsDirectionChanges) {
    for (Time time = some_time; time < some_time + 10min; time += 500ms) {
        // From one end to the other, 200, in ten seconds at the most.
        EXPECT_LE(std::abs(sp::walk(100, 7, time + 500ms) - sp::walk(100, 7, time)), 11);
    }
}

struct Readings : SessionOpen {
    uint8_t status = 0, reading = 0, state = 0;
    int read(uint8_t sensor) {
        return ZBR_CIM_GetFullSensorReading(&session, sensor, &status, &reading, &state, 30);
    }
};

TEST_F(Readings, StandStillWithoutTheWalk) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(read(0x04), 0);
        EXPECT_EQ(reading, 52);
        EXPECT_EQ(status, 0xC0);
        EXPECT_EQ(state, 0);
    }
}

TEST_F(Readings, MoveWithinTheBoundsOfTheirSensor) {
    const struct {
        int stored, amplitude, minimum, maximum;
    } cases[] = {{52, 4, 0, 255}, {250, 200, 0, 255}, {3, 200, 0, 255}, {52, 200, 50, 53}};
    for (const auto &sensor : cases) {
        // Another seed takes the place of another time.
        std::set<int> seen;
        for (int seed = 0; seed < 40; ++seed) {
            sp::sql("UPDATE simulation SET Walk = 1; UPDATE sensor_reading SET Reading = " +
                    std::to_string(sensor.stored) + ", Amplitude = " + std::to_string(sensor.amplitude) +
                    ", Minimum = " + std::to_string(sensor.minimum) +
                    ", Maximum = " + std::to_string(sensor.maximum) + ", Seed = " + std::to_string(seed) +
                    " WHERE SensorNumber = 4");
            ASSERT_EQ(read(4), 0);
            seen.insert(reading);
        }
        EXPECT_GE(*seen.begin(), std::max(sensor.minimum, sensor.stored - sensor.amplitude));
        EXPECT_LE(*seen.rbegin(), std::min(sensor.maximum, sensor.stored + sensor.amplitude));
        EXPECT_GE(seen.size(), 2u);
    }
}

TEST_F(Readings, AddTheBitsOfTheThresholdsThatTheyPass) {
    // Lower critical 1, upper 88, 95 and 100; a sensor's thresholds of 0 are none.
    const struct {
        uint8_t sensor;
        int reading, stored_state;
        uint8_t state;
    } cases[] = {{0x04, 87, 0, 0x00},    {0x04, 88, 0, 0x08}, {0x04, 95, 0, 0x18}, {0x04, 100, 0, 0x38},
                 {0x04, 2, 0, 0x00},     {0x04, 1, 0, 0x02},  {0x04, 88, 1, 0x09}, {0x20, 255, 0, 0x00},
                 {0x20, 14, 0xC0, 0xC2}, {0x34, 0, 0, 0x00}};
    for (const auto &sensor : cases) {
        sp::sql("UPDATE sensor_reading SET Reading = " + std::to_string(sensor.reading) +
                ", State = " + std::to_string(sensor.stored_state) +
                " WHERE SensorNumber = " + std::to_string(sensor.sensor));
        EXPECT_EQ(read(sensor.sensor), 0);
        EXPECT_EQ(state, sensor.state) << int{sensor.sensor} << ' ' << sensor.reading;
    }
}

TEST_F(Readings, FailForASensorThatIsUnavailableOrNotThere) {
    uint16_t bits = 0x5555;
    status = reading = state = 0x55;
    for (const uint8_t sensor : {uint8_t{0x0D}, uint8_t{0xFE}}) {
        EXPECT_EQ(read(sensor), 0x1CB);
        EXPECT_EQ(ZBR_CIM_GetCompactSensorReading(&session, sensor, 0, &bits, 30), 0x1CB);
    }
    EXPECT_TRUE(status == 0x55 && reading == 0x55 && state == 0x55 && bits == 0x5555);
}

TEST_F(Readings, OfADiscreteSensorAreItsStateBits) {
    sp::sql("UPDATE simulation SET Walk = 1; UPDATE sensor_reading SET State = 0x1234, Amplitude = 50 "
            "WHERE SensorNumber = 0xE0");
    uint16_t bits = 0;
    EXPECT_EQ(ZBR_CIM_GetCompactSensorReading(&session, 0xE0, 0, &bits, 30), 0);
    EXPECT_EQ(bits, 0x1234);
}

} // namespace
