#pragma once

#include "Utilities/PH_OEM_Common.h"

// A sensor of power that is consumed.
using PowerConsumptionSensorRecord = NumericSensorRecord;

DECLARE_OWNING_CLASS(PowerConsumptionSensor);
