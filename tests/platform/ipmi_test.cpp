#include "ipmi.h"

#include "stand_ins.h"

namespace {

using Data = std::vector<uint8_t>;

/// A command's result and response.
struct Exchange {
    int result;
    Data response;
    bool operator==(const Exchange &) const = default;
};

struct IpmiCommands : SessionOpen {
    Exchange send(uint8_t netFnLun, uint8_t command, const Data &request, uint32_t room = 64) {
        Data response(room + 1, 0xEE);
        uint32_t length = room;
        const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, netFnLun, command, request.data(),
                                                            static_cast<uint32_t>(request.size()),
                                                            response.data(), &length, 30);
        EXPECT_LE(length, room);
        EXPECT_EQ(response.back(), 0xEE) << "written past the caller's buffer";
        response.resize(std::min(length, room));
        return {result, response};
    }
};

TEST_F(IpmiCommands, AnswerWithWhatTheStoreHolds) {
    sp::sql("UPDATE power_on_hours SET MinutesPerCount = 4, Counter = 250;"
            "UPDATE device_id SET DeviceId = 1, DeviceRevision = 2, FirmwareMajor = 3, FirmwareMinor = 0x45, "
            "IpmiVersion = 2, AdditionalDeviceSupport = 0xBF, ManufacturerId = 0x0A0B0C, ProductId = 0x0D0E, "
            "AuxiliaryFirmware = 0x01020304;"
            "UPDATE chassis_status SET LastBootTime = 0x68654321");
    const struct {
        uint8_t netFnLun, command;
        Data request, response;
    } cases[] = {
        {0x00, 0x0F, {}, {0x00, 4, 250, 0, 0, 0}},
        {0x18, 0x01, {}, {0x00, 1, 2, 3, 0x45, 2, 0xBF, 0x0C, 0x0B, 0x0A, 0x0E, 0x0D, 4, 3, 2, 1}},
        {0xB8, 0x01, {0x80, 0x28, 0x00, 0x18}, {0x00, 0x80, 0x28, 0x00, 4, 0x21, 0x43, 0x65, 0x68}},
    };
    for (const auto &[netFnLun, command, request, response] : cases) {
        EXPECT_EQ(send(netFnLun, command, request), (Exchange{0, response}));
    }
    EXPECT_EQ(send(0x00, 0x0F, {}, 3), (Exchange{0, {0x00, 4, 250}})) << "as much as the caller has room for";
    EXPECT_EQ(send(0x00, 0x0F, {}, 0), (Exchange{0, {}}));
    sp::sql("DELETE FROM power_on_hours");
    EXPECT_EQ(send(0x00, 0x0F, {}), (Exchange{0x1CB, {0xCB}}));
}

TEST_F(IpmiCommands, KeepThePowerRestorePolicyBesideThePowerState) {
    const struct {
        Data policy, response;
        std::string state;
    } cases[] = {{{2}, {0x00, 7}, "65"}, {{0}, {0x00, 7}, "1"}, {{1}, {0x00, 7}, "33"},
                 {{3}, {0x00, 7}, "33"}, {{4}, {0xCC}, "33"},   {{}, {0xC7}, "33"}};
    for (const auto &[policy, response, state] : cases) {
        EXPECT_EQ(send(0x00, 0x06, policy).response, response);
        EXPECT_EQ(sp::sql("SELECT CurrentPowerState FROM chassis_status")[0][0], state);
    }
}

TEST_F(IpmiCommands, FailInAllTheWaysThatASendCanFail) {
    const struct {
        sp::Fault fault;
        Exchange exchange;
    } cases[] = {
        {{}, {0x2001, {}}},                   // nothing came back
        {{.result = 0x1C9}, {0x1C9, {0xC9}}}, // answered with a completion code
        {{.result = 0xC9}, {0, {0xC9}}},      // the same, but the send counts as a success
        {{.result = -1}, {-1, {}}},
    };
    for (const auto &[fault, exchange] : cases) {
        sp::clear_faults();
        sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", fault);
        EXPECT_EQ(send(0x00, 0x0F, {}), exchange);
    }
}

// The system event log

constexpr uint8_t storage = 0x28, reserve = 0x42, add = 0x44, clear = 0x47;

/// Clear SEL with a reservation of that id.
Data clearing(uint16_t reservation, uint8_t action = 0xAA) {
    return {static_cast<uint8_t>(reservation), static_cast<uint8_t>(reservation >> 8), 'C', 'L', 'R', action};
}

/// The record of an event of the sensor FAN1 SYS: its speed is below the lower critical threshold.
const Data slow_fan = {0, 0, 2, 0, 0x80, 0x5C, 0x6A, 0x20, 0, 4, 4, 0x80, 0x01, 0x52, 0xFF, 0xFF};

std::string cell(const std::string &query) {
    return sp::sql("SELECT " + query).at(0).at(0);
}

TEST_F(IpmiCommands, ClearTheEventLogForTheLastReservationAlone) {
    sp::sql("UPDATE simulation SET StoppedAt = 1780000000; UPDATE sel_state SET Reservation = 0xFFFE");
    EXPECT_EQ(send(storage, reserve, {}).response, (Data{0, 0xFF, 0xFF}));
    EXPECT_EQ(send(storage, reserve, {}).response, (Data{0, 1, 0})) << "0 stands for none";
    const Data cancelled = {0xC5};
    EXPECT_EQ(send(storage, clear, clearing(0xFFFF)).response, cancelled) << "another reserved it";
    EXPECT_EQ(send(storage, clear, clearing(0)).response, cancelled);
    EXPECT_EQ(send(storage, add, slow_fan).response.front(), 0);
    EXPECT_EQ(send(storage, clear, clearing(1)).response, cancelled) << "an entry came";
    EXPECT_EQ(send(storage, reserve, {}).response, (Data{0, 2, 0}));
    EXPECT_EQ(send(storage, clear, {2, 0, 'C', 'L', 'X', 0xAA}).response, (Data{0xCC}));
    EXPECT_EQ(send(storage, clear, {2, 0, 'C', 'L', 'R'}).response, (Data{0xC7}));
    EXPECT_NE(cell("count(*) FROM sel"), "0");
    EXPECT_EQ(send(storage, clear, clearing(2)).response, (Data{0, 1})) << "erased at once";
    EXPECT_EQ(cell("(SELECT count(*) FROM sel) || ' ' || LastErase FROM sel_state"), "0 1780000000");
    EXPECT_EQ(send(storage, clear, clearing(2)).response, cancelled) << "it was used up";
    sp::sql("UPDATE sel_state SET HasReservations = 0");
    EXPECT_EQ(send(storage, reserve, {}).response, (Data{0xC1}));
    EXPECT_EQ(send(storage, clear, clearing(0)).response, (Data{0, 1}));
}

TEST_F(IpmiCommands, RefuseTheEventLogWhileItIsErased) {
    sp::sql("UPDATE simulation SET StoppedAt = 0x6A18A500; UPDATE sel_state SET LastAddition = 0x11223344, "
            "EraseSeconds = 3, "
            "HasReservations = 0");
    EXPECT_EQ(send(storage, clear, clearing(0)).response, (Data{0, 0})) << "in progress";
    for (const uint8_t command : {uint8_t{0x40}, uint8_t{0x41}, reserve, add}) {
        EXPECT_EQ(send(storage, command, slow_fan).response, (Data{0x81})) << int{command};
    }
    EXPECT_EQ(send(storage, clear, clearing(0, 0)).response, (Data{0, 0}));
    SelInfo info;
    EXPECT_EQ(CIM_GetSELInfo(&session, &info, 30), 0x181);
    sp::sql("UPDATE simulation SET StoppedAt = StoppedAt + 3");
    EXPECT_EQ(send(storage, clear, clearing(0, 0)).response, (Data{0, 1}));
    EXPECT_EQ(send(storage, 0x40, {}).response,
              (Data{0, 0x51, 0, 0, 0xFF, 0xFF, 0x44, 0x33, 0x22, 0x11, 0, 0xA5, 0x18, 0x6A, 1}));
    EXPECT_EQ(send(storage, 0x41, {}).response, (Data{0, 0, 0x10, 16, 0, 0, 0x10, 0, 0x10, 1}));
}

TEST_F(IpmiCommands, AddAnEventOfAKnownKindAndKeepToTheCapacity) {
    sp::sql("DELETE FROM sel WHERE RecordId > 2; UPDATE sel_state SET Capacity = 3");
    EXPECT_EQ(send(storage, add, slow_fan).response, (Data{0, 3, 0}));
    EXPECT_EQ(cell("Message || ' ' || TimeStamp || ' ' || Flags FROM sel_row WHERE RecordId = 3"),
              "Fan speed critical: FAN1 SYS 1784446976 160");
    EXPECT_EQ(send(storage, add, slow_fan).response, (Data{0xC4})) << "it never overwrites";
    sp::sql("UPDATE configuration_variable SET value = 0 WHERE id = 0x0007");
    EXPECT_EQ(send(storage, add, slow_fan).response, (Data{0, 4, 0}));
    EXPECT_EQ(cell("group_concat(RecordId) FROM sel"), "2,3,4");
    Data other = slow_fan;
    other[2] = 0xC0;
    EXPECT_EQ(send(storage, add, other).response, (Data{0xCC})) << "not an event";
}

// Commands that tell which of them was executed, and with what.
template <uint8_t Which> uint8_t echo(sp::RequestData request, sp::ResponseData &response) {
    response.push_back(Which);
    response.insert(response.end(), request.begin(), request.end());
    return Which == 0xD5 ? Which : uint8_t{sp::IpmiOk};
}

constexpr sp::IpmiCommand own_commands[] = {
    {0x2E, 0x01, 0x10, 0, echo<1>},
    {0x2E, 0x01, 0x11, 2, echo<2>},
    {0x2E, 0x03, 0x10, 0, echo<0xD5>},
    {0x06, 0x01, sp::NoSubCommand, 1, echo<3>},
};

TEST(IpmiProcessor, MatchesNetFunctionCommandAndSubCommand) {
    const struct {
        uint8_t net_function, command;
        Data request, response;
    } cases[] = {
        {0x2E, 0x01, {0x80, 0x28, 0x00, 0x10, 0xAA}, {0x00, 0x80, 0x28, 0x00, 1, 0xAA}},
        {0x2E, 0x01, {0x80, 0x28, 0x00, 0x11, 5, 6}, {0x00, 0x80, 0x28, 0x00, 2, 5, 6}},
        {0x06, 0x01, {9}, {0x00, 3, 9}},
        // too short
        {0x2E, 0x01, {0x80, 0x28, 0x00, 0x11, 5}, {0xC7, 0x80, 0x28, 0x00}},
        {0x2E, 0x01, {0x80, 0x28, 0x00}, {0xC7, 0x80, 0x28, 0x00}},
        {0x2E, 0x01, {0x80}, {0xC7}},
        {0x06, 0x01, {}, {0xC7}},
        // unknown sub-command, identification, command, net function
        {0x2E, 0x01, {0x80, 0x28, 0x00, 0x12}, {0xC1, 0x80, 0x28, 0x00}},
        {0x2E, 0x01, {0x81, 0x28, 0x00, 0x10}, {0xC1}},
        {0x2E, 0x02, {0x80, 0x28, 0x00, 0x10}, {0xC1, 0x80, 0x28, 0x00}},
        {0x07, 0x01, {9}, {0xC1}},
        // no data behind a completion code of a command's own
        {0x2E, 0x03, {0x80, 0x28, 0x00, 0x10}, {0xD5, 0x80, 0x28, 0x00}},
    };
    for (const auto &[net_function, command, request, response] : cases) {
        EXPECT_EQ(sp::execute_ipmi(net_function, command, request, own_commands), response);
    }
}

} // namespace
