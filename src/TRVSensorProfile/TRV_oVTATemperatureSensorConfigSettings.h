#pragma once

#include "Utilities/ClassFrame.h"

// What the service processor does when a temperature sensor goes critical.
struct TemperatureSensorConfigSettingsRecord {
    char InstanceID[256];
    char Caption[256];
    std::uint8_t ConfTempCriticalBehavior;
    char Description[256];
    char ElementName[256];
};

DECLARE_CLASS(TemperatureSensorConfigSettings);
