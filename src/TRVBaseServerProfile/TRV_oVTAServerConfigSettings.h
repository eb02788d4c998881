#pragma once

#include "Utilities/ClassFrame.h"

// The server's own variables of the configuration space.
struct ServerConfigSettingsRecord {
    char InstanceID[256];
    std::uint8_t BIOSRecoveryFlash;
    char Caption[256];
    std::uint8_t ConfDisableFanTest;
    std::uint16_t ConfErrorOffRestartTime;
    std::uint16_t ConfFanDailyTestTime;
    std::uint8_t ConfPowerCycleDelay;
    std::uint8_t ConfRebootRetryCounter;
    std::uint8_t ConfRetryCounterMax;
    std::uint8_t ConfTempCriticalPowerOff;
    char Description[256];
    char ElementName[256];
    std::uint64_t PowerOnCounter; // microseconds
};

DECLARE_CLASS(ServerConfigSettings);
DECLARE_MODIFY(ServerConfigSettings);
DECLARE_METHODS(ServerConfigSettings);
