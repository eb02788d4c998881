// What this library adds to the capabilities of the record logs, which the provider layer serves itself.
#include "RecordLogProfile/PH_OEM_RecordLogCapabilities.h"

#include "TRVRecordLogProfile/RecordLogs.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Values.h"

#include "libzbr_cim.h"

#include <algorithm>

namespace {

// The languages that the log can be had in, as texts. Their number, or -1 on failure.
template <std::size_t N> int ReadLanguages(char (&texts)[SUPPORTED_LANGUAGES_SIZE][N]) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    std::uint16_t languages[SUPPORTED_LANGUAGES_SIZE] = {};
    std::uint8_t count = 0;
    if (ZBR_CIM_GetSupportedLanguages(&session, &count, languages, backend_timeout) != 0) {
        TRACE(TraceFailure, "ZBR_CIM_GetSupportedLanguages failed");
        return -1;
    }
    const int used = std::min<int>(count, SUPPORTED_LANGUAGES_SIZE);
    for (int i = 0; i < used; ++i) {
        SetLocale(texts[i], languages[i]);
    }
    return used;
}

} // namespace

CMPIInstance *PH_OEM_MakeInst_RecordLogCapabilities(const CMPIBroker *broker, const char **properties,
                                                    CMPIInstance *inst, CMPIStatus *status) {
    TRACE(TraceProgress, "Entering %s", __func__);
    char texts[SUPPORTED_LANGUAGES_SIZE][256] = {};
    const int count = ReadLanguages(texts);
    // Without languages the property is null.
    if (count >= 0 &&
        PH_OEM_SetPropertyArray(broker, inst, properties, "SupportedLogEntryTranslations",
                                count > 0 ? texts : nullptr, count, CMPI_stringA, 0, sizeof texts[0]) == 0) {
        return inst;
    }
    SetStatus(broker, status, CMPI_RC_ERR_FAILED, "Make instance failed.");
    CMRelease(inst);
    return nullptr;
}
