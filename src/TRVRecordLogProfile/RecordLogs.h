// What the classes of the record logs share: the names of the two logs, and the reading of their settings and
// languages.
#pragma once

#include "Utilities/ConfigSpace.h"
#include "Utilities/PH_OEM_Debug.h"
#include "Utilities/PH_OEM_ModifiableProperties.h"
#include "Utilities/PH_OEM_Utilities.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"
#include "libzbr_cimipmi.h"

#include <cstring>

// The system event log and the internal event log.
constexpr char sel_name[] = "MessageLog";
constexpr char iel_name[] = "InternalEventLog";

// Configuration variables that more than one class reads.
constexpr std::uint16_t sel_buffer_mode_variable = 0x0007;
constexpr std::uint16_t language_variable = 0x000E; // a locale identifier

// The OEM command for the internal event log.
constexpr std::uint8_t iel_command = 0xF5;

// Return values of the methods.
constexpr CMPIUint32 succeeded = 0;
constexpr CMPIUint32 failed = 2;

// What a client who modifies settings is told. A session that can't be opened is only traced: the client sees
// success.
consteval ModifyTexts RecordLogModifyTexts() {
    ModifyTexts texts = check_path_texts;
    texts.noInstance = {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Property"};
    texts.noSession = {};
    return texts;
}

// Reads a number; one that can't be read is traced, and zero.
template <typename Number>
bool ReadSetting(IpmiSession *session, std::uint16_t id, Number &value, const char *file = __builtin_FILE(),
                 int line = __builtin_LINE()) {
    const int result = ReadNumber(session, id, 0, value);
    if (result != 0) {
        TRACE_FROM(file, line, TraceFailure,
                   "ZBR_CIM_GetConfigSpaceVariables failed varid=0x%x index=%d ret=0x%x", id, 0,
                   static_cast<unsigned>(result));
    }
    return result == 0;
}

// Reads the state of the internal event log; one that can't be read is traced, and all zeros.
inline bool ReadIelInfo(IpmiSession *session, IelInfo &info, const char *file = __builtin_FILE(),
                        int line = __builtin_LINE()) {
    info = {};
    if (ZBR_CIM_GetIELInfo(session, &info, backend_timeout) == 0) {
        return true;
    }
    TRACE_FROM(file, line, TraceFailure, "Failed to get iel info");
    info = {};
    return false;
}

// Whether the internal event log never overwrites its entries.
inline bool NeverOverwrites(const IelInfo &info) {
    constexpr std::uint8_t never_overwrites = 0x80;
    return (info.Flags & never_overwrites) != 0;
}

// The number in a field of little-endian bytes, which need not be aligned.
template <typename Number> Number NumberIn(const std::uint8_t (&field)[sizeof(Number)]) {
    Number number;
    std::memcpy(&number, field, sizeof number);
    return number;
}

// The text of a language.
template <std::size_t N> void SetLocale(char (&text)[N], std::uint16_t language) {
    Zbr_CimIpmi_ConvLocaleString(language, text, static_cast<int>(N));
    EndText(text);
}
