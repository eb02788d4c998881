#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "libzbr_cimipmi.h"

namespace {

/// The text that a mapping gives in a buffer of 32 bytes.
template <class State, class Code> std::string text_of(void (*mapping)(State, char *, int), Code state) {
    char text[32];
    memset(text, '#', sizeof text);
    mapping(static_cast<State>(state), text, sizeof text);
    return std::string(text, strnlen(text, sizeof text));
}

TEST(PowerSupplyStates, AreTheirMostSeriousCondition) {
    constexpr uint16_t good = 0x0002, will_fail = 0x0004, failed = 0x0020, reserved = 0x8000;
    EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(good | reserved), 5);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(good | will_fail), 10);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(good | will_fail | failed), 20);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuPrimaryStatus(good | failed), 3);
    EXPECT_EQ(Zbr_CimIpmi_GetPsuDetailedStatus(good | will_fail), 3);
    EXPECT_EQ(text_of(Zbr_CimIpmi_GetPsuStatus, good | will_fail), "Pred Fail");
}

TEST(States, AreUnknownWhenNobodyKnowsThem) {
    for (const uint16_t state : std::initializer_list<uint16_t>{0, 0x0100, 0x8000, 0xFFFF}) {
        EXPECT_EQ(Zbr_CimIpmi_GetPsuHealthState(state), 0) << state;
        EXPECT_EQ(text_of(Zbr_CimIpmi_GetFanCurrentState, state), "Unknown") << state;
    }
    for (const uint8_t led : std::initializer_list<uint8_t>{0, 4, 255}) {
        EXPECT_EQ(Zbr_CimIpmi_GetBaseSrvHealthState(led), 0) << led;
        EXPECT_EQ(text_of(Zbr_CimIpmi_GetBaseSrvStatus, led), "Unknown") << led;
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
    char text[] = "#######";
    Zbr_CimIpmi_GetBaseSrvStatus(2, text, 0);
    EXPECT_STREQ(text, "#######");
    Zbr_CimIpmi_GetBaseSrvStatus(2, text, 1);
    EXPECT_EQ(std::string(text, 7), std::string("\0######", 7));
    Zbr_CimIpmi_GetBaseSrvStatus(2, text, 5);
    EXPECT_EQ(std::string(text, 7), std::string("Degr\0##", 7));
    Zbr_CimIpmi_GetBaseSrvStatus(2, nullptr, 8);
}

TEST(PossibleStates, EndWithTheLastOneAndTheRoomForThem) {
    EXPECT_EQ(text_of(Zbr_CimIpmi_GetPPSensorPossibleState, 0), "Not Scanned");
    for (const int index : {-1, Zbr_CimIpmi_GetPPSensorNumOfPossibleState()}) {
        EXPECT_EQ(text_of(Zbr_CimIpmi_GetPPSensorPossibleState, index), "") << index;
    }
    char *slots[3] = {};
    Zbr_CimIpmi_GetPossibleStateString(192, slots, 2 * sizeof *slots);
    EXPECT_STREQ(slots[1], "Arbitration Lost");
    EXPECT_EQ(slots[2], nullptr);
    std::for_each(std::begin(slots), std::end(slots), free);
    Zbr_CimIpmi_GetPossibleStateString(192, nullptr, 256);
}

} // namespace
