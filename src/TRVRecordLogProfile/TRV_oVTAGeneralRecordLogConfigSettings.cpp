// TRV_oVTAGeneralRecordLogConfigSettings: the language that the entries of the system event log are shown in,
// and the help desk's text. A method sets the language to one that the log can be had in, another writes a
// service note into the internal event log. A modification of the language takes any that the service
// processor has a code for. All values are needed: a read that fails, fails the enumeration.
#include "TRVRecordLogProfile/TRV_oVTAGeneralRecordLogConfigSettings.h"

#include "TRVRecordLogProfile/RecordLogs.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

using R = GeneralRecordLogConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings. Constant."},
};

constexpr Property<R> properties[] = {
    {"Caption", CMPI_chars, FIELD(R, Caption), "The same text as InstanceID."},
    {"CurrentLogEntryTranslation", CMPI_chars, FIELD(R, CurrentLogEntryTranslation),
     "Language of the entries of the system event log. Configuration variable 0x000E."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Constant."},
    {"Helpdesk", CMPI_chars, FIELD(R, Helpdesk),
     "Whom to ask for help, up to 63 characters. Configuration variable 0x0211."},
    {.name = "DefaultDisplayInfo",
     .type = CMPI_boolean,
     .field = {}, // nothing shows it
     .description = "Accepted in a modification, without effect; no instance shows it.",
     .when = When::Never},
};

constexpr std::uint16_t helpdesk_variable = 0x0211;

bool FillRecord(R &record) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return false;
    }
    CopyText(record.Caption, record.InstanceID);
    SetText(record.Description, "General Record Log Config Settings");
    SetText(record.ElementName, "General Record Log Config Settings");
    std::uint16_t language = 0;
    if (!ReadSetting(&session, language_variable, language)) {
        return false;
    }
    SetLocale(record.CurrentLogEntryTranslation, language);
    // A text that fills the field is cut to make room for its end.
    if (const int result = ReadText(&session, helpdesk_variable, 0, record.Helpdesk); result != 0) {
        TRACE(TraceFailure, "ZBR_CIM_GetConfigSpaceVariables failed varid=0x%x index=%d ret=0x%x",
              helpdesk_variable, 0, static_cast<unsigned>(result));
        return false;
    }
    return true;
}

int WriteLanguage(IpmiSession *session, std::uint16_t language) {
    return WriteVariable(session, language_variable, 0, &language, sizeof language);
}

// --- Modifying

// The text goes with its terminating zero, and the length as one byte.
int WriteHelpdesk(IpmiSession *session, const CMPIValue &value) {
    return WriteVariable(session, helpdesk_variable, 0, value.chars,
                         static_cast<std::uint8_t>(std::strlen(value.chars) + 1));
}

enum Modifiable { Language, Helpdesk };
constexpr ModifiableProperty modifiable[] = {
    {.name = "CurrentLogEntryTranslation", .readAs = CMPI_chars, .id = language_variable},
    {.name = "Helpdesk", .readAs = CMPI_chars, .write = WriteHelpdesk},
    {.name = "DefaultDisplayInfo", .readAs = CMPI_boolean},
};

constexpr ModifyTable modify = {
    .properties = modifiable,
    .variant = ModifyVariant::CheckPath,
    .texts = RecordLogModifyTexts(),
};

bool ChangeLanguage(Modification &modification, IpmiSession *session) {
    CMPIValue value{};
    if (!ReadNewValue(modification, modifiable[Language], value)) {
        return false;
    }
    std::uint16_t language = 0;
    if (Zbr_CimIpmi_ConvLocaleCode(value.chars, static_cast<int>(std::strlen(value.chars)), &language) == 0) {
        return Refuse(modification, {CMPI_RC_ERR_FAILED, "failed to convert locale code"});
    }
    const int result = WriteLanguage(session, language);
    return result == 0 || Refuse(modification, modify.texts.unwritable, "ConfCIMRecordLogLanguage", result);
}

void ChangeSettings(Modification &modification, IpmiSession *session, const ModifiablePropertyList &changes) {
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    bool goesOn = true;
    for (int i = 0; goesOn && i < changes.count && i < room; ++i) {
        const auto &change = changes.entries[i];
        if (NamesProperty(change.name, modifiable[Language])) {
            goesOn = ChangeLanguage(modification, session);
        } else if (NamesProperty(change.name, modifiable[Helpdesk])) {
            goesOn = ApplyChange(modification, session, modifiable[Helpdesk], change.data);
        }
    }
}

// --- Methods

CMPIUint32 ParameterMissing(const MethodCall &call, CMPIStatus &status) {
    TRACE(TraceFailure, "A parameter is missing");
    SetStatus(call.broker, &status, CMPI_RC_ERR_INVALID_PARAMETER, "A parameter is missing");
    return failed;
}

CMPIUint32 SetLanguage(const MethodCall &call, CMPIStatus &status) {
    TRACE(TraceProgress, "Entering PH_OEM_Set_Language");
    // The getter's other form copies without a bound. A text that is cut is no language either.
    const char *argument = nullptr;
    if (ZBR_CIM_GetValueFromArgs(call.in, "localID", &argument, CMPI_string) != 0 || argument == nullptr) {
        return ParameterMissing(call, status);
    }
    char locale[32];
    SetText(locale, argument);
    std::uint16_t language = 0;
    const bool isConverted =
        Zbr_CimIpmi_ConvLocaleCode(locale, static_cast<int>(strnlen(locale, sizeof locale)), &language) != 0;
    if (!isConverted) {
        TRACE(TraceFailure, "Zbr_CimIpmi_ConvLocaleCode failed");
    }
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return failed;
    }
    std::uint16_t languages[SUPPORTED_LANGUAGES_SIZE] = {};
    std::uint8_t count = 0;
    if (ZBR_CIM_GetSupportedLanguages(&session, &count, languages, backend_timeout) != 0) {
        TRACE(TraceFailure, "ZBR_CIM_GetSupportedLanguages failed");
        return failed;
    }
    const std::span supported(languages, std::min<std::size_t>(count, std::size(languages)));
    if (!isConverted || std::ranges::count(supported, language) == 0) {
        TRACE(TraceFailure, "Selected language is not supported");
        SetStatus(call.broker, &status, CMPI_RC_ERR_INVALID_PARAMETER, "Selected language is not supported");
        return failed;
    }
    if (const int result = WriteLanguage(&session, language); result != 0) {
        TRACE(TraceFailure, "failed to set the ConfCIMRecordLogLanguage value (ret=0x%x)",
              static_cast<unsigned>(result));
        return failed;
    }
    return succeeded;
}

// The note's text lies behind a head of constant bytes: the command and what the log keeps of a note's kind.
constexpr std::uint8_t note_head[] = {0x80, 0x28, 0x00, 0x85, 0x0A, 0x00, 0x3E,
                                      0x00, 0x00, 0x00, 0x00, 0x80, 0x03, 0x00};

CMPIUint32 AddServiceNote(const MethodCall &call, CMPIStatus &status) {
    TRACE(TraceProgress, "Entering PH_OEM_AddServiceNote");
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return failed;
    }
    CMPIStatus argumentStatus = {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    CMPIData argument{};
    if (call.in != nullptr) {
        argument = CMGetArg(call.in, "Message", &argumentStatus);
    }
    if (argumentStatus.rc != CMPI_RC_OK) {
        return ParameterMissing(call, status);
    }
    char note[256] = {}; // the command would carry a longer one
    // The getter's other form copies without a bound.
    const char *text = nullptr;
    if (ZBR_CIM_GetValueFromData(argument, &text, CMPI_string) == 0 && text != nullptr) {
        SetText(note, text);
    } else {
        TRACE(TraceFailure, "iEL message will be empty");
    }
    std::uint8_t request[sizeof note_head + sizeof note] = {};
    const std::size_t length = std::strlen(note);
    std::memcpy(request, note_head, sizeof note_head);
    std::memcpy(request + sizeof note_head, note, length + 1);
    std::uint8_t response[6] = {};
    std::uint32_t responseLength = sizeof response;
    const int result =
        LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, oem_netfn, iel_command, request,
                                         static_cast<std::uint32_t>(sizeof note_head + length + 1), response,
                                         &responseLength, backend_timeout);
    if (result != 0 || response[0] != 0) {
        TRACE(TraceFailure, "Send IPMI command failed %d", result != 0 ? result : response[0]);
        return failed;
    }
    return succeeded;
}

constexpr MethodParameter language_parameters[] = {
    {.name = "localID", .type = CMPI_string, .description = "The language, as CurrentLogEntryTranslation."},
};
constexpr MethodParameter note_parameters[] = {
    {.name = "Message", .type = CMPI_string, .description = "The note, up to 255 bytes."},
};
constexpr Method methods[] = {
    {"SetLanguage", SetLanguage,
     "Sets the language of the log's entries to one that they can be had in. Returns 0 on success, 2 on "
     "failure.",
     language_parameters},
    {"AddServiceNote", AddServiceNote,
     "Writes a note into the internal event log. Returns 0 on success, 2 on failure.", note_parameters},
};

} // namespace

EXPORT_METHOD(PH_OEM_Set_Language, SetLanguage);
EXPORT_METHOD(PH_OEM_AddServiceNote, AddServiceNote);

int PH_OEM_Enum_GeneralRecordLogConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Block<R> record{NewRecords<R>(1)};
    if (record == nullptr) {
        return -1;
    }
    SetText(record->InstanceID, "TRV:oVTAGeneralRecordLogConfigSetting");
    if (namesOnly == 0 && !FillRecord(*record)) {
        return -1;
    }
    Deliver(record, records, count);
    return 0;
}

EXPORT_CLASS(GeneralRecordLogConfigSettings, "The language of the system event log, and the help desk.",
             .superclass = "CIM_SettingData", .modify = &modify, .methods = Untagged<methods>,
             .noSuchMethod = failed, .badMethodPath = "ObjectPath is not valid",
             .emptyMethodKey = "Null key property value");
EXPORT_METHODS(GeneralRecordLogConfigSettings);

CMPIStatus PH_OEM_MI_GeneralRecordLogConfigSettings(const CMPIBroker *broker, void *, const CMPIContext *ctx,
                                                    const CMPIObjectPath *cop, const CMPIInstance *inst,
                                                    const char **wanted) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Modification modification{GeneralRecordLogConfigSettingsClass, modify, broker, inst};
    ModifiablePropertyList changes{};
    if (!SortChanges(modification, ctx, cop, wanted, changes) || changes.count < 1) {
        return modification.status;
    }
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (OpenSession(modification, &session)) {
        ChangeSettings(modification, &session, changes);
    }
    return modification.status;
}
