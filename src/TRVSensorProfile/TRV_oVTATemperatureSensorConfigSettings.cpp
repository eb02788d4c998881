// TRV_oVTATemperatureSensorConfigSettings: what the service processor does when a temperature sensor goes
// critical. The index of the variable is the sensor's place among the temperature sensors, not its number.
#include "TRVSensorProfile/TRV_oVTATemperatureSensorConfigSettings.h"

#include "TRVSensorProfile/SensorFamily.h"
#include "TRVSensorProfile/TRV_oVTATemperatureSensor.h"
#include "Utilities/ConfigSpace.h"
#include "Utilities/Text.h"

#include <cstdio>

namespace {

using R = TemperatureSensorConfigSettingsRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the settings by the sensor's name."},
};

constexpr Property<R> properties[] = {
    {"Caption", CMPI_chars, FIELD(R, Caption), "Constant."},
    {"ConfTempCriticalBehavior", CMPI_uint8, FIELD(R, ConfTempCriticalBehavior),
     "What happens when the temperature is critical. Configuration variable 0x0073, the sensor's place as "
     "index."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Name of the sensor. OEM DB, full SDRs: sensor name."},
};

void FillRecord(IpmiSession *session, const FullSdrRow &row, int place, R &record) {
    SetText(record.Caption, "Configuration Space Settings");
    SetText(record.Description,
            "Collection of important configuration space values for a MARLOVEN server system "
            "temperature sensor");
    CopyText(record.ElementName, row.SensorName);
    if (ReadNumber(session, 0x0073, static_cast<std::uint8_t>(place), record.ConfTempCriticalBehavior) != 0) {
        TRACE(TraceFailure, "Failed to get ConfTempCriticalBehavior for sensor number %d", row.SensorNumber);
    }
}

} // namespace

int PH_OEM_Enum_TemperatureSensorConfigSettings_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    FullSdrRow *rows = nullptr;
    int rowCount = 0;
    if (PH_OEM_GetTemperatureSensorInfo(&rows, &rowCount) != 0) {
        return -1;
    }
    const Block<FullSdrRow> rowsOwner{rows};
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    return EnumerateSensorSettings<R>(
        rowCount, records, count, namesOnly,
        [=](int i, R &record) {
            FormatWithName(record.InstanceID, "TRV:oVTATemperatureSensorConfigSettings:%s",
                           rows[i].SensorName);
        },
        [=](IpmiSession *session, int i, R &record) { FillRecord(session, rows[i], i, record); });
}

EXPORT_CLASS(TemperatureSensorConfigSettings,
             "What the service processor does when a temperature sensor goes critical.",
             .superclass = "CIM_SettingData");
