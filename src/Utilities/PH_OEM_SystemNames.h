// The names of the systems that nearly every class carries in its keys: the base server's, which is the
// chassis serial number, the service processor's, and the host name that is composed from the DNS settings.
// Nothing here holds a state: each operation opens its back end, reads afresh and closes it again.
#pragma once

#include "Utilities/Export.h"

#include "libCIMBaseHooks.h"
#include "libcorestore.h"

#include <cstdint>

// The caller zeroes it. Its fields stay zero or empty where a variable can't be read.
struct DNSGeneralSettingRecord {
    char DNSSuffixesToAppend[2][256]; // the short serial number and the name extension
    std::uint8_t ConfBMCAddSerialNumber;
    std::uint8_t ConfBMCUseNetworkName;
    std::uint8_t ConfBMCAddExtension;
    char ConfBMCNameExtension[256];
    char ConfBMCNetworkName[256];
};

// The FRU row of the chassis, the first one of entity 23 or 24, as a block that the caller frees. 0, with
// *row NULL and *count 0 when there is none and *count 1 otherwise; -1 on failure.
int GetChassisFruInfo(FruRow **row, int *count);

// The chassis serial number into `dst`, which must have room for 256 characters. 0, or -1 when there is no
// chassis row or it can't be read; the number may be empty.
EXPORTED int PH_OEM_GetChassisSerialNumber(char *dst, int size);

// The base server's name: the chassis serial number, or "- unknown -". Always 0.
EXPORTED int PH_OEM_GetBaseServerName(char *out, int size);

// The service processor's system name, from the helper library. `length` must be 256 at least. 0, or -1 on
// failure.
EXPORTED int PH_OEM_GetServiceProcessorName(char *buffer, int length);

// Reads the variables that the host name is made of.
EXPORTED void PH_OEM_GetDNSGeneralSettingData(IpmiSession *session, DNSGeneralSettingRecord *settings);

// The host name: the network name, or the one that the host has, with both suffixes. What doesn't fit `dst`
// is cut at its end. 0, or -1 with an empty `dst` when the name can't be read.
EXPORTED int PH_OEM_GetHostname(IpmiSession *session, DNSGeneralSettingRecord *settings, char *dst, int size);
