#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "libzbr_cimipmi.h"
#include "sample_server.h"

namespace {

/// The text that a mapping gives in a buffer of 32 bytes.
template <class State>
std::string text_of(void (*mapping)(State, char *, int), std::type_identity_t<State> state) {
    char text[32];
    memset(text, '#', sizeof text);
    mapping(state, text, sizeof text);
    return std::string(text, strnlen(text, sizeof text));
}

TEST(PowerSupplyStates, AreTheirMostSeriousCondition) {
    constexpr uint16_t not_present = 0x0001, good = 0x0002, will_fail = 0x0004, failed = 0x0020,
                       reserved = 0x8000;
    EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(good | reserved), 5);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(good | will_fail), 10);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(good | will_fail | failed), 20);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuPrimaryStatus(good | failed), 3);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuDetailedStatus(good | will_fail), 3);
    EXPECT_EQ(text_of(Zbr_CimIpmi_GetPsuStatus, good | will_fail), "Pred Fail");
    EXPECT_NE(Zbr_CimIpmi_IsPsuPresent(good), 0);
    EXPECT_EQ(Zbr_CimIpmi_IsPsuPresent(not_present), 0);
}

TEST(States, AreUnknownWhenNobodyKnowsThem) {
    for (const uint16_t state : {uint16_t{0}, uint16_t{0x0100}, uint16_t{0x8000}, uint16_t{0xFFFF}}) {
        EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(state), 0);
        EXPECT_EQ(text_of(Zbr_CimIpmi_GetPsuStatus, state), "Unknown");
        EXPECT_EQ(Zbr_CimIpmi_GetFanHealthState(state), 0);
        EXPECT_EQ(text_of(Zbr_CimIpmi_GetFanCurrentState, state), "Unknown");
    }
    for (const uint8_t led : {uint8_t{0}, uint8_t{4}, uint8_t{255}}) {
        EXPECT_EQ(Zbr_CimIpmi_GetBaseSrvHealthState(led), 0);
        EXPECT_EQ(Zbr_CimIpmi_GetBaseSrvPrimaryStatus(led), 0);
        EXPECT_EQ(text_of(Zbr_CimIpmi_GetBaseSrvStatus, led), "Unknown");
    }
    EXPECT_EQ(Zbr_CimIpmi_ConvertRateUnit(6), 6);
    EXPECT_EQ(Zbr_CimIpmi_ConvertRateUnit(7), 0);
}

TEST(LogEntries, TellSeverityAndReplaceabilityByTheirFlags) {
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvSeverityString, 0x8F), "Informational");
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvSeverityString, 0x3F), "Critical");
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvSeverityString, 0x40), "Unknown");
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvBoolCSSString, 0x80), "true");
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvBoolCSSString, 0x7F), "false");
}

TEST(Languages, AreMappedBothWays) {
    for (const uint16_t code : {uint16_t{1033}, uint16_t{1031}, uint16_t{1041}}) {
        const std::string text = text_of(Zbr_CimIpmi_ConvLocaleString, code);
        uint16_t back = 0;
        EXPECT_NE(Zbr_CimIpmi_ConvLocaleCode(text.c_str(), static_cast<int>(text.size()), &back), 0) << text;
        EXPECT_EQ(back, code);
    }
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvLocaleString, 0), "en_US");
    EXPECT_EQ(text_of(Zbr_CimIpmi_ConvLocaleString, 9999), "");
    uint16_t kept = 7;
    for (const char *text : {"", "en", "en_USx"}) {
        EXPECT_EQ(Zbr_CimIpmi_ConvLocaleCode(text, static_cast<int>(strlen(text)), &kept), 0) << text;
    }
    EXPECT_EQ(kept, 7);
}

TEST(Texts, AreCutToTheirBufferAndEnded) {
    for (const int size : {1, 2, 5}) {
        char text[8] = "#######";
        Zbr_CimIpmi_GetBaseSrvStatus(2, text, size);
        EXPECT_EQ(std::string(text), std::string("Degraded").substr(0, static_cast<size_t>(size) - 1));
        EXPECT_EQ(text[size], '#') << "written past the buffer";
    }
    char text[] = "kept";
    Zbr_CimIpmi_GetBaseSrvStatus(2, text, 0);
    EXPECT_STREQ(text, "kept");
    Zbr_CimIpmi_GetBaseSrvStatus(2, nullptr, 8);
}

/// A kind of sensor: its three functions, and states with their texts.
struct Kind {
    int (*count)();
    void (*possible)(int, char *, int);
    std::string (*current)(uint16_t state);
    std::vector<std::pair<uint16_t, std::string>> texts;
};

template <class State> State type_of_state(void (*)(State, char *, int));

template <auto current> std::string text_of_state(uint16_t state) {
    return text_of(current, static_cast<decltype(type_of_state(current))>(state));
}

TEST(SensorStates, AreAmongThePossibleOnes) {
    const Kind kinds[] = {
        {Zbr_CimIpmi_GetTmpSensorNumOfPossibleState,
         Zbr_CimIpmi_GetTmpSensorPossibleState,
         text_of_state<Zbr_CimIpmi_GetTmpCurrentState>,
         {{0x00, "Normal"},
          {0xC0, "Normal"},
          {0x08, "Upper Non-Critical"},
          {0x18, "Upper Critical"},
          {0x38, "Upper Fatal"},
          {0x02, "Lower Critical"},
          {0xFF, "Unknown"}}},
        {Zbr_CimIpmi_GetVolSensorNumOfPossibleState,
         Zbr_CimIpmi_GetVolSensorPossibleState,
         text_of_state<Zbr_CimIpmi_GetVolCurrentState>,
         {{0x00, "Normal"}, {0x10, "Upper Critical"}, {0x06, "Lower Fatal"}}},
        {Zbr_CimIpmi_GetFanSensorNumOfPossibleState,
         Zbr_CimIpmi_GetFanSensorPossibleState,
         text_of_state<Zbr_CimIpmi_GetFanCurrentState>,
         {{0x0001, "OK"}, {0x0005, "Failure Predicted"}, {0x8000, "Unknown"}, {0xFFFF, "Unknown"}}},
        {Zbr_CimIpmi_GetPPSensorNumOfPossibleState,
         Zbr_CimIpmi_GetPPSensorPossibleState,
         text_of_state<Zbr_CimIpmi_GetPPCurrentState>,
         {{0xC0, "Normal"}, {0xE0, "Unavailable"}, {0x80, "Not Scanned"}, {0xFF, "Unknown"}}},
        {Zbr_CimIpmi_GetPwlSensorNumOfPossibleState,
         Zbr_CimIpmi_GetPwlSensorPossibleState,
         text_of_state<Zbr_CimIpmi_GetPwlCurrentState>,
         {{0x0001, "Normal"}, {0x0005, "Critical Level Exceeded"}, {0x8000, "Unknown"}}},
    };
    for (const Kind &kind : kinds) {
        std::vector<std::string> possible;
        for (int i = 0; i < kind.count(); ++i) {
            possible.push_back(text_of(kind.possible, i));
            EXPECT_NE(possible.back(), "");
        }
        for (const auto &[state, text] : kind.texts) {
            EXPECT_EQ(kind.current(state), text) << state;
            EXPECT_EQ(std::count(possible.begin(), possible.end(), text), 1) << text;
        }
        EXPECT_EQ(text_of(kind.possible, kind.count()), "");
        EXPECT_EQ(text_of(kind.possible, -1), "");
    }
}

/// The 64 slots of a record, with what a mapping put into them.
struct FilledSlots {
    char *slots[64] = {};
    std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (char *const slot : slots) {
            if (slot != nullptr) {
                all.push_back(slot);
            }
        }
        return all;
    }
    ~FilledSlots() {
        for (char *slot : slots) {
            free(slot);
        }
    }
};

TEST(OemSensorStates, HaveATextForEachConditionThatHolds) {
    const struct {
        int type;
        uint16_t state;
        std::string current;
        std::vector<std::string> conditions;
    } cases[] = {
        {234, 0x0012, "Reset Request Pending", {"Shutdown Request Pending", "Reset Request Pending"}},
        {234, 0x0000, "No Request Pending", {}},
        {192, 0x0003, "Device Not Responding", {"Arbitration Lost", "Device Not Responding"}},
        {192, 0xFFFF, "Unknown", {}},
        {99, 0x0001, "Unknown", {}},
    };
    for (const auto &sensor : cases) {
        char current[32];
        Zbr_CimIpmi_GetCurrentStateString(sensor.type, sensor.state, current, sizeof current);
        EXPECT_EQ(current, sensor.current);
        FilledSlots conditions, possible;
        if (sensor.state != 0xFFFF) {
            Zbr_CimIpmi_GetMultipleStateString(sensor.type, sensor.state, conditions.slots,
                                               sizeof conditions.slots);
        }
        EXPECT_EQ(conditions.texts(), sensor.conditions);
        Zbr_CimIpmi_GetPossibleStateString(sensor.type, possible.slots, sizeof possible.slots);
        const std::vector<std::string> texts = possible.texts();
        EXPECT_NE(std::find(texts.begin(), texts.end(), sensor.current), texts.end());
    }
}

TEST(OemSensorStates, FillNoMoreSlotsThanThereAre) {
    FilledSlots two;
    Zbr_CimIpmi_GetPossibleStateString(192, two.slots, 2 * sizeof *two.slots);
    EXPECT_EQ(two.texts(), (std::vector<std::string>{"OK", "Arbitration Lost"}));
    Zbr_CimIpmi_GetPossibleStateString(192, nullptr, 256);
}

} // namespace
