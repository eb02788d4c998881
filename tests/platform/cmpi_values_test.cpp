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

TEST(Getters, DeliverEveryPlainTypeInItsOwnWidth) {
    for (const Sample &sample : plain_samples()) {
        std::string out(16, '#');
        EXPECT_EQ(ZBR_CIM_GetValueFromData(sample.data, out.data(), sample.type), 0) << sample.type;
        EXPECT_EQ(out.substr(0, sample.bytes.size()), sample.bytes) << sample.type;
        EXPECT_EQ(out.substr(sample.bytes.size()), std::string(16 - sample.bytes.size(), '#')) << sample.type;
    }
}

TEST(Getters, RefuseEveryOtherTypeAndLeaveTheOutputAlone) {
    StringObject text("text");
    std::vector<Sample> samples = plain_samples();
    samples.push_back({CMPI_string, data_of(CMPI_string, static_cast<CMPIString *>(&text)), ""});
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

TEST(Getters, RefuseNullValuesOfEveryType) {
    for (const CMPIType type : all_types) {
        for (const CMPIValueState state : {CMPI_nullValue, CMPI_notFound, CMPI_badValue}) {
            std::string out(16, '#');
            EXPECT_NE(ZBR_CIM_GetValueFromData({type, state, {}}, out.data(), type), 0) << type;
            EXPECT_EQ(out, std::string(16, '#'));
        }
    }
}

TEST(Getters, DeliverAKeyLikeAnyOtherValue) {
    CMPIData key = data_of<uint16_t>(CMPI_uint16, 7);
    key.state = CMPI_keyValue;
    uint16_t out = 0;
    EXPECT_EQ(ZBR_CIM_GetValueFromData(key, &out, CMPI_uint16), 0);
    EXPECT_EQ(out, 7);
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

TEST(Getters, RefuseATextWithoutCharacters) {
    StringObject empty(nullptr);
    const char *pointer = nullptr;
    EXPECT_NE(ZBR_CIM_GetValueFromData(data_of(CMPI_string, static_cast<CMPIString *>(&empty)), &pointer,
                                       CMPI_string),
              0);
    EXPECT_NE(ZBR_CIM_GetValueFromData(data_of<CMPIString *>(CMPI_string, nullptr), &pointer, CMPI_string),
              0);
    EXPECT_NE(ZBR_CIM_GetValueFromData(data_of<char *>(CMPI_chars, nullptr), &pointer, CMPI_string), 0);
}

TEST(Getters, DeliverADateTimeAsMicroseconds) {
    DateTimeObject time(1700000000000000u, false);
    uint64_t out = 0;
    EXPECT_EQ(ZBR_CIM_GetValueFromData(data_of(CMPI_dateTime, static_cast<CMPIDateTime *>(&time)), &out,
                                       CMPI_dateTime),
              0);
    EXPECT_EQ(out, 1700000000000000u);
}

TEST(Getters, DeliverObjectsAsTheirPointers) {
    InstanceObject instance({});
    ArrayObject array({});
    const struct {
        CMPIType type;
        void *object;
    } objects[] = {{CMPI_ref, static_cast<CMPIObjectPath *>(&instance.path)},
                   {CMPI_instance, static_cast<CMPIInstance *>(&instance)},
                   {CMPI_uint16A, static_cast<CMPIArray *>(&array)}};
    for (const auto &[type, object] : objects) {
        void *out = nullptr;
        EXPECT_EQ(ZBR_CIM_GetValueFromData(data_of(type, object), &out, type), 0);
        EXPECT_EQ(out, object);
        EXPECT_NE(ZBR_CIM_GetValueFromData(data_of<void *>(type, nullptr), &out, type), 0);
    }
}

TEST(Getters, FindAValueByNameInInstanceArgumentsAndContext) {
    const std::vector<NamedData> values = {{"Delay", data_of<uint8_t>(CMPI_uint8, 7)},
                                           {"Empty", null_of(CMPI_uint8)}};
    const InstanceObject instance(values);
    const ArgsObject args(values);
    const ContextObject context(values);
    const auto get = [&](const char *name, uint8_t *out, int from) {
        switch (from) {
        case 0: return ZBR_CIM_GetValueFromInstance(&instance, name, out, CMPI_uint8);
        case 1: return ZBR_CIM_GetValueFromArgs(&args, name, out, CMPI_uint8);
        default: return ZBR_CIM_GetValueFromContext(&context, name, out, CMPI_uint8);
        }
    };
    for (const int from : {0, 1, 2}) {
        uint8_t out = 0;
        EXPECT_EQ(get("Delay", &out, from), 0);
        EXPECT_EQ(out, 7);
        EXPECT_NE(get("Empty", &out, from), 0);
        EXPECT_NE(get("Missing", &out, from), 0);
        EXPECT_NE(get(nullptr, &out, from), 0);
        EXPECT_NE(get("Delay", nullptr, from), 0);
        EXPECT_EQ(out, 7);
    }
    uint8_t out = 0;
    EXPECT_NE(ZBR_CIM_GetValueFromInstance(nullptr, "Delay", &out, CMPI_uint8), 0);
    EXPECT_NE(ZBR_CIM_GetValueFromArgs(nullptr, "Delay", &out, CMPI_uint8), 0);
    EXPECT_NE(ZBR_CIM_GetValueFromContext(nullptr, "Delay", &out, CMPI_uint8), 0);
}

TEST(ArrayGetters, DeliverTheElementsOfEveryPlainType) {
    for (const Sample &sample : plain_samples()) {
        ArrayObject array({sample.data, sample.data});
        const auto type = static_cast<CMPIType>(sample.type | CMPI_ARRAY);
        const CMPIData data = data_of(type, static_cast<CMPIArray *>(&array));
        for (const CMPIType asked : {sample.type, type}) {
            std::string out(24, '#');
            int count = 2;
            EXPECT_EQ(ZBR_CIM_GetArrayValueFromData(data, out.data(), &count, asked), 0) << type;
            EXPECT_EQ(count, 2);
            EXPECT_EQ(out.substr(0, 2 * sample.bytes.size()), sample.bytes + sample.bytes);
            EXPECT_EQ(out.substr(2 * sample.bytes.size()), std::string(24 - 2 * sample.bytes.size(), '#'));
        }
    }
}

TEST(ArrayGetters, DeliverTextsAsPointers) {
    StringObject public_name("public"), trap("trap");
    ArrayObject array({data_of(CMPI_string, static_cast<CMPIString *>(&public_name)),
                       data_of(CMPI_string, static_cast<CMPIString *>(&trap))});
    const InstanceObject instance({{"Names", data_of(CMPI_stringA, static_cast<CMPIArray *>(&array))}});
    const ArgsObject args({{"Names", data_of(CMPI_stringA, static_cast<CMPIArray *>(&array))}});
    for (const CMPIType asked : {CMPI_string, CMPI_stringA, CMPI_chars, CMPI_charsA}) {
        const char *out[3] = {};
        int count = 3;
        EXPECT_EQ(ZBR_CIM_GetArrayValueFromInstance(&instance, "Names", out, &count, asked), 0);
        EXPECT_EQ(count, 2);
        EXPECT_STREQ(out[0], "public");
        EXPECT_STREQ(out[1], "trap");
        EXPECT_EQ(out[2], nullptr);
        count = 2;
        EXPECT_EQ(ZBR_CIM_GetArrayValueFromArgs(&args, "Names", out, &count, asked), 0);
        EXPECT_NE(ZBR_CIM_GetArrayValueFromArgs(&args, "Missing", out, &count, asked), 0);
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

TEST(ArrayGetters, DeliverAnEmptyArrayAsNoElements) {
    ArrayObject empty({});
    int count = 3;
    uint8_t out = 9;
    EXPECT_EQ(ZBR_CIM_GetArrayValueFromData(data_of(CMPI_uint8A, static_cast<CMPIArray *>(&empty)), &out,
                                            &count, CMPI_uint8A),
              0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(out, 9);
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
    ZBR_CIM_CreateCMPIValue(&value, "text", CMPI_chars);
    EXPECT_STREQ(value.chars, "text");
    StringObject string("text");
    CMPIString *pointer = &string;
    ZBR_CIM_CreateCMPIValue(&value, &pointer, CMPI_string);
    EXPECT_EQ(value.string, pointer);
    ZBR_CIM_CreateCMPIValue(&value, nullptr, CMPI_uint64);
    EXPECT_EQ(value.uint64, 0u);
}

} // namespace
