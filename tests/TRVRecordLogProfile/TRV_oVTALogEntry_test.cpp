#include "support/fixture.h"

#include <algorithm>

namespace {

constexpr char german[] = "UPDATE configuration_variable SET value = 1031 WHERE id = 0x000E";

struct LogEntry : ServiceProcessorTest {
    // Leaves one entry in each log: number 42, whose kind has bits beyond those that mean something.
    static void keepTwo() {
        sp::sql(
            "DELETE FROM sel; DELETE FROM iel;"
            "INSERT INTO sel VALUES (42, 1700000000, 0xABCDEF, 'Fan 7');"
            "INSERT INTO sel_event VALUES (0xABCDEF, -0x1004B, 0x10007);" // low byte 0xB5
            "INSERT INTO sel_text VALUES (0xABCDEF, 1033, 'Broken: %s', 'It broke', 'Age' || char(10) || "
            "'Dust', 'Buy'),"
            "    (0xABCDEF, 1031, 'Kaputt: %s', 'Es ging kaputt', 'Alter', 'Kaufen' || char(10) || 'Warten');"
            "INSERT INTO iel VALUES (42, 4294967295, 0x27, 0x10, -1, 1036, 'Connexion')");
    }
    static void setText(const std::string &column, const std::string &text) {
        sp::sql("UPDATE sel_text SET " + column + " = '" + text + "' WHERE ErrorCode = 0xABCDEF");
    }
    Reply selEntry() { return get("LogEntry.InstanceID=\"LogMessage_42\""); }
};

TEST_F(LogEntry, BothLogsAreListedWholeAndInOrder) {
    std::vector<std::string> expected;
    for (const auto &row : sp::sql(
             "SELECT 'LogMessage_' || RecordId FROM (SELECT RecordId FROM sel ORDER BY RecordId) "
             "UNION ALL SELECT * FROM (SELECT 'InternalEventLog_' || RecordId FROM iel ORDER BY RecordId)")) {
        expected.push_back(row[0]);
    }
    ASSERT_GT(expected.size(), 350U);
    const Reply reply = enumerate("LogEntry");
    std::vector<std::string> listed;
    for (std::size_t i = 0; i < reply.size(); ++i) {
        listed.push_back(reply.value(i, "InstanceID"));
    }
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(names("LogEntry").size(), expected.size());
    sp::sql("DELETE FROM sel; DELETE FROM iel");
    for (const Reply &empty : {enumerate("LogEntry"), names("LogEntry")}) {
        EXPECT_EQ(textOf(empty.answer) + ", " + std::to_string(empty.size()), "0, 0");
    }
}

TEST_F(LogEntry, EveryPropertyOfBothKindsIsShown) {
    keepTwo();
    const Reply reply = enumerate("LogEntry");
    expectShown(
        reply, 0,
        {{"InstanceID", "LogMessage_42"},
         {"LogInstanceID", "MVR7420220815.MessageLog"},
         {"RecordID", "42"},
         {"CreationTimeStamp", "20231114221320.000000+000"},
         {"RecordFormat", "*string Severity*uint32 ErrorCode*boolean CustomerReplaceable*string MessageText"},
         {"RecordData", "*Critical*abcdef*true*Broken: Fan 7"},
         {"Locale", "en_US"},
         {"Summary", "It broke"},
         {"ElementName", "MVR7420220815.LogMessage_42"},
         {"AlertGroup", "7"},
         {"CSSComponent", "true"},
         {"ErrorCode", "11259375"},
         {"Message", "Broken: Fan 7"},
         {"Severity", "3"},
         {"ProbableCauseDescription", "{Age, Dust}"},
         {"RecommendedActions", "{Buy}"}});
    expectShown(reply, 1,
                {{"InstanceID", "InternalEventLog_42"},
                 {"LogInstanceID", "MVR7420220815.InternalEventLog"},
                 {"RecordID", "42"},
                 {"CreationTimeStamp", "21060207062815.000000+000"},
                 {"RecordFormat", "*string Severity*uint32 ErrorCode*string MessageText"},
                 {"RecordData", "*Major*10*Connexion"},
                 {"Locale", "fr_FR"},
                 {"Summary", ""},
                 {"ElementName", "MVR7420220815.InternalEventLog_42"},
                 {"AlertGroup", "65535"},
                 {"CSSComponent", "false"},
                 {"ErrorCode", "16"},
                 {"Message", "Connexion"},
                 {"Severity", "2"},
                 {"ProbableCauseDescription", "NULL"},
                 {"RecommendedActions", "NULL"}});
}

// --- One entry

TEST_F(LogEntry, GettingOneReadsItsRowAndNoOther) {
    keepTwo();
    const struct {
        const char *key;
        int selReads, ielReads;
        bool isFound;
    } cases[] = {
        {"LogMessage_42", 1, 0, true},
        {"InternalEventLog_42", 0, 1, true},
        {"LogMessage_43", 1, 0, false},
        {"LogMessage_042", 1, 0, false}, // not its name
        {"LogMessage_42x", 1, 0, false},
        {"LogMessage_4294967338", 0, 0, false}, // 42 in 32 bits
        {"LogMessage_99999999999999999999", 0, 0, false},
        {"LogMessage_", 0, 0, false},
        {"LogMessage", 0, 0, false},
        {"_42", 0, 0, false},
        {"logmessage_42", 0, 0, false},
        {"Log_42", 0, 0, false},
    };
    for (const auto &wanted : cases) {
        sp::start_journal();
        const Reply reply = get(std::string("LogEntry.InstanceID=\"") + wanted.key + '"');
        EXPECT_EQ(textOf(reply.answer), wanted.isFound ? "0" : "1 Failed to Get Instance") << wanted.key;
        EXPECT_EQ(sp::calls("zbr_oemdb_get_sel_rec"), wanted.selReads) << wanted.key;
        EXPECT_EQ(sp::calls("zbr_oemdb_get_iel_rec"), wanted.ielReads) << wanted.key;
        EXPECT_EQ(sp::calls("zbr_oemdb_get_all_sel_rec") + sp::calls("zbr_oemdb_get_all_iel_rec"), 0);
    }
    EXPECT_NE(trace().find("Not Found"), std::string::npos);
    EXPECT_EQ(textOf(get("LogEntry.InstanceID=\"" + std::string(1000, 'x') + "_42\"").answer),
              "1 Failed to Get Instance");
}

// --- Languages

TEST_F(LogEntry, AnotherLanguageTranslatesTheSystemEventLogAlone) {
    keepTwo();
    sp::sql(german);
    sp::start_journal();
    const Reply reply = enumerate("LogEntry");
    ASSERT_EQ(reply.size(), 2U);
    const std::pair<const char *, const char *> expected[] = {
        {"Locale", "de_DE"},
        {"Message", "Kaputt: Fan 7"},
        {"RecordData", "*Critical*abcdef*true*Kaputt: Fan 7"},
        {"RecordFormat", "*string Severity*uint32 ErrorCode*boolean CustomerReplaceable*string MessageText"},
        {"Summary", "Es ging kaputt"},
        {"ProbableCauseDescription", "{Alter}"},
        {"RecommendedActions", "{Kaufen, Warten}"},
    };
    for (const auto &[name, text] : expected) {
        EXPECT_EQ(reply.value(0, name), text) << name;
    }
    EXPECT_EQ(reply.value(1, "Message"), "Connexion");
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 2) << "one for the language, one for the entry";
}

// Each text that can't be had is the row's own, and the others stay translated.
TEST_F(LogEntry, AFailedTranslationFallsBackTextByText) {
    keepTwo();
    sp::sql(german);
    const struct {
        const char *function;
        int at;
        const char *property, *english;
    } cases[] = {
        {"ZBR_CIM_InterpretSELEntryAsText", 1, "Message", "Broken: Fan 7"},
        {"ZBR_CIM_GetSELTextFromErrCode", 1, "ProbableCauseDescription", "{Age, Dust}"},
        {"ZBR_CIM_GetSELTextFromErrCode", 2, "RecommendedActions", "{Buy}"},
        {"ZBR_CIM_GetSELTextFromErrCode", 3, "Summary", "It broke"},
    };
    const Reply translated = selEntry();
    for (const auto &failing : cases) {
        sp::fail(failing.function, {.at = failing.at});
        const Reply reply = selEntry();
        for (const auto &each : cases) {
            EXPECT_EQ(reply.value(0, each.property),
                      &each == &failing ? each.english : translated.value(0, each.property))
                << each.property << " without " << failing.property;
        }
        EXPECT_EQ(reply.value(0, "Locale"), "de_DE");
        EXPECT_NE(trace().find(std::string(failing.function) + " failed"), std::string::npos);
        sp::clear_faults();
    }
    sp::fail("zbr_oemdb_get_ipmi_session_info", {.at = 2}); // the first is the language's
    const Reply untranslated = selEntry();
    for (const auto &each : cases) {
        EXPECT_EQ(untranslated.value(0, each.property), each.english);
    }
    EXPECT_EQ(untranslated.value(0, "RecordData"), "*Critical*abcdef*true*Broken: Fan 7");
    EXPECT_EQ(untranslated.value(0, "Locale"), "de_DE");
    EXPECT_NE(trace().find("Failed to create session handler"), std::string::npos);
}

TEST_F(LogEntry, WithoutALanguageItIsEnglish) {
    keepTwo();
    sp::sql("UPDATE configuration_variable SET value = 0 WHERE id = 0x000E");
    EXPECT_EQ(selEntry().value(0, "Message"), "Broken: Fan 7");
    EXPECT_EQ(sp::calls("ZBR_CIM_InterpretSELEntryAsText"), 0);
    sp::sql(german);
    for (const char *function : {"CIM_Create_IPMI20_Session", "ZBR_CIM_GetConfigSpaceVariables"}) {
        sp::fail(function);
        const Reply reply = selEntry();
        EXPECT_EQ(reply.value(0, "Message") + ", " + reply.value(0, "Locale"), "Broken: Fan 7, en_US");
        EXPECT_NE(trace().find("Failed to get locale from config space"), std::string::npos);
        sp::clear_faults();
    }
}

// --- Limits

TEST_F(LogEntry, TextsAreCutToTheirFields) {
    keepTwo();
    setText("Message", std::string(600, 'm'));
    setText("Summary", std::string(2000, 's'));
    setText("Causes", std::string(600, 'c'));
    sp::sql("UPDATE iel SET Message = printf('%0600d', 0)");
    const auto list = [](std::size_t length) { return '{' + std::string(length, 'c') + '}'; };
    const Reply english = enumerate("LogEntry");
    EXPECT_EQ(english.value(0, "Message"), std::string(255, 'm'));
    EXPECT_EQ(english.value(0, "RecordData"), "*Critical*abcdef*true*" + std::string(255 - 22, 'm'));
    EXPECT_EQ(english.value(0, "Summary"), std::string(512, 's')) << "as much as the row holds";
    EXPECT_EQ(english.value(0, "ProbableCauseDescription"), list(512));
    EXPECT_EQ(english.value(1, "Message"), std::string(255, '0'));
    EXPECT_EQ(english.value(1, "RecordData"), "*Major*10*" + std::string(255 - 10, '0'));
    sp::sql(german);
    const Reply translated = selEntry();
    EXPECT_EQ(translated.value(0, "Message").size(), 255U);
    EXPECT_EQ(translated.value(0, "Summary").size(), 1023U);
    EXPECT_EQ(translated.value(0, "ProbableCauseDescription"), list(600));
}

TEST_F(LogEntry, AListKeepsItsFirstFifteenTexts) {
    keepTwo();
    for (const int texts : {15, 16, 20}) {
        sp::sql("UPDATE sel_text SET Causes = (WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM "
                "n WHERE i < " +
                std::to_string(texts) + ") SELECT group_concat('cause ' || i, char(10)) FROM n)");
        const std::string list = selEntry().value(0, "ProbableCauseDescription");
        EXPECT_EQ(std::ranges::count(list, ',') + 1, 15) << texts;
        EXPECT_TRUE(list.ends_with(", cause 15}")) << list;
    }
}

} // namespace
