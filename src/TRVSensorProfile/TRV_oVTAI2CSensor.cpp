// TRV_oVTAI2CSensor: the state of the I2C buses, from compact SDRs of an OEM sensor type.
#include "TRVSensorProfile/TRV_oVTAI2CSensor.h"

EXPORT_DISCRETE_SENSOR_CLASS(I2CSensor, 192, "I2C Connectivity Status", "I2C Sensor");
