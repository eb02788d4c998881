// Date-times in both forms.
#include "fixture.h"

namespace {

using DateTimes = BrokerTest;

constexpr CMPISint64 second = 1000000, day = 86400 * second;

TEST_F(DateTimes, TextAndMicrosecondsSayTheSame) {
    const struct {
        const char *text;
        CMPISint64 microseconds;
    } cases[] = {
        {"19700101000000.000000+000", 0},
        {"19700102000000.000001+000", day + 1},
        {"20000229000000.000005+000", 11016 * day + 5},
        {"20380119031408.000000+000", 2147483648 * second}, // one more than 31 bits of seconds
        {"21000228235959.000000+000", 4107542399 * second},
        {"21000301000000.000000+000", 4107542400 * second}, // 2100 has no leap day
        {"00000000000000.000000:000", 0},
        {"00000001010203.000004:000", day + 3723 * second + 4},
        {"99999999235959.999999:000", 100000000 * day - 1},
        // Texts that microseconds don't give back.
        {"20240229120000.000000+060", 1709204400 * second}, // 11:00 UTC
        {"20240229120000.000000-330", 1709227800 * second}, // 17:30 UTC
        {"20240229120000.******+000", 1709208000 * second},
        {"19691231235959.000000+000", -second},
    };
    for (const auto &[text, microseconds] : cases) {
        const CMPIDateTime *dateTime = CMNewDateTimeFromChars(cmpi, text, nullptr);
        ASSERT_NE(dateTime, nullptr) << text;
        const auto binary = static_cast<CMPIUint64>(microseconds);
        EXPECT_EQ(CMGetBinaryFormat(dateTime, nullptr), binary) << text;
        EXPECT_EQ(textOf(CMGetStringFormat(dateTime, nullptr)), text);
        const bool isInterval = text[21] == ':';
        EXPECT_EQ(CMIsInterval(dateTime, nullptr) != 0, isInterval) << text;
        if (microseconds >= 0 && std::string_view(text).ends_with("000") && text[15] != '*') {
            EXPECT_EQ(textOf(CMGetStringFormat(CMNewDateTimeFromBinary(cmpi, binary, isInterval, nullptr),
                                               nullptr)),
                      text);
        }
    }
    const CMPIDateTime *now = CMNewDateTime(cmpi, nullptr);
    EXPECT_GT(CMGetBinaryFormat(now, nullptr), 1700000000U * second); // when this was written
    EXPECT_FALSE(CMIsInterval(now, nullptr));
}

TEST_F(DateTimes, WhatIsNoneIsRefused) {
    const char *cases[] = {
        "",
        "20240229120000.000000+0000", // long
        "20230229120000.000000+000",  // no leap year
        "21000229120000.000000+000",  // nor this
        "20241301000000.000000+000",  // month
        "20240100000000.000000+000",  // day
        "20240101240000.000000+000",  // hour
        "20240101000000,000000+000",  // no point
        "20240101000000.000000 000",  // no sign
        "20240101000000.0000x0+000",
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
    for (const bool isInterval : {false, true}) {
        EXPECT_EQ(CMNewDateTimeFromBinary(cmpi, static_cast<CMPIUint64>(-1), isInterval, nullptr), nullptr);
    }
}

} // namespace
