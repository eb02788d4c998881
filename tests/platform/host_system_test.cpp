#include "cmpi_objects.h"
#include "helper_library.h"
#include "sample_server.h"

namespace {

struct Rows {
    HostComputerSystemRow *rows = nullptr;
    int count = -1, result;
    explicit Rows(int names_only) {
        const HelperFunction<PH_Enum_All_HostComputerSystemFunction> enumerate(
            "PH_Enum_All_HostComputerSystem");
        result = enumerate.function(&rows, &count, names_only);
    }
    ~Rows() {
        const HelperFunction<PH_Clean_HostComputerSystemFunction> clean("PH_Clean_HostComputerSystem");
        clean.function(rows, count);
    }
};

TEST_F(SampleServer, HasOneHostSystem) {
    const Rows host(0);
    ASSERT_EQ(host.result, 0);
    ASSERT_EQ(host.count, 1);
    EXPECT_STREQ(host.rows->Name, "MVR7420220815");
    EXPECT_STREQ(host.rows->CreationClassName, "TRV_oVTABaseServer");
    EXPECT_EQ(host.rows->EnabledState, 2);
    EXPECT_EQ(host.rows->RequestedState, 2);
    EXPECT_EQ(host.rows->Dedicated[0], 0);
    EXPECT_EQ(host.rows->Dedicated[1], -1);
    EXPECT_EQ(host.rows->OperationalStatus[0], 2);
    EXPECT_EQ(host.rows->OperationalStatus[1], -1);
    EXPECT_STREQ(host.rows->OtherIdentifyingInfo[0], "DC1-R07-U21");
}

TEST_F(SampleServer, NamesItsHostSystemWithoutItsStates) {
    sp::sql("DELETE FROM chassis_status");
    const Rows names(1);
    ASSERT_EQ(names.result, 0);
    EXPECT_STREQ(names.rows->Name, "MVR7420220815");
    EXPECT_EQ(names.rows->OtherIdentifyingInfo[0], nullptr);
    EXPECT_EQ(Rows(0).result, -1);
}

TEST_F(SampleServer, NamesItsHostSystemByTheChassis) {
    const HelperFunction<PH_GetHostSystemNameFunction> helper("PH_GetHostSystemName");
    char name[SYSTEM_NAME_SIZE];
    for (const auto &[change, expected] :
         {std::pair{"UPDATE fru SET EntityId = 24 WHERE EntityId = 23", "MVR7420220815"},
          {"UPDATE fru SET ProductSerialNumber = ''", "- unknown -"},
          {"DELETE FROM fru", "- unknown -"}}) {
        sp::sql(change);
        EXPECT_EQ(helper.function(name), 0);
        EXPECT_STREQ(name, expected);
        EXPECT_STREQ(Rows(1).rows->Name, expected);
    }
}

TEST_F(SampleServer, GivesNoHostSystemWhenToldToFailOrToLie) {
    sp::lie_about_count("PH_Enum_All_HostComputerSystem", 2);
    EXPECT_EQ(Rows(0).count, 2);
    EXPECT_EQ(Rows(0).rows, nullptr);
    sp::clear_faults();
    sp::lie_about_count("PH_Enum_All_HostComputerSystem", 0);
    EXPECT_NE(Rows(0).rows, nullptr);
    sp::fail("PH_Clean_HostComputerSystem");
    EXPECT_EQ(Rows(0).result, 0);
}

/// What a state change answers.
struct Answer {
    int result;
    std::string status;
    uint32_t value;
    bool operator==(const Answer &) const = default;
};

/// The power state, CIM's requested state, and whether boot time and reasons are new.
std::string power() {
    return sp::sql("SELECT CurrentPowerState || ' ' || RequestedState || iif(LastBootTime != 1000, ' "
                   "booted', '') || "
                   "iif(LastPowerOnReason != 9, ' on', '') || iif(LastPowerOffReason != 9, ' off', '') "
                   "FROM chassis_status")
        .at(0)
        .at(0);
}

Answer request(const std::vector<NamedData> &arguments, const char *name = "MVR7420220815") {
    const HelperFunction<PH_HostRequestStateChangeFunction> helper("PH_HostRequestStateChange");
    BrokerObject broker;
    ResultObject result;
    const ArgsObject in(arguments);
    StringObject class_name("TRV_oVTABaseServer"), own_name(name);
    CMPIString *keys[] = {&class_name, &own_name};
    CMPIStatus status{};
    const int answered = helper.function(&broker, &result, nullptr, &in, nullptr, keys, &status);
    const char *message = status.msg != nullptr ? CMGetCharPtr(status.msg) : "";
    return {answered, std::to_string(status.rc) + message, result.returned};
}

std::vector<NamedData> state(uint16_t requested) {
    return {{"RequestedState", data_of(CMPI_uint16, requested)}};
}

TEST_F(SampleServer, IsBroughtIntoTheStateThatIsAskedFor) {
    const struct {
        int power;
        uint16_t requested;
        uint32_t value;
        std::string after;
    } cases[] = {
        {0x61, 3, 0, "96 3 off"},
        {0x61, 4, 0, "96 4 off"},
        {0x61, 2, 0, "97 2"},
        {0x60, 2, 0, "97 2 booted on"},
        {0x60, 3, 0, "96 3"},
        {0x61, 11, 0, "97 11 booted on off"},
        {0x61, 10, 0, "97 10 booted on off"},
        {0x60, 11, 4097, "96 5"}, // a server that is off can't be reset
    };
    for (const auto &change : cases) {
        sp::sql("UPDATE chassis_status SET RequestedState = 5, LastBootTime = 1000, LastPowerOnReason = 9, "
                "LastPowerOffReason = 9, CurrentPowerState = " +
                std::to_string(change.power));
        EXPECT_EQ(request(state(change.requested)), (Answer{0, "0", change.value}));
        EXPECT_EQ(power(), change.after);
        EXPECT_EQ(Rows(0).rows->EnabledState, change.after[1] == '7' ? 2 : 3);
    }
}

TEST_F(SampleServer, RefusesAStateWithCauseAndWayOut) {
    const std::string before = power();
    EXPECT_EQ(request(state(9)),
              (Answer{-1, "4RequestedState 9 isn't supported: take one of 2,3,4,10,11", 0}));
    EXPECT_EQ(request({}), (Answer{-1, "4RequestedState has no value: give a number as uint16", 0}));
    EXPECT_EQ(request({{"RequestedState", null_of(CMPI_uint16)}}).status[0], '4');
    EXPECT_EQ(request({{"RequestedState", data_of<uint32_t>(CMPI_uint32, 3)}}).status[0], '4');
    EXPECT_EQ(request(state(3), "other"), (Answer{-1, "6the server's name is 'MVR7420220815'", 0}));
    sp::connect_agent(false);
    for (const uint16_t orderly : {uint16_t{4}, uint16_t{10}}) {
        EXPECT_EQ(request(state(orderly)).status.substr(0, 24), "1no agent is connected t");
    }
    const DateTimeObject minute(60000000u, true);
    std::vector<NamedData> timed = state(3);
    timed.push_back({"TimeoutPeriod", data_of<const CMPIDateTime *>(CMPI_dateTime, &minute)});
    EXPECT_EQ(request(timed), (Answer{0, "0", 4098}));
    sp::sql(
        "UPDATE capabilities SET RequestedStatesSupported = '2' WHERE RowName = 'HostSystemCapabilities1'");
    EXPECT_EQ(request(state(3)).status, "4RequestedState 3 isn't supported: take one of 2");
    EXPECT_EQ(power(), before);
}

} // namespace
