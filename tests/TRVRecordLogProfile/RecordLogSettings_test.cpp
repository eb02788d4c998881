// The settings of the logs: of each, and of both.
#include "TRVRecordLogProfile/TRV_oVTAGeneralRecordLogConfigSettings.h"
#include "support/fixture.h"

namespace {

constexpr char sel_path[] =
    "RecordLogConfigSettings.InstanceID=\"TRV:oVTARecordLogConfigSettings:MessageLog\"";
constexpr char iel_path[] =
    "RecordLogConfigSettings.InstanceID=\"TRV:oVTARecordLogConfigSettings:InternalEventLog\"";
constexpr char general_path[] =
    "GeneralRecordLogConfigSettings.InstanceID=\"TRV:oVTAGeneralRecordLogConfigSetting\"";

struct RecordLogSettings : ServiceProcessorTest {
    static void setVariable(int id, const std::string &literal) {
        sp::sql("UPDATE configuration_variable SET value = " + literal + " WHERE id = " + std::to_string(id));
    }
    static std::string variable(int id) {
        return sp::sql("SELECT value FROM configuration_variable WHERE id = " + std::to_string(id))
            .at(0)
            .at(0);
    }
    // The variables of both logs: buffer modes, hidden entries, display flags.
    static std::string variables() {
        return variable(0x0007) + ' ' + variable(0x0009) + ' ' + variable(0x000B) + ' ' + variable(0x1121) +
               ' ' + variable(0x1123);
    }
    static std::string told(const Reply &reply) { return textOf(reply.answer); }
};

TEST_F(RecordLogSettings, EachLogShowsItsOwn) {
    sp::sql("UPDATE configuration_variable SET value = 2 WHERE id IN (0x0007, 0x0009)");
    setVariable(0x1121, "0x05");
    setVariable(0x1123, "0xFA");
    const Reply reply = enumerate("RecordLogConfigSettings");
    expectShown(reply, 0,
                {{"InstanceID", "TRV:oVTARecordLogConfigSettings:MessageLog"},
                 {"BufferMode", "2"},
                 {"Caption", "TRV:oVTARecordLogConfigSettings:MessageLog"},
                 {"DefaultDisplayCritical", "true"},
                 {"DefaultDisplayInfo", "false"},
                 {"DefaultDisplayMajor", "false"},
                 {"DefaultDisplayMinor", "true"},
                 {"Description", "Configuration Settings for the SEL"},
                 {"ElementName", "SEL Config Settings"},
                 {"ShowHiddenEntries", "false"}});
    expectShown(reply, 1,
                {{"InstanceID", "TRV:oVTARecordLogConfigSettings:InternalEventLog"},
                 {"BufferMode", "1"},
                 {"Caption", "TRV:oVTARecordLogConfigSettings:InternalEventLog"},
                 {"DefaultDisplayCritical", "false"},
                 {"DefaultDisplayInfo", "true"},
                 {"DefaultDisplayMajor", "true"},
                 {"DefaultDisplayMinor", "false"},
                 {"Description", "Configuration Settings for the iEL"},
                 {"ElementName", "iEL Config Settings"},
                 {"ShowHiddenEntries", "true"}});
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 2});
    EXPECT_EQ(enumerate("RecordLogConfigSettings").value(0, "DefaultDisplayCritical"), "false");
    EXPECT_NE(trace().find("ZBR_CIM_GetConfigSpaceVariables failed varid=0x1121 index=0 ret=0x1ff"),
              std::string::npos);
}

TEST_F(RecordLogSettings, AChangeGoesToTheLogsOwnVariables) {
    const std::string before = variables();
    ASSERT_EQ(before, "1 0 1 7 15");
    const struct {
        const char *path;
        Values values;
        const char *after;
    } cases[] = {
        {sel_path, {{"DefaultDisplayMinor", {"false"}}}, "1 0 1 3 15"},
        {sel_path,
         {{"DefaultDisplayInfo", {"true"}},
          {"DefaultDisplayMajor", {"false"}},
          {"DefaultDisplayCritical", {"false"}}},
         "1 0 1 8 15"},
        {iel_path, {{"DefaultDisplayMajor", {"false"}}}, "1 0 1 8 13"},
        {sel_path, {{"BufferMode", {"515"}}}, "3 0 1 8 13"}, // its low byte
        {iel_path, {{"BufferMode", {"1"}}, {"ShowHiddenEntries", {"false"}}}, "3 1 0 8 13"},
        {sel_path, {{"ShowHiddenEntries", {"true"}}}, "3 1 0 8 13"}, // it has none
    };
    for (const auto &change : cases) {
        EXPECT_EQ(told(modify(change.path, change.values)), "0");
        EXPECT_EQ(variables(), change.after);
    }
}

TEST_F(RecordLogSettings, AModificationEndsAtItsFirstFailure) {
    const Values both = {{"BufferMode", {"5"}}, {"DefaultDisplayInfo", {"true"}}};
    const std::string before = variables();
    EXPECT_EQ(told(modify("RecordLogConfigSettings.InstanceID=\"TRV:oVTARecordLogConfigSettings:x\"", both,
                          {{"BufferMode"}})),
              "4 Invalid Key Property");
    EXPECT_EQ(told(modify(sel_path, {{"Caption", {"x"}}})), "4 Invalid Property: Caption ");
    EXPECT_EQ(told(modify(sel_path, {{"DefaultDisplayMajor", {"NULL"}}}, {{"DefaultDisplayMajor"}})),
              "4 failed to get the DefaultDisplayMajor value for the target instance");
    sp::fail("zbr_oemdb_get_ipmi_session_info", {.at = 2}); // the first reads the current instance
    EXPECT_EQ(told(modify(sel_path, both)), "0") << "only traced";
    EXPECT_NE(trace().find("Create IPMI session failed"), std::string::npos);
    EXPECT_EQ(variables(), before);

    sp::clear_faults();
    sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = 5}); // four read the current instances
    EXPECT_EQ(told(modify(sel_path, both)), "0") << "only traced";
    EXPECT_EQ(variables(), "5 0 1 7 15") << "what was written stays";
    sp::fail("ZBR_CIM_SetConfigSpaceVariables");
    EXPECT_EQ(told(modify(iel_path, {{"ShowHiddenEntries", {"false"}}, {"DefaultDisplayInfo", {"false"}}})),
              "1 failed to set the ShowHiddenEntries value for the target instance");
}

// --- Of both logs

TEST_F(RecordLogSettings, TheGeneralOnesShowLanguageAndHelpDesk) {
    setVariable(0x000E, "1031");
    setVariable(0x0211, "'Extension 42'");
    expectShown(enumerate("GeneralRecordLogConfigSettings"), 0,
                {{"InstanceID", "TRV:oVTAGeneralRecordLogConfigSetting"},
                 {"Caption", "TRV:oVTAGeneralRecordLogConfigSetting"},
                 {"CurrentLogEntryTranslation", "de_DE"},
                 {"Description", "General Record Log Config Settings"},
                 {"ElementName", "General Record Log Config Settings"},
                 {"Helpdesk", "Extension 42"}});
    for (const char *length : {"63", "64", "200"}) {
        setVariable(0x0211, std::string("printf('%0") + length + "d', 0)");
        EXPECT_EQ(get(general_path).value(0, "Helpdesk"), std::string(63, '0')) << length;
    }
    for (const int at : {1, 2}) {
        sp::fail("ZBR_CIM_GetConfigSpaceVariables", {.at = at});
        EXPECT_EQ(told(enumerate("GeneralRecordLogConfigSettings")), "1 Failed to Enumerate Instance");
    }
}

TEST_F(RecordLogSettings, TheGeneralOnesAreModified) {
    EXPECT_EQ(told(modify(general_path, {{"CurrentLogEntryTranslation", {"fr_FR"}},
                                         {"Helpdesk", {"Call 7"}},
                                         {"DefaultDisplayInfo", {"true"}}})),
              "0");
    EXPECT_EQ(variable(0x000E), "1036");
    EXPECT_EQ(variable(0x0211), std::string("Call 7\0", 7)) << "with its terminating zero";
    EXPECT_EQ(get(general_path).value(0, "Helpdesk"), "Call 7");
    sp::start_journal();
    EXPECT_EQ(told(modify(general_path, {{"DefaultDisplayInfo", {"false"}}}, {{"DefaultDisplayInfo"}})), "0");
    EXPECT_EQ(sp::calls("ZBR_CIM_SetConfigSpaceVariables"), 0) << "it is without effect";

    EXPECT_EQ(told(modify(general_path, {{"CurrentLogEntryTranslation", {"xx"}}, {"Helpdesk", {"no"}}})),
              "1 failed to convert locale code");
    EXPECT_EQ(told(modify(general_path, {{"Caption", {"x"}}})), "4 Invalid Property: Caption ");
    EXPECT_EQ(told(modify("GeneralRecordLogConfigSettings.InstanceID=\"x\"", {{"Helpdesk", {"x"}}})),
              "4 Invalid Key Property");
}

// --- Methods

TEST_F(RecordLogSettings, SetLanguageTakesTheLanguagesOfTheLog) {
    EXPECT_EQ(told(invoke(general_path, "setlanguage", {{"localID", {"de_DE"}}})), "0");
    EXPECT_EQ(variable(0x000E), "1031");
    EXPECT_EQ(get("LogEntry.InstanceID=\"LogMessage_3\"").value(0, "Message"), "Temperaturwarnung: MEM A");
    EXPECT_EQ(get("LogEntry.InstanceID=\"LogMessage_3\"").value(0, "Locale"), "de_DE");
    const std::pair<Values, const char *> refused[] = {
        {{{"localID", {"fr_FR"}}}, "4 Selected language is not supported"}, // known, and not to be had
        {{{"localID", {"xx"}}}, "4 Selected language is not supported"},
        {{{"localID", {"en_US" + std::string(300, 'x')}}}, "4 Selected language is not supported"},
        {{{"localID", {"NULL"}}}, "4 A parameter is missing"},
        {{}, "4 A parameter is missing"},
    };
    for (const auto &[arguments, message] : refused) {
        EXPECT_EQ(told(invoke(general_path, "SetLanguage", arguments)), message);
    }
    EXPECT_EQ(variable(0x000E), "1031");
}

TEST_F(RecordLogSettings, AServiceNoteGoesIntoTheInternalEventLog) {
    const auto lastNote = [] {
        const auto row = sp::sql("SELECT Message, TimeStamp FROM iel ORDER BY RecordId DESC LIMIT 1").at(0);
        return row[0] + " at " + row[1];
    };
    sp::start_journal();
    EXPECT_EQ(told(invoke(general_path, "AddServiceNote", {{"Message", {"Fan"}}})), "0");
    EXPECT_EQ(lastNote(), "Fan at 1780000000");
    bool wasSent = false;
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        wasSent = wasSent ||
                  entry.arguments == "0xB8, 0xF5, [80 28 00 85 0A 00 3E 00 00 00 00 80 03 00 46 61 6E 00]";
    }
    EXPECT_TRUE(wasSent);
    EXPECT_EQ(told(invoke(general_path, "AddServiceNote", {{"Message", {std::string(2000, 'n')}}})), "0");
    EXPECT_EQ(lastNote(), std::string(255, 'n') + " at 1780000000");
    EXPECT_EQ(told(invoke(general_path, "AddServiceNote", {{"Message", {"NULL"}}})), "0");
    EXPECT_EQ(lastNote(), " at 1780000000");
    EXPECT_NE(trace().find("iEL message will be empty"), std::string::npos);
}

TEST_F(RecordLogSettings, ABadPathOrMethodIsTold) {
    const auto caller = request();
    CMPIObjectPath *cop = path(*caller, "GeneralRecordLogConfigSettings");
    const auto call = [&](const char *method) {
        return answerOf(PH_OEM_IM_GeneralRecordLogConfigSettings, *caller, cop, method);
    };
    EXPECT_EQ(call("SetLanguage"), "2, 1 ObjectPath is not valid");
    CMAddKey(cop, "InstanceID", reinterpret_cast<const CMPIValue *>(""), CMPI_chars);
    EXPECT_EQ(call("SetLanguage"), "2, 1 Null key property value");
    cop = path(*caller, general_path);
    EXPECT_EQ(call("ClearLog"), "2, 17 No such method available");
    for (auto *method : {PH_OEM_Set_Language, PH_OEM_AddServiceNote}) {
        EXPECT_EQ(answerOf(method, *caller, cop, ""), "2, 4 A parameter is missing");
    }
}

} // namespace
