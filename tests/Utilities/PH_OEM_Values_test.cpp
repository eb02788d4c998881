#include "Utilities/PH_OEM_Values.h"
#include "support/fixture.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>

namespace {

struct PH_OEM_Values : ServiceProcessorTest {
    PH_OEM_Values() : caller(request()), inst(newInstance()) {}
    ~PH_OEM_Values() override {
        unsetenv("TZ");
        tzset();
    }
    CMPIInstance *newInstance() { return CMNewInstance(cmpi(), path(*caller, "RegisteredProfile"), nullptr); }

    // A property as "type: text".
    std::string property(const char *name) {
        CMPIStatus st{};
        const CMPIData data = CMGetProperty(inst, name, &st);
        return st.rc != CMPI_RC_OK ? "(unset)"
                                   : broker::textOfType(data.type) + ": " + broker::textOfValue(data);
    }

    broker::RequestPointer caller;
    CMPIInstance *inst;
};

std::string textOf(CMPIArray *array) {
    return array == nullptr ? "NULL" : broker::textOfValue({CMPI_ARRAY, CMPI_goodValue, {.array = array}});
}

// --- Arrays from rows

TEST_F(PH_OEM_Values, AnArrayIsTakenFromRowsByStride) {
    struct Row {
        std::uint8_t u8;
        std::uint16_t u16;
        std::int32_t s32;
        std::uint64_t u64;
        const char *text;
        char inlineText[12];
    };
    const Row rows[] = {{200, 60000, -5, 1ULL << 40, "x", "first"}, {1, 2, 3, 4, nullptr, ""}};
    const auto array = [&](const void *field, CMPIType type) {
        return textOf(PH_OEM_NewArray(cmpi(), field, sizeof(Row), 2, type));
    };
    EXPECT_EQ(array(&rows[0].u8, CMPI_uint8A), "{200, 1}");
    EXPECT_EQ(array(&rows[0].u16, CMPI_uint16A), "{60000, 2}");
    EXPECT_EQ(array(&rows[0].s32, CMPI_sint32A), "{-5, 3}");
    EXPECT_EQ(array(&rows[0].u64, CMPI_uint64A), "{1099511627776, 4}");
    EXPECT_EQ(array(rows[0].inlineText, CMPI_stringA), "{first, }");
    EXPECT_EQ(array(&rows[0].u16, CMPI_sint16A), "{NULL, NULL}") << "a type that isn't taken stays empty";

    const char *const pointers[] = {"a", nullptr, "c"};
    EXPECT_EQ(textOf(PH_OEM_NewArray(cmpi(), pointers, sizeof(char *), 3, CMPI_stringA)), "{a, NULL, c}");
    EXPECT_EQ(textOf(PH_OEM_NewArray(cmpi(), rows, 4, -3, CMPI_uint8A)), "{}");
}

// --- Properties

TEST_F(PH_OEM_Values, APropertyOfEveryScalarTypeIsSetAndNullable) {
    const CMPIBoolean yes = 1;
    const std::uint16_t u16 = 65535;
    const std::uint64_t u64 = UINT64_MAX, second = 1'000'000;
    const std::int8_t s8 = -128;
    const std::int32_t s32 = INT32_MIN;
    const struct {
        CMPIType type;
        const void *value;
        int flags;
        const char *expected;
    } cases[] = {
        {CMPI_boolean, &yes, 0, "boolean: true"},
        {CMPI_uint16, &u16, 0, "uint16: 65535"},
        {CMPI_uint64, &u64, 0, "uint64: 18446744073709551615"},
        {CMPI_sint8, &s8, 0, "sint8: -128"},
        {CMPI_sint32, &s32, 0, "sint32: -2147483648"},
        {CMPI_chars, "", 0, "string: "},
        {CMPI_dateTime, &second, 0, "datetime: 19700101000001.000000+000"},
        {CMPI_dateTime, &second, PH_OEM_PROP_INTERVAL, "datetime: 00000000000001.000000:000"},
        {CMPI_dateTime, &u64, 0, "datetime: NULL"}, // all bits set
        {CMPI_uint16, nullptr, 0, "uint16: NULL"},
        {CMPI_uint16, &u16, PH_OEM_PROP_NULL, "uint16: NULL"},
        {CMPI_chars, nullptr, 0, "string: NULL"},
    };
    for (const auto &[type, value, flags, expected] : cases) {
        inst = newInstance();
        EXPECT_EQ(PH_OEM_SetProperty(cmpi(), inst, nullptr, "P", value, type, flags), 0);
        EXPECT_EQ(property("P"), expected);
    }
}

TEST_F(PH_OEM_Values, AnUnwantedPropertyIsNotSet) {
    const std::uint16_t value = 1;
    const char *other[] = {"Q", nullptr};
    EXPECT_EQ(PH_OEM_SetProperty(cmpi(), inst, other, "P", &value, CMPI_uint16, 0), 0);
    EXPECT_EQ(PH_OEM_SetPropertyArray(cmpi(), inst, other, "A", &value, 1, CMPI_uint16A, 0, 0), 0);
    EXPECT_EQ(property("P"), "(unset)");
    EXPECT_EQ(property("A"), "(unset)");
}

TEST_F(PH_OEM_Values, APropertyThatCannotBeSetIsTracedWithItsName) {
    const std::uint32_t value = 1;
    EXPECT_EQ(PH_OEM_SetProperty(cmpi(), inst, nullptr, "RegisteredName", &value, CMPI_uint32, 0), -1);
    EXPECT_TRUE(traced("Failed to set a property value for RegisteredName (status="));
}

TEST_F(PH_OEM_Values, AnArrayPropertyOfEveryTypeIsSetAndNullable) {
    const CMPIBoolean booleans[] = {1, 0};
    const std::uint8_t u8[] = {0, 255};
    const std::int8_t s8[] = {-128, 127};
    const std::uint16_t u16[] = {0, 65535};
    const std::int16_t s16[] = {-1, 1};
    const std::uint32_t u32[] = {0, UINT32_MAX};
    const std::int32_t s32[] = {INT32_MIN, 1};
    const std::uint64_t u64[] = {0, UINT64_MAX};
    const std::int64_t s64[] = {INT64_MIN, 1};
    const std::uint64_t times[] = {60'000'000, 3'600'000'000};
    const char *const pointers[] = {"a", "", nullptr};
    const char texts[][5] = {"ab", "cd", "", "ef"};
    const std::int32_t list[] = {2, 3, -1, 4};
    const struct {
        CMPIType type;
        const void *data;
        int count, flags, stride;
        const char *expected;
    } cases[] = {
        {CMPI_booleanA, booleans, 2, 0, 0, "boolean[]: {true, false}"},
        {CMPI_uint8A, u8, 2, 0, 0, "uint8[]: {0, 255}"},
        {CMPI_sint8A, s8, 2, 0, 0, "sint8[]: {-128, 127}"},
        {CMPI_uint16A, u16, 2, 0, 0, "uint16[]: {0, 65535}"},
        {CMPI_sint16A, s16, 2, 0, 0, "sint16[]: {-1, 1}"},
        {CMPI_uint32A, u32, 2, 0, 0, "uint32[]: {0, 4294967295}"},
        {CMPI_sint32A, s32, 2, 0, 0, "sint32[]: {-2147483648, 1}"},
        {CMPI_uint64A, u64, 2, 0, 0, "uint64[]: {0, 18446744073709551615}"},
        {CMPI_sint64A, s64, 2, 0, 0, "sint64[]: {-9223372036854775808, 1}"},
        {CMPI_dateTimeA, times, 2, PH_OEM_PROP_INTERVAL, 0,
         "datetime[]: {00000000000100.000000:000, 00000000010000.000000:000}"},
        {CMPI_stringA, pointers, 2, 0, 0, "string[]: {a, }"},
        {CMPI_stringA, texts, 2, 0, 5, "string[]: {ab, cd}"},
        {CMPI_stringA, pointers, 9, PH_OEM_PROP_TERMINATED, 0, "string[]: {a, }"},
        {CMPI_stringA, texts, 4, PH_OEM_PROP_TERMINATED, 5, "string[]: {ab, cd}"},
        {CMPI_stringA, texts, 1, PH_OEM_PROP_TERMINATED, 5, "string[]: {ab}"},
        {CMPI_uint16A, list, 4, PH_OEM_PROP_TERMINATED, 0, "uint16[]: {2, 3}"},
        {CMPI_uint16A, list, 1, PH_OEM_PROP_TERMINATED, 0, "uint16[]: {2}"},
        {CMPI_uint16A, list + 2, 2, PH_OEM_PROP_TERMINATED, 0, "uint16[]: {}"}, // empty isn't null
        {CMPI_uint16A, nullptr, 2, 0, 0, "uint16[]: NULL"},
        {CMPI_uint16A, u16, 2, PH_OEM_PROP_NULL, 0, "uint16[]: NULL"},
        {CMPI_uint8A, u8, 0, 0, 0, "uint8[]: {}"},
    };
    for (const auto &[type, data, count, flags, stride, expected] : cases) {
        inst = newInstance();
        EXPECT_EQ(PH_OEM_SetPropertyArray(cmpi(), inst, nullptr, "A", data, count, type, flags, stride), 0);
        EXPECT_EQ(property("A"), expected);
    }
}

TEST_F(PH_OEM_Values, AnArrayThatCannotBeBuiltIsTraced) {
    const double reals[] = {1};
    for (const CMPIType type : {CMPI_charsA, CMPI_instanceA, CMPI_real64A}) {
        EXPECT_EQ(PH_OEM_SetPropertyArray(cmpi(), inst, nullptr, "A", reals, 1, type, 0, 0), -1);
        EXPECT_TRUE(traced("Not supported type(" + std::to_string(type) + ")"));
    }
    EXPECT_TRUE(traced("Failed to create CMPI array for A"));
    EXPECT_EQ(property("A"), "(unset)");
}

TEST_F(PH_OEM_Values, AssignPropertyKnowsItsTypes) {
    const std::uint64_t bytes = 0xF1F2F3F4F5F6F7F8ULL;
    CMPIValue value{};
    for (const auto &[type, expected] : {std::pair<CMPIType, std::uint64_t>{CMPI_uint8, 0xF8},
                                         {CMPI_boolean, 0xF8},
                                         {CMPI_uint16, 0xF7F8},
                                         {CMPI_sint16, 0xF7F8},
                                         {CMPI_uint32, 0xF5F6F7F8},
                                         {CMPI_sint32, 0xF5F6F7F8},
                                         {CMPI_uint64, bytes}}) {
        value.uint64 = 0;
        EXPECT_EQ(PH_OEM_AssignProperty(&value, &bytes, type), 1);
        EXPECT_EQ(value.uint64, expected) << type;
        EXPECT_EQ(PH_OEM_AssignProperty(&value, nullptr, type), 1);
    }
    EXPECT_EQ(PH_OEM_AssignProperty(&value, "x", CMPI_chars), 1);
    EXPECT_STREQ(value.chars, "x");
    value.uint64 = 77;
    for (const CMPIType type : {CMPI_sint8, CMPI_sint64, CMPI_string, CMPI_dateTime, CMPI_real32}) {
        EXPECT_EQ(PH_OEM_AssignProperty(&value, &bytes, type), 0) << type;
    }
    EXPECT_EQ(value.uint64, 77U);
    EXPECT_EQ(PH_OEM_AssignProperty(nullptr, nullptr, CMPI_null), 0);
}

// --- Date-times

TEST_F(PH_OEM_Values, ADateTimeComesOutOfItsData) {
    std::uint64_t out = 5;
    CMPIData data = {CMPI_uint64, CMPI_goodValue, {.uint64 = 1}};
    EXPECT_EQ(PH_OEM_GetDatetimeValueFromData(data, &out), -1);
    EXPECT_EQ(out, 5U);
    data = {CMPI_dateTime, CMPI_nullValue, {}};
    EXPECT_EQ(PH_OEM_GetDatetimeValueFromData(data, &out), 0);
    EXPECT_EQ(out, UINT64_MAX);
    data = {
        CMPI_dateTime, CMPI_goodValue, {.dateTime = CMNewDateTimeFromBinary(cmpi(), 90'000'000, 1, nullptr)}};
    EXPECT_EQ(PH_OEM_GetDatetimeValueFromData(data, &out), 0);
    EXPECT_EQ(out, 90'000'000U);
}

// The library has to see by itself that the zone is another.
void useZone(const char *zone) {
    setenv("TZ", zone, 1);
}

TEST_F(PH_OEM_Values, ATimeIsWrittenInLocalTimeWithItsOffsetInMinutes) {
    constexpr time_t noon = 1660564800; // 2022-08-15 12:00 UTC
    for (const auto &[zone, expected] : {std::pair{"UTC0", "20220815120000.000000+000"},
                                         {"XXX-1", "20220815130000.000000+060"},
                                         {"XXX5:30", "20220815063000.000000-330"},
                                         {"XXX-9:30", "20220815213000.000000+570"},
                                         {"CET-1CEST,M3.5.0,M10.5.0/3", "20220815140000.000000+120"}}) {
        useZone(zone);
        char text[datetime_text_size] = "";
        EXPECT_EQ(PH_OEM_ConvertUnixTimetoDMTFDateTimeFormat(noon, text), 0);
        EXPECT_STREQ(text, expected) << zone;
        time_t back = 0;
        EXPECT_EQ(PH_OEM_ConvertDMTFDateTimeFormatToUnixTime(text, &back), 0);
        EXPECT_EQ(back, noon) << zone;
    }
}

TEST_F(PH_OEM_Values, TimesWorkAsFarAsTheirTypeHoldsThem) {
    char text[datetime_text_size] = "as it was";
    EXPECT_EQ(PH_OEM_ConvertUnixTimetoDMTFDateTimeFormat(0, text), -1);
    EXPECT_STREQ(text, "as it was");
    useZone("UTC0");
    EXPECT_EQ(PH_OEM_ConvertUnixTimetoDMTFDateTimeFormat(1, text), 0);
    EXPECT_STREQ(text, "19700101000001.000000+000");
    time_t time = 0;
    EXPECT_EQ(PH_OEM_ConvertDMTFDateTimeFormatToUnixTime("20380119031407.000000+000", &time), 0);
    EXPECT_EQ(time, INT32_MAX);
    EXPECT_EQ(PH_OEM_ConvertDMTFDateTimeFormatToUnixTime("20380119031408.000000+000", &time), 0);
    const bool wide = sizeof(time_t) > 4;
    EXPECT_EQ(static_cast<long long>(time), wide ? 2147483648LL : 0LL);
    for (const char *none : {"", "yesterday", "2022081512", static_cast<const char *>(nullptr)}) {
        time = 7;
        EXPECT_EQ(PH_OEM_ConvertDMTFDateTimeFormatToUnixTime(none, &time), 0);
        EXPECT_EQ(time, 0);
    }
}

// --- Texts

TEST_F(PH_OEM_Values, ACustomFieldIsFoundByItsNumberAndMustFit) {
    char out[8];
    std::memset(out, 'x', sizeof out);
    EXPECT_EQ(PH_OEM_GetFruCustomField("one,two,,four", 1, out, sizeof out), 3);
    EXPECT_EQ(std::string(out, sizeof out), std::string("two\0\0\0\0\0", 8));
    EXPECT_EQ(PH_OEM_GetFruCustomField("one,two,,four", 2, out, sizeof out), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(PH_OEM_GetFruCustomField("one,two,,four", 3, out, 5), 4);
    EXPECT_STREQ(out, "four");
    const struct {
        const char *text;
        int index, size;
        const char *told;
    } failures[] = {
        {nullptr, 0, 8, "invalid parameter"},
        {"a", -1, 8, "invalid parameter"},
        {"a", 0, 0, "invalid parameter"},
        {"a,b", 2, 8, "custom field is not found"},
        {"four,b", 0, 4, "buffer is too short. length of custom field = 4"},
    };
    for (const auto &[text, index, size, told] : failures) {
        EXPECT_EQ(PH_OEM_GetFruCustomField(text, index, out, size), -1) << told;
        EXPECT_TRUE(traced(std::string("PH_OEM_GetFruCustomField failed. ") + told));
    }
    EXPECT_STREQ(out, "four");
    EXPECT_EQ(PH_OEM_GetFruCustomField("a", 0, nullptr, 8), -1);
}

TEST_F(PH_OEM_Values, AddressesAreWrittenByTheirSeparator) {
    const std::uint8_t bytes[] = {0x0A, 0, 255, 1, 0xAB, 2};
    char out[18] = "kept";
    PH_OEM_ConvertIPorMACnumToStr(bytes, 6, out, "-");
    EXPECT_STREQ(out, "kept");
    PH_OEM_ConvertIPorMACnumToStr(bytes, 6, out, ":");
    EXPECT_STREQ(out, "0A00FF01AB02");
    PH_OEM_ConvertIPorMACnumToStr(bytes, 4, out, ".");
    EXPECT_STREQ(out, "10.0.255.1");
}

// --- Objects

TEST_F(PH_OEM_Values, PathsCompareByEverythingButTheOrderOfKeys) {
    const auto make = [&](const char *nameSpace, const char *className,
                          std::vector<std::pair<const char *, const char *>> keys) {
        CMPIObjectPath *made = CMNewObjectPath(cmpi(), nameSpace, className, nullptr);
        for (const auto &[name, text] : keys) {
            CMAddKey(made, name, reinterpret_cast<const CMPIValue *>(text), CMPI_chars);
        }
        return made;
    };
    const CMPIObjectPath *one = make("root/cimv2", "C", {{"A", "1"}, {"B", "2"}});
    const std::vector<const CMPIObjectPath *> others = {
        make("root/CIMV2", "C", {{"A", "1"}, {"B", "2"}}),
        make("root/cimv2", "c", {{"A", "1"}, {"B", "2"}}),
        make("root/cimv2", "C", {{"A", "1"}}),
        make("root/cimv2", "C", {{"A", "1"}, {"B", "3"}}),
        make("root/cimv2", "C", {{"A", "1"}, {"b", "2"}}),
    };
    for (const CMPIObjectPath *other : others) {
        EXPECT_EQ(PH_OEM_CompareObjectPath(one, other), -1) << broker::textOfPath(other, true);
        EXPECT_EQ(PH_OEM_CompareObjectPath(other, one), -1) << broker::textOfPath(other, true);
    }
    EXPECT_EQ(PH_OEM_CompareObjectPath(one, make("root/cimv2", "C", {{"B", "2"}, {"A", "1"}})), 0);
    EXPECT_EQ(PH_OEM_CompareObjectPath(make("n", "C", {}), make("n", "C", {})), 0);

    const auto withNumber = [&] {
        CMPIObjectPath *made = make("n", "C", {});
        const CMPIValue number = {.uint64 = 5};
        CMAddKey(made, "A", &number, CMPI_uint64);
        return made;
    };
    EXPECT_EQ(PH_OEM_CompareObjectPath(withNumber(), withNumber()), -1) << "only strings compare";
}

TEST_F(PH_OEM_Values, InstancesOfAnotherClassComeThroughTheBroker) {
    const CMPIContext *ctx = broker::contextOf(*caller);
    CMPIArray *all = PH_OEM_GetInstArray(cmpi(), ctx, path(*caller, "RegisteredProfile"));
    ASSERT_NE(all, nullptr);
    EXPECT_GT(CMGetArrayCount(all, nullptr), 10U);
    const CMPIInstance *first = PH_OEM_GetFirstInstance(cmpi(), ctx, name_space, "TRV_oVTARegisteredProfile");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(broker::textOfValue(CMGetProperty(first, "RegisteredName", nullptr)), "Profile Registration");

    sp::sql("DELETE FROM registered_profile");
    EXPECT_EQ(PH_OEM_GetFirstInstance(cmpi(), ctx, name_space, "TRV_oVTARegisteredProfile"), nullptr);
    EXPECT_TRUE(traced("Unexpected number of instance: 0"));

    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(PH_OEM_GetFirstInstance(cmpi(), ctx, name_space, "TRV_oVTARegisteredProfile"), nullptr);
    EXPECT_TRUE(traced("Enumeration Instances failed: Failed to Enumerate Instance"));
    EXPECT_TRUE(traced("Get instance array failed"));
}

} // namespace
