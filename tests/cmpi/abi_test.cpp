// The binary interface that every CIM server and every provider shares: slots, sizes, codes.
#include <cmpimacs.h>
#include <gtest/gtest.h>
#include <slots.h>

#include <algorithm>
#include <map>
#include <string>
#include <type_traits>

extern "C" CMPIStatus returnedInC(int which, const CMPIBroker *broker);

namespace {

// cmpi/slots.c holds the slots against the headers as C sees them.
TEST(CmpiTables, NoneHasMoreThanTheSlotsOfItsVersionAndCppSeesThemAsC) {
    std::map<std::string, std::pair<size_t, size_t>> ends; // by its last slot, and by its size
    const auto see = [&](const char *table, size_t offset, size_t expected, size_t size) {
        EXPECT_EQ(offset, expected) << table;
        ends[table] = {std::max(ends[table].first, offset + sizeof(void *)), size};
    };
#define SEE_AFTER_ONE(table, member, slot)                                                                   \
    see(#table, offsetof(table, member), OFFSET_AFTER_ONE_INTEGER(slot), sizeof(table));
#define SEE_AFTER_TWO(table, member, slot)                                                                   \
    see(#table, offsetof(table, member), OFFSET_AFTER_TWO_INTEGERS(slot), sizeof(table));
    SLOTS_WITH_ONE_INTEGER(SEE_AFTER_ONE)
    SLOTS_WITH_TWO_INTEGERS(SEE_AFTER_TWO)
    EXPECT_EQ(ends.size(), 18U);
    for (const auto &[table, end] : ends) {
        EXPECT_EQ(end.first, end.second) << table;
    }
}

TEST(CmpiTypes, StructuresHaveTheSizesOfTheInterface) {
    const struct {
        const char *name;
        size_t size, sizeWith64, sizeWith32;
    } sizes[] = {
        {"CMPIStatus", sizeof(CMPIStatus), 16, 8},
        {"CMPIValuePtr", sizeof(CMPIValuePtr), 16, 8},
        {"CMPIValue", sizeof(CMPIValue), 16, 8},
        // Where 64-bit integers are aligned to 4 bytes only, a value follows type and state at once.
        {"CMPIData", sizeof(CMPIData), 24, alignof(CMPIValue) == 8 ? 16 : 12},
        {"CMPIBroker", sizeof(CMPIBroker), 40, 20},
        {"CMPIString", sizeof(CMPIString), 16, 8},
        {"CMPIInstanceMI", sizeof(CMPIInstanceMI), 16, 8},
        {"CMPIrc", sizeof(CMPIrc), 4, 4},
        {"CMPIBoolean", sizeof(CMPIBoolean), 1, 1},
        {"CMPIChar16", sizeof(CMPIChar16), 2, 2},
        {"CMPISint8", sizeof(CMPISint8), 1, 1},
        {"CMPIUint16", sizeof(CMPIUint16), 2, 2},
        {"CMPISint32", sizeof(CMPISint32), 4, 4},
        {"CMPIUint64", sizeof(CMPIUint64), 8, 8},
        {"CMPIReal32", sizeof(CMPIReal32), 4, 4},
        {"CMPIReal64", sizeof(CMPIReal64), 8, 8},
        {"CMPICount", sizeof(CMPICount), 4, 4},
        {"CMPIType", sizeof(CMPIType), 2, 2},
    };
    for (const auto &[name, size, sizeWith64, sizeWith32] : sizes) {
        EXPECT_EQ(size, sizeof(void *) == 8 ? sizeWith64 : sizeWith32) << name;
    }
}

TEST(CmpiTypes, SignsAreAsTheNamesSay) {
    EXPECT_TRUE(std::is_signed_v<CMPISint8> && std::is_signed_v<CMPISint16>);
    EXPECT_TRUE(std::is_unsigned_v<CMPIUint8> && std::is_unsigned_v<CMPIUint16>);
    EXPECT_EQ(static_cast<CMPIBoolean>(-1), 255);
}

TEST(CmpiTypes, CodesAreThoseOfTheInterface) {
    const struct {
        unsigned code, expected;
    } codes[] = {{CMPI_null, 0},
                 {CMPI_boolean, 0x0002},
                 {CMPI_char16, 0x0003},
                 {CMPI_real32, 0x0008},
                 {CMPI_real64, 0x000C},
                 {CMPI_uint8, 0x0080},
                 {CMPI_uint16, 0x0090},
                 {CMPI_uint32, 0x00A0},
                 {CMPI_uint64, 0x00B0},
                 {CMPI_sint8, 0x00C0},
                 {CMPI_sint16, 0x00D0},
                 {CMPI_sint32, 0x00E0},
                 {CMPI_sint64, 0x00F0},
                 {CMPI_instance, 0x1000},
                 {CMPI_ref, 0x1100},
                 {CMPI_args, 0x1200},
                 {CMPI_class, 0x1300},
                 {CMPI_filter, 0x1400},
                 {CMPI_enumeration, 0x1500},
                 {CMPI_string, 0x1600},
                 {CMPI_chars, 0x1700},
                 {CMPI_dateTime, 0x1800},
                 {CMPI_ptr, 0x1900},
                 {CMPI_charsptr, 0x1A00},
                 {CMPI_ARRAY, 0x2000},
                 {CMPI_uint16A, 0x2090},
                 {CMPI_stringA, 0x3600},
                 {CMPI_refA, 0x3100},
                 {CMPI_dateTimeA, 0x3800},
                 {CMPI_booleanA, 0x2002},
                 {CMPI_sint64A, 0x20F0},
                 {CMPI_keyInteger, 0x00F0},
                 {CMPI_keyString, 0x1600},
                 {CMPI_goodValue, 0},
                 {CMPI_nullValue, 0x0100},
                 {CMPI_keyValue, 0x0200},
                 {CMPI_notFound, 0x0400},
                 {CMPI_badValue, 0x8000},
                 {CMPI_RC_ERR_FAILED, 1},
                 {CMPI_RC_ERR_NOT_FOUND, 6},
                 {CMPI_RC_ERR_NOT_SUPPORTED, 7},
                 {CMPI_RC_ERR_NO_SUCH_PROPERTY, 12},
                 {CMPI_RC_ERR_TYPE_MISMATCH, 13},
                 {CMPI_RC_ERR_METHOD_NOT_FOUND, 17},
                 {CMPI_RC_NEVER_UNLOAD, 51},
                 {CMPI_RC_ERR_INVALID_HANDLE, 60},
                 {CMPI_RC_ERR_INVALID_DATA_TYPE, 61},
                 {CMPI_RC_ERROR_SYSTEM, 100},
                 {CMPI_RC_ERROR, 200},
                 {CMPI_FLAG_LocalOnly, 1},
                 {CMPI_FLAG_DeepInheritance, 2},
                 {CMPI_FLAG_IncludeClassOrigin, 8}};
    for (const auto &[code, expected] : codes) {
        EXPECT_EQ(code, expected);
    }
}

TEST(CmpiMacros, NullIsToldByStateAndByHandle) {
    CMPIData data = {CMPI_string, CMPI_nullValue | CMPI_keyValue, {}};
    EXPECT_TRUE(CMIsNullValue(data));
    EXPECT_TRUE(CMIsKeyValue(data));
    EXPECT_FALSE(CMIsArray(data));
    data = {CMPI_uint8A, CMPI_goodValue, {}};
    EXPECT_FALSE(CMIsNullValue(data));
    EXPECT_TRUE(CMIsArray(data));
    CMPIString empty = {nullptr, nullptr};
    const CMPIString *missing = nullptr;
    EXPECT_TRUE(CMIsNullObject(&empty));
    EXPECT_TRUE(CMIsNullObject(missing));
    empty.hdl = &empty;
    EXPECT_FALSE(CMIsNullObject(&empty));
}

// A broker whose only function makes one string.
CMPIString madeString = {"made", nullptr};
std::string madeFrom;
CMPIString *makeString(const CMPIBroker *, const char *text, CMPIStatus *) {
    madeFrom = text;
    return &madeString;
}

TEST(CmpiMacros, AReturnedStatusHasItsCodeAndMessage) {
    CMPIBrokerEncFT creation = {};
    creation.newString = makeString;
    const CMPIBroker broker = {nullptr, nullptr, &creation, nullptr, nullptr};
    const CMPIStatus expected[] = {{CMPI_RC_ERR_NOT_FOUND, nullptr},
                                   {CMPI_RC_ERR_FAILED, nullptr},
                                   {CMPI_RC_ERR_ACCESS_DENIED, &madeString}};
    for (int which = 0; which < 3; ++which) {
        const CMPIStatus status = returnedInC(which, &broker);
        EXPECT_EQ(status.rc, expected[which].rc);
        EXPECT_EQ(status.msg, expected[which].msg);
    }
    EXPECT_EQ(madeFrom, "no");
}

} // namespace
