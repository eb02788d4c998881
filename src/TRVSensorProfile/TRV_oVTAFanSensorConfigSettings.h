#pragma once

#include "Utilities/ClassFrame.h"

// What the service processor does when a fan fails.
struct FanSensorConfigSettingsRecord {
    char InstanceID[256];
    char Caption[256];
    std::uint8_t ConfFanFailBehavior;
    std::uint16_t ConfFanFailShutdownDelay;
    char Description[256];
    char ElementName[256];
};

DECLARE_CLASS(FanSensorConfigSettings);
