// TRV_oVTAChassisIDPROMDataSyncSensor: the state of the copies of the chassis data, from compact SDRs of an
// OEM sensor type.
#include "TRVSensorProfile/TRV_oVTAChassisIDPROMDataSyncSensor.h"

EXPORT_DISCRETE_SENSOR_CLASS(ChassisIDPROMDataSyncSensor, 239,
                             "Chassis IDPROM Data Sync Status Connectivity Status",
                             "Chassis IDPROM Data Sync Sensor");
