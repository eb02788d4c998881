// Date-times in both forms.
#include "fixture.h"

namespace {

using DateTimes = BrokerTest;

constexpr CMPIUint64 second = 1000000;
constexpr CMPIUint64 day = 86400 * second;

TEST_F(DateTimes, TextAndMicrosecondsSayTheSame) {
    const struct {
        const char *text;
        CMPIUint64 microseconds;
        bool isInterval;
    } cases[] = {
        {"19700101000000.000000+000", 0, false},
        {"19700102000000.000001+000", day + 1, false},
        {"20000301000000.000000+000", 11017 * day, false},         // the day after a leap day
        {"20380119031408.000000+000", 2147483648 * second, false}, // one more than 31 bits of seconds
        {"20240229120000.000000+060", 1709204400 * second, false}, // 11:00 UTC
        {"20240229120000.000000-330", 1709227800 * second, false}, // 17:30 UTC
        {"20240229120000.******+000", 1709208000 * second, false},
        {"19691231235959.000000+000", static_cast<CMPIUint64>(-static_cast<CMPISint64>(second)), false},
        {"00000000000000.000000:000", 0, true},
        {"00000001010203.000004:000", day + 3723 * second + 4, true},
        {"99999999235959.999999:000", 100000000 * day - 1, true},
    };
    for (const auto &[text, microseconds, isInterval] : cases) {
        CMPIStatus status = {CMPI_RC_ERROR, nullptr};
        const CMPIDateTime *dateTime = CMNewDateTimeFromChars(cmpi, text, &status);
        ASSERT_NE(dateTime, nullptr) << text;
        EXPECT_EQ(status.rc, CMPI_RC_OK);
        EXPECT_EQ(CMGetBinaryFormat(dateTime, nullptr), microseconds) << text;
        EXPECT_EQ(textOf(CMGetStringFormat(dateTime, nullptr)), text);
        EXPECT_EQ(CMIsInterval(dateTime, nullptr) != 0, isInterval) << text;
    }
}

TEST_F(DateTimes, MicrosecondsAreWrittenInUtc) {
    const struct {
        CMPIUint64 microseconds;
        CMPIBoolean isInterval;
        const char *text;
    } cases[] = {
        {0, 0, "19700101000000.000000+000"},
        {951782400 * second + 5, 0, "20000229000000.000005+000"},
        {4107542399 * second, 0, "21000228235959.000000+000"},
        {4107542400 * second, 0, "21000301000000.000000+000"}, // 2100 has no leap day
        {90061 * second + 7, 1, "00000001010101.000007:000"},
    };
    for (const auto &[microseconds, isInterval, text] : cases) {
        EXPECT_EQ(textOf(CMGetStringFormat(CMNewDateTimeFromBinary(cmpi, microseconds, isInterval, nullptr),
                                           nullptr)),
                  text);
    }
    for (const bool isInterval : {false, true}) {
        EXPECT_EQ(CMNewDateTimeFromBinary(cmpi, static_cast<CMPIUint64>(-1), isInterval, nullptr), nullptr);
    }
}

TEST_F(DateTimes, MalformedTextIsRefused) {
    const char *cases[] = {
        "",
        "20240229120000.000000+00",   // short
        "20240229120000.000000+0000", // long
        "20230229120000.000000+000",  // no leap year
        "20241301000000.000000+000",  // month
        "20240100000000.000000+000",  // day
        "20240101240000.000000+000",  // hour
        "20240101006000.000000+000",  // minute
        "20240101000060.000000+000",  // second
        "20240101000000,000000+000",  // no point
        "20240101000000.000000 000",  // no sign
        "20240101000000.0000x0+000",
        "2024010100 000.000000+000",
        "00000001010203.000004:001", // an interval has no offset
        "2024**01000000.000000+000", // known digits right of unknown ones
        "202*0101000000.000000+000", // half a field
    };
    for (const char *text : cases) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(CMNewDateTimeFromChars(cmpi, text, &status), nullptr) << text;
        EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER) << text;
    }
    EXPECT_EQ(CMNewDateTimeFromChars(cmpi, nullptr, nullptr), nullptr);
}

TEST_F(DateTimes, NowIsAfterThisWasWritten) {
    const CMPIDateTime *now = CMNewDateTime(cmpi, nullptr);
    EXPECT_GT(CMGetBinaryFormat(now, nullptr), 1700000000 * second);
    EXPECT_FALSE(CMIsInterval(now, nullptr));
}

} // namespace
