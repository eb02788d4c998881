#pragma once

#include "Utilities/ClassFrame.h"

// The system event log or the internal event log.
struct RecordLogRecord {
    std::uint64_t CurrentNumberOfRecords;
    char ElementName[256];
    std::uint16_t EnabledState;
    std::uint16_t HealthState;
    char InstanceID[256];
    std::uint64_t LastEntryAdd;   // microseconds since 1970; all bits set for null
    std::uint64_t LastEntryErase; // the same
    std::uint16_t LogState;
    std::uint64_t MaxNumberOfRecords;
    std::int32_t OperationalStatus[16]; // value list
    std::uint16_t OverwritePolicy;
    std::uint16_t RequestedState;
};

DECLARE_CLASS(RecordLog);
DECLARE_METHODS(RecordLog);

// Erase one of the logs, whatever the path and the method's name: the two sides of ClearLog. The return value
// is 0, or 2 on failure, with status OK.
DECLARE_METHOD(PH_OEM_Clear_SEL);
DECLARE_METHOD(PH_OEM_Clear_IEL);
