#include "Utilities/PH_OEM_SystemNames.h"
#include "Utilities/PH_OEM_Utilities.h"
#include "support/fixture.h"

#include <cstring>

namespace {

struct PH_OEM_SystemNames : ServiceProcessorTest {
    static void fruRows(const std::vector<std::pair<int, std::string>> &entitiesAndSerials) {
        sp::sql("DELETE FROM fru");
        int device = 0;
        for (const auto &[entity, serial] : entitiesAndSerials) {
            sp::sql("INSERT INTO fru(DeviceId, EntityId, ProductSerialNumber) VALUES(" +
                    std::to_string(device++) + "," + std::to_string(entity) + ",'" + serial + "')");
        }
    }
    static std::string baseServerName() {
        char name[256] = "";
        EXPECT_EQ(PH_OEM_GetBaseServerName(name, sizeof name), 0);
        return name;
    }
};

TEST_F(PH_OEM_SystemNames, TheBaseServerIsCalledByTheSerialOfItsFirstChassisRow) {
    fruRows({{7, "BOARD"}, {24, "FIRST"}, {23, "SECOND"}});
    EXPECT_EQ(baseServerName(), "FIRST");
    fruRows({{7, "BOARD"}, {23, "SECOND"}, {24, "FIRST"}});
    EXPECT_EQ(baseServerName(), "SECOND");
    fruRows({{23, std::string(300, 's')}});
    EXPECT_EQ(baseServerName(), std::string(255, 's'));
}

TEST_F(PH_OEM_SystemNames, WithoutASerialNumberTheServerIsUnknown) {
    const std::string unknown = "- unknown -";
    fruRows({{7, "BOARD"}});
    EXPECT_EQ(baseServerName(), unknown);
    fruRows({});
    EXPECT_EQ(baseServerName(), unknown);
    fruRows({{23, ""}});
    EXPECT_EQ(baseServerName(), unknown);
    fruRows({{23, "SERIAL"}});
    sp::fail("db_init");
    EXPECT_EQ(baseServerName(), unknown);
    EXPECT_TRUE(traced("Failed to get valid serial number"));
}

TEST_F(PH_OEM_SystemNames, ABufferThatIsTooSmallIsRefusedBeforeAnythingIsOpened) {
    char name[256] = "kept";
    EXPECT_EQ(PH_OEM_GetChassisSerialNumber(name, 255), -1);
    EXPECT_EQ(sp::calls("db_init"), 0);
    EXPECT_EQ(PH_OEM_GetServiceProcessorName(name, 255), -1);
    EXPECT_EQ(wraps::calls(wraps::Open), 0);
    EXPECT_STREQ(name, "kept");
    EXPECT_EQ(PH_OEM_GetServiceProcessorName(name, 256), 0);
    EXPECT_EQ(sp::sql("SELECT SystemName FROM service_processor")[0][0], name);
    char tiny[6] = "";
    EXPECT_EQ(PH_OEM_GetBaseServerName(tiny, sizeof tiny), 0);
    EXPECT_STREQ(tiny, "- unk");
}

TEST_F(PH_OEM_SystemNames, TheServiceProcessorsNameFailsWithTheHelperLibrary) {
    char name[256] = "";
    wraps::fail(wraps::Open, 1);
    EXPECT_EQ(PH_OEM_GetServiceProcessorName(name, sizeof name), -1);
    wraps::fail(wraps::Symbol, 1);
    EXPECT_EQ(PH_OEM_GetServiceProcessorName(name, sizeof name), -1);
    sp::fail("PH_GetSPSystemName", {.result = -1});
    EXPECT_EQ(PH_OEM_GetServiceProcessorName(name, sizeof name), -1);
    sp::clear_faults();
    sp::fail("PH_GetSPSystemName", {.result = -2});
    EXPECT_EQ(PH_OEM_GetServiceProcessorName(name, sizeof name), 0) << "only -1 is a failure";
}

// --- Host name

struct HostName : PH_OEM_SystemNames {
    HostName() {
        EXPECT_EQ(PH_OEM_CreateIPMISession(&session), 0);
        setVariable(0x1430, "'network'");
        setVariable(0x1431, "0");
        setVariable(0x1432, "'-x'");
        setVariable(0x1433, "1");
        setVariable(0x1434, "1");
        setVariable(0x0201, "'host'");
        sp::sql("UPDATE lan_channel SET MACAddress = X'0A0A0A0A0B0C' WHERE Channel = 2");
    }
    ~HostName() override { PH_OEM_CloseIPMISession(&session); }

    std::string hostName(int size = 256) {
        DNSGeneralSettingRecord settings{};
        PH_OEM_GetDNSGeneralSettingData(&session, &settings);
        std::string name(static_cast<std::size_t>(size) + 1, '#');
        result = PH_OEM_GetHostname(&session, &settings, name.data(), size);
        EXPECT_EQ(name.back(), '#') << "written past the buffer";
        return name.substr(0, strnlen(name.c_str(), static_cast<std::size_t>(size)));
    }

    IpmiSession session{};
    int result = 0;
};

TEST_F(HostName, IsTheBaseNameWithSerialAndExtension) {
    EXPECT_EQ(hostName(), "host0A0B0C-x");
    setVariable(0x1433, "0");
    EXPECT_EQ(hostName(), "host-x");
    setVariable(0x1434, "0");
    EXPECT_EQ(hostName(), "host");
    setVariable(0x1431, "7");
    EXPECT_EQ(hostName(), "network") << "any value but 0 uses the network name";
}

TEST_F(HostName, StaysInItsBufferAndFailsWithTheHostsOwnNameAlone) {
    EXPECT_EQ(hostName(8), "host0A0");
    EXPECT_EQ(hostName(4), "hos");
    EXPECT_EQ(hostName(1), "");
    EXPECT_EQ(result, 0);
    setVariable(0x1431, "1");
    setVariable(0x1430, "'" + std::string(300, 'n') + "'");
    EXPECT_EQ(hostName(), std::string(255, 'n'));
    EXPECT_EQ(hostName(300), std::string(255, 'n') + "0A0B0C-x");
    sp::sql("DELETE FROM configuration_variable WHERE id = 0x0201");
    setVariable(0x1431, "0"); // the host's own name, which can't be read
    EXPECT_EQ(hostName(), "");
    EXPECT_EQ(result, -1);
}

TEST_F(HostName, AVariableThatCannotBeReadIsTracedAndLeftEmpty) {
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 5}); // ConfBMCNetworkName, the last of the five
    DNSGeneralSettingRecord settings{};
    PH_OEM_GetDNSGeneralSettingData(&session, &settings);
    EXPECT_STREQ(settings.ConfBMCNetworkName, "");
    EXPECT_STREQ(settings.ConfBMCNameExtension, "-x");
    EXPECT_TRUE(
        traced("failed to get the ConfBMCNetworkName value for the target instance (ret=0x 1ff, cc=0xff)"));
    sp::fail("CIM_Get_MACAddress");
    PH_OEM_GetDNSGeneralSettingData(&session, &settings);
    EXPECT_STREQ(settings.DNSSuffixesToAppend[0], "000000");
    EXPECT_TRUE(traced("failed in CIM_Get_MACAddress (ret=0x"));
}

} // namespace
