/// Status mapping library: what states of sensors, LEDs and units mean in CIM's values and texts.
///
/// States are those that the readings deliver: the bits of a compact sensor in 16 bits, the threshold bits or
/// the status byte of a full sensor in 8. A state that the library doesn't know is 0, which is CIM's
/// "unknown", in every value and "Unknown" in every text. Texts always get an end; `size` is in bytes.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Power supplies, by the state of their status sensor without its highest bit.

uint16_t Zbr_CimIpmi_GetPsuHealthState(uint16_t state);
uint16_t Zbr_CimIpmi_GetPsuPrimaryStatus(uint16_t state);
uint16_t Zbr_CimIpmi_GetPsuDetailedStatus(uint16_t state);
void Zbr_CimIpmi_GetPsuStatus(uint16_t state, char *text, int size);

/// Not 0 when the low byte of the status sensor's state says that the unit is there.
int Zbr_CimIpmi_IsPsuPresent(uint8_t state);

// The server itself, by the state of its error LED.

uint16_t Zbr_CimIpmi_GetBaseSrvHealthState(uint8_t ledState);
uint16_t Zbr_CimIpmi_GetBaseSrvPrimaryStatus(uint8_t ledState);
void Zbr_CimIpmi_GetBaseSrvStatus(uint8_t ledState, char *text, int size);

// Fans, by the state of their status sensor.

uint16_t Zbr_CimIpmi_GetFanHealthState(uint16_t state);

// Sensors: the texts of the states that a kind of sensor can have, by an index from 0, and the text of the
// state that it is in. An index that there isn't gives an empty text.

int Zbr_CimIpmi_GetTmpSensorNumOfPossibleState(void);
void Zbr_CimIpmi_GetTmpSensorPossibleState(int index, char *text, int size);
void Zbr_CimIpmi_GetTmpCurrentState(uint8_t state, char *text, int size);

int Zbr_CimIpmi_GetFanSensorNumOfPossibleState(void);
void Zbr_CimIpmi_GetFanSensorPossibleState(int index, char *text, int size);
void Zbr_CimIpmi_GetFanCurrentState(uint16_t state, char *text, int size);

int Zbr_CimIpmi_GetVolSensorNumOfPossibleState(void);
void Zbr_CimIpmi_GetVolSensorPossibleState(int index, char *text, int size);
void Zbr_CimIpmi_GetVolCurrentState(uint8_t state, char *text, int size);

/// Power production. Its state is the status byte of a reading.
int Zbr_CimIpmi_GetPPSensorNumOfPossibleState(void);
void Zbr_CimIpmi_GetPPSensorPossibleState(int index, char *text, int size);
void Zbr_CimIpmi_GetPPCurrentState(uint8_t status, char *text, int size);

/// Power consumption level.
int Zbr_CimIpmi_GetPwlSensorNumOfPossibleState(void);
void Zbr_CimIpmi_GetPwlSensorPossibleState(int index, char *text, int size);
void Zbr_CimIpmi_GetPwlCurrentState(uint16_t state, char *text, int size);

// OEM discrete sensors, by their OEM sensor type. Slots are pointers to texts, `size` their room in bytes;
// those that are filled come first, and each text is a heap block of the caller's. Other slots stay as they
// are.

/// The texts of all states of the type.
void Zbr_CimIpmi_GetPossibleStateString(int sensorType, char **slots, int size);

/// The text of a state: of the most serious of its conditions.
void Zbr_CimIpmi_GetCurrentStateString(int sensorType, uint16_t state, char *text, int size);

/// The texts of all conditions that a state holds.
void Zbr_CimIpmi_GetMultipleStateString(int sensorType, uint16_t state, char **slots, int size);

/// The CIM `RateUnits` of an SDR's rate unit code.
uint16_t Zbr_CimIpmi_ConvertRateUnit(uint8_t code);

// Entries of the record logs, by the low byte of their flags.

void Zbr_CimIpmi_ConvSeverityString(uint8_t flags, char *text, int size);

/// Whether the customer can replace the part.
void Zbr_CimIpmi_ConvBoolCSSString(uint8_t flags, char *text, int size);

// Languages: numeric locale identifiers and their texts.

/// The text of a code; empty for one that the library doesn't know.
void Zbr_CimIpmi_ConvLocaleString(uint16_t language, char *text, int size);

/// The code of a text of `length` characters. The result is 0 when there is none.
int Zbr_CimIpmi_ConvLocaleCode(const char *text, int length, uint16_t *language);

#ifdef __cplusplus
}
#endif
