// Lists of modifiable properties, values that go into variables by their type, and the flow of ModifyInstance
// for the classes that need their current instance.
#include "Utilities/PH_OEM_ModifiableProperties.h"
#include "support/fixture.h"

#include <cstring>
#include <iterator>

namespace {

constexpr std::uint16_t list_variable = 0x7001;
constexpr std::uint16_t text_variable = 0x7002;

struct ModifyCSVProperty : ServiceProcessorTest {
    ModifyCSVProperty() : caller(request()) { EXPECT_EQ(PH_OEM_CreateIPMISession(&session), 0); }
    ~ModifyCSVProperty() override { PH_OEM_CloseIPMISession(&session); }

    // The variable becomes a list of numbers of a width.
    static void makeList(int width, int entries = 1) {
        sp::sql("DELETE FROM configuration_variable WHERE id = " + std::to_string(list_variable));
        for (int i = 0; i < entries; ++i) {
            sp::sql("INSERT INTO configuration_variable VALUES(" + std::to_string(list_variable) + ", " +
                    std::to_string(i) + ", 'test', " + std::to_string(width) + ", 77)");
        }
    }
    static std::string stored(int id = list_variable) {
        std::string text;
        for (const auto &row : sp::sql("SELECT value FROM configuration_variable WHERE id = " +
                                       std::to_string(id) + " ORDER BY list_index")) {
            text += (text.empty() ? "" : ",") + row.at(0);
        }
        return text;
    }
    CMPIData data(CMPIType type, const std::vector<std::string> &texts) {
        CMPIData value{};
        std::string error;
        EXPECT_TRUE(broker::parseValue(*caller, type, texts, value, error)) << error;
        return value;
    }
    int modify(CMPIType type, const std::vector<std::string> &texts, std::uint16_t id = list_variable) {
        return PH_OEM_ModifyCSVProperty(cmpi(), &session, data(type, texts), id);
    }

    broker::RequestPointer caller;
    IpmiSession session{};
};

TEST_F(ModifyCSVProperty, AScalarIsWrittenByItsType) {
    const std::tuple<CMPIType, int, const char *, const char *> cases[] = {
        {CMPI_boolean, 1, "true", "1"},
        {CMPI_uint8, 1, "200", "200"},
        {CMPI_uint16, 2, "65535", "65535"},
        {CMPI_uint32, 4, "4294967295", "4294967295"},
    };
    for (const auto &[type, width, text, expected] : cases) {
        makeList(width);
        EXPECT_EQ(modify(type, {text}), 0);
        EXPECT_EQ(stored(), expected);
    }
    makeList(1);
    const CMPIData odd = {CMPI_boolean, CMPI_goodValue, {.boolean = 5}};
    EXPECT_EQ(PH_OEM_ModifyCSVProperty(cmpi(), &session, odd, list_variable), 0);
    EXPECT_EQ(stored(), "1") << "any true value is 1";
}

TEST_F(ModifyCSVProperty, ATextGoesWithoutItsEndAndItsLengthIsCutTo8Bits) {
    const auto storedLength = [&](std::size_t length) {
        sp::sql("DELETE FROM configuration_variable WHERE id = 0x7002; INSERT INTO "
                "configuration_variable(id, name, "
                "width, value) VALUES(0x7002, 'test', 2000, 'old')");
        EXPECT_EQ(modify(CMPI_string, {std::string(length, 't')}, text_variable), 0);
        return stored(text_variable).size();
    };
    EXPECT_EQ(storedLength(4), 4U);
    EXPECT_EQ(storedLength(255), 255U);
    EXPECT_EQ(storedLength(256), 0U);
    EXPECT_EQ(storedLength(300), 44U);
}

TEST_F(ModifyCSVProperty, AnArrayWritesItsEntriesAndLeavesTheOthers) {
    makeList(2, 5);
    EXPECT_EQ(modify(CMPI_uint16A, {"1", "2", "3"}), 0);
    EXPECT_EQ(stored(), "1,2,3,77,77");
    makeList(1, 3);
    EXPECT_EQ(modify(CMPI_booleanA, {"true", "false"}), 0);
    EXPECT_EQ(stored(), "1,0,77");
    EXPECT_EQ(modify(CMPI_uint8A, {"9"}), 0);
    EXPECT_EQ(stored(), "9,0,77");
    CMPIArray *empty = CMNewArray(cmpi(), 0, CMPI_uint8, nullptr);
    EXPECT_EQ(PH_OEM_ModifyCSVProperty(cmpi(), &session, {CMPI_uint8A, CMPI_goodValue, {.array = empty}},
                                       list_variable),
              0);
    EXPECT_EQ(stored(), "9,0,77") << "an empty array clears nothing";
}

TEST_F(ModifyCSVProperty, EveryFailureIsTraced) {
    makeList(1, 3);
    for (const CMPIType type : {CMPI_sint32, CMPI_uint64, CMPI_dateTime, CMPI_uint32A}) {
        const CMPIData value = {type, CMPI_goodValue, {}};
        EXPECT_EQ(PH_OEM_ModifyCSVProperty(cmpi(), &session, value, list_variable), -1) << type;
    }
    EXPECT_TRUE(traced("Not support type(0xe0) yet"));
    EXPECT_EQ(PH_OEM_ModifyCSVProperty(cmpi(), &session, {CMPI_uint8, CMPI_nullValue, {}}, list_variable),
              -1);
    EXPECT_TRUE(traced("Failed to get value from the parameter"));
    sp::fail("ZBR_CIM_SetConfigSpaceVariables", {.at = 1, .result = 0x1C0});
    EXPECT_EQ(modify(CMPI_uint8, {"1"}), -1);
    EXPECT_TRUE(traced("Failed to set csv value (id=0x7001, ret=0x1c0)"));
    sp::fail("ZBR_CIM_SetConfigSpaceVariables", {.at = 2, .result = 0x1C0});
    EXPECT_EQ(modify(CMPI_uint8A, {"1", "2", "3"}), -1);
    EXPECT_TRUE(traced("Failed to set csv value (id=0x7001, index=0x1 ret=0x1c0)"));
    EXPECT_EQ(stored(), "1,77,77") << "elements before the failure stay written";
}

TEST_F(ModifyCSVProperty, NamesAreCopiedIntoTheirEntries) {
    ModifiablePropertyList list{};
    const std::string longName(80, 'n');
    const char *const names[] = {"First", longName.c_str()};
    PH_OEM_SetPropertyList(&list, names, 2);
    EXPECT_EQ(list.count, 2);
    EXPECT_STREQ(list.entries[0].name, "First");
    EXPECT_STREQ(list.entries[1].name, std::string(63, 'n').c_str());
    PH_OEM_AddTo_DefaultList(&list, "Last", 63);
    EXPECT_STREQ(list.entries[63].name, "Last");
    PH_OEM_AddTo_DefaultList(&list, "Beyond", 64);
    PH_OEM_AddTo_DefaultList(&list, "Before", -1);
    std::vector<const char *> many(100, "Name");
    PH_OEM_SetPropertyList(&list, many.data(), 100);
    EXPECT_EQ(list.count, 64);
}

} // namespace
