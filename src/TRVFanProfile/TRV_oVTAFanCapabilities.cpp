// TRV_oVTAFanCapabilities: what clients may request of the fans.
#include "TRVFanProfile/TRV_oVTAFanCapabilities.h"

EXPORT_CAPABILITIES_CLASS(FanCapabilities, "FanCapabilities1", "What clients may request of the fans.",
                          "CIM_EnabledLogicalElementCapabilities");
