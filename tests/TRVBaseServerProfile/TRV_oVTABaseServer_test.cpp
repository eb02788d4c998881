#include "TRVBaseServerProfile/TRV_oVTABaseServer.h"
#include "support/fixture.h"

namespace {

struct BaseServer : ServiceProcessorTest {
    // A property of the one instance.
    std::string shown(const char *property) {
        const Reply reply = enumerate("BaseServer");
        EXPECT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        return reply.size() == 1 ? reply.value(0, property) : "(no instance)";
    }
    std::string serverPath() { return broker::textOfPath(names("BaseServer").answer.paths.at(0)).substr(8); }
};

TEST_F(BaseServer, UrlsAreMadeOfSchemeHostAndPort) {
    setVariable(0x1431, "1"); // the host name is the network name
    setVariable(0x1430, "'sp'");
    setVariable(0x144D, "'example.net'");
    sp::sql("UPDATE lan_channel SET IPv4Address = '192.0.2.21' WHERE Channel = 2");
    setVariable(0x1A25, "x'FD000042000100000000000000000021'", 2);
    setVariable(0x1425, "0");
    setVariable(0x1420, "8080");
    const auto expectUrls = [&](const std::string &scheme, const std::string &port) {
        EXPECT_EQ(shown("AdminURLDNS"), scheme + "://sp.example.net:" + port + "/");
        EXPECT_EQ(shown("AdminURLIPv4"), scheme + "://192.0.2.21:" + port + "/");
        EXPECT_EQ(shown("AdminURLIPv6"), scheme + "://[fd00:42:1::21]:" + port + "/");
    };
    expectUrls("http", "8080");
    EXPECT_EQ(shown("ManagementIPAddress"), "192.0.2.21");
    setVariable(0x1425, "1");
    setVariable(0x1421, "443");
    expectUrls("https", "443");
}

TEST_F(BaseServer, WithoutAnAddressItsUrlIsEmpty) {
    setVariable(0x1A24, "3", 2); // no unique local address
    EXPECT_EQ(shown("AdminURLIPv6"), "");
    EXPECT_TRUE(traced("IPv6 Unique Local address is not found"));
    setVariable(0x1A24, "9", 2);
    setVariable(0x1A22, "0");
    EXPECT_EQ(shown("AdminURLIPv6"), "");
    EXPECT_TRUE(traced("IPv6 is disabled"));
}

TEST_F(BaseServer, AUrlIsFormedEvenIfItsPartsCannotBeRead) {
    sp::sql("DELETE FROM configuration_variable WHERE id IN (0x144D, 0x1425, 0x1420, 0x1421)");
    setVariable(0x1431, "1");
    setVariable(0x1430, "'sp'");
    EXPECT_EQ(shown("AdminURLDNS"), "http://sp.:0/");
    EXPECT_TRUE(traced("failed to get the ConfBMCDNSDomain value (ret=0x 1cb, cc=0xcb)"));
}

TEST_F(BaseServer, TimesAndReasonsComeFromOemCommands) {
    sp::sql("UPDATE chassis_status SET LastBootTime = 1000, LastPowerOnReason = 3, LastPowerOffReason = 4");
    EXPECT_EQ(shown("LastBootTime"), "19700101001640.000000+000");
    EXPECT_EQ(shown("LastPowerOnReason"), "3");
    EXPECT_EQ(shown("LastPowerOffReason"), "4");
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command");
    EXPECT_EQ(shown("LastPowerOnReason") + ' ' + shown("LastPowerOffReason"), "255 255");
    EXPECT_EQ(shown("LastBootTime"), "19700101000000.000000+000");
}

TEST_F(BaseServer, StatusFollowsTheErrorLED) {
    sp::fail("ZBR_CIM_GetErrorLED", {.at = 0, .result = 203});
    EXPECT_EQ(shown("Status"), "Unknown");
    EXPECT_EQ(shown("HealthState"), "0");
    EXPECT_EQ(shown("PrimaryStatus"), "0");
    EXPECT_TRUE(traced("Get Error LED failed 203"));
    sp::clear_faults();
    EXPECT_EQ(shown("HealthState"), "5");
    EXPECT_EQ(shown("PrimaryStatus"), "1");
}

TEST_F(BaseServer, IdentifyingInformationComesFromThreePlaces) {
    sp::sql("UPDATE system_info SET GUID = 'guid'; UPDATE fru SET ProductSerialNumber = 'serial' WHERE "
            "DeviceId = 2");
    setVariable(0x0210, "'tag'");
    EXPECT_EQ(shown("OtherIdentifyingInfo"), "{guid, serial, tag}");
    EXPECT_EQ(shown("IdentifyingDescriptions"), "{CIM:GUID, CIM:Model:SerialNumber, CIM:Tag}");
    EXPECT_EQ(shown("OtherDedicatedDescriptions"), "{}") << "one empty text";
    // An empty text keeps its place in the record; the list of the property ends at a missing one only.
    sp::fail("zbr_oemdb_get_sys_info");
    sp::sql("UPDATE frudevice_sdr SET FruDeviceId = 9 WHERE FruDeviceId = 2");
    EXPECT_EQ(shown("OtherIdentifyingInfo"), "{, , tag}");
    EXPECT_TRUE(traced("fru device sdr data is not present in cim db"));
}

TEST_F(BaseServer, TheAgentNamesTheHost) {
    const auto agent = [](const char *name, const char *column, const char *value) {
        sp::sql(std::string("UPDATE agent_parameter SET ") + column + " = " + value + " WHERE Name = '" +
                name + "'");
    };
    sp::sql("UPDATE service_processor SET AgentConnected = 1");
    agent("ServerHostNameShort", "Value", "'agent-name'");
    agent("UMServerStatus", "Value", "x'07'");
    EXPECT_EQ(shown("ElementName"), "agent-name");
    EXPECT_EQ(shown("ServerUpdateStatus"), "7");
    agent("ServerHostNameShort", "Value", ("'" + std::string(100, 'h') + "'").c_str());
    EXPECT_EQ(shown("ElementName"), std::string(64, 'h'));
    agent("ServerHostNameShort", "Status", "2");
    EXPECT_EQ(shown("ElementName"), "- unknown -");
    EXPECT_TRUE(
        traced("failed to read an entry for System Information.ServerHostNameShort in LCM DB (status=0x02)"));
    agent("UMServerStatus", "Value", "NULL");
    EXPECT_EQ(shown("ServerUpdateStatus"), "0");
    EXPECT_TRUE(traced("output is NULL for System Information.UMServerStatus in LCM DB (status=0x00)"));
    sp::sql("DELETE FROM agent_parameter");
    EXPECT_EQ(shown("ElementName"), "- unknown -");
    EXPECT_TRUE(traced("no entry for System Information.ServerHostNameShort in LCM DB"));
    sp::sql("UPDATE service_processor SET AgentConnected = 0");
    setVariable(0x0201, "'configured'");
    EXPECT_EQ(shown("ElementName"), "configured");
}

TEST_F(BaseServer, WithoutTheHelperLibrarysRowThereIsNoInstanceAndNoFailure) {
    const auto isEmpty = [&] {
        const Reply reply = enumerate("BaseServer");
        return reply.answer.rc == CMPI_RC_OK && reply.size() == 0;
    };
    wraps::fail(wraps::Open, 1);
    EXPECT_TRUE(isEmpty());
    for (const int nth : {1, 2}) {
        wraps::fail(wraps::Symbol, nth);
        EXPECT_TRUE(isEmpty()) << nth;
    }
    sp::fail("PH_Enum_All_HostComputerSystem");
    EXPECT_TRUE(isEmpty());
    EXPECT_TRUE(traced("Number of instance is not expected (num=0)"));
}

TEST_F(BaseServer, OnlySessionAndMemoryFailTheEnum) {
    EXPECT_EQ(names("BaseServer").size(), 1U);
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0) << "which names don't need";
    const std::string failed = "Failed to Enumerate Instance";
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(enumerate("BaseServer").answer.message, failed);
    sp::clear_faults();
    for (int nth = 1; nth <= 8; ++nth) { // the record and its seven texts
        wraps::fail(wraps::Allocation, nth);
        EXPECT_EQ(enumerate("BaseServer").answer.message, failed) << nth;
    }
}

// --- Methods

TEST_F(BaseServer, EveryWayThatAMethodFailsIsTold) {
    const auto caller = request();
    const CMPIObjectPath *cop = path(*caller, serverPath());
    CMPIArgs *none = CMNewArgs(cmpi(), nullptr);
    const auto call = [&](const char *method, const CMPIObjectPath *target) {
        CapturingResult returned;
        const CMPIStatus status = PH_OEM_IM_BaseServer(cmpi(), nullptr, broker::contextOf(*caller), target,
                                                       method, none, &returned.result, none);
        EXPECT_TRUE(returned.done);
        return std::to_string(returned.value) + ", " + textOf(status);
    };
    EXPECT_EQ(call("Explode", cop), "2, 17 No such method available");
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.at = 0, .result = 0xC0});
    EXPECT_EQ(call("StartFanTest", cop), "2, 1 Send IPMI command failed");
    EXPECT_TRUE(traced("Send IPMI command failed CC=192"));
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(call("StartFanTest", cop), "2, 1 Create IPMI session failed");
    EXPECT_EQ(call("RequestStateChange", path(*caller, "BaseServer")), "2, 1 Key Property Missing");
    wraps::fail(wraps::Open, 1);
    EXPECT_EQ(call("RequestStateChange", cop), "2, 0");
    EXPECT_TRUE(traced("dlopen/dlsym failed errno="));
}

TEST_F(BaseServer, AStateChangeIsHandedOnAndAFanTestStarted) {
    const Reply off = invoke(serverPath(), "RequestStateChange", {{"RequestedState", {"3"}}});
    EXPECT_EQ(off.answer.rc, CMPI_RC_OK) << off.answer.message;
    EXPECT_EQ(broker::textOfValue(off.answer.value), "0");
    EXPECT_EQ(shown("EnabledState"), "3");
    EXPECT_EQ(shown("RequestedState"), "3");
    EXPECT_EQ(broker::textOfValue(invoke(serverPath(), "startfantest").answer.value), "0");
    EXPECT_EQ(sp::sql("SELECT FanTests FROM service_processor")[0][0], "1");
    const Reply unknown = invoke(serverPath(), "RequestStateChange", {{"RequestedState", {"99"}}});
    EXPECT_NE(unknown.answer.rc, CMPI_RC_OK);
    EXPECT_EQ(shown("EnabledState"), "3");
}

} // namespace
