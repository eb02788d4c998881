#pragma once

#include "Utilities/ClassFrame.h"

// An entry of the system event log or of the internal event log.
struct LogEntryRecord {
    char InstanceID[256];
    char LogInstanceID[256];
    char RecordID[256];
    std::uint32_t CreationTimeStamp; // seconds since 1970
    char RecordFormat[256];
    char RecordData[256];
    char ElementName[256];
    char Locale[32];
    char *ProbableCauseDescription[16]; // owned texts; the list ends with NULL
    char *RecommendedActions[16];       // the same
    char Summary[1024];
    std::uint16_t AlertGroup;
    std::uint8_t CSSComponent; // the customer can replace the part
    std::uint32_t ErrorCode;
    char Message[256];
    std::uint16_t Severity;
};

DECLARE_OWNING_CLASS(LogEntry);
