// TRV_oVTARecordLog: the two logs of the service processor, the system event log (SEL) and the internal event
// log (iEL), and ClearLog, which erases either under the rights of the client. A log whose state can't be
// read is listed with zeros. A capacity is shown only for a log that never overwrites.
#include "TRVRecordLogProfile/TRV_oVTARecordLog.h"

#include "TRVRecordLogProfile/RecordLogs.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"

#include <cstring>

namespace {

using R = RecordLogRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the log: the base server's name and the log's."},
};

constexpr Property<R> properties[] = {
    {"CurrentNumberOfRecords", CMPI_uint64, FIELD(R, CurrentNumberOfRecords),
     "Entries in the log. System event log: IPMI Get SEL Info; internal event log: its information record."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "The same text as InstanceID."},
    {"EnabledState", CMPI_uint16, FIELD(R, EnabledState), "Constant."},
    {"HealthState", CMPI_uint16, FIELD(R, HealthState), "Constant."},
    {"LogState", CMPI_uint16, FIELD(R, LogState),
     "Normal for the system event log, unless its state can't be read; unknown for the internal event log."},
    {"MaxNumberOfRecords", CMPI_uint64, FIELD(R, MaxNumberOfRecords),
     "Entries that the log has room for; 0 for one that wraps. System event log: IPMI Get SEL Allocation "
     "Info; internal event log: its information record."},
    {"OverwritePolicy", CMPI_uint16, FIELD(R, OverwritePolicy),
     "What a full log does. System event log: configuration variable 0x0007; internal event log: its "
     "information record."},
    {"RequestedState", CMPI_uint16, FIELD(R, RequestedState), "Constant."},
    {"LastEntryAdd", CMPI_dateTime, FIELD(R, LastEntryAdd),
     "When the last entry was added; null where nobody knows. IPMI Get SEL Info."},
    {"LastEntryErase", CMPI_dateTime, FIELD(R, LastEntryErase),
     "When the log was erased last. System event log: IPMI Get SEL Info; internal event log: its information "
     "record."},
    {.name = "OperationalStatus",
     .type = CMPI_uint16A,
     .field = FIELD(R, OperationalStatus),
     .description = "Constant.",
     .flags = PH_OEM_PROP_TERMINATED},
};

enum OverwritePolicies : std::uint16_t { WrapsWhenFull = 2, NeverOverwritten = 7 };
constexpr std::uint16_t normal_state = 2;
constexpr std::uint8_t erase_in_progress = 0x81;

std::uint64_t MicrosecondsOf(const std::uint8_t (&seconds)[4]) {
    return std::uint64_t{NumberIn<std::uint32_t>(seconds)} * 1'000'000;
}

void FillConstants(R &record) {
    constexpr std::uint16_t enabled = 2;
    constexpr std::uint16_t not_applicable = 12;
    CopyText(record.ElementName, record.InstanceID);
    record.EnabledState = enabled;
    record.HealthState = 0;
    record.OperationalStatus[0] = 0;
    record.RequestedState = not_applicable;
}

void FillSelState(IpmiSession *session, R &record) {
    SelInfo info{};
    const int result = CIM_GetSELInfo(session, &info, backend_timeout);
    if (result == 0) {
        record.CurrentNumberOfRecords = NumberIn<std::uint16_t>(info.Entries);
        record.LastEntryAdd = MicrosecondsOf(info.LastAddition);
        record.LastEntryErase = MicrosecondsOf(info.LastErase);
        record.LogState = normal_state;
    } else if ((result & 0xFF) == erase_in_progress) {
        record.LastEntryAdd = null_datetime;
        record.LastEntryErase = null_datetime;
        record.LogState = normal_state;
    } else {
        TRACE(TraceFailure, "Failed to get sel info");
    }
}

void FillSel(IpmiSession *session, R &record) {
    FillSelState(session, record);
    FillConstants(record);
    std::uint8_t bufferMode = 0;
    ReadSetting(session, sel_buffer_mode_variable, bufferMode);
    record.OverwritePolicy = bufferMode != 0 ? NeverOverwritten : WrapsWhenFull;
    if (bufferMode != 0) {
        std::uint16_t units = 0;
        if (ZBR_CIM_GET_SEL_ALLOCATION_INFO(session, &units, nullptr, nullptr, nullptr, nullptr,
                                            backend_timeout) == 0) {
            record.MaxNumberOfRecords = units;
        } else {
            TRACE(TraceFailure, "Failed to get sel allocation info");
        }
    }
}

void FillIel(IpmiSession *session, R &record) {
    IelInfo info;
    ReadIelInfo(session, info);
    FillConstants(record);
    record.CurrentNumberOfRecords = NumberIn<std::uint16_t>(info.Entries);
    record.LastEntryAdd = null_datetime;
    record.LastEntryErase = MicrosecondsOf(info.LastErase);
    record.OverwritePolicy = NeverOverwrites(info) ? NeverOverwritten : WrapsWhenFull;
    record.MaxNumberOfRecords = NeverOverwrites(info) ? NumberIn<std::uint16_t>(info.MaximumEntries) : 0;
}

// --- Erasing

// Opens a session that acts for the client, or the library's own where that can't be had.
bool OpenClientSession(IpmiSession *session, const CMPIContext *ctx) {
    if (PH_OEM_CreateAuthenticatedLocalSession(session, ctx) == 0) {
        return true;
    }
    PH_OEM_CloseIPMISession(session);
    *session = {}; // whatever the failure left in it
    if (PH_OEM_CreateIPMISession(session) == 0) {
        return true;
    }
    TRACE(TraceFailure, "Create IPMI session failed");
    return false;
}

// Reserves the log. A service processor that doesn't know the command needs no reservation, which is id 0.
bool ReserveSel(IpmiSession *session, std::uint8_t (&reservation)[2]) {
    constexpr std::uint8_t reserve_sel = 0x42;
    constexpr std::uint8_t invalid_command = 0xC1;
    std::uint8_t response[3] = {};
    std::uint32_t length = sizeof response;
    const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(session, 0, storage_netfn, reserve_sel, nullptr, 0,
                                                        response, &length, backend_timeout);
    if (response[0] == invalid_command) {
        std::memset(reservation, 0, sizeof reservation);
        return true;
    }
    std::memcpy(reservation, response + 1, sizeof reservation);
    if (result != 0) {
        TRACE(TraceFailure, "Reserve SEL failed CC=%d ret=0x%x", response[0], static_cast<unsigned>(result));
    }
    return result == 0;
}

CMPIUint32 ClearSel(const MethodCall &call, CMPIStatus &) {
    TRACE(TraceProgress, "Entering PH_OEM_Clear_SEL");
    constexpr std::uint8_t clear_sel = 0x47;
    IpmiSession session{};
    const SessionOwner owner{&session};
    std::uint8_t reservation[2];
    if (!OpenClientSession(&session, call.ctx) || !ReserveSel(&session, reservation)) {
        return failed;
    }
    const std::uint8_t request[] = {reservation[0], reservation[1], 'C', 'L', 'R', 0xAA};
    std::uint8_t response[2] = {};
    std::uint32_t length = sizeof response;
    const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, storage_netfn, clear_sel, request,
                                                        sizeof request, response, &length, backend_timeout);
    if (result != 0 || response[0] != 0) {
        TRACE(TraceFailure, "Clear SEL failed CC=%d ret=0x%x", response[0], static_cast<unsigned>(result));
        return failed;
    }
    return succeeded;
}

CMPIUint32 ClearIel(const MethodCall &call, CMPIStatus &) {
    TRACE(TraceProgress, "Entering PH_OEM_Clear_IEL");
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (!OpenClientSession(&session, call.ctx)) {
        return failed;
    }
    const std::uint8_t request[] = {0x80, 0x28, 0x00, 0x87, 0x80};
    std::uint8_t response[4] = {};
    std::uint32_t length = sizeof response;
    const int result = LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, oem_netfn, iel_command, request,
                                                        sizeof request, response, &length, backend_timeout);
    if (result != 0 || response[0] != 0) {
        TRACE(TraceFailure, "Send IPMI command failed CC=%d", response[0]);
        return failed;
    }
    return succeeded;
}

// No more of the key is looked at than the log's name: a client may give another system's.
CMPIUint32 ClearLog(const MethodCall &call, CMPIStatus &status) {
    const char *instanceId = CMGetCharsPtr(call.keyValues[0], nullptr);
    return std::strstr(instanceId, sel_name) != nullptr ? ClearSel(call, status) : ClearIel(call, status);
}

constexpr Method methods[] = {
    {"ClearLog", ClearLog,
     "Erases the log, under the rights of the client. Returns 0 on success, 2 on failure."},
};

} // namespace

EXPORT_METHOD(PH_OEM_Clear_SEL, ClearSel);
EXPORT_METHOD(PH_OEM_Clear_IEL, ClearIel);

int PH_OEM_Enum_RecordLog_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    constexpr int logs = 2;
    Block<R> block{NewRecords<R>(logs)};
    if (block == nullptr) {
        return -1;
    }
    R &sel = block.get()[0];
    R &iel = block.get()[1];
    std::ranges::fill(sel.OperationalStatus, -1);
    std::ranges::fill(iel.OperationalStatus, -1);
    char systemName[256];
    if (PH_OEM_GetBaseServerName(systemName, sizeof systemName) != 0) {
        TRACE(TraceFailure, "Failed in PH_OEM_GetBaseServerName");
        return -1;
    }
    JoinText(sel.InstanceID, systemName, ".", sel_name);
    JoinText(iel.InstanceID, systemName, ".", iel_name);
    if (namesOnly == 0) {
        IpmiSession session{};
        const SessionOwner owner{&session};
        if (PH_OEM_CreateIPMISession(&session) != 0) {
            TRACE(TraceFailure, "Create IPMI session failed");
            return -1;
        }
        FillSel(&session, sel);
        FillIel(&session, iel);
    }
    *records = block.release();
    *count = logs;
    return 0;
}

EXPORT_CLASS(RecordLog, "A log of the service processor.", .superclass = "CIM_RecordLog",
             .setting = Setting::ByHelpers, .methods = Untagged<methods>, .noSuchMethod = failed,
             .badMethodPath = "ObjectPath is not valid");
EXPORT_METHODS(RecordLog);
