// TRV_oVTABaseServerCapabilities: what clients may request of the managed server.
#include "TRVBaseServerProfile/TRV_oVTABaseServerCapabilities.h"

EXPORT_CAPABILITIES_CLASS(BaseServerCapabilities, "HostSystemCapabilities1",
                          "What clients may request of the managed server.",
                          "CIM_EnabledLogicalElementCapabilities");
