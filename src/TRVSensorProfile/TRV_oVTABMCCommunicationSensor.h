#pragma once

#include "TRVSensorProfile/DiscreteSensorFamily.h"

// A status sensor of the communication with the service processor. Owns the texts of BMCRequestPending as
// well.
struct BMCCommunicationSensorRecord {
    NumericSensorRecord sensor;
    char *BMCRequestPending[64]; // pointer list
};

DECLARE_OWNING_CLASS(BMCCommunicationSensor);
