#pragma once

#include "Utilities/ClassFrame.h"

// A management profile that this service processor implements.
struct RegisteredProfileRecord {
    char InstanceID[256];
    std::uint16_t RegisteredOrganization;
    char RegisteredName[256];
    char OtherRegisteredOrganization[256];
    char RegisteredVersion[256];
    std::int32_t AdvertiseTypes[8];
    const char *ImplementedFeatures[16]; // constant texts
};

DECLARE_CLASS(RegisteredProfile);
