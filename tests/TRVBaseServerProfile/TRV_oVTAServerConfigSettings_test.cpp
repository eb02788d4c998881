#include "TRVBaseServerProfile/TRV_oVTAServerConfigSettings.h"
#include "support/fixture.h"

namespace {

constexpr char path_text[] = "ServerConfigSettings.InstanceID=\"TRV:oVTAServerConfigSettings\"";

struct ServerConfigSettings : ServiceProcessorTest {};

TEST_F(ServerConfigSettings, EveryModifiablePropertyIsWrittenToItsPlaceAndShownFromThere) {
    EXPECT_EQ(textOf(modify(path_text, {{"BIOSRecoveryFlash", {"true"}},
                                        {"ConfDisableFanTest", {"true"}},
                                        {"ConfErrorOffRestartTime", {"40000"}},
                                        {"ConfFanDailyTestTime", {"1439"}},
                                        {"ConfPowerCycleDelay", {"200"}},
                                        {"ConfRebootRetryCounter", {"8"}},
                                        {"ConfRetryCounterMax", {"9"}},
                                        {"ConfTempCriticalPowerOff", {"false"}}})
                         .answer),
              "0");
    EXPECT_EQ(sp::sql("SELECT BIOSRecoveryFlash FROM service_processor")[0][0], "1");
    const std::pair<int, const char *> variables[] = {{0x0084, "1"},   {0x0032, "40000"}, {0x0080, "1439"},
                                                      {0x00A2, "200"}, {0x0030, "8"},     {0x0033, "9"},
                                                      {0x0077, "0"}};
    for (const auto &[id, text] : variables) {
        EXPECT_EQ(variable(id), text) << id;
    }
    sp::sql("UPDATE power_on_hours SET MinutesPerCount = 4, Counter = 250");
    const Reply reply = enumerate("ServerConfigSettings");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    const std::pair<const char *, const char *> expected[] = {
        {"InstanceID", "TRV:oVTAServerConfigSettings"},
        {"BIOSRecoveryFlash", "true"},
        {"Caption", "Configuration Space Settings"},
        {"Description", "Collection of important configuration space values for a MARLOVEN server"},
        {"ElementName", "Configuration Space Settings"},
        {"PowerOnCounter", "00000000164000.000000:000"}, // 1000 minutes
        {"ConfDisableFanTest", "true"},
        {"ConfErrorOffRestartTime", "40000"},
        {"ConfFanDailyTestTime", "1439"},
        {"ConfPowerCycleDelay", "200"},
        {"ConfRebootRetryCounter", "8"},
        {"ConfRetryCounterMax", "9"},
        {"ConfTempCriticalPowerOff", "false"},
    };
    std::vector<std::string> order;
    for (const auto &[name, text] : expected) {
        EXPECT_EQ(reply.value(0, name), text) << name;
        order.push_back(name);
    }
    EXPECT_EQ(reply.propertyNames(0), order);
}

TEST_F(ServerConfigSettings, NamesOpenNoSession) {
    EXPECT_EQ(names("ServerConfigSettings").size(), 1U);
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0);
}

TEST_F(ServerConfigSettings, EveryReadIsRequired) {
    const std::tuple<const char *, int, const char *> reads[] = {
        {"ZBR_CIM_GetBIOSRecoveryFlash", 1, "Failed to read BIOS recovery flash status"},
        {"ZBR_CIM_GetConfigSpaceVariables", 1, "Failed to read ConfDisableFanTest"},
        {"ZBR_CIM_GetConfigSpaceVariables", 4, "Failed to read ConfPowerCycleDelay"},
        {"ZBR_CIM_GetConfigSpaceVariables", 7, "Failed to read ConfTempCriticalPowerOff"},
        {"LIBIPMI_Send_RAW_IPMI2_0_Command", 1, "Get POH failed"},
        {"CIM_Create_IPMI20_Session", 0, "Create IPMI session failed"},
    };
    for (const auto &[function, at, line] : reads) {
        sp::fail(function, {.at = at});
        EXPECT_EQ(textOf(enumerate("ServerConfigSettings").answer), "1 Failed to Enumerate Instance") << line;
        EXPECT_TRUE(traced(line));
        sp::clear_faults();
    }
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.at = 0, .result = 0xC1});
    EXPECT_EQ(textOf(enumerate("ServerConfigSettings").answer), "1 Failed to Enumerate Instance");
}

// --- Modify

TEST_F(ServerConfigSettings, WithoutAChangeNothingIsWrittenAndNoFurtherSessionOpened) {
    get(path_text);
    const int sessionsOfARead = sp::calls("CIM_Create_IPMI20_Session");
    sp::start_journal();
    EXPECT_EQ(textOf(modify(path_text, {{"ConfPowerCycleDelay", {variable(0x00A2)}}}).answer), "0");
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), sessionsOfARead)
        << "those that reading the current one takes";
    EXPECT_EQ(sp::calls("ZBR_CIM_SetConfigSpaceVariables"), 0);

    sp::start_journal();
    EXPECT_EQ(
        textOf(
            modify(path_text, {{"InstanceID", {"TRV:oVTAServerConfigSettings"}}}, {{"InstanceID"}}).answer),
        "0");
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0) << "with a property list the current one isn't read";
}

TEST_F(ServerConfigSettings, WhatCannotBeChangedIsRefusedByName) {
    EXPECT_EQ(textOf(modify(path_text, {{"Description", {"x"}}, {"ConfPowerCycleDelay", {"9"}}}).answer),
              "4 Invalid Property: Description ");
    EXPECT_EQ(textOf(modify(path_text, {{"Caption", {"x"}}}, {{"Caption"}}).answer),
              "4 Invalid Property: Caption ");
    EXPECT_EQ(variable(0x00A2), "5") << "nothing was written";
}

TEST_F(ServerConfigSettings, ABadPathIsToldAsItIs) {
    const auto caller = request();
    const CMPIContext *ctx = broker::contextOf(*caller);
    CMPIObjectPath *cop = path(*caller, "ServerConfigSettings");
    const CMPIInstance *inst = CMNewInstance(cmpi(), cop, nullptr);
    EXPECT_EQ(textOf(PH_OEM_MI_ServerConfigSettings(cmpi(), nullptr, ctx, cop, inst, nullptr)),
              "1 Key Property Missing");
    CMAddKey(cop, "InstanceID", reinterpret_cast<const CMPIValue *>("a'b"), CMPI_chars);
    EXPECT_EQ(textOf(PH_OEM_MI_ServerConfigSettings(cmpi(), nullptr, ctx, cop, inst, nullptr)),
              "4 Invalid Key Value");
}

TEST_F(ServerConfigSettings, AFailureOnTheSecondOfThreeWritesLeavesTheFirst) {
    sp::fail("ZBR_CIM_SetConfigSpaceVariables", {.at = 2});
    EXPECT_EQ(textOf(modify(path_text, {{"ConfPowerCycleDelay", {"11"}},
                                        {"ConfRebootRetryCounter", {"12"}},
                                        {"ConfRetryCounterMax", {"13"}}})
                         .answer),
              "1 failed to set the ConfRebootRetryCounter value for the target instance");
    EXPECT_EQ(variable(0x00A2), "11");
    EXPECT_EQ(variable(0x0030), "3");
    EXPECT_EQ(variable(0x0033), "3");
    EXPECT_EQ(sp::calls("ZBR_CIM_SetConfigSpaceVariables"), 2);
}

TEST_F(ServerConfigSettings, AValueThatCannotBeReadIsTold) {
    EXPECT_EQ(
        textOf(modify(path_text, {{"ConfPowerCycleDelay", {"NULL"}}}, {{"ConfPowerCycleDelay"}}).answer),
        "4 failed to get the ConfPowerCycleDelay value for the target instance");
    sp::fail("ZBR_CIM_SetBIOSRecoveryFlash");
    EXPECT_EQ(textOf(modify(path_text, {{"BIOSRecoveryFlash", {"true"}}}).answer),
              "1 failed to set the BIOSRecoveryFlash value for the target instance");
}

TEST_F(ServerConfigSettings, AModifyWithoutASessionIsOnlyTracedAndWithoutTheHelperLibraryRefused) {
    const auto change = [&] {
        return textOf(modify(path_text, {{"ConfPowerCycleDelay", {"9"}}}, {{"ConfPowerCycleDelay"}}).answer);
    };
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(change(), "0");
    EXPECT_TRUE(traced("Create IPMI session failed"));
    wraps::fail(wraps::Open, 1);
    EXPECT_EQ(change(), "4 Invalid Property:  ");
    EXPECT_TRUE(traced("dlopen failed errno="));
    wraps::fail(wraps::Symbol, 1);
    EXPECT_EQ(change(), "4 Invalid Property:  ");
    EXPECT_TRUE(traced("dlsym failed errno="));
    EXPECT_EQ(variable(0x00A2), "5");
}

// --- Methods

TEST_F(ServerConfigSettings, TheCounterIsResetUnderAnyCaseOfTheMethodsName) {
    const Reply reply = invoke(path_text, "resetpoweroncounter");
    EXPECT_EQ(textOf(reply.answer), "0");
    EXPECT_EQ(broker::textOfValue(reply.answer.value), "0");
    EXPECT_EQ(get(path_text).value(0, "PowerOnCounter"), "00000000000000.000000:000");
}

TEST_F(ServerConfigSettings, EveryWayThatAMethodFailsIsTold) {
    const auto caller = request();
    const CMPIObjectPath *cop = path(*caller, path_text);
    CMPIArgs *none = CMNewArgs(cmpi(), nullptr);
    const auto call = [&](const char *method) {
        CapturingResult returned;
        const CMPIStatus status = PH_OEM_IM_ServerConfigSettings(cmpi(), nullptr, broker::contextOf(*caller),
                                                                 cop, method, none, &returned.result, none);
        EXPECT_TRUE(returned.done);
        return std::to_string(returned.value) + ", " + textOf(status);
    };
    EXPECT_EQ(call("Reset"), "1, 17 No such method available");
    sp::fail("ZBR_CIM_ResetPowerOnHours", {.at = 0, .result = 203});
    EXPECT_EQ(call("ResetPowerOnCounter"), "2, 1 failed to reset the PowerOnHours");
    EXPECT_TRUE(traced("failed to reset the PowerOnHours (ret=203)"));
    sp::fail("CIM_Create_IPMI20_Session");
    EXPECT_EQ(call("ResetPowerOnCounter"), "2, 0");
    EXPECT_TRUE(traced("Create IPMI session failed"));
}

} // namespace
