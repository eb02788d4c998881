#include "RecordLogProfile/PH_OEM_RecordLogCapabilities.h"
#include "TRVRecordLogProfile/TRV_oVTARecordLog.h"
#include "support/fixture.h"

namespace {

constexpr char sel_path[] = "RecordLog.InstanceID=\"MVR7420220815.MessageLog\"";
constexpr char iel_path[] = "RecordLog.InstanceID=\"MVR7420220815.InternalEventLog\"";

struct RecordLog : ServiceProcessorTest {
    // Entries of both logs: "3 5".
    static std::string entries() {
        const auto row = sp::sql("SELECT (SELECT count(*) FROM sel), (SELECT count(*) FROM iel)").at(0);
        return row[0] + ' ' + row[1];
    }
    // Four properties of an instance, which change with the log's state.
    std::string state(const char *path) {
        const Reply reply = get(path);
        return reply.value(0, "CurrentNumberOfRecords") + ' ' + reply.value(0, "LastEntryAdd") + ' ' +
               reply.value(0, "LastEntryErase") + ' ' + reply.value(0, "LogState");
    }
    std::string clear(const std::string &path) {
        const Reply reply = invoke(path, "ClearLog");
        return broker::textOfValue(reply.answer.value) + ", " + textOf(reply.answer);
    }
    // The bytes that were sent to erase the system event log.
    static std::vector<std::string> sent() {
        std::vector<std::string> commands;
        for (const sp::JournalEntry &entry : sp::take_journal()) {
            if (entry.function == std::string_view("LIBIPMI_Send_RAW_IPMI2_0_Command")) {
                commands.push_back(entry.arguments);
            }
        }
        return commands;
    }

    RecordLog() {
        sp::sql("DELETE FROM sel WHERE RecordId > 3; DELETE FROM iel WHERE RecordId > 5;"
                "UPDATE sel_state SET LastAddition = 1700000000");
    }
};

TEST_F(RecordLog, TheTwoLogsTellTheirState) {
    const Reply reply = enumerate("RecordLog");
    expectShown(reply, 0,
                {{"InstanceID", "MVR7420220815.MessageLog"},
                 {"CurrentNumberOfRecords", "3"},
                 {"ElementName", "MVR7420220815.MessageLog"},
                 {"EnabledState", "2"},
                 {"HealthState", "0"},
                 {"LogState", "2"},
                 {"MaxNumberOfRecords", "4096"},
                 {"OverwritePolicy", "7"},
                 {"RequestedState", "12"},
                 {"LastEntryAdd", "20231114221320.000000+000"},
                 {"LastEntryErase", "20231231000000.000000+000"},
                 {"OperationalStatus", "{0}"}});
    ASSERT_EQ(reply.size(), 2U);
    EXPECT_EQ(reply.value(1, "InstanceID"), "MVR7420220815.InternalEventLog");
    EXPECT_EQ(reply.value(1, "ElementName"), "MVR7420220815.InternalEventLog");
    EXPECT_EQ(state(iel_path), "5 NULL 20231231000000.000000+000 0");
}

TEST_F(RecordLog, OnlyALogThatNeverOverwritesHasACapacity) {
    const struct {
        int id, value;
        const char *path, *policy, *capacity;
    } cases[] = {{0x0007, 0, sel_path, "2", "0"},
                 {0x0007, 1, sel_path, "7", "4096"},
                 {0x0007, 200, sel_path, "7", "4096"},
                 {0x0009, 0, iel_path, "2", "0"},
                 {0x0009, 1, iel_path, "7", "512"}};
    for (const auto &wanted : cases) {
        sp::sql("UPDATE configuration_variable SET value = " + std::to_string(wanted.value) +
                " WHERE id = " + std::to_string(wanted.id));
        const Reply reply = get(wanted.path);
        EXPECT_EQ(reply.value(0, "OverwritePolicy"), wanted.policy) << wanted.id << ' ' << wanted.value;
        EXPECT_EQ(reply.value(0, "MaxNumberOfRecords"), wanted.capacity) << wanted.id << ' ' << wanted.value;
    }
}

TEST_F(RecordLog, WhatCannotBeReadIsZeroAndALogBeingErasedIsEmpty) {
    sp::fail("CIM_GetSELInfo");
    EXPECT_EQ(state(sel_path), "0 19700101000000.000000+000 19700101000000.000000+000 0");
    EXPECT_NE(trace().find("Failed to get sel info"), std::string::npos);
    sp::fail("ZBR_CIM_GetIELInfo");
    EXPECT_EQ(state(iel_path), "0 NULL 19700101000000.000000+000 0");
    EXPECT_NE(trace().find("Failed to get iel info"), std::string::npos);
    sp::clear_faults();
    sp::sql("UPDATE sel_state SET EraseEnd = 1780000001"); // in a second
    EXPECT_EQ(state(sel_path), "0 NULL NULL 2");
    sp::fail("CIM_GetSELInfo", {.result = 0x2081}); // the completion code is what counts
    EXPECT_EQ(state(sel_path), "0 NULL NULL 2");
}

// --- ClearLog

TEST_F(RecordLog, ClearLogErasesTheLogForGood) {
    EXPECT_EQ(clear(sel_path), "0, 0");
    EXPECT_EQ(sp::calls("ZBR_CIM_CreateAuthenticatedLocalSession"), 1);
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0) << "it is the client who erases";
    EXPECT_EQ(entries(), "0 5");
    EXPECT_EQ(clear(iel_path), "0, 0");
    sp::use_store(store); // as another process sees it
    EXPECT_EQ(entries(), "0 0");
    EXPECT_EQ(state(sel_path), "0 20231114221320.000000+000 20260528202640.000000+000 2");
    EXPECT_EQ(state(iel_path), "0 NULL 20260528202640.000000+000 0");
    EXPECT_EQ(enumerate("LogEntry").size(), 0U);
}

TEST_F(RecordLog, TheLogIsChosenByTheWordInItsName) {
    EXPECT_EQ(clear("RecordLog.InstanceID=\"another.MessageLog.2\""), "0, 0");
    EXPECT_EQ(entries(), "0 5");
    EXPECT_EQ(clear("RecordLog.InstanceID=\"messagelog\""), "0, 0");
    EXPECT_EQ(entries(), "0 0");
}

TEST_F(RecordLog, TheSystemEventLogIsErasedUnderAReservation) {
    const std::string reserve = "0x28, 0x42, []";
    const auto clearing = [](const std::string &id) { return "0x28, 0x47, [" + id + " 43 4C 52 AA]"; };
    const auto after_reservation = [](const std::string &what) {
        return "DROP TRIGGER IF EXISTS rival; CREATE TRIGGER rival AFTER UPDATE OF Reservation ON sel_state "
               "BEGIN " +
               what + "; END";
    };
    const std::string entry = after_reservation("INSERT INTO sel VALUES (9, 0, 0, '')"),
                      reservation =
                          after_reservation("UPDATE sel_state SET Reservation = NEW.Reservation + 1");
    const struct {
        const char *name;
        std::string sql;
        std::optional<sp::Fault> fault;
        std::string result;
        std::vector<std::string> sent;
    } cases[] = {
        {"reserved", "UPDATE sel_state SET Reservation = 0x1233", {}, "0, 0", {reserve, clearing("34 12")}},
        {"not known", "UPDATE sel_state SET HasReservations = 0", {}, "0, 0", {reserve, clearing("00 00")}},
        {"cancelled by an entry", entry, {}, "2, 0", {reserve, clearing("35 12")}},
        {"reserved by another", reservation, {}, "2, 0", {reserve, clearing("36 12")}},
        {"not sent", "DROP TRIGGER rival", sp::Fault{.at = 1}, "2, 0", {reserve}},
        {"not known, told by the send",
         "",
         sp::Fault{.at = 1, .result = 0x1C1},
         "2, 0",
         {reserve, clearing("00 00")}},
        {"answered with another code",
         "",
         sp::Fault{.at = 1, .result = 0xC5},
         "2, 0",
         {reserve, clearing("00 00")}},
        {"refused", "", sp::Fault{.at = 2, .result = 0xD4}, "2, 0", {reserve, clearing("38 12")}},
    };
    for (const auto &wanted : cases) {
        sp::sql("UPDATE sel_state SET HasReservations = 1; INSERT OR IGNORE INTO sel VALUES (1, 0, 0, '');" +
                wanted.sql);
        if (wanted.fault) {
            sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", *wanted.fault);
        }
        sp::start_journal();
        EXPECT_EQ(clear(sel_path), wanted.result) << wanted.name;
        EXPECT_EQ(sent(), wanted.sent) << wanted.name;
        EXPECT_EQ(entries() == "0 5", wanted.result == "0, 0") << wanted.name << ": " << entries();
        sp::clear_faults();
    }
    EXPECT_EQ(clear(iel_path), "0, 0");
    EXPECT_EQ(sent().back(), "0xB8, 0xF5, [80 28 00 87 80]");
}

TEST_F(RecordLog, ABadPathOrMethodIsTold) {
    const auto caller = request();
    CMPIObjectPath *cop = path(*caller, "RecordLog");
    const auto call = [&](const char *method) { return answerOf(PH_OEM_IM_RecordLog, *caller, cop, method); };
    EXPECT_EQ(call("Reset"), "2, 1 ObjectPath is not valid") << "the path comes first";
    const CMPIUint32 number = 7;
    CMAddKey(cop, "InstanceID", reinterpret_cast<const CMPIValue *>(&number), CMPI_uint32);
    EXPECT_EQ(call("ClearLog"), "2, 1 ObjectPath is not valid") << "a number names no log";
    EXPECT_EQ(entries(), "3 5");
    cop = path(*caller, sel_path);
    EXPECT_EQ(call("Reset"), "2, 17 No such method available");
    EXPECT_EQ(call("cLEARlOG"), "0, 0");
    EXPECT_EQ(answerOf(PH_OEM_Clear_IEL, *caller, cop, ""), "0, 0");
    EXPECT_EQ(entries(), "0 0");
}

// --- Capabilities

struct RecordLogCapabilities : ServiceProcessorTest {
    // What the hook made of an instance: its property, or the status.
    std::string completed(const char **properties = nullptr) {
        const auto caller = request();
        const CMPIObjectPath *cop = CMNewObjectPath(cmpi(), name_space, "T_RecordLogCapabilities", nullptr);
        CMPIInstance *inst = CMNewInstance(cmpi(), cop, nullptr);
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        const CMPIInstance *result = PH_OEM_MakeInst_RecordLogCapabilities(cmpi(), properties, inst, &status);
        if (result == nullptr) {
            return textOf(status);
        }
        EXPECT_EQ(result, inst);
        CMPIStatus found = {CMPI_RC_OK, nullptr};
        const CMPIData value = CMGetProperty(inst, "SupportedLogEntryTranslations", &found);
        return found.rc == CMPI_RC_OK ? broker::textOfValue(value) : "(unset)";
    }
};

TEST_F(RecordLogCapabilities, GetTheLanguagesOfTheLog) {
    EXPECT_EQ(completed(), "{en_US, de_DE}");
    const char *other[] = {"Caption", nullptr};
    EXPECT_EQ(completed(other), "(unset)");
    sp::sql("DELETE FROM supported_language");
    EXPECT_EQ(completed(), "NULL");
    for (const char *function : {"CIM_Create_IPMI20_Session", "ZBR_CIM_GetSupportedLanguages"}) {
        sp::fail(function);
        EXPECT_EQ(completed(), "1 Make instance failed.") << function;
        EXPECT_EQ(sp::open_handles(sp::Handle::Session), 0);
        EXPECT_EQ(broker::liveObjects(theBroker()), 0U);
        sp::clear_faults();
    }
}

} // namespace
