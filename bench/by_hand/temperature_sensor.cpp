#include "by_hand.h"

#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "libzbr_cimipmi.h"

#include <iterator>

namespace {

constexpr char class_name[] = "TRV_oVTATemperatureSensor";
constexpr char system_class[] = "TRV_oVTABaseServer";
constexpr std::size_t state_size = 64;

// What is read of a sensor before its instance is made.
struct Reading {
    std::int32_t current, upperNonCritical, upperCritical;
    char state[32];
    char *possibleStates; // of `state_size` each
    CMPICount possibleStateCount;
};

struct Sensors {
    FullSdrRow *rows = nullptr;
    Reading *readings = nullptr; // not for the names
    int count = 0;
    char serverName[256];
    ~Sensors() {
        for (int i = 0; readings != nullptr && i < count; ++i) {
            std::free(readings[i].possibleStates);
        }
        std::free(readings);
        std::free(rows);
    }
};

float PowerOfTen(int exponent) {
    float power = 1.0F;
    for (int i = exponent < 0 ? -exponent : exponent; i > 0; --i) {
        power *= 10.0F;
    }
    return exponent < 0 ? 1.0F / power : power;
}

// A raw reading in degrees, by the formula of the sensor's row; 0 for a sensor that isn't linear.
std::int32_t Convert(const FullSdrRow &row, float offset, float scale, std::uint8_t raw) {
    if (row.Linear != 1) {
        return 0;
    }
    const float value = (static_cast<float>(row.M * raw) + offset) * scale;
    constexpr float limit = 2147483648.0F;
    return value >= limit ? INT32_MAX : value < -limit ? INT32_MIN : static_cast<std::int32_t>(value);
}

void ReadSensor(IpmiSession *session, FullSdrRow &row, Reading &reading) {
    const int states = Zbr_CimIpmi_GetTmpSensorNumOfPossibleState();
    if (states > 0) {
        reading.possibleStates =
            static_cast<char *>(std::calloc(static_cast<std::size_t>(states), state_size));
    }
    for (int i = 0; reading.possibleStates != nullptr && i < states && i < 64; ++i) {
        Zbr_CimIpmi_GetTmpSensorPossibleState(
            i, reading.possibleStates + state_size * static_cast<unsigned>(i), state_size);
        ++reading.possibleStateCount;
    }
    std::uint8_t raw = 0;
    std::uint8_t state = 0;
    if (ZBR_CIM_GetFullSensorReading(session, row.SensorNumber, nullptr, &raw, &state, backend_timeout) !=
        0) {
        raw = 0;
        state = 255;
    }
    const auto nibble = [](int bits) { return (bits ^ 8) - 8; };
    const float offset = static_cast<float>(row.B) * PowerOfTen(nibble(row.Exponents & 0x0F));
    const float scale = PowerOfTen(nibble(row.Exponents >> 4));
    reading.upperNonCritical = Convert(row, offset, scale, row.UpperThresholdNonCritical);
    reading.upperCritical = Convert(row, offset, scale, row.UpperThresholdCritical);
    reading.current = Convert(row, offset, scale, raw);
    if (state == 255) {
        Format(reading.state, "Unknown");
    } else {
        Zbr_CimIpmi_GetTmpCurrentState(state, reading.state, sizeof reading.state);
    }
}

bool ReadRows(Sensors &sensors) {
    std::uint32_t handle = 0;
    const bool isRead = zbr_oemdb_init(&handle) == 0 &&
                        zbr_oemdb_get_specific_full_sdrs(handle, 1, 255, &sensors.count, &sensors.rows) != 1;
    zbr_oemdb_close(handle);
    return isRead;
}

bool ReadSensors(Sensors &sensors, bool namesOnly) {
    if (!ReadRows(sensors)) {
        return false;
    }
    if (sensors.rows == nullptr || sensors.count < 1) {
        sensors.count = 0;
        return true;
    }
    ReadServerName(sensors.serverName);
    Session session;
    if (!session.isOpen) {
        return false;
    }
    if (namesOnly) {
        return true;
    }
    sensors.readings =
        static_cast<Reading *>(std::calloc(static_cast<std::size_t>(sensors.count), sizeof(Reading)));
    if (sensors.readings == nullptr) {
        return false;
    }
    for (int i = 0; i < sensors.count; ++i) {
        ReadSensor(&session.session, sensors.rows[i], sensors.readings[i]);
    }
    return true;
}

bool SetThresholds(const CMPIBroker *broker, const Instance &instance, const char *name) {
    constexpr std::uint16_t thresholds[] = {1, 3};
    return !IsWanted(instance, name) ||
           SetArray(instance, name, NewNumbers(broker, thresholds, std::size(thresholds)), CMPI_uint16A);
}

bool SetPossibleStates(const CMPIBroker *broker, const Instance &instance, const Reading &reading) {
    const char *texts[64];
    for (CMPICount i = 0; i < reading.possibleStateCount; ++i) {
        texts[i] = reading.possibleStates + i * state_size;
    }
    return SetArray(instance, "PossibleStates", NewTexts(broker, texts, reading.possibleStateCount),
                    CMPI_stringA);
}

bool SetProperties(const CMPIBroker *broker, const Instance &instance, const Sensors &sensors, int i) {
    constexpr std::uint16_t operational = 2;
    const char *name = Ended(sensors.rows[i].SensorName);
    const Reading &reading = sensors.readings[i];
    return SetKey(instance, "SystemCreationClassName", system_class) &&
           SetKey(instance, "SystemName", sensors.serverName) &&
           SetKey(instance, "CreationClassName", class_name) && SetKey(instance, "DeviceID", name) &&
           SetNumber(instance, "BaseUnits", std::uint16_t{2}, CMPI_uint16) &&
           SetText(instance, "Caption", name) &&
           SetNumber(instance, "CurrentReading", reading.current, CMPI_sint32) &&
           SetText(instance, "CurrentState", reading.state) && SetText(instance, "ElementName", name) &&
           SetNumber(instance, "EnabledState", std::uint16_t{5}, CMPI_uint16) &&
           SetNumber(instance, "RateUnits", std::uint16_t{0}, CMPI_uint16) &&
           SetNumber(instance, "RequestedState", std::uint16_t{12}, CMPI_uint16) &&
           SetNumber(instance, "UnitModifier", std::int32_t{0}, CMPI_sint32) &&
           SetNumber(instance, "HealthState", std::uint16_t{5}, CMPI_uint16) &&
           SetNumber(instance, "SensorType", std::uint16_t{2}, CMPI_uint16) &&
           SetThresholds(broker, instance, "EnabledThresholds") &&
           (!IsWanted(instance, "OperationalStatus") ||
            SetArray(instance, "OperationalStatus", NewNumbers(broker, &operational, 1), CMPI_uint16A)) &&
           (!IsWanted(instance, "SettableThresholds") ||
            SetArray(instance, "SettableThresholds", nullptr, CMPI_uint16A)) &&
           SetThresholds(broker, instance, "SupportedThresholds") &&
           (!IsWanted(instance, "PossibleStates") || SetPossibleStates(broker, instance, reading)) &&
           SetNumber(instance, "DetailedStatus", std::uint16_t{1}, CMPI_uint16) &&
           SetNumber(instance, "OperatingStatus", std::uint16_t{1}, CMPI_uint16) &&
           SetNumber(instance, "PrimaryStatus", std::uint16_t{1}, CMPI_uint16) &&
           SetText(instance, "Status", "OK") &&
           SetNumber(instance, "UpperThresholdNonCritical", reading.upperNonCritical, CMPI_sint32) &&
           SetNumber(instance, "UpperThresholdCritical", reading.upperCritical, CMPI_sint32);
}

bool ReturnSensor(const CMPIBroker *broker, const CMPIObjectPath *cop, const char **properties,
                  const CMPIResult *rslt, const Sensors &sensors, int i) {
    const Instance instance = NewInstance(broker, cop, class_name, properties);
    if (instance.inst == nullptr) {
        return false;
    }
    if (!SetProperties(broker, instance, sensors, i)) {
        CMRelease(instance.inst);
        return false;
    }
    CMReturnInstance(rslt, instance.inst);
    return true;
}

bool ReturnName(const CMPIBroker *broker, const CMPIObjectPath *cop, const CMPIResult *rslt,
                const Sensors &sensors, int i) {
    const char *name = Ended(sensors.rows[i].SensorName);
    CMPIObjectPath *path = NewPath(broker, cop, class_name);
    if (path == nullptr) {
        return false;
    }
    if (*name == '\0' || !AddKey(path, "SystemCreationClassName", system_class) ||
        !AddKey(path, "DeviceID", name) || !AddKey(path, "CreationClassName", class_name) ||
        !AddKey(path, "SystemName", sensors.serverName)) {
        CMRelease(path);
        return false;
    }
    CMReturnObjectPath(rslt, path);
    return true;
}

// The sensor that the keys name, or -1.
int FindSensor(const Sensors &sensors, const char *const *keys) {
    if (std::strcmp(keys[0], system_class) != 0 || std::strcmp(keys[1], class_name) != 0 ||
        std::strcmp(keys[2], sensors.serverName) != 0) {
        return -1;
    }
    for (int i = 0; i < sensors.count; ++i) {
        if (std::strcmp(keys[3], Ended(sensors.rows[i].SensorName)) == 0) {
            return i;
        }
    }
    return -1;
}

} // namespace

EXPORTED void PH_OEM_GI_TemperatureSensor(const CMPIBroker *broker, const CMPIContext *,
                                          const CMPIObjectPath *cop, const char **properties,
                                          const CMPIResult *rslt, CMPIStatus *status) {
    constexpr const char *names[] = {"SystemCreationClassName", "CreationClassName", "SystemName",
                                     "DeviceID"};
    CMPIString *values[std::size(names)];
    Sensors sensors;
    if (ReadKeys(cop, names, values, std::size(names))) {
        const char *keys[] = {CMGetCharsPtr(values[0], nullptr), CMGetCharsPtr(values[1], nullptr),
                              CMGetCharsPtr(values[2], nullptr), CMGetCharsPtr(values[3], nullptr)};
        const int found = ReadSensors(sensors, false) ? FindSensor(sensors, keys) : -1;
        if (found >= 0 && ReturnSensor(broker, cop, properties, rslt, sensors, found)) {
            return;
        }
    }
    Fail(broker, status, "Failed to Get Instance");
}

EXPORTED void PH_OEM_EI_TemperatureSensor(const CMPIBroker *broker, const CMPIContext *,
                                          const CMPIObjectPath *cop, const char **properties,
                                          const CMPIResult *rslt, CMPIStatus *status) {
    Sensors sensors;
    bool isDone = ReadSensors(sensors, false);
    for (int i = 0; isDone && i < sensors.count; ++i) {
        isDone = ReturnSensor(broker, cop, properties, rslt, sensors, i);
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Enumerate Instance");
    }
}

EXPORTED void PH_OEM_EIN_TemperatureSensor(const CMPIBroker *broker, const CMPIContext *,
                                           const CMPIObjectPath *cop, const CMPIResult *rslt,
                                           CMPIStatus *status) {
    Sensors sensors;
    bool isDone = ReadSensors(sensors, true);
    for (int i = 0; isDone && i < sensors.count; ++i) {
        isDone = ReturnName(broker, cop, rslt, sensors, i);
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Enumerate Instance Names");
    }
}
