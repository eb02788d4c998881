// TRV_oVTABMCCommunicationSensor: the state of the communication with the service processor. It is a discrete
// status sensor like the others of its family, and lists the requests that are pending behind its state.
#include "TRVSensorProfile/TRV_oVTABMCCommunicationSensor.h"

#include "libzbr_cimipmi.h"

namespace {

using R = BMCCommunicationSensorRecord;

constexpr Property<R> own_properties[] = {
    {"BMCRequestPending", CMPI_stringA, FIELD(R, BMCRequestPending),
     "Requests that are pending. Sensor reading: one text for each condition of the state."},
};

constexpr DiscreteSensorClass sensor_class = {
    .sensorType = 234,
    .otherSensorTypeDescription = "BMC Communication Status",
    .fetchFailure = "Failed to get BMC Communication Sensor info",
};

int List(Listing<R> listing) {
    return ListDiscreteSensors(sensor_class, listing, [](std::uint16_t state, R &record) {
        if (state != unread_state) {
            Zbr_CimIpmi_GetMultipleStateString(sensor_class.sensorType, state, record.BMCRequestPending,
                                               sizeof record.BMCRequestPending);
        }
    });
}

void FreeOwned(void *record) {
    FreeTexts(static_cast<R *>(record)->BMCRequestPending);
    FreeForeignStates<R>(record);
}

} // namespace

EXPORT_DISCRETE_SENSOR_COLUMNS(BMCCommunicationSensor,
                               "State of the communication with the service processor.", FreeOwned,
                               discrete_sensor_columns<own_properties>);
