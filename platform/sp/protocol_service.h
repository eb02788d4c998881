/// What the Core DB's row of a protocol service holds, between the Core DB and the base helper library.
#pragma once

#include "libcorestore.h"

namespace sp {

struct ProtocolServiceData {
    char Name[256];
    char ElementName[256];
    char OtherProtocol[256];
    char OperationalStatus[256]; ///< numbers in a comma text
    uint32_t Protocol;
    uint32_t MaxConnections;
    uint32_t RequestedState;
    uint32_t EnabledState;
    uint32_t HealthState;
};

static_assert(sizeof(ProtocolServiceData) == sizeof(ProtocolServiceRow));
static_assert(offsetof(ProtocolServiceData, Name) == offsetof(ProtocolServiceRow, Name));

} // namespace sp
