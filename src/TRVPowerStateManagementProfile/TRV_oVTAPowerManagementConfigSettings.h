#pragma once

#include "Utilities/ClassFrame.h"

// When the server powers itself on and off. Times are intervals in microseconds.
struct PowerManagementConfigSettingsRecord {
    std::uint64_t ConfPowerOffTrapPremonitionTime;
    std::uint64_t ConfPowerOnTrapPremonitionTime;
    std::uint64_t ConfServerOffTime[7]; // Sunday first
    std::uint64_t ConfServerOnTime[7];
    char ElementName[256];
    char InstanceID[256];
    char PowerOnOffTimeFormat[256];
    std::uint16_t PowerRestorePolicy;
    std::uint8_t PowerScheduleEnable;
};

DECLARE_CLASS(PowerManagementConfigSettings);
DECLARE_MODIFY(PowerManagementConfigSettings);
