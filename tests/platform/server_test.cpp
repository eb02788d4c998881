#include "libCIMVendorHooks.h"
#include "libzbr_LCM.h"
#include "stand_ins.h"

namespace {

TEST_F(SessionOpen, TellsNoAddressThatItDoesNotHave) {
    uint8_t mac[6] = {};
    uint32_t address = 0;
    EXPECT_EQ(CIM_Get_MACAddress(&session, mac, 9, 30), 0x1CB);
    EXPECT_EQ(LIBIPMI_HL_GetIPv4Address(&session, &address, 9, 30), 0x1CB);
    sp::sql("UPDATE lan_channel SET IPv4Address = 'dhcp'");
    EXPECT_EQ(LIBIPMI_HL_GetIPv4Address(&session, &address, 2, 30), 0x1FF);
}

/// Status and bytes of one of the agent's parameters; how many entries there are otherwise.
std::string parameter(const char *name, size_t size = 0) {
    int entries = -1;
    LCMParameterEntry *table = LCMParam_update(0, "System Information", name, -1, &entries);
    std::string text = std::to_string(entries);
    if (table != nullptr) {
        const char *value = static_cast<const char *>(table->Value);
        text = std::to_string(table->Status) + (value == nullptr ? " NULL" : ' ' + std::string(value, size));
    }
    LCMParamDb_destroyParameterTable(&table, entries);
    EXPECT_EQ(table, nullptr);
    return text;
}

TEST_F(SampleServer, HandsOutTheAgentsParametersByTheirKindWhileAnAgentIsConnected) {
    sp::sql("INSERT INTO agent_parameter VALUES ('System Information', 'Bytes', 1, x'0700FF'), "
            "('System Information', 'Number', 0, 0x0102), ('System Information', 'None', 3, NULL)");
    using namespace std::string_literals;
    EXPECT_EQ(parameter("ServerHostNameShort", 11), "0 db-node-21\0"s);
    EXPECT_EQ(parameter("Bytes", 4), "1 \x07\0\xFF\0"s);
    EXPECT_EQ(parameter("Number", 3), "0 \x02\x01\0"s);
    EXPECT_EQ(parameter("None"), "3 NULL");
    EXPECT_EQ(parameter("Missing"), "0");
    sp::connect_agent(false);
    EXPECT_EQ(OpenMTLIConnection(), -1);
    EXPECT_EQ(parameter("ServerHostNameShort"), "0");
}

TEST_F(SampleServer, HasItsPowerSuppliesPulledAndPlugged) {
    const auto status = [] {
        return sp::sql("SELECT State FROM power_supply JOIN sensor_reading ON SensorNumber = StatusSensor "
                       "WHERE position = 2")[0][0];
    };
    const std::string fault = status();
    sp::plug_power_supply(2, true);
    EXPECT_EQ(status(), fault) << "a unit that is there keeps its fault";
    sp::plug_power_supply(2, false);
    EXPECT_EQ(status(), "1");
    EXPECT_EQ(sp::sql("SELECT count(*) FROM full_sdr JOIN sensor_reading USING (SensorNumber) WHERE "
                      "EntityId = 10 AND EntityInstance = 0 AND Status & 0x20")[0][0],
              "0")
        << "the sensors of another unit";
    sp::plug_power_supply(2, true);
    EXPECT_EQ(status(), "2");
    EXPECT_NE(fault, "2");
    EXPECT_EQ(error_of([] { sp::plug_power_supply(5, true); }),
              "no slot for power supplies has the number 5: there are 1, 2, 3, 4");
}

} // namespace
