#include "by_hand.h"

#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <cstdio>

namespace {

constexpr char class_name[] = "TRV_oVTALogEntry";
constexpr std::uint16_t english = 1033;

// What the mapping library says of a row before its instance is made.
struct RowTexts {
    char severity[16], replaceable[16], locale[32];
};

struct Log {
    SelRow *selRows = nullptr;
    IelRow *ielRows = nullptr;
    RowTexts *texts = nullptr; // of the rows of both logs
    int selCount = 0;
    int ielCount = 0;
    char selServer[256];
    char ielServer[256];
    Log() {
        selServer[0] = '\0';
        ielServer[0] = '\0';
    }
    Log(const Log &) = delete;
    Log &operator=(const Log &) = delete;
    ~Log() {
        std::free(texts);
        std::free(selRows);
        std::free(ielRows);
    }
};

std::uint16_t ReadLanguage() {
    Session session;
    std::uint16_t language = 0;
    if (!session.isOpen || !ReadVariable(&session.session, 0x000E, 0, &language, sizeof language)) {
        return english;
    }
    return language;
}

// The entries are English here: another language isn't measured.
void ReadTexts(const SelRow &row, std::uint16_t language, RowTexts &texts) {
    Zbr_CimIpmi_ConvSeverityString(static_cast<std::uint8_t>(row.Flags), texts.severity,
                                   sizeof texts.severity);
    Zbr_CimIpmi_ConvBoolCSSString(static_cast<std::uint8_t>(row.Flags), texts.replaceable,
                                  sizeof texts.replaceable);
    Zbr_CimIpmi_ConvLocaleString(language, texts.locale, sizeof texts.locale);
}
void ReadTexts(const IelRow &row, RowTexts &texts) {
    Zbr_CimIpmi_ConvSeverityString(static_cast<std::uint8_t>(row.Flags), texts.severity,
                                   sizeof texts.severity);
    Zbr_CimIpmi_ConvLocaleString(row.LanguageCode, texts.locale, sizeof texts.locale);
}

bool GrowTexts(Log &log) {
    const auto count = static_cast<std::size_t>(log.selCount) + static_cast<std::size_t>(log.ielCount);
    auto *texts = static_cast<RowTexts *>(std::realloc(log.texts, count * sizeof(RowTexts)));
    log.texts = texts != nullptr ? texts : log.texts;
    return texts != nullptr;
}

bool ReadSel(std::uint32_t handle, Log &log, bool namesOnly) {
    if (zbr_oemdb_get_all_sel_rec(handle, &log.selCount, &log.selRows) != 0) {
        return false;
    }
    if (log.selRows == nullptr || log.selCount < 1) {
        log.selCount = 0;
        return true;
    }
    if (namesOnly) {
        return true;
    }
    ReadServerName(log.selServer);
    const std::uint16_t language = ReadLanguage();
    if (!GrowTexts(log)) {
        return false;
    }
    for (int i = 0; i < log.selCount; ++i) {
        ReadTexts(log.selRows[i], language, log.texts[i]);
    }
    return true;
}

bool ReadIel(std::uint32_t handle, Log &log, bool namesOnly) {
    if (zbr_oemdb_get_all_iel_rec(handle, &log.ielCount, &log.ielRows) != 0) {
        return false;
    }
    if (log.ielRows == nullptr || log.ielCount < 1) {
        log.ielCount = 0;
        return true;
    }
    if (namesOnly) {
        return true;
    }
    ReadServerName(log.ielServer);
    if (!GrowTexts(log)) {
        return false;
    }
    for (int i = 0; i < log.ielCount; ++i) {
        ReadTexts(log.ielRows[i], log.texts[log.selCount + i]);
    }
    return true;
}

bool ReadLog(Log &log, bool namesOnly) {
    std::uint32_t handle = 0;
    const bool isRead =
        zbr_oemdb_init(&handle) == 0 && ReadSel(handle, log, namesOnly) && ReadIel(handle, log, namesOnly);
    zbr_oemdb_close(handle);
    return isRead;
}

// What an entry of either log says, as it is set. Texts are terminated.
struct Entry {
    char id[256], logId[256], recordId[12], data[256], elementName[256];
    std::uint32_t time;
    const char *format, *locale, *summary, *message;
    std::uint32_t errorCode;
    std::uint16_t alertGroup, severity;
    std::uint8_t replaceable;
    const char *causes[15], *actions[15];
    CMPICount causeCount, actionCount;
};

// The texts of a list in a row's field, which ends with an empty one; the field gets an end.
CMPICount SplitTexts(char (&field)[512], const char *(&texts)[15]) {
    CMPICount count = 0;
    field[sizeof field - 1] = '\0';
    for (const char *text = field; count < 15 && text < field + sizeof field && *text != '\0';
         text += std::strlen(text) + 1) {
        texts[count++] = text;
    }
    return count;
}

template <typename Row> void FillCommon(Entry &entry, const Row &row, const char *server, const char *log) {
    Format(entry.logId, "%s.%s", server, log);
    Format(entry.recordId, "%d", row.RecordId);
    entry.time = row.TimeStamp;
    entry.alertGroup = static_cast<std::uint16_t>(row.AlertGroup);
    entry.replaceable = (row.Flags >> 7) & 1;
    entry.errorCode = row.ErrorCode;
    entry.severity = (row.Flags >> 4) & 7;
}

void FillEntry(Entry &entry, SelRow &row, const RowTexts &texts, const char *server) {
    Format(entry.id, "LogMessage_%d", row.RecordId);
    FillCommon(entry, row, server, "MessageLog");
    row.Message[255] = '\0'; // no text of an entry has more of it
    Format(entry.data, "*%s*%x*%s*%s", texts.severity, row.ErrorCode, texts.replaceable, row.Message);
    Format(entry.elementName, "%s.LogMessage_%d", server, row.RecordId);
    entry.format = "*string Severity*uint32 ErrorCode*boolean CustomerReplaceable*string MessageText";
    entry.locale = texts.locale;
    entry.summary = Ended(row.Summary);
    entry.message = row.Message;
    entry.causeCount = SplitTexts(row.Causes, entry.causes);
    entry.actionCount = SplitTexts(row.Resolutions, entry.actions);
}

void FillEntry(Entry &entry, IelRow &row, const RowTexts &texts, const char *server) {
    Format(entry.id, "InternalEventLog_%d", row.RecordId);
    FillCommon(entry, row, server, "InternalEventLog");
    row.Message[255] = '\0';
    Format(entry.data, "*%s*%x*%s", texts.severity, row.ErrorCode, row.Message);
    Format(entry.elementName, "%s.InternalEventLog_%d", server, row.RecordId);
    entry.format = "*string Severity*uint32 ErrorCode*string MessageText";
    entry.locale = texts.locale;
    entry.summary = "";
    entry.message = row.Message;
    entry.causeCount = 0;
    entry.actionCount = 0;
}

bool SetTime(const CMPIBroker *broker, const Instance &instance, std::uint32_t seconds) {
    if (!IsWanted(instance, "CreationTimeStamp")) {
        return true;
    }
    const CMPIDateTime *time = CMNewDateTimeFromBinary(broker, seconds * UINT64_C(1000000), 0, nullptr);
    return time != nullptr &&
           CMSetProperty(instance.inst, "CreationTimeStamp", &time, CMPI_dateTime).rc == CMPI_RC_OK;
}

bool SetProperties(const CMPIBroker *broker, const Instance &instance, const Entry &entry) {
    return SetKey(instance, "InstanceID", entry.id) && SetText(instance, "LogInstanceID", entry.logId) &&
           SetText(instance, "RecordID", entry.recordId) && SetTime(broker, instance, entry.time) &&
           SetText(instance, "RecordFormat", entry.format) && SetText(instance, "RecordData", entry.data) &&
           SetText(instance, "Locale", entry.locale) && SetText(instance, "Summary", entry.summary) &&
           SetText(instance, "ElementName", entry.elementName) &&
           SetNumber(instance, "AlertGroup", entry.alertGroup, CMPI_uint16) &&
           SetNumber(instance, "CSSComponent", entry.replaceable, CMPI_boolean) &&
           SetNumber(instance, "ErrorCode", entry.errorCode, CMPI_uint32) &&
           SetText(instance, "Message", entry.message) &&
           SetNumber(instance, "Severity", entry.severity, CMPI_uint16) &&
           (!IsWanted(instance, "ProbableCauseDescription") ||
            SetArray(instance, "ProbableCauseDescription", NewTexts(broker, entry.causes, entry.causeCount),
                     CMPI_stringA)) &&
           (!IsWanted(instance, "RecommendedActions") ||
            SetArray(instance, "RecommendedActions", NewTexts(broker, entry.actions, entry.actionCount),
                     CMPI_stringA));
}

template <typename Row>
bool ReturnEntry(const CMPIBroker *broker, const CMPIObjectPath *cop, const char **properties,
                 const CMPIResult *rslt, Row &row, const RowTexts &texts, const char *server) {
    const Instance instance = NewInstance(broker, cop, class_name, properties);
    if (instance.inst == nullptr) {
        return false;
    }
    Entry entry;
    FillEntry(entry, row, texts, server);
    if (!SetProperties(broker, instance, entry)) {
        CMRelease(instance.inst);
        return false;
    }
    CMReturnInstance(rslt, instance.inst);
    return true;
}

bool ReturnName(const CMPIBroker *broker, const CMPIObjectPath *cop, const CMPIResult *rslt,
                const char *format, std::int32_t recordId) {
    CMPIObjectPath *path = NewPath(broker, cop, class_name);
    if (path == nullptr) {
        return false;
    }
    char id[64];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    Format(id, format, recordId); // one of the two texts below
#pragma GCC diagnostic pop
    if (!AddKey(path, "InstanceID", id)) {
        CMRelease(path);
        return false;
    }
    CMReturnObjectPath(rslt, path);
    return true;
}

// The one entry of a log that a key names, or none.
struct OneEntry {
    Block<SelRow> selRow;
    Block<IelRow> ielRow;
    RowTexts texts;
    char server[256];
};

void ReadSelEntry(std::uint32_t handle, std::int32_t recordId, OneEntry &entry) {
    SelRow *row = nullptr;
    int count = 0;
    const bool isRead = zbr_oemdb_get_sel_rec(handle, recordId, &count, &row) == 0 && count == 1;
    entry.selRow.reset(row);
    if (!isRead || row == nullptr) {
        entry.selRow.reset();
        return;
    }
    ReadServerName(entry.server);
    ReadTexts(*row, ReadLanguage(), entry.texts);
}

void ReadIelEntry(std::uint32_t handle, std::int32_t recordId, OneEntry &entry) {
    IelRow *row = nullptr;
    int count = 0;
    const bool isRead = zbr_oemdb_get_iel_rec(handle, recordId, &count, &row) == 0 && count == 1;
    entry.ielRow.reset(row);
    if (!isRead || row == nullptr) {
        entry.ielRow.reset();
        return;
    }
    ReadServerName(entry.server);
    ReadTexts(*row, entry.texts);
}

bool ReadEntry(CMPIString *key, OneEntry &entry) {
    std::uint32_t handle = 0;
    const bool isOpen = zbr_oemdb_init(&handle) == 0;
    if (isOpen) {
        const char *text = CMGetCharsPtr(key, nullptr);
        int recordId = 0;
        if (std::sscanf(text, "LogMessage_%d", &recordId) == 1) {
            ReadSelEntry(handle, recordId, entry);
        } else if (std::sscanf(text, "InternalEventLog_%d", &recordId) == 1) {
            ReadIelEntry(handle, recordId, entry);
        }
    }
    zbr_oemdb_close(handle);
    return entry.selRow != nullptr || entry.ielRow != nullptr;
}

} // namespace

EXPORTED void PH_OEM_GI_LogEntry(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *cop,
                                 const char **properties, const CMPIResult *rslt, CMPIStatus *status) {
    constexpr const char *names[] = {"InstanceID"};
    CMPIString *key = nullptr;
    OneEntry entry;
    bool isDone = false;
    const char *id = ReadKeys(cop, names, &key, 1) ? CMGetCharsPtr(key, nullptr) : nullptr;
    if (id != nullptr && ReadEntry(key, entry)) {
        // The whole key, of which only the record id was looked at.
        char expected[64];
        if (entry.selRow != nullptr) {
            Format(expected, "LogMessage_%d", entry.selRow->RecordId);
            isDone = std::strcmp(id, expected) == 0 &&
                     ReturnEntry(broker, cop, properties, rslt, *entry.selRow, entry.texts, entry.server);
        } else if (entry.ielRow != nullptr) {
            Format(expected, "InternalEventLog_%d", entry.ielRow->RecordId);
            isDone = std::strcmp(id, expected) == 0 &&
                     ReturnEntry(broker, cop, properties, rslt, *entry.ielRow, entry.texts, entry.server);
        }
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Get Instance");
    }
}

EXPORTED void PH_OEM_EI_LogEntry(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *cop,
                                 const char **properties, const CMPIResult *rslt, CMPIStatus *status) {
    Log log;
    bool isDone = ReadLog(log, false);
    for (int i = 0; isDone && i < log.selCount; ++i) {
        isDone = ReturnEntry(broker, cop, properties, rslt, log.selRows[i], log.texts[i], log.selServer);
    }
    for (int i = 0; isDone && i < log.ielCount; ++i) {
        isDone = ReturnEntry(broker, cop, properties, rslt, log.ielRows[i], log.texts[log.selCount + i],
                             log.ielServer);
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Enumerate Instance");
    }
}

EXPORTED void PH_OEM_EIN_LogEntry(const CMPIBroker *broker, const CMPIContext *, const CMPIObjectPath *cop,
                                  const CMPIResult *rslt, CMPIStatus *status) {
    Log log;
    bool isDone = ReadLog(log, true);
    for (int i = 0; isDone && i < log.selCount; ++i) {
        isDone = ReturnName(broker, cop, rslt, "LogMessage_%d", log.selRows[i].RecordId);
    }
    for (int i = 0; isDone && i < log.ielCount; ++i) {
        isDone = ReturnName(broker, cop, rslt, "InternalEventLog_%d", log.ielRows[i].RecordId);
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Enumerate Instance Names");
    }
}
