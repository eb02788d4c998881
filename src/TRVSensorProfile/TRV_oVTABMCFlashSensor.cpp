// TRV_oVTABMCFlashSensor: the state of the flash memory of the service processor, from compact SDRs of an OEM
// sensor type.
#include "TRVSensorProfile/TRV_oVTABMCFlashSensor.h"

EXPORT_DISCRETE_SENSOR_CLASS(BMCFlashSensor, 236, "BMC Flash Status", "BMC Flash Sensor");
