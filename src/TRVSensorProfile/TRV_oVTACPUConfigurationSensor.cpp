// TRV_oVTACPUConfigurationSensor: the state of the configuration of the processors, from compact SDRs of an
// OEM sensor type.
#include "TRVSensorProfile/TRV_oVTACPUConfigurationSensor.h"

EXPORT_DISCRETE_SENSOR_CLASS(CPUConfigurationSensor, 220, "CPU configuration Status",
                             "CPU Configuration Sensor");
