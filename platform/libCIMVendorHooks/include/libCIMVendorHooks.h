/// What only this maker's service processor can tell of its LAN channels.
#pragma once

#include "libCIMBaseHooks.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Stores the six bytes of a LAN channel's MAC address. 0 on success.
int CIM_Get_MACAddress(IpmiSession *session, uint8_t *address, uint8_t channel, int timeout);

#ifdef __cplusplus
}
#endif
