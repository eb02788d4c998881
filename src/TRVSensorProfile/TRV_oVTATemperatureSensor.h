#pragma once

#include "Utilities/PH_OEM_Common.h"

// A temperature sensor of the server.
using TemperatureSensorRecord = NumericSensorRecord;

DECLARE_OWNING_CLASS(TemperatureSensor);

// The SDRs of all temperature sensors, for the caller to free. 0, or -1 with a count of 0 on failure.
EXPORTED int PH_OEM_GetTemperatureSensorInfo(FullSdrRow **rows, int *count);
