// TRV_oVTAPowerSupplyCapabilities: what clients may request of the power supplies.
#include "TRVPowerSupplyProfile/TRV_oVTAPowerSupplyCapabilities.h"

EXPORT_CAPABILITIES_CLASS(PowerSupplyCapabilities, "PowerSupplyCapabilities1",
                          "What clients may request of the power supplies.",
                          "CIM_EnabledLogicalElementCapabilities");
