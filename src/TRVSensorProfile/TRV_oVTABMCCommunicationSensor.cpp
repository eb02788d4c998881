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
    .className = "TRV_oVTABMCCommunicationSensor",
    .sensorType = 234,
    .otherSensorTypeDescription = "BMC Communication Status",
    .fetchFailure = "Failed to get BMC Communication Sensor info",
};

} // namespace

int PH_OEM_Enum_BMCCommunicationSensor_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    CompactSdrRow *rows = nullptr;
    int rowCount = 0;
    if (GetDiscreteSensorRows(sensor_class, &rows, &rowCount) != 0) {
        return -1;
    }
    const Block<CompactSdrRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    return EnumerateSensors<R>(
        {.className = sensor_class.className, .clean = PH_OEM_Clean_BMCCommunicationSensor}, rowCount,
        records, count, namesOnly, [=](int i) -> auto & { return rows[i].SensorName; },
        [=](IpmiSession *session, int i, R &record) {
            const std::uint16_t state = FillDiscreteSensor(sensor_class, session, rows[i], record.sensor);
            if (state != unread_state) {
                Zbr_CimIpmi_GetMultipleStateString(sensor_class.sensorType, state, record.BMCRequestPending,
                                                   sizeof record.BMCRequestPending);
            }
        });
}

void PH_OEM_Clean_BMCCommunicationSensor(R **records, int count) {
    TRACE(TraceProgress, "Entering %s", __func__);
    for (int i = 0; *records != nullptr && i < count; ++i) {
        FreeTexts((*records)[i].BMCRequestPending);
    }
    CleanSensors(records, count);
}

EXPORT_COLUMNS(BMCCommunicationSensor, "State of the communication with the service processor.",
               Untagged<discrete_sensor_keys>, discrete_sensor_columns<own_properties>,
               .superclass = "TRV_NumericSensor", .pathOrder = discrete_sensor_path_order,
               .instanceOrder = discrete_sensor_instance_order);
