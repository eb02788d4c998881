// The binary interface that every CIM server and every provider shares: slots, sizes, codes.
#include "abi.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <span>
#include <string>

namespace {

const SlotSeen slotsSeenInCpp[] = ALL_SLOTS_SEEN;

constexpr bool is64Bit = sizeof(void *) == 8;

[[maybe_unused]] void everyCallInCpp(const CMPIBroker *b, CMPIContext *c, CMPIInstance *i, CMPIObjectPath *p,
                                     CMPIArgs *a, CMPIString *s, CMPIResult *r, CMPIEnumeration *n,
                                     CMPIDateTime *d, CMPIArray *ar, CMPIStatus *rc) {
    USE_EVERY_CALL(b, c, i, p, a, s, r, n, d, ar, rc);
}

// The offset of a slot, worked out from the number of integers before the first pointer.
size_t offsetOf(const SlotSeen &slot) {
    if (!is64Bit) {
        return slot.slot * 4;
    }
    if (slot.integers == 1) {
        return slot.slot * 8;
    }
    return slot.slot < 2 ? slot.slot * 4 : (slot.slot - 1) * 8;
}

TEST(CmpiTables, EveryMemberStandsInItsSlot) {
    for (const SlotSeen &slot : slotsSeenInCpp) {
        EXPECT_EQ(slot.offset, offsetOf(slot)) << slot.table << '.' << slot.member;
    }
}

TEST(CmpiTables, CAndCppSeeTheSameSlots) {
    ASSERT_EQ(slotsSeenInCCount, std::size(slotsSeenInCpp));
    for (size_t i = 0; i < slotsSeenInCCount; ++i) {
        EXPECT_STREQ(slotsSeenInC[i].member, slotsSeenInCpp[i].member);
        EXPECT_EQ(slotsSeenInC[i].offset, slotsSeenInCpp[i].offset) << slotsSeenInC[i].member;
        EXPECT_EQ(slotsSeenInC[i].tableSize, slotsSeenInCpp[i].tableSize) << slotsSeenInC[i].table;
    }
}

TEST(CmpiTables, NoTableHasMoreThanTheSlotsOfItsVersion) {
    const std::map<std::string, size_t> slots = {
        {"CMPIBrokerFT", 21},    {"CMPIBrokerEncFT", 21},  {"CMPIBrokerExtFT", 21},
        {"CMPIBrokerMemFT", 15}, {"CMPIContextFT", 7},     {"CMPIResultFT", 8},
        {"CMPIStringFT", 4},     {"CMPIArrayFT", 7},       {"CMPIEnumerationFT", 6},
        {"CMPIInstanceFT", 11},  {"CMPIObjectPathFT", 20}, {"CMPIArgsFT", 7},
        {"CMPIDateTimeFT", 6},   {"CMPIInstanceMIFT", 11}, {"CMPIAssociationMIFT", 8},
        {"CMPIMethodMIFT", 5},   {"CMPIPropertyMIFT", 7},  {"CMPIIndicationMIFT", 13},
    };
    std::map<std::string, size_t> seen;
    for (const SlotSeen &slot : slotsSeenInCpp) {
        const SlotSeen end = {slot.table, "end", slots.at(slot.table), slot.integers, 0, 0};
        EXPECT_EQ(slot.tableSize, offsetOf(end)) << slot.table;
        ++seen[slot.table];
    }
    EXPECT_EQ(seen, slots);
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
        EXPECT_EQ(size, is64Bit ? sizeWith64 : sizeWith32) << name;
    }
}

TEST(CmpiTypes, SignsAreAsTheNamesSay) {
    EXPECT_LT(static_cast<CMPISint8>(-1), 0);
    EXPECT_LT(static_cast<CMPISint16>(-1), 0);
    EXPECT_GT(static_cast<CMPIUint8>(-1), 0);
    EXPECT_GT(static_cast<CMPIUint16>(-1), 0);
    EXPECT_EQ(static_cast<CMPIBoolean>(-1), 255);
}

TEST(CmpiTypes, CodesAreThoseOfTheInterface) {
    const struct {
        unsigned code, expected;
    } codes[] = {
        {CMPI_null, 0},
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
        {CMPI_FLAG_IncludeClassOrigin, 8},
    };
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
    const struct {
        CMPIrc rc;
        const CMPIString *message;
    } expected[] = {
        {CMPI_RC_ERR_NOT_FOUND, nullptr},
        {CMPI_RC_ERR_FAILED, nullptr},
        {CMPI_RC_ERR_ACCESS_DENIED, &madeString},
    };
    for (int which = 0; which < 3; ++which) {
        const CMPIStatus status = returnedInC(which, &broker);
        EXPECT_EQ(status.rc, expected[which].rc);
        EXPECT_EQ(status.msg, expected[which].message);
    }
    EXPECT_EQ(madeFrom, "no");
}

} // namespace
