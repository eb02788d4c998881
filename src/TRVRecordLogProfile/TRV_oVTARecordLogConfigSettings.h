#pragma once

#include "Utilities/ClassFrame.h"

// Settings of one of the two logs.
struct RecordLogConfigSettingsRecord {
    std::uint16_t BufferMode;
    char Caption[256];
    std::uint8_t DefaultDisplayCritical;
    std::uint8_t DefaultDisplayInfo;
    std::uint8_t DefaultDisplayMajor;
    std::uint8_t DefaultDisplayMinor;
    char Description[256];
    char ElementName[256];
    char InstanceID[256];
    std::uint8_t ShowHiddenEntries;
};

DECLARE_CLASS(RecordLogConfigSettings);
DECLARE_MODIFY(RecordLogConfigSettings);
