// TRV_oVTARecordLogConfigSettings: what a full log does, and which entries a view of it shows by default; one
// instance for the system event log (SEL), one for the internal event log (iEL). The four display properties
// of a log are bits of one variable, which is written once, whichever of them change. The iEL's buffer mode
// is written to a variable, and read back from the log's own state.
#include "TRVRecordLogProfile/TRV_oVTARecordLogConfigSettings.h"

#include "TRVRecordLogProfile/RecordLogs.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"

#include <cstring>
#include <iterator>

namespace {

using R = RecordLogConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings of the log. Constant."},
};

constexpr Property<R> properties[] = {
    {.name = "BufferMode",
     .type = CMPI_uint16,
     .field = FIELD(R, BufferMode),
     .description =
         "Whether the log overwrites its oldest entries when it is full. System event log: "
         "configuration variable 0x0007; internal event log: bit 7 of the flags in its information "
         "record, written to configuration variable 0x0009.",
     .values = "0 Wraps When Full, 1 Never Overwrites"},
    {"Caption", CMPI_chars, FIELD(R, Caption), "The same text as InstanceID."},
    {"DefaultDisplayCritical", CMPI_boolean, FIELD(R, DefaultDisplayCritical),
     "Whether critical entries are shown. Configuration variable 0x1121 or, for the internal event log, "
     "0x1123: bit 0."},
    {"DefaultDisplayInfo", CMPI_boolean, FIELD(R, DefaultDisplayInfo),
     "Whether informational entries are shown. The same: bit 3."},
    {"DefaultDisplayMajor", CMPI_boolean, FIELD(R, DefaultDisplayMajor),
     "Whether major entries are shown. The same: bit 1."},
    {"DefaultDisplayMinor", CMPI_boolean, FIELD(R, DefaultDisplayMinor),
     "Whether minor entries are shown. The same: bit 2."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Constant."},
    {"ShowHiddenEntries", CMPI_boolean, FIELD(R, ShowHiddenEntries),
     "Whether hidden entries are shown. Internal event log: configuration variable 0x000B; the system event "
     "log has none."},
};

// What differs between the two logs.
struct Log {
    const char *instanceId;
    const char *description;
    const char *elementName;
    std::uint16_t flagsVariable;
    std::uint16_t bufferModeVariable; // where it is written
    std::uint16_t hiddenVariable;     // 0: there is none
};
constexpr Log sel = {"TRV:oVTARecordLogConfigSettings:MessageLog",
                     "Configuration Settings for the SEL",
                     "SEL Config Settings",
                     0x1121,
                     sel_buffer_mode_variable,
                     0};
constexpr Log iel = {"TRV:oVTARecordLogConfigSettings:InternalEventLog",
                     "Configuration Settings for the iEL",
                     "iEL Config Settings",
                     0x1123,
                     0x0009,
                     0x000B};

// --- Reading

enum DisplayBits : std::uint8_t { Critical = 0x01, Major = 0x02, Minor = 0x04, Info = 0x08 };

void FillRecord(IpmiSession *session, const Log &log, R &record) {
    SetText(record.Caption, log.instanceId);
    SetText(record.Description, log.description);
    SetText(record.ElementName, log.elementName);
    if (&log == &sel) {
        std::uint8_t bufferMode = 0;
        ReadSetting(session, log.bufferModeVariable, bufferMode);
        record.BufferMode = bufferMode;
    } else {
        IelInfo info;
        ReadIelInfo(session, info);
        record.BufferMode = NeverOverwrites(info) ? 1 : 0;
    }
    std::uint8_t flags = 0;
    ReadSetting(session, log.flagsVariable, flags);
    record.DefaultDisplayCritical = (flags & Critical) != 0;
    record.DefaultDisplayMajor = (flags & Major) != 0;
    record.DefaultDisplayMinor = (flags & Minor) != 0;
    record.DefaultDisplayInfo = (flags & Info) != 0;
    if (log.hiddenVariable != 0) {
        ReadSetting(session, log.hiddenVariable, record.ShowHiddenEntries);
    }
}

// --- Modifying

// The first and the last go to variables of their own, those between to the bits of the flags.
constexpr ModifiableProperty modifiable[] = {
    {.name = "BufferMode", .readAs = CMPI_uint16, .width = 1},
    {.name = "DefaultDisplayCritical", .readAs = CMPI_boolean},
    {.name = "DefaultDisplayInfo", .readAs = CMPI_boolean},
    {.name = "DefaultDisplayMajor", .readAs = CMPI_boolean},
    {.name = "DefaultDisplayMinor", .readAs = CMPI_boolean},
    {.name = "ShowHiddenEntries", .readAs = CMPI_boolean, .width = 1},
};
constexpr std::uint8_t display_bits[] = {0, Critical, Info, Major, Minor, 0};
static_assert(std::size(display_bits) == std::size(modifiable));
enum Modifiable : std::size_t { BufferMode = 0, ShowHiddenEntries = std::size(modifiable) - 1 };

constexpr ModifyTable modify = {
    .properties = modifiable,
    .variant = ModifyVariant::CheckPathAndInstance,
    .texts = RecordLogModifyTexts(),
};

// The changes that are the property's, for one after the other.
template <typename Apply> bool ForEachChange(const ModifiablePropertyList &changes, Apply apply) {
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    for (int i = 0; i < changes.count && i < room; ++i) {
        for (std::size_t p = 0; p < std::size(modifiable); ++p) {
            if (NamesProperty(changes.entries[i].name, modifiable[p]) && !apply(p, changes.entries[i].data)) {
                return false;
            }
        }
    }
    return true;
}

// Writes what has a variable of its own. `flagsChange` is set when there is more to write: the display
// properties and, without further effect, the SEL's hidden entries.
bool WriteVariables(Modification &modification, IpmiSession *session, const Log &log,
                    const ModifiablePropertyList &changes, bool &flagsChange) {
    return ForEachChange(changes, [&](std::size_t number, const CMPIData &data) {
        ModifiableProperty property = modifiable[number];
        property.id = number == BufferMode          ? log.bufferModeVariable
                      : number == ShowHiddenEntries ? log.hiddenVariable
                                                    : std::uint16_t{0};
        flagsChange = flagsChange || property.id == 0;
        return property.id == 0 || ApplyChange(modification, session, property, data);
    });
}

void WriteFlags(Modification &modification, IpmiSession *session, const Log &log,
                const ModifiablePropertyList &changes) {
    std::uint8_t flags = 0;
    if (!ReadSetting(session, log.flagsVariable, flags)) {
        return; // the client sees success
    }
    const bool areRead = ForEachChange(changes, [&](std::size_t number, const CMPIData &) {
        const std::uint8_t bit = display_bits[number];
        CMPIValue value{};
        if (bit != 0 && !ReadNewValue(modification, modifiable[number], value)) {
            return false;
        }
        flags = static_cast<std::uint8_t>(value.boolean != 0 ? flags | bit : flags & ~bit);
        return true;
    });
    if (!areRead) {
        return;
    }
    if (const int result = WriteVariable(session, log.flagsVariable, 0, &flags, sizeof flags); result != 0) {
        Refuse(modification,
               {CMPI_RC_ERR_FAILED, "failed to set the DisplayDefault values for the target instance"}, "",
               result);
    }
}

// The log whose settings the path names: the instance is there, so that it is one of the two.
const Log &LogOf(const Modification &modification) {
    const CMPIString *key = modification.keyValues[0];
    const char *text = key == nullptr ? nullptr : CMGetCharsPtr(key, nullptr);
    return text != nullptr && std::strcmp(text, sel.instanceId) == 0 ? sel : iel;
}

} // namespace

int PH_OEM_Enum_RecordLogConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    const Log *const logs[] = {&sel, &iel};
    Block<R> block{NewRecords<R>(std::size(logs))};
    if (block == nullptr) {
        return -1;
    }
    IpmiSession session{};
    const SessionOwner owner{namesOnly == 0 ? &session : nullptr};
    if (namesOnly == 0 && PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    for (std::size_t i = 0; i < std::size(logs); ++i) {
        R &record = block.get()[i];
        SetText(record.InstanceID, logs[i]->instanceId);
        if (namesOnly == 0) {
            FillRecord(&session, *logs[i], record);
        }
    }
    *records = block.release();
    *count = std::size(logs);
    return 0;
}

EXPORT_CLASS(RecordLogConfigSettings, "What a log does when it is full, and which entries are shown.",
             .superclass = "CIM_SettingData", .modify = &modify);

CMPIStatus PH_OEM_MI_RecordLogConfigSettings(const CMPIBroker *broker, void *, const CMPIContext *ctx,
                                             const CMPIObjectPath *cop, const CMPIInstance *inst,
                                             const char **wanted) {
    TRACE(TraceProgress, "Entering %s", __func__);
    Modification modification{RecordLogConfigSettingsClass, modify, broker, inst};
    ModifiablePropertyList changes{};
    if (!SortChanges(modification, ctx, cop, wanted, changes) || changes.count < 1) {
        return modification.status;
    }
    const Log &log = LogOf(modification);
    IpmiSession session{};
    const SessionOwner owner{&session};
    bool flagsChange = false;
    if (OpenSession(modification, &session) &&
        WriteVariables(modification, &session, log, changes, flagsChange) && flagsChange) {
        WriteFlags(modification, &session, log, changes);
    }
    return modification.status;
}
