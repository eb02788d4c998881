#include <arpa/inet.h>

#include <cstring>

#include "libCIMVendorHooks.h"
#include "libzbr_LCM.h"
#include "libzbr_cim.h"
#include "sample_server.h"

namespace {

std::string value_of(const std::string &query) {
    return sp::sql(query).at(0).at(0);
}

TEST_F(SessionOpen, TellsTheStateOfTheServer) {
    uint8_t led = 0, control = 0, blade = 9, flash = 9;
    sp::sql(
        "UPDATE service_processor SET ErrorLED = 3; UPDATE misc_control SET Value = 7 WHERE Control = 15");
    EXPECT_EQ(ZBR_CIM_GetErrorLED(&session, &led, 30), 0);
    EXPECT_EQ(led, 3);
    EXPECT_EQ(ZBR_CIM_GetMiscControl(&session, 15, &control, 30), 0);
    EXPECT_EQ(control, 7);
    EXPECT_EQ(ZBR_CIM_GetMiscControl(&session, 14, &control, 30), 0x1CB);
    for (const bool is_blade : {true, false}) {
        sp::make_blade(is_blade);
        EXPECT_EQ(ZBR_CIM_IsBladeSystem(&session, &blade, 30), 0);
        EXPECT_EQ(blade, is_blade);
    }
    EXPECT_EQ(ZBR_CIM_SetBIOSRecoveryFlash(&session, 1, 30), 0);
    EXPECT_EQ(ZBR_CIM_GetBIOSRecoveryFlash(&session, &flash, 30), 0);
    EXPECT_EQ(flash, 1);
    EXPECT_EQ(ZBR_CIM_ResetPowerOnHours(&session, 30), 0);
    EXPECT_EQ(value_of("SELECT Counter FROM power_on_hours"), "0");
}

TEST_F(SessionOpen, TellsPowerStateApartFromTheRestorePolicy) {
    for (const auto &[stored, on] : {std::pair{0x60, 0}, {0x61, 1}, {0x01, 1}, {0x00, 0}}) {
        sp::sql("UPDATE chassis_status SET CurrentPowerState = " + std::to_string(stored));
        ChassisStatus status;
        memset(&status, 0x55, sizeof status);
        EXPECT_EQ(LIBIPMI_HL_GetChassisStatus(&session, 30, &status), 0);
        EXPECT_EQ(status.PowerState, on);
    }
}

TEST_F(SessionOpen, TellsTheAddressesOfALanChannel) {
    uint8_t mac[6] = {};
    uint32_t address = 0;
    char text[INET_ADDRSTRLEN];
    EXPECT_EQ(CIM_Get_MACAddress(&session, mac, 2, 30), 0);
    EXPECT_EQ(memcmp(mac, "\x02\x63\xA7\x0A\x0B\x0C", sizeof mac), 0);
    EXPECT_EQ(LIBIPMI_HL_GetIPv4Address(&session, &address, 2, 30), 0);
    EXPECT_STREQ(inet_ntop(AF_INET, &address, text, sizeof text), "192.0.2.21");
    EXPECT_EQ(CIM_Get_MACAddress(&session, mac, 9, 30), 0x1CB);
    EXPECT_EQ(LIBIPMI_HL_GetIPv4Address(&session, &address, 9, 30), 0x1CB);
    sp::sql("UPDATE lan_channel SET IPv4Address = 'dhcp'");
    EXPECT_EQ(LIBIPMI_HL_GetIPv4Address(&session, &address, 2, 30), 0x1FF);
}

TEST_F(SessionOpen, KeepsTheScheduleOfABladeApartFromTheOtherOne) {
    uint16_t on = 0, off = 0;
    EXPECT_EQ(ZBR_CIM_SetPowerOnOffTime(&session, 6, 600, 0xFFFF, 30), 0);
    EXPECT_EQ(ZBR_CIM_GetPowerOnOffTime(&session, 6, &on, &off, 30), 0);
    EXPECT_TRUE(on == 600 && off == 0xFFFF);
    EXPECT_EQ(ZBR_CIM_GetPowerOnOffTime(&session, 5, &on, &off, 30), 0);
    EXPECT_TRUE(on == 480 && off == 960);
    EXPECT_EQ(value_of("SELECT value FROM configuration_variable WHERE id = 0x00A0 AND list_index = 6"),
              "65535");
    EXPECT_EQ(ZBR_CIM_GetPowerOnOffTime(&session, 7, &on, &off, 30), 0x1CB);
    EXPECT_EQ(ZBR_CIM_SetPowerOnOffTime(&session, 7, 1, 2, 30), 0x1CB);
}

TEST_F(SessionOpen, TellsTheMaximumSpeedOfAFan) {
    uint32_t measured = 0, reference = 0;
    EXPECT_NE(ZBR_CIM_ReadMaximumSpeed(&session, 0x23, &measured, &reference, 30), 0);
    EXPECT_TRUE(measured == 13800 && reference == 15000);
    EXPECT_EQ(ZBR_CIM_ReadMaximumSpeed(&session, 0x30, &measured, &reference, 30), 0);
}

TEST_F(SessionOpen, FindsASensorsVariablesByItsNumber) {
    sp::sql("UPDATE configuration_variable SET value = 0x0100 + list_index WHERE id = 0x0072");
    uint8_t value[4] = {0x55, 0x55, 0x55, 0x55};
    int size = 2;
    EXPECT_EQ(ZBR_CIM_GetCSVForSensor(&session, 0x0072, 0x25, value, &size, 30), 0);
    EXPECT_EQ(memcmp(value, "\x05\x01\x55\x55", 4), 0);
    const struct {
        uint16_t id;
        uint8_t sensor;
        int size, result;
    } refused[] = {{0x0072, 0x04, 2, 0x1CB}, // has no entry
                   {0x0072, 0xFE, 2, 0x1CB}, // no such sensor
                   {0x7FFE, 0x25, 2, 0x1CB}, // no such variable
                   {0x0072, 0x25, 1, 0x1CA}, // doesn't fit
                   {0x0072, 0x25, -1, 0x2001}};
    for (const auto &request : refused) {
        size = request.size;
        EXPECT_EQ(ZBR_CIM_GetCSVForSensor(&session, request.id, request.sensor, value, &size, 30),
                  request.result);
    }
}

// The agent

struct Parameter {
    int entries = -1;
    LCMParameterEntry *table;
    explicit Parameter(const char *name)
        : table(LCMParam_update(0, "System Information", name, -1, &entries)) {}
    ~Parameter() {
        LCMParamDb_destroyParameterTable(&table, entries);
        EXPECT_EQ(table, nullptr);
    }
};

TEST_F(SampleServer, HandsOutTheAgentsParametersByTheirKind) {
    sp::sql("INSERT INTO agent_parameter VALUES ('System Information', 'Bytes', 1, x'0700FF'), "
            "('System Information', 'Number', 0, 0x0102), ('System Information', 'Empty', 0, ''), "
            "('System Information', 'None', 3, NULL)");
    const struct {
        const char *name;
        uint32_t status;
        std::string bytes;
    } cases[] = {{"ServerHostNameShort", 0, std::string("db-node-21", 11)},
                 {"Bytes", 1, std::string("\x07\x00\xFF", 4)},
                 {"Number", 0, std::string("\x02\x01\x00", 3)},
                 {"Empty", 0, std::string(1, '\0')}};
    for (const auto &expected : cases) {
        const Parameter parameter(expected.name);
        ASSERT_EQ(parameter.entries, 1) << expected.name;
        EXPECT_EQ(parameter.table->Status, expected.status);
        EXPECT_EQ(std::string(static_cast<const char *>(parameter.table->Value), expected.bytes.size()),
                  expected.bytes);
    }
    const Parameter none("None");
    ASSERT_EQ(none.entries, 1);
    EXPECT_EQ(none.table->Status, 3u);
    EXPECT_EQ(none.table->Value, nullptr);
    const Parameter missing("Missing");
    EXPECT_TRUE(missing.entries == 0 && missing.table == nullptr);
}

TEST_F(SampleServer, KnowsNoParametersWithoutAnAgent) {
    EXPECT_NE(OpenMTLIConnection(), -1);
    sp::connect_agent(false);
    EXPECT_EQ(OpenMTLIConnection(), -1);
    EXPECT_EQ(Parameter("ServerHostNameShort").entries, 0);
    sp::connect_agent(true);
    sp::fail("LCMParam_update", {.at = 1});
    EXPECT_EQ(Parameter("ServerHostNameShort").entries, 0);
    sp::fail("LCMParamDb_destroyParameterTable");
    EXPECT_EQ(Parameter("ServerHostNameShort").entries, 1);
}

// Supplies

/// The states of a slot's two status sensors and of its fan, and whether its other sensors can't be read.
std::string supply(int slot) {
    return value_of(
               "SELECT group_concat(State, ' ') FROM power_supply JOIN sensor_reading ON SensorNumber IN "
               "(PresenceSensor, StatusSensor, PresenceSensor - 12) WHERE position = " +
               std::to_string(slot)) +
           " " +
           value_of(
               "SELECT group_concat(Status & 0x20) FROM sensor_reading JOIN full_sdr USING (SensorNumber) "
               "WHERE EntityId = 10 AND EntityInstance = " +
               std::to_string(slot - 1));
}

TEST_F(SampleServer, HasItsPowerSuppliesPulledAndPlugged) {
    EXPECT_EQ(supply(2), "2 1 4 0,0,0");
    sp::plug_power_supply(2, true);
    EXPECT_EQ(supply(2), "2 1 4 0,0,0") << "a unit that is there keeps its fault";
    sp::plug_power_supply(2, false);
    EXPECT_EQ(supply(2), "64 0 1 32,32,32");
    EXPECT_EQ(supply(1), "1 1 2 0,0,0");
    sp::plug_power_supply(2, true);
    EXPECT_EQ(supply(2), "1 1 2 0,0,0");
    sp::plug_power_supply(3, true);
    EXPECT_EQ(supply(3), "1 1 2 0,0,0");
    EXPECT_EQ(error_of([] { sp::plug_power_supply(5, true); }),
              "no slot for power supplies has the number 5: there are 1, 2, 3, 4");
}

} // namespace
