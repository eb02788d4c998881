#pragma once

#include "Utilities/PH_OEM_Common.h"

// A sensor of the power that a power supply puts out.
using PowerProductionSensorRecord = NumericSensorRecord;

DECLARE_OWNING_CLASS(PowerProductionSensor);
