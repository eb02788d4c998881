#include <cstring>

#include "libzbr_cim.h"
#include "sample_server.h"

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
    int write(uint16_t id, uint8_t index, const std::string &bytes) {
        return ZBR_CIM_SetConfigSpaceVariables(&session, id, index, bytes.data(),
                                               static_cast<int>(bytes.size()), 30);
    }
};

using namespace std::string_literals;

TEST_F(ConfigurationSpace, DeliversNumbersLittleEndianAndTextsWithoutAnEnd) {
    sp::sql("INSERT INTO configuration_variable (id, name, width, value) VALUES (0x7001, 'a', 1, 0xAB), "
            "(0x7002, 'b', 2, 0x1234), (0x7003, 'c', 4, 0x12345678), (0x7004, 'd', 64, 'host'), "
            "(0x7005, 'e', 64, ''), (0x7006, 'f', 4, -2), (0x7007, 'g', 64, x'00FF')");
    EXPECT_EQ(read(0x7001), (Read{0, 0, "\xAB"}));
    EXPECT_EQ(read(0x7002), (Read{0, 0, "\x34\x12"}));
    EXPECT_EQ(read(0x7003), (Read{0, 0, "\x78\x56\x34\x12"}));
    EXPECT_EQ(read(0x7004), (Read{0, 0, "host"}));
    EXPECT_EQ(read(0x7005), (Read{0, 0, ""}));
    EXPECT_EQ(read(0x7006), (Read{0, 0, "\xFE\xFF\xFF\xFF"}));
    EXPECT_EQ(read(0x7007), (Read{0, 0, "\0\xFF"s}));
}

TEST_F(ConfigurationSpace, CutsATextToTheBufferButRefusesToCutANumber) {
    EXPECT_EQ(read(0x0201, 0, 3), (Read{0, 0, "db-"}));
    EXPECT_EQ(read(0x0032, 0, 2).result, 0);
    EXPECT_EQ(read(0x0032, 0, 1), (Read{0x1CA, 0xCA, ""}));
}

TEST_F(ConfigurationSpace, TellsTheEndOfAListFromAMissingVariable) {
    sp::sql("INSERT INTO configuration_variable (id, list_index, name, width, value) VALUES (0x7001, 0, 'l', "
            "1, 5), "
            "(0x7001, 1, 'l', 1, 6)");
    EXPECT_EQ(read(0x7001, 1), (Read{0, 0, "\x06"}));
    EXPECT_EQ(read(0x7001, 2), (Read{0x113, 0x13, ""}));
    EXPECT_EQ(read(0x7FFE), (Read{0x1CB, 0xCB, ""}));
    EXPECT_EQ(write(0x7001, 2, "x"), 0x113);
    EXPECT_EQ(write(0x7FFE, 0, "x"), 0x1CB);
}

TEST_F(ConfigurationSpace, KeepsWhatIsWrittenInTheFormOfTheStore) {
    EXPECT_EQ(write(0x0032, 0, "\x34\x92"), 0);
    EXPECT_EQ(read(0x0032).bytes, "\x34\x92");
    EXPECT_EQ(sp::sql("SELECT value, typeof(value) FROM configuration_variable WHERE id = 0x0032").front(),
              (std::vector<std::string>{"37428", "integer"}));
    EXPECT_EQ(write(0x0201, 0, "other"), 0);
    EXPECT_EQ(sp::sql("SELECT value, typeof(value) FROM configuration_variable WHERE id = 0x0201").front(),
              (std::vector<std::string>{"other", "text"}));
    EXPECT_EQ(write(0x0201, 0, ""), 0);
    EXPECT_EQ(read(0x0201).bytes, "");
}

TEST_F(ConfigurationSpace, RefusesAValueOfAnotherWidth) {
    EXPECT_EQ(write(0x0032, 0, "\x01"), 0x1C7);
    EXPECT_EQ(write(0x0032, 0, "\x01\x02\x03"), 0x1C7);
    EXPECT_EQ(write(0x0201, 0, std::string(64, 'x')), 0);
    EXPECT_EQ(write(0x0201, 0, std::string(65, 'y')), 0x1C8);
    EXPECT_EQ(read(0x0201).bytes, std::string(64, 'x')) << "a refused write changes nothing";
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
