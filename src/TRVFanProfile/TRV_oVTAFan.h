#pragma once

#include "Utilities/ClassFrame.h"

// A fan that is in the server.
struct FanRecord {
    char SystemCreationClassName[256];
    char SystemName[256];
    char CreationClassName[256];
    char DeviceID[256];
    char Description[256];
    std::int32_t OperationalStatus[32]; // value list
    std::uint16_t HealthState;
    std::uint64_t DesiredSpeed;
    std::uint16_t EnabledState;
    std::uint16_t RequestedState;
    std::uint8_t VariableSpeed;
    std::uint8_t ActiveCooling;
    char ElementName[64];
    std::uint16_t CoolingDeviceType;
};

DECLARE_CLASS(Fan);
