#pragma once

#include "Utilities/PH_OEM_Common.h"

// A voltage sensor of the system board or of the battery.
using VoltageSensorRecord = NumericSensorRecord;

DECLARE_OWNING_CLASS(VoltageSensor);
