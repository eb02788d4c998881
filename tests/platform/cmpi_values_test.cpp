#include <cstring>

#include "libzbr_cim.h"
#include "support/fixture.h"

namespace {

struct CmpiValues : ServiceProcessorTest {
    broker::RequestPointer caller = request();

    CMPIData value(CMPIType type, const std::vector<std::string> &texts) {
        CMPIData data{};
        std::string error;
        EXPECT_TRUE(broker::parseValue(*caller, type, texts, data, error)) << error;
        return data;
    }
};

constexpr CMPIType types[] = {
    CMPI_boolean, CMPI_char16,   CMPI_real32,   CMPI_real64, CMPI_uint8,   CMPI_uint16, CMPI_uint32,
    CMPI_uint64,  CMPI_sint8,    CMPI_sint16,   CMPI_sint32, CMPI_sint64,  CMPI_string, CMPI_chars,
    CMPI_ref,     CMPI_instance, CMPI_dateTime, CMPI_uint8A, CMPI_stringA, CMPI_args,   CMPI_null};

TEST_F(CmpiValues, AreDeliveredInTheWidthOfTheirTypeAloneAndInArraysAndUnderNoOther) {
    using namespace std::string_literals;
    const struct {
        CMPIType type;
        const char *text;
        std::string bytes; // the lowest first
    } cases[] = {
        {CMPI_boolean, "true", "\1"},
        {CMPI_char16, "\u20AC", "\xAC\x20"},
        {CMPI_real32, "2.5", "\0\0\x20\x40"s},
        {CMPI_real64, "-0.125", "\0\0\0\0\0\0\xC0\xBF"s},
        {CMPI_uint8, "254", "\xFE"},
        {CMPI_uint16, "0xFEDC", "\xDC\xFE"},
        {CMPI_uint32, "0xFEDCBA98", "\x98\xBA\xDC\xFE"},
        {CMPI_uint64, "0xFEDCBA9876543210", "\x10\x32\x54\x76\x98\xBA\xDC\xFE"},
        {CMPI_sint8, "-2", "\xFE"},
        {CMPI_sint16, "-3", "\xFD\xFF"},
        {CMPI_sint32, "-4", "\xFC\xFF\xFF\xFF"},
        {CMPI_sint64, "-5", "\xFB\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},
    };
    for (const auto &[type, text, bytes] : cases) {
        for (const CMPIType asked : types) {
            std::string out(24, '#');
            EXPECT_EQ(ZBR_CIM_GetValueFromData(value(type, {text}), out.data(), asked) == 0, asked == type)
                << type << ' ' << asked;
            const std::string delivered = asked == type ? bytes : "";
            EXPECT_EQ(out, delivered + std::string(24 - delivered.size(), '#')) << type << ' ' << asked;
        }
        const auto array = static_cast<CMPIType>(type | CMPI_ARRAY);
        for (const CMPIType asked : {type, array}) {
            int count = 3;
            std::string out(24, '#');
            EXPECT_EQ(ZBR_CIM_GetArrayValueFromData(value(array, {text, text}), out.data(), &count, asked), 0)
                << asked;
            EXPECT_EQ(count, 2);
            EXPECT_EQ(out, bytes + bytes + std::string(24 - 2 * bytes.size(), '#')) << asked;
        }
        CMPIValue created;
        ZBR_CIM_CreateCMPIValue(&created, bytes.data(), type);
        EXPECT_EQ(broker::textOfValue({type, CMPI_goodValue, created}),
                  broker::textOfValue(value(type, {text})));
    }
}

TEST_F(CmpiValues, OfNullLeaveTheOutputAlone) {
    for (const CMPIType type : types) {
        std::string out(16, '#');
        EXPECT_NE(ZBR_CIM_GetValueFromData({type, CMPI_nullValue, {}}, out.data(), type), 0) << type;
        EXPECT_EQ(out, std::string(16, '#')) << type;
    }
    CMPIValue created;
    ZBR_CIM_CreateCMPIValue(&created, nullptr, CMPI_uint64);
    EXPECT_EQ(created.uint64, 0u);
}

TEST_F(CmpiValues, OfATextAreAPointerOrACopy) {
    char chars[] = "host";
    for (const CMPIData &data :
         {value(CMPI_string, {"host"}), CMPIData{CMPI_chars, CMPI_goodValue, {.chars = chars}}}) {
        const char *pointer = nullptr;
        EXPECT_EQ(ZBR_CIM_GetValueFromData(data, &pointer, CMPI_string), 0);
        EXPECT_STREQ(pointer, "host");
        char copy[6] = "#####";
        EXPECT_EQ(ZBR_CIM_GetValueFromData(data, copy, CMPI_chars), 0);
        EXPECT_EQ(memcmp(copy, "host\0", 6), 0) << "copied with its end and not further";
    }
}

TEST_F(CmpiValues, OfAnArrayAreRefusedWhenTheyDoNotFitOrAreNotWhole) {
    const CMPIData three = value(CMPI_uint16A, {"7", "7", "7"});
    CMPIData with_null{CMPI_uint16A, CMPI_goodValue, {.array = CMNewArray(cmpi(), 2, CMPI_uint16, nullptr)}};
    CMSetArrayElementAt(with_null.value.array, 0, &three.value, CMPI_uint16);
    const struct {
        CMPIData data;
        int room;
        CMPIType type;
    } cases[] = {{three, 2, CMPI_uint16A},
                 {three, -1, CMPI_uint16A},
                 {three, 3, CMPI_uint8A},
                 {three, 3, CMPI_sint16A},
                 {with_null, 2, CMPI_uint16A},
                 {value(CMPI_uint16, {"7"}), 3, CMPI_uint16},
                 {{CMPI_uint16A, CMPI_nullValue, {}}, 3, CMPI_uint16A}};
    for (const auto &[data, room, type] : cases) {
        uint16_t out[3] = {9, 9, 9};
        int count = room;
        EXPECT_NE(ZBR_CIM_GetArrayValueFromData(data, out, &count, type), 0) << room << ' ' << type;
        EXPECT_EQ(out[0], 9) << room << ' ' << type;
        EXPECT_EQ(count, room);
    }
}

} // namespace
