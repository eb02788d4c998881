#pragma once

#include "Utilities/ClassFrame.h"

// Whether the power supplies form a redundant set. Owns the texts of OtherTypeOfSet.
struct PSRedundancySetRecord {
    char InstanceID[256];
    char Caption[256];
    char Description[256];
    char ElementName[256];
    std::uint32_t MaxNumberSupported;
    std::uint32_t MinNumberNeeded;
    char *OtherTypeOfSet[4]; // pointer list, two entries of 256 bytes
    std::uint16_t RedundancyStatus;
    std::int32_t TypeOfSet[4]; // value list
};

DECLARE_OWNING_CLASS(PSRedundancySet);
