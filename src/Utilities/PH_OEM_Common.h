// Families of classes that are so much alike that their Enum and MakeInst are shared: capabilities, protocol
// services, TCP endpoints and numeric sensors.
//
// The MakeInst operations work on an instance that the class has made; they set its keys, which must not be
// empty, and its wanted properties. All operations give 0, or -1 on failure, unless said otherwise.
#pragma once

#include "Utilities/ClassFrame.h"

#include "libCIMBaseHooks.h"
#include "libClassHelper.h"
#include "libzbr_cimcore.h"

// --- Capabilities

// The one instance of a capabilities class.
struct CapabilitiesRecord {
    char InstanceID[128];
    std::uint8_t ElementNameEditSupported;
    std::uint16_t MaxElementNameLen;
    std::int32_t RequestedStatesSupported[16]; // value list
    char ElementName[256];
};

// The record of the Core DB's row of that name; no record, and success, when there is no such row.
EXPORTED int PH_OEM_Common_EnumAll_ForCapabilities(const char *rowName, CapabilitiesRecord **records,
                                                   int *count, int namesOnly);
EXPORTED int PH_OEM_Common_MakeInst_ForCapabilites(const CMPIBroker *broker, const CMPIInstance *inst,
                                                   const CapabilitiesRecord *record, const char **properties);

// --- Power supplies

// 1 when the unit of the row is there, with the state of its status sensor in *state; 0 when it isn't, or
// when a sensor can't be read.
EXPORTED int PH_OEM_Common_GetPSUPresentAndState(IpmiSession *session, const PsuRow *row,
                                                 std::uint16_t *state);

// --- Protocol services and TCP endpoints

// The service of the Core DB's row of that name, completed by the helper library; no record, and success,
// when there is no such row.
EXPORTED int PH_OEM_Common_EnumAll_ForProtocolService(const char *rowName, const char *className,
                                                      ProtocolServiceRecord **records, int *count,
                                                      int namesOnly);
EXPORTED int PH_OEM_Common_MakeInst_ForProtocolService(const CMPIBroker *broker, const CMPIInstance *inst,
                                                       const ProtocolServiceRecord *record,
                                                       const char **properties);
EXPORTED int PH_OEM_Common_MakeInst_ForTCPProtocolEndpoint(const CMPIBroker *broker, const CMPIInstance *inst,
                                                           const TCPProtocolEndpointRow *row,
                                                           const char **properties);

// --- Numeric sensors

// The record of the temperature sensors, and the head of every other sensor's. The list fields are all ones
// before they are filled, so that an untouched list is empty.
struct NumericSensorRecord {
    char SystemCreationClassName[256];
    char SystemName[256];
    char CreationClassName[256];
    char DeviceID[256];
    std::uint16_t SensorType;
    char OtherSensorTypeDescription[128];
    std::uint16_t HealthState;
    std::int32_t OperationalStatus[64];
    char *PossibleStates[64]; // owned texts, ended by NULL
    char CurrentState[128];
    char Caption[256];
    char ElementName[256];
    std::uint16_t RequestedState;
    std::uint16_t EnabledState;
    std::int32_t CurrentReading;
    std::uint16_t BaseUnits;
    std::int32_t UnitModifier;
    std::uint16_t RateUnits;
    std::int32_t SupportedThresholds[12];
    std::int32_t EnabledThresholds[12];
    std::int32_t SettableThresholds[12];
    std::int32_t UpperThresholdNonCritical;
    std::int32_t LowerThresholdCritical;
    std::int32_t UpperThresholdCritical;
    std::int32_t UpperThresholdFatal;
    std::uint16_t DetailedStatus;
    std::uint16_t OperatingStatus;
    std::uint16_t PrimaryStatus;
    char Status[16];
};

EXPORTED int PH_OEM_Common_MakeInst_ForNumericSensors(const CMPIBroker *broker, const CMPIInstance *inst,
                                                      const NumericSensorRecord *record,
                                                      const char **properties);

// The value of a raw reading, 0 to 255, by the IPMI standard's formula for linear sensors,
// y = (M x + B 10^Bexp) 10^Rexp, in single precision. 0 for a sensor that isn't linear.
EXPORTED float PH_OEM_ConvertLinearSensorReading(int reading, const FullSdrRow *row);

// A reading cut to an integer, towards zero; one beyond 32 bits gives the nearest that there is.
std::int32_t TruncateReading(float value);

// base to the power of exponent, multiplied factor by factor in single precision; the reciprocal of that for
// a negative exponent.
EXPORTED float ph_oem_power(int base, int exponent);
