#pragma once

#include "TRVSensorProfile/DiscreteSensorFamily.h"

DECLARE_DISCRETE_SENSOR_CLASS(I2CSensor);
