// TRV_oVTAFanSensorConfigSettings: what the service processor does when a fan fails. The variables are those
// that TRV_oVTAFanSensor writes, read here by the sensor's number.
#include "TRVSensorProfile/TRV_oVTAFanSensorConfigSettings.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "TRVSensorProfile/TRV_oVTAFanSensor.h"
#include "Utilities/Text.h"

#include "libzbr_cim.h"

namespace {

using R = FanSensorConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings by the sensor's name."},
};

constexpr Property<R> properties[] = {
    {"Caption", CMPI_chars, FIELD(R, Caption), "Constant."},
    {"ConfFanFailBehavior", CMPI_uint8, FIELD(R, ConfFanFailBehavior),
     "What happens when the fan fails. Configuration variable 0x71 of the sensor."},
    {"ConfFanFailShutdownDelay", CMPI_uint16, FIELD(R, ConfFanFailShutdownDelay),
     "Seconds until the server is switched off then. Configuration variable 0x72 of the sensor."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Name of the sensor. OEM DB, full SDRs: sensor name."},
};

template <typename Number>
void ReadForSensor(IpmiSession *session, std::uint16_t id, const char *name, std::uint8_t sensorNumber,
                   Number &value) {
    int size = sizeof value;
    if (ZBR_CIM_GetCSVForSensor(session, id, sensorNumber, &value, &size, backend_timeout) != 0) {
        TRACE(TraceFailure, "Failed to get %s for sensor number %d", name, sensorNumber);
        value = 0;
    }
}

void FillRecord(IpmiSession *session, const FullSdrRow &row, R &record) {
    SetText(record.Caption, "Configuration Space Settings");
    ReadForSensor(session, 0x71, "ConfFanFailBehavior", row.SensorNumber, record.ConfFanFailBehavior);
    ReadForSensor(session, 0x72, "ConfFanFailShutdownDelay", row.SensorNumber,
                  record.ConfFanFailShutdownDelay);
    SetText(record.Description,
            "Collection of important configuration space values for a MARLOVEN server system fan sensor");
    CopyText(record.ElementName, row.SensorName);
}

} // namespace

int PH_OEM_Enum_FanSensorConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    FanSensorRow *rows = nullptr;
    int rowCount = 0;
    if (PH_OEM_GetFanSensorInfo(&rows, &rowCount) != 0) {
        return -1;
    }
    const Block<FanSensorRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No Fan Sensor sdr\n");
        return 0;
    }
    return EnumerateSensorSettings<R>(
        rowCount, records, count, namesOnly,
        [=](int i, R &record) {
            FormatWithName(record.InstanceID, "TRV:oVTAFanSensorConfigSettings:%s", rows[i].full.SensorName);
        },
        [=](IpmiSession *session, int i, R &record) { FillRecord(session, rows[i].full, record); });
}

EXPORT_CLASS(FanSensorConfigSettings, "What the service processor does when a fan fails.",
             .superclass = "CIM_SettingData");
