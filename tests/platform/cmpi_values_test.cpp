#include <gtest/gtest.h>

#include <cstring>

#include "cmpi_objects.h"
#include "libzbr_cim.h"

namespace {

/// Every type that has a plain value: data with that value, and the bytes in which it is delivered.
struct Sample {
    CMPIType type;
    CMPIData data;
    std::string bytes;
};

template <class T> Sample plain(CMPIType type, T value) {
    return {type, data_of(type, value), std::string(reinterpret_cast<const char *>(&value), sizeof value)};
}

std::vector<Sample> plain_samples() {
    return {
        plain<uint8_t>(CMPI_boolean, 1),
        plain<uint16_t>(CMPI_char16, 0x20AC),
        plain<float>(CMPI_real32, 2.5f),
        plain<double>(CMPI_real64, -0.125),
        plain<uint8_t>(CMPI_uint8, 0xFE),
        plain<uint16_t>(CMPI_uint16, 0xFEDC),
        plain<uint32_t>(CMPI_uint32, 0xFEDCBA98u),
        plain<uint64_t>(CMPI_uint64, 0xFEDCBA9876543210u),
        plain<int8_t>(CMPI_sint8, -2),
        plain<int16_t>(CMPI_sint16, -3),
        plain<int32_t>(CMPI_sint32, -4),
        plain<int64_t>(CMPI_sint64, -5),
    };
}

constexpr CMPIType all_types[] = {
    CMPI_boolean, CMPI_char16,   CMPI_real32,   CMPI_real64, CMPI_uint8,   CMPI_uint16, CMPI_uint32,
    CMPI_uint64,  CMPI_sint8,    CMPI_sint16,   CMPI_sint32, CMPI_sint64,  CMPI_string, CMPI_chars,
    CMPI_ref,     CMPI_instance, CMPI_dateTime, CMPI_uint8A, CMPI_stringA, CMPI_args,   CMPI_null};

bool is_text(CMPIType type) {
    return type == CMPI_string || type == CMPI_chars;
}

TEST(Getters, DeliverEveryPlainTypeInItsOwnWidthAloneAndInArrays) {
    for (const Sample &sample : plain_samples()) {
        const size_t width = sample.bytes.size();
        std::string out(24, '#');
        EXPECT_EQ(ZBR_CIM_GetValueFromData(sample.data, out.data(), sample.type), 0) << sample.type;
        EXPECT_EQ(out, sample.bytes + std::string(24 - width, '#')) << sample.type;

        ArrayObject array({sample.data, sample.data});
        const auto type = static_cast<CMPIType>(sample.type | CMPI_ARRAY);
        for (const CMPIType asked : {sample.type, type}) {
            int count = 2;
            out.assign(24, '#');
            EXPECT_EQ(ZBR_CIM_GetArrayValueFromData(data_of(type, static_cast<CMPIArray *>(&array)),
                                                    out.data(), &count, asked),
                      0)
                << type;
            EXPECT_EQ(count, 2);
            EXPECT_EQ(out, sample.bytes + sample.bytes + std::string(24 - 2 * width, '#'));
        }
    }
}

TEST(Getters, RefuseEveryOtherTypeAndLeaveTheOutputAlone) {
    StringObject text("text");
    std::vector<Sample> samples = plain_samples();
    samples.push_back({CMPI_string, data_of(CMPI_string, static_cast<CMPIString *>(&text)), ""});
    for (const CMPIType type : all_types) {
        samples.push_back({CMPI_args, null_of(type), ""});
    }
    for (const Sample &sample : samples) {
        for (const CMPIType asked : all_types) {
            if (asked == sample.type || (is_text(asked) && is_text(sample.type))) {
                continue;
            }
            std::string out(16, '#');
            EXPECT_NE(ZBR_CIM_GetValueFromData(sample.data, out.data(), asked), 0)
                << sample.type << ' ' << asked;
            EXPECT_EQ(out, std::string(16, '#'));
        }
    }
}

TEST(Getters, DeliverATextAsPointerOrAsCopy) {
    StringObject string("host");
    char chars[] = "host";
    for (const CMPIData &data :
         {data_of(CMPI_string, static_cast<CMPIString *>(&string)), data_of(CMPI_chars, &chars[0])}) {
        const char *pointer = nullptr;
        EXPECT_EQ(ZBR_CIM_GetValueFromData(data, &pointer, CMPI_string), 0);
        EXPECT_STREQ(pointer, "host");
        char copy[6] = "#####";
        EXPECT_EQ(ZBR_CIM_GetValueFromData(data, copy, CMPI_chars), 0);
        EXPECT_EQ(memcmp(copy, "host\0", 6), 0) << "copied with its end and not further";
    }
}

TEST(ArrayGetters, RefuseWhatDoesNotFitOrIsNotWhole) {
    const CMPIData seven = data_of<uint16_t>(CMPI_uint16, 7);
    ArrayObject three({seven, seven, seven}), with_null({seven, null_of(CMPI_uint16)}),
        with_other({seven, data_of<uint8_t>(CMPI_uint8, 7)});
    const auto array = [](ArrayObject &object) {
        return data_of(CMPI_uint16A, static_cast<CMPIArray *>(&object));
    };
    const struct {
        CMPIData data;
        int room;
        CMPIType type;
    } cases[] = {
        {array(three), 2, CMPI_uint16A},
        {array(three), -1, CMPI_uint16A},
        {array(three), 3, CMPI_uint8A},
        {array(three), 3, CMPI_sint16A},
        {array(with_null), 2, CMPI_uint16A},
        {array(with_other), 2, CMPI_uint16A},
        {seven, 3, CMPI_uint16},
        {null_of(CMPI_uint16A), 3, CMPI_uint16A},
    };
    for (const auto &refused : cases) {
        uint16_t out[3] = {9, 9, 9};
        int count = refused.room;
        EXPECT_NE(ZBR_CIM_GetArrayValueFromData(refused.data, out, &count, refused.type), 0);
        EXPECT_EQ(out[0], 9);
        EXPECT_EQ(count, refused.room);
    }
}

TEST(CreatedValues, AreReadBackAsTheyWere) {
    for (const Sample &sample : plain_samples()) {
        CMPIData data{sample.type, CMPI_goodValue, {}};
        ZBR_CIM_CreateCMPIValue(&data.value, sample.bytes.data(), sample.type);
        std::string out(sample.bytes.size(), '#');
        EXPECT_EQ(ZBR_CIM_GetValueFromData(data, out.data(), sample.type), 0);
        EXPECT_EQ(out, sample.bytes);
    }
    CMPIValue value;
    ZBR_CIM_CreateCMPIValue(&value, nullptr, CMPI_uint64);
    EXPECT_EQ(value.uint64, 0u);
}

} // namespace
