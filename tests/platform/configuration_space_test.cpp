#include "libzbr_cim.h"
#include "stand_ins.h"

namespace {

/// What a read delivers.
struct Read {
    int result;
    uint8_t completion_code;
    std::string bytes;
    bool operator==(const Read &) const = default;
};

struct ConfigurationSpace : SessionOpen {
    Read read(uint16_t id, uint8_t index = 0, uint16_t room = 256) {
        std::string buffer(room + 1u, '#');
        uint8_t completion_code = 0xEE;
        uint16_t length = room;
        const int result = ZBR_CIM_GetConfigSpaceVariables(&session, id, index, &completion_code,
                                                           buffer.data(), &length, 30);
        EXPECT_EQ(buffer.back(), '#') << "written past the caller's buffer";
        buffer.resize(length);
        return {result, completion_code, buffer};
    }
    int write(uint16_t id, const std::string &bytes, uint8_t index = 0) {
        return ZBR_CIM_SetConfigSpaceVariables(&session, id, index, bytes.data(),
                                               static_cast<int>(bytes.size()), 30);
    }
};

using namespace std::string_literals;

TEST_F(ConfigurationSpace, DeliversNumbersLittleEndianAndTextsWithoutAnEnd) {
    const struct {
        const char *width_and_value;
        std::string bytes;
    } cases[] = {{"1, 0xAB", "\xAB"},   {"4, 0x12345678", "\x78\x56\x34\x12"},
                 {"2, -2", "\xFE\xFF"}, {"64, 'host'", "host"},
                 {"64, ''", ""},        {"64, x'00FF'", "\0\xFF"s}};
    for (const auto &[width_and_value, bytes] : cases) {
        sp::sql(
            "INSERT OR REPLACE INTO configuration_variable (id, name, width, value) VALUES (0x7001, 'a', " +
            std::string(width_and_value) + ")");
        EXPECT_EQ(read(0x7001), (Read{0, 0, bytes})) << width_and_value;
    }
}

TEST_F(ConfigurationSpace, CutsATextToTheBufferButRefusesToCutANumber) {
    EXPECT_EQ(read(0x0201, 0, 3), (Read{0, 0, "db-"}));
    EXPECT_EQ(read(0x0032, 0, 2).result, 0);
    EXPECT_EQ(read(0x0032, 0, 1), (Read{0x1CA, 0xCA, ""}));
}

TEST_F(ConfigurationSpace, TellsTheEndOfAListFromAMissingVariable) {
    sp::sql("INSERT INTO configuration_variable (id, list_index, name, width, value) VALUES "
            "(0x7001, 0, 'l', 1, 5), (0x7001, 1, 'l', 1, 6)");
    EXPECT_EQ(read(0x7001, 1), (Read{0, 0, "\x06"}));
    EXPECT_EQ(read(0x7001, 2), (Read{0x113, 0x13, ""}));
    EXPECT_EQ(read(0x7FFE), (Read{0x1CB, 0xCB, ""}));
    EXPECT_EQ(write(0x7001, "x", 2), 0x113);
    EXPECT_EQ(write(0x7FFE, "x"), 0x1CB);
}

TEST_F(ConfigurationSpace, KeepsWhatIsWrittenInTheFormOfTheStoreAndRefusesAnotherWidth) {
    const struct {
        uint16_t id; // a number of 2 bytes, and a text of at most 64
        std::string bytes;
        int result;
        std::string kept;
    } cases[] = {{0x0032, "\x34\x92", 0, "integer 37428"},
                 {0x0032, "\x01", 0x1C7, "integer 37428"},
                 {0x0032, "\x01\x02\x03", 0x1C7, "integer 37428"},
                 {0x0201, "other", 0, "text other"},
                 {0x0201, "", 0, "text "},
                 {0x0201, std::string(64, 'x'), 0, "text " + std::string(64, 'x')},
                 {0x0201, std::string(65, 'y'), 0x1C8, "text " + std::string(64, 'x')}};
    for (const auto &[id, bytes, result, kept] : cases) {
        EXPECT_EQ(write(id, bytes), result) << bytes;
        EXPECT_EQ(sp::sql("SELECT typeof(value) || ' ' || value FROM configuration_variable WHERE id = " +
                          std::to_string(id))[0][0],
                  kept);
    }
    EXPECT_NE(ZBR_CIM_SetConfigSpaceVariables(&session, 0x0201, 0, "x", -1, 30), 0);
    EXPECT_NE(ZBR_CIM_SetConfigSpaceVariables(&session, 0x0201, 0, nullptr, 1, 30), 0);
}

TEST_F(ConfigurationSpace, ReportsATellTaleCompletionCodeWhenToldToFail) {
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 1, .result = 0x1D4});
    EXPECT_EQ(read(0x0032), (Read{0x1D4, 0xD4, ""}));
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 1, .result = 0x2001});
    EXPECT_EQ(read(0x0032), (Read{0x2001, 0xEE, ""}));
}

} // namespace
