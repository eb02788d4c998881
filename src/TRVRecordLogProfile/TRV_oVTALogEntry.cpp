// TRV_oVTALogEntry: the entries of both logs, those of the system event log (SEL) before those of the
// internal event log (iEL). Rows come from the OEM DB with English texts; when the log's language is another
// one, the texts of a SEL entry come from the translation library, and those that it hasn't stay English. No
// entry is lost for a missing text, name or language. GetInstance reads the one row that its key names, and
// not the logs.
#include "TRVRecordLogProfile/TRV_oVTALogEntry.h"

#include "TRVRecordLogProfile/RecordLogs.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"

#include "libzbr_cimcore.h"

#include <cstdlib>
#include <iterator>

namespace {

using R = LogEntryRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the entry: its log and its record id."},
};

constexpr Property<R> properties[] = {
    {"LogInstanceID", CMPI_chars, FIELD(R, LogInstanceID),
     "InstanceID of the log: the base server's name and the log's."},
    {"RecordID", CMPI_chars, FIELD(R, RecordID), "Record id in decimal. OEM DB, log rows: record id."},
    {"CreationTimeStamp", CMPI_dateTime, FIELD(R, CreationTimeStamp),
     "When it happened. OEM DB, log rows: time stamp."},
    {"RecordFormat", CMPI_chars, FIELD(R, RecordFormat), "The fields of RecordData. Constant in each log."},
    {"RecordData", CMPI_chars, FIELD(R, RecordData),
     "Severity, error code in hexadecimal, in the system event log whether the customer can replace the "
     "part, and the message, up to 255 characters in all."},
    {"Locale", CMPI_chars, FIELD(R, Locale),
     "Language of the texts. System event log: configuration variable 0x000E; internal event log: OEM DB, "
     "log rows: language code."},
    {"Summary", CMPI_chars, FIELD(R, Summary),
     "What it means, up to 1023 characters. System event log: OEM DB, log rows, or the translation library."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "The base server's name and the InstanceID."},
    {"AlertGroup", CMPI_uint16, FIELD(R, AlertGroup), "Kind of alert. OEM DB, log rows: alert group."},
    {"CSSComponent", CMPI_boolean, FIELD(R, CSSComponent),
     "Whether the customer can replace the part. OEM DB, log rows: bit 7 of the flags."},
    {"ErrorCode", CMPI_uint32, FIELD(R, ErrorCode), "Kind of event. OEM DB, log rows: error code."},
    {"Message", CMPI_chars, FIELD(R, Message),
     "What happened, up to 255 characters. OEM DB, log rows, or the translation library."},
    {"Severity", CMPI_uint16, FIELD(R, Severity),
     "How serious it is, in the service processor's numbers from 0 to 7. OEM DB, log rows: bits 4 to 6 of "
     "the flags."},
    {"ProbableCauseDescription", CMPI_stringA, FIELD(R, ProbableCauseDescription),
     "What may have caused it, up to 15 texts. System event log: OEM DB, log rows, or the translation "
     "library."},
    {"RecommendedActions", CMPI_stringA, FIELD(R, RecommendedActions),
     "What can be done about it, up to 15 texts. System event log: OEM DB, log rows, or the translation "
     "library."},
};

// The first words of the keys, behind which the record id stands.
constexpr char sel_entry[] = "LogMessage";
constexpr char iel_entry[] = "InternalEventLog";

constexpr std::uint16_t english = 1033;

bool IsEnglish(std::uint16_t language) {
    return language == 0 || language == english;
}

// The language of the log texts. 0, or -1 on failure.
int GetRecordLogLanguage(std::uint16_t *language) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    return PH_OEM_CreateIPMISession(&session) == 0 &&
                   ReadNumber(&session, language_variable, 0, *language) == 0
               ? 0
               : -1;
}

std::uint16_t LanguageOrEnglish() {
    std::uint16_t language = 0;
    if (GetRecordLogLanguage(&language) != 0) {
        TRACE(TraceFailure, "Failed to get locale from config space");
        return english;
    }
    return language;
}

// --- Filling a record

// What both kinds of rows have, but for the texts; the same flags mean the same in both.
template <typename Row>
void FillCommon(R &record, const Row &row, const char *systemName, const char *logName) {
    JoinText(record.LogInstanceID, systemName, ".", logName);
    JoinText(record.RecordID, row.RecordId);
    record.CreationTimeStamp = row.TimeStamp;
    record.AlertGroup = static_cast<std::uint16_t>(row.AlertGroup);
    record.CSSComponent = (row.Flags >> 7) & 1;
    record.ErrorCode = row.ErrorCode;
    record.Severity = (row.Flags >> 4) & 7;
}

// A text that a mapping makes of the low byte of a row's flags.
struct FlagsText {
    char text[16];
};
FlagsText TextOfFlags(void (*mapping)(std::uint8_t, char *, int), std::int32_t flags) {
    FlagsText text{};
    mapping(static_cast<std::uint8_t>(flags), text.text, sizeof text.text);
    EndText(text.text);
    return text;
}

// Stores a copy of each text of a list, which ends with an empty text or with the field that it is in. The
// last slot stays empty, so that the list in the record has an end: texts beyond the 15 before it are
// dropped.
void Split_LogEntry_TextList(char *(&slots)[16], std::span<const char> textList) {
    std::size_t used = 0;
    while (used + 1 < std::size(slots) && !textList.empty() && textList.front() != '\0') {
        const std::size_t length = strnlen(textList.data(), textList.size());
        auto *text = static_cast<char *>(std::malloc(length + 1));
        if (text == nullptr) {
            TRACE(TraceFailure, "Failed to allocate memory");
            return;
        }
        std::memcpy(text, textList.data(), length);
        text[length] = '\0';
        slots[used++] = text;
        textList = textList.subspan(length == textList.size() ? length : length + 1);
    }
}

// The entry's message in another language; false when there is none.
bool TranslateMessage(IpmiSession *session, const SelRow &row, std::uint16_t language, char (&message)[513]) {
    char translated[256] = {};
    std::uint16_t length = sizeof translated;
    const int result = ZBR_CIM_InterpretSELEntryAsText(session, static_cast<std::uint16_t>(row.RecordId),
                                                       language, 1, translated, &length, backend_timeout);
    if (result != 0) {
        TRACE(TraceFailure, "ZBR_CIM_InterpretSELEntryAsText failed id=%d ret=0x%x", row.RecordId,
              static_cast<unsigned>(result));
        return false;
    }
    EndText(translated);
    SetText(message, translated);
    return true;
}

// A text or text list of the row: the row's own without a session, and where there is no translation.
struct Translator {
    IpmiSession *session; // NULL for English
    std::uint16_t language;
    char buffer[1024];
};
std::span<const char> TextOfKind(Translator &translator, const SelRow &row, SelTextKind kind,
                                 std::span<const char> own) {
    if (translator.session == nullptr) {
        return own;
    }
    std::memset(translator.buffer, 0, sizeof translator.buffer);
    std::uint16_t length = sizeof translator.buffer;
    const int result =
        ZBR_CIM_GetSELTextFromErrCode(translator.session, row.ErrorCode, kind, translator.language, 1,
                                      translator.buffer, &length, backend_timeout);
    if (result != 0) {
        TRACE(TraceFailure, "ZBR_CIM_GetSELTextFromErrCode failed kind=%d code=0x%x ret=0x%x", kind,
              row.ErrorCode, static_cast<unsigned>(result));
        return own;
    }
    return translator.buffer;
}

void Fill_LogEntry_SEL(R &record, const SelRow &row, const char *systemName, std::uint16_t language) {
    FillCommon(record, row, systemName, sel_name);
    const FlagsText severity = TextOfFlags(Zbr_CimIpmi_ConvSeverityString, row.Flags);
    const FlagsText replaceable = TextOfFlags(Zbr_CimIpmi_ConvBoolCSSString, row.Flags);
    SetText(record.RecordFormat,
            "*string Severity*uint32 ErrorCode*boolean CustomerReplaceable*string MessageText");

    IpmiSession session{};
    const SessionOwner owner{IsEnglish(language) ? nullptr : &session};
    Translator translator;
    translator.session = nullptr;
    translator.language = language;
    if (!IsEnglish(language)) {
        if (PH_OEM_CreateIPMISession(&session) == 0) {
            translator.session = &session;
        } else {
            TRACE(TraceFailure, "Failed to create session handler");
        }
    }
    char buffer[sizeof row.Message + 1];
    const char *message = EndedText(row.Message, buffer);
    if (translator.session != nullptr && TranslateMessage(&session, row, language, buffer)) {
        message = buffer;
    }
    JoinText(record.RecordData, "*", severity.text, "*", Hexadecimal{row.ErrorCode}, "*", replaceable.text,
             "*", message);
    SetText(record.Message, message);
    Split_LogEntry_TextList(record.ProbableCauseDescription,
                            TextOfKind(translator, row, SelTextCauses, row.Causes));
    Split_LogEntry_TextList(record.RecommendedActions,
                            TextOfKind(translator, row, SelTextResolutions, row.Resolutions));
    const std::span<const char> summary = TextOfKind(translator, row, SelTextSummary, row.Summary);
    CopyBounded(record.Summary, sizeof record.Summary, summary.data(), summary.size());

    SetLocale(record.Locale, language);
    JoinText(record.ElementName, systemName, ".", record.InstanceID);
}

void Fill_LogEntry_iEL(R &record, const IelRow &row, const char *systemName) {
    FillCommon(record, row, systemName, iel_name);
    CopyText(record.Message, row.Message);
    JoinText(record.ElementName, systemName, ".", record.InstanceID);
    const FlagsText severity = TextOfFlags(Zbr_CimIpmi_ConvSeverityString, row.Flags);
    JoinText(record.RecordData, "*", severity.text, "*", Hexadecimal{row.ErrorCode}, "*", record.Message);
    SetText(record.RecordFormat, "*string Severity*uint32 ErrorCode*string MessageText");
    SetLocale(record.Locale, row.LanguageCode);
}

// --- The two logs

// What all entries of an answer share.
struct Shared {
    char systemName[256];
    std::uint16_t language;
};

// What sets one log apart from the other: how its rows are got, and what they become.
template <typename Row> struct Log {
    const char *firstWord; // of the keys
    int (*getAll)(std::uint32_t handle, int *count, Row **rows);
    int (*getOne)(std::uint32_t handle, std::int32_t recordId, int *count, Row **row);
    const char *getAllFailed; // trace lines
    const char *getOneFailed;
    bool isTranslated; // entries are in the language of the setting, and not each in its own
    void (*fill)(R &record, const Row &row, const Shared &shared);
};

constexpr Log<SelRow> sel_log = {
    .firstWord = sel_entry,
    .getAll = zbr_oemdb_get_all_sel_rec,
    .getOne = zbr_oemdb_get_sel_rec,
    .getAllFailed = "Failed in zbr_oemdb_get_all_sel_rec",
    .getOneFailed = "Failed in zbr_oemdb_get_sel_rec",
    .isTranslated = true,
    .fill = [](R &record, const SelRow &row,
               const Shared &shared) { Fill_LogEntry_SEL(record, row, shared.systemName, shared.language); },
};
constexpr Log<IelRow> iel_log = {
    .firstWord = iel_entry,
    .getAll = zbr_oemdb_get_all_iel_rec,
    .getOne = zbr_oemdb_get_iel_rec,
    .getAllFailed = "Failed in zbr_oemdb_get_all_iel_rec",
    .getOneFailed = "Failed in zbr_oemdb_get_iel_rec",
    .isTranslated = false,
    .fill = [](R &record, const IelRow &row,
               const Shared &shared) { Fill_LogEntry_iEL(record, row, shared.systemName); },
};

// Fills records that have their keys, each from its row.
template <typename Row> void FillEntries(const Log<Row> &log, R *records, const Row *rows, int count) {
    Shared shared;
    if (PH_OEM_GetBaseServerName(shared.systemName, sizeof shared.systemName) != 0) {
        SetText(shared.systemName, "*Failed to get system name*");
    }
    shared.language = log.isTranslated ? LanguageOrEnglish() : english;
    for (int i = 0; i < count; ++i) {
        log.fill(records[i], rows[i], shared);
    }
}

// --- Enumerating

// Records that aren't handed over yet, with the texts that they own.
struct Entries {
    R *block = nullptr;
    int count = 0;
};
void CleanEntries(Entries *entries) {
    if (entries->block != nullptr) {
        PH_OEM_Clean_LogEntry(&entries->block, entries->count);
    }
}
using EntriesOwner = std::unique_ptr<Entries, Closer<CleanEntries>>;

// Appends a record with its key for each row of a log. 0, or -1 on failure.
template <typename Row>
int AppendKeys(Entries &entries, const Row *rows, int rowCount, const char *firstWord) {
    const int used = UsedRows(rows, rowCount);
    if (used > 0 && !AppendRecords(entries.block, entries.count, used)) {
        return -1;
    }
    R *added = entries.block + entries.count;
    for (int i = 0; i < used; ++i) {
        JoinText(added[i].InstanceID, firstWord, "_", rows[i].RecordId);
    }
    entries.count += used;
    return 0;
}

// Appends the entries of a log. 0, or -1 on failure.
template <typename Row>
int EnumerateLog(const Log<Row> &log, std::uint32_t handle, Entries &entries, int namesOnly) {
    Row *rows = nullptr;
    int rowCount = 0;
    const int result = log.getAll(handle, &rowCount, &rows);
    const Block<Row> rowsOwner{rows};
    if (result != 0) {
        TRACE(TraceFailure, "%s", log.getAllFailed);
        return -1;
    }
    const int before = entries.count;
    if (AppendKeys(entries, rows, rowCount, log.firstWord) != 0) {
        return -1;
    }
    if (namesOnly == 0 && entries.count > before) {
        FillEntries(log, entries.block + before, rows, entries.count - before);
    }
    return 0;
}

int Enum_LogEntry_Instance_SEL(std::uint32_t handle, Entries &entries, int namesOnly) {
    return EnumerateLog(sel_log, handle, entries, namesOnly);
}

int Enum_LogEntry_Instance_iEL(std::uint32_t handle, Entries &entries, int namesOnly) {
    return EnumerateLog(iel_log, handle, entries, namesOnly);
}

// --- One entry

// Splits a key as "LogMessage_42", where blanks may stand before the number and anything behind it. False for
// a text of another form, and for a number that is no record id.
bool ParseKey(const char *key, char (&firstWord)[256], std::int32_t &recordId) {
    int numberAt = -1;
    if (std::sscanf(key, "%255[^_] _%n", firstWord, &numberAt) != 1 || numberAt < 0) {
        return false;
    }
    char *end = nullptr;
    const long long number = std::strtoll(key + numberAt, &end, 10);
    recordId = static_cast<std::int32_t>(number);
    return end != key + numberAt && recordId == number;
}

// The entry with a record id, if there is one. 0, or -1 on failure.
template <typename Row>
int GetEntry(const Log<Row> &log, std::uint32_t handle, std::int32_t recordId, R **records, int *count) {
    Row *row = nullptr;
    int rowCount = 0;
    const int result = log.getOne(handle, recordId, &rowCount, &row);
    const Block<Row> rowOwner{row};
    if (result != 0) {
        TRACE(TraceFailure, "%s", log.getOneFailed);
        return -1;
    }
    if (row == nullptr || rowCount != 1) {
        return 0;
    }
    Entries entries;
    if (AppendKeys(entries, row, 1, log.firstWord) != 0) {
        return -1;
    }
    FillEntries(log, entries.block, row, 1);
    *records = entries.block;
    *count = entries.count;
    return 0;
}

int PH_OEM_Get_LogEntry_Instance(R **records, int *count, CMPIString *const *keyValues) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle)) {
        return -1;
    }
    // A key that came as an integer has no text.
    const char *key = keyValues[0] == nullptr ? nullptr : CMGetCharsPtr(keyValues[0], nullptr);
    char firstWord[256];
    std::int32_t recordId = 0;
    const bool isParsed = key != nullptr && ParseKey(key, firstWord, recordId);
    if (isParsed && std::strcmp(firstWord, sel_entry) == 0) {
        return GetEntry(sel_log, handle, recordId, records, count);
    }
    if (isParsed && std::strcmp(firstWord, iel_entry) == 0) {
        return GetEntry(iel_log, handle, recordId, records, count);
    }
    TRACE(TraceFailure, "Not Found");
    return 0;
}

} // namespace

int PH_OEM_Enum_LogEntry_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle)) {
        return -1;
    }
    Entries entries;
    const EntriesOwner owner{&entries};
    if (Enum_LogEntry_Instance_SEL(handle, entries, namesOnly) != 0 ||
        Enum_LogEntry_Instance_iEL(handle, entries, namesOnly) != 0) {
        return -1;
    }
    *records = entries.block;
    *count = entries.count;
    entries = {};
    return 0;
}

void PH_OEM_Clean_LogEntry(R **records, int count) {
    TRACE(TraceProgress, "Entering %s", __func__);
    for (int i = 0; *records != nullptr && i < count; ++i) {
        FreeTexts((*records)[i].ProbableCauseDescription);
        FreeTexts((*records)[i].RecommendedActions);
    }
    std::free(*records);
    *records = nullptr;
}

EXPORT_OWNING_CLASS(LogEntry, "An entry of the system event log or of the internal event log.",
                    .superclass = "CIM_LogEntry", .get = GetUntyped<R, PH_OEM_Get_LogEntry_Instance>);
