#pragma once

#include "Utilities/ClassFrame.h"

#include "libClassHelper.h"

// The managed server itself. The head is the row of the helper library; the texts of the pointer lists are
// the record's own, three, three and one blocks of 256 bytes.
struct BaseServerRecord {
    HostComputerSystemRow host;
    std::uint16_t PrimaryStatus;
    char Status[256];
    char Caption[256];
    std::uint64_t LastBootTime; // microseconds since 1970
    std::uint16_t LastPowerOffReason;
    std::uint16_t LastPowerOnReason;
    char AdminURLDNS[256];
    char AdminURLIPv4[256];
    char AdminURLIPv6[256];
    char ManagementIPAddress[256];
    char UnitLocation[256];
    std::uint16_t ServerUpdateStatus;
    char *OtherDedicatedDescriptions[4];
};
static_assert(offsetof(BaseServerRecord, PrimaryStatus) == sizeof(HostComputerSystemRow));

DECLARE_OWNING_CLASS(BaseServer);
DECLARE_METHODS(BaseServer);

// Checks the path and hands the request on to the helper library, which knows the states. Arguments as of
// PH_OEM_IM_BaseServer.
EXPORTED CMPIStatus PH_OEM_BaseServer_RequestStateChange(const CMPIBroker *broker, void *handle,
                                                         const CMPIContext *ctx, const CMPIObjectPath *cop,
                                                         const char *method, const CMPIArgs *in,
                                                         const CMPIResult *rslt, CMPIArgs *out);
