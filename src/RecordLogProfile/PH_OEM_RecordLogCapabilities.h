#pragma once

#include "Utilities/Export.h"

#include <cmpidt.h>

// Completes an instance of TRV_oVTARecordLogCapabilities, which the provider layer has made: adds the
// languages that the log's entries can be had in, where they are wanted. Gives the instance back; on failure
// `status` says so, the instance is released and the result is NULL.
EXPORTED CMPIInstance *PH_OEM_MakeInst_RecordLogCapabilities(const CMPIBroker *broker,
                                                             const char **properties, CMPIInstance *inst,
                                                             CMPIStatus *status);
