#pragma once

#include "Utilities/ClassFrame.h"

// The service processor's control of the power consumption. Times are intervals in microseconds.
struct PowerConsumptionConfigSettingsRecord {
    char InstanceID[256];
    char Caption[256];
    std::uint8_t ConfDynPowerLimitEnable;
    std::uint8_t ConfPowerControlMode;
    std::uint8_t ConfPowerControlScheduleMode1[7];
    std::uint8_t ConfPowerControlScheduleMode2[7];
    std::uint64_t ConfPowerControlScheduleTime1[7];
    std::uint64_t ConfPowerControlScheduleTime2[7];
    std::uint8_t ConfPowerLimitModeAction;
    std::uint16_t ConfPowerLimitModeValue;
    std::uint64_t ConfPowerLimitModePeriod;
    std::uint16_t ConfPowerLimitModeThreshold;
    std::uint8_t ConfPowerMonitoringEnable;
    std::uint8_t ConfWebPowerMonitoringUnits;
    char Description[256];
    char ElementName[256];
    std::uint8_t SupportedPowerControlModes[8];
    std::uint32_t SupportedPowerControlModesCount;
};

DECLARE_CLASS(PowerConsumptionConfigSettings);
DECLARE_MODIFY(PowerConsumptionConfigSettings);
