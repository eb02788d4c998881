#pragma once

#include "Utilities/ClassFrame.h"

// A power supply unit that is in the server.
struct PowerSupplyRecord {
    char SystemCreationClassName[256];
    char SystemName[256];
    char CreationClassName[256];
    char DeviceID[256];
    std::uint32_t TotalOutputPower; // watts
    char ElementName[64];
    char Caption[64];
    char Description[64];
    std::int32_t OperationalStatus[4]; // value list
    std::uint32_t HealthState;
    std::uint32_t EnabledState;
    std::uint32_t RequestedState;
    std::uint32_t PrimaryStatus;
    std::uint32_t DetailedStatus;
    char Status[64];
};

DECLARE_CLASS(PowerSupply);
