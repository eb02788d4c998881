/// OEM DB: the service processor's database of sensors, profiles and its own access data.
///
/// A result of 1 is a failure, 0 is success. Rows hold no pointers, and texts in them may fill their field
/// to the last byte without an end: never read one past its field. Rows are one heap block that the caller
/// frees with `free`; without rows the block is NULL and the count 0, and that is a success.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Target and login of an IPMI 2.0 session. The numbers are texts as `strtol` reads them with base 0.
typedef struct IpmiSessionInformation {
    char Target[128];
    uint16_t Port;
    uint8_t reserved130[2];
    char UserName[256];
    char Password[256];
    char AuthenticationAlgorithm[64];
    char IntegrityAlgorithm[64];
    char AuthenticationType[64];
    char ConfidentialityAlgorithm[64];
    char PrivilegeLevel[64]; ///< 0 stands for 4, administrator
} IpmiSessionInformation;

static_assert(offsetof(IpmiSessionInformation, Target) == 0, "");
static_assert(offsetof(IpmiSessionInformation, Port) == 128, "");
static_assert(offsetof(IpmiSessionInformation, UserName) == 132, "");
static_assert(offsetof(IpmiSessionInformation, Password) == 388, "");
static_assert(offsetof(IpmiSessionInformation, AuthenticationAlgorithm) == 644, "");
static_assert(offsetof(IpmiSessionInformation, IntegrityAlgorithm) == 708, "");
static_assert(offsetof(IpmiSessionInformation, AuthenticationType) == 772, "");
static_assert(offsetof(IpmiSessionInformation, ConfidentialityAlgorithm) == 836, "");
static_assert(offsetof(IpmiSessionInformation, PrivilegeLevel) == 900, "");
static_assert(sizeof(IpmiSessionInformation) == 964, "");

/// One management profile that the service processor implements.
typedef struct RegisteredProfileRow {
    char InstanceID[256];
    uint32_t RegisteredOrganization; ///< in the low 16 bits
    char RegisteredName[256];
    char RegisteredVersion[256];
    char AdvertiseTypes[256]; ///< numbers in a comma text
    char OtherRegisteredOrganization[256];
    uint8_t reserved1284[256];
} RegisteredProfileRow;

static_assert(offsetof(RegisteredProfileRow, RegisteredOrganization) == 256, "");
static_assert(offsetof(RegisteredProfileRow, RegisteredName) == 260, "");
static_assert(offsetof(RegisteredProfileRow, RegisteredVersion) == 516, "");
static_assert(offsetof(RegisteredProfileRow, AdvertiseTypes) == 772, "");
static_assert(offsetof(RegisteredProfileRow, OtherRegisteredOrganization) == 1028, "");
static_assert(sizeof(RegisteredProfileRow) == 1540, "");

/// A full SDR: a threshold sensor with its conversion. Thresholds are raw readings.
typedef struct FullSdrRow {
    uint8_t reserved0[268];
    uint8_t SensorNumber;
    uint8_t reserved269[3];
    int32_t EntityId;
    int32_t EntityInstance;
    uint8_t reserved280[552];
    int32_t UnitModifier;
    uint8_t reserved836[4];
    int32_t Linear; ///< 1: a linear sensor
    uint8_t reserved844[4];
    int32_t M;
    uint8_t reserved852[4];
    int32_t B;
    uint8_t reserved860[4];
    uint8_t Exponents; ///< high nibble of the result, low nibble of B, both two's complement
    uint8_t reserved865[27];
    uint8_t UpperThresholdNonRecoverable;
    uint8_t reserved893[3];
    uint8_t UpperThresholdCritical;
    uint8_t reserved897[3];
    uint8_t UpperThresholdNonCritical;
    uint8_t reserved901[7];
    uint8_t LowerThresholdCritical;
    uint8_t reserved909[23];
    char SensorName[256];
    uint8_t reserved1188[4];
} FullSdrRow;

static_assert(offsetof(FullSdrRow, SensorNumber) == 268, "");
static_assert(offsetof(FullSdrRow, EntityId) == 272, "");
static_assert(offsetof(FullSdrRow, EntityInstance) == 276, "");
static_assert(offsetof(FullSdrRow, UnitModifier) == 832, "");
static_assert(offsetof(FullSdrRow, Linear) == 840, "");
static_assert(offsetof(FullSdrRow, M) == 848, "");
static_assert(offsetof(FullSdrRow, B) == 856, "");
static_assert(offsetof(FullSdrRow, Exponents) == 864, "");
static_assert(offsetof(FullSdrRow, UpperThresholdNonRecoverable) == 892, "");
static_assert(offsetof(FullSdrRow, UpperThresholdCritical) == 896, "");
static_assert(offsetof(FullSdrRow, UpperThresholdNonCritical) == 900, "");
static_assert(offsetof(FullSdrRow, LowerThresholdCritical) == 908, "");
static_assert(offsetof(FullSdrRow, SensorName) == 932, "");
static_assert(sizeof(FullSdrRow) == 1192, "");

/// A compact SDR: a discrete sensor.
typedef struct CompactSdrRow {
    uint8_t reserved0[268];
    uint8_t SensorNumber;
    uint8_t reserved269[3];
    int32_t EntityId;
    int32_t EntityInstance;
    uint8_t reserved280[548];
    int32_t BaseUnits; ///< in the low 16 bits
    int32_t UnitModifier;
    uint8_t RateUnits;
    uint8_t reserved837[23];
    char SensorName[256];
    uint8_t reserved1116[4];
} CompactSdrRow;

static_assert(offsetof(CompactSdrRow, SensorNumber) == 268, "");
static_assert(offsetof(CompactSdrRow, EntityId) == 272, "");
static_assert(offsetof(CompactSdrRow, EntityInstance) == 276, "");
static_assert(offsetof(CompactSdrRow, BaseUnits) == 828, "");
static_assert(offsetof(CompactSdrRow, UnitModifier) == 832, "");
static_assert(offsetof(CompactSdrRow, RateUnits) == 836, "");
static_assert(offsetof(CompactSdrRow, SensorName) == 860, "");
static_assert(sizeof(CompactSdrRow) == 1120, "");

/// A slot for a power supply. Its sensors tell whether there is a unit in it.
typedef struct PsuRow {
    uint8_t PresenceSensor; ///< compact sensor; its state is 1 with a unit in the slot
    uint8_t reserved1[3];
    uint8_t StatusSensor; ///< compact sensor; its state is 1 without a unit in the slot
    uint8_t reserved5[3];
    uint32_t PowerSensor; ///< full sensor
    uint8_t reserved12[32];
    int32_t FruDeviceId;
    uint8_t reserved48[16];
    int32_t EntityInstance;
    char Designation[256];
} PsuRow;

static_assert(offsetof(PsuRow, PresenceSensor) == 0, "");
static_assert(offsetof(PsuRow, StatusSensor) == 4, "");
static_assert(offsetof(PsuRow, PowerSensor) == 8, "");
static_assert(offsetof(PsuRow, FruDeviceId) == 44, "");
static_assert(offsetof(PsuRow, EntityInstance) == 64, "");
static_assert(offsetof(PsuRow, Designation) == 68, "");
static_assert(sizeof(PsuRow) == 324, "");

/// A fan. Its own sensors, and those of the unit that it is in, tell whether it is there.
typedef struct FanRow {
    uint8_t StatusSensor; ///< compact sensor
    uint8_t reserved1[3];
    uint8_t SpeedSensor; ///< full sensor
    uint8_t reserved5[3];
    int32_t PsuPresenceSensor; ///< compact sensor of the power supply that holds the fan; 0: none does
    uint8_t reserved12[4];
    int32_t EntityId; ///< 29 a fan, 10 a fan in a power supply
    uint8_t reserved20[4];
    char Name[256];
    int32_t Attributes; ///< bits 4 and 5: kind of cooling device
} FanRow;

static_assert(offsetof(FanRow, StatusSensor) == 0, "");
static_assert(offsetof(FanRow, SpeedSensor) == 4, "");
static_assert(offsetof(FanRow, PsuPresenceSensor) == 8, "");
static_assert(offsetof(FanRow, EntityId) == 16, "");
static_assert(offsetof(FanRow, Name) == 24, "");
static_assert(offsetof(FanRow, Attributes) == 280, "");
static_assert(sizeof(FanRow) == 284, "");

/// A FRU device locator: which FRU device is reached where.
typedef struct FruDeviceSdrRow {
    uint8_t reserved0[260];
    uint32_t DeviceAddress; ///< 0x20: the service processor
    uint32_t FruDeviceId;
    uint32_t DeviceType;
    uint8_t reserved272[288];
} FruDeviceSdrRow;

static_assert(offsetof(FruDeviceSdrRow, DeviceAddress) == 260, "");
static_assert(offsetof(FruDeviceSdrRow, FruDeviceId) == 264, "");
static_assert(offsetof(FruDeviceSdrRow, DeviceType) == 268, "");
static_assert(sizeof(FruDeviceSdrRow) == 560, "");

/// An entry of the system event log. A text list is a run of terminated texts that an empty one ends.
typedef struct SelRow {
    int32_t RecordId; ///< the translation library takes the low 16 bits
    uint32_t TimeStamp;
    int32_t Flags; ///< bit 7: the customer can replace the part; bits 4 to 6: severity
    uint32_t ErrorCode;
    uint8_t reserved16[16];
    char Message[512]; ///< in English, as the other texts
    char Summary[512];
    char Causes[512];      ///< text list
    char Resolutions[512]; ///< text list
    int32_t AlertGroup;    ///< in the low 16 bits
    uint8_t reserved2084[4];
} SelRow;

static_assert(offsetof(SelRow, RecordId) == 0, "");
static_assert(offsetof(SelRow, TimeStamp) == 4, "");
static_assert(offsetof(SelRow, Flags) == 8, "");
static_assert(offsetof(SelRow, ErrorCode) == 12, "");
static_assert(offsetof(SelRow, Message) == 32, "");
static_assert(offsetof(SelRow, Summary) == 544, "");
static_assert(offsetof(SelRow, Causes) == 1056, "");
static_assert(offsetof(SelRow, Resolutions) == 1568, "");
static_assert(offsetof(SelRow, AlertGroup) == 2080, "");
static_assert(sizeof(SelRow) == 2088, "");

/// An entry of the internal event log.
typedef struct IelRow {
    int32_t RecordId;
    uint32_t TimeStamp;
    int32_t Flags; ///< as those of the system event log
    uint32_t ErrorCode;
    int32_t AlertGroup; ///< in the low 16 bits
    uint16_t LanguageCode;
    uint8_t reserved22[6];
    char Message[512];
} IelRow;

static_assert(offsetof(IelRow, RecordId) == 0, "");
static_assert(offsetof(IelRow, TimeStamp) == 4, "");
static_assert(offsetof(IelRow, Flags) == 8, "");
static_assert(offsetof(IelRow, ErrorCode) == 12, "");
static_assert(offsetof(IelRow, AlertGroup) == 16, "");
static_assert(offsetof(IelRow, LanguageCode) == 20, "");
static_assert(offsetof(IelRow, Message) == 28, "");
static_assert(sizeof(IelRow) == 540, "");

/// Room for the text of `zbr_oemdb_get_sys_info`.
enum { SYSTEM_GUID_SIZE = 256 };

/// Opens the database and stores a handle.
int zbr_oemdb_init(uint32_t *handle);

/// Closes a handle. Only a result of 1 is a failure.
int zbr_oemdb_close(uint32_t handle);

/// The session information as a heap block for `free`. A failure is a 1 in the low 16 bits of the result.
int zbr_oemdb_get_ipmi_session_info(uint32_t handle, IpmiSessionInformation **information);

/// All registered profiles.
int zbr_oemdb_get_all_reg_prof_info(uint32_t handle, int *count, RegisteredProfileRow **rows);

/// The system's GUID as text, with its end; `guid` has room for `SYSTEM_GUID_SIZE` characters.
int zbr_oemdb_get_sys_info(uint32_t handle, char *guid);

/// All slots for power supplies.
int zbr_oemdb_get_all_psu_info(uint32_t handle, int *count, PsuRow **rows);

/// All fans.
int zbr_oemdb_get_all_fan_info(uint32_t handle, int *count, FanRow **rows);

/// All FRU device locators.
int zbr_oemdb_get_all_frudevice_sdr_info(uint32_t handle, int *count, FruDeviceSdrRow **rows);

/// The full SDRs of an IPMI sensor type and an entity id; 255 as entity id is any entity.
int zbr_oemdb_get_specific_full_sdrs(uint32_t handle, int sensorType, int entityId, int *count,
                                     FullSdrRow **rows);

/// The compact SDRs of an IPMI sensor type and an entity id; 255 as entity id is any entity.
int zbr_oemdb_get_specific_compact_sdrs(uint32_t handle, int sensorType, int entityId, int *count,
                                        CompactSdrRow **rows);

/// As `zbr_oemdb_get_specific_compact_sdrs`; the zero is passed as it stands.
int zbr_oemdb_get_specific_compact_sdrs_ex(uint32_t handle, int sensorType, int entityId, int zero,
                                           int *count, CompactSdrRow **rows);

/// Fills the caller's row with the full SDR of a sensor number. No such sensor is a failure.
int zbr_oemdb_get_full_sdr_info_by_sensor_num(uint32_t handle, uint32_t sensorNumber, FullSdrRow *row);

/// All entries of a log, the oldest first.
int zbr_oemdb_get_all_sel_rec(uint32_t handle, int *count, SelRow **rows);
int zbr_oemdb_get_all_iel_rec(uint32_t handle, int *count, IelRow **rows);

/// The entry with that record id; without one the count is 0, and that is a success.
int zbr_oemdb_get_sel_rec(uint32_t handle, int32_t recordId, int *count, SelRow **row);
int zbr_oemdb_get_iel_rec(uint32_t handle, int32_t recordId, int *count, IelRow **row);

#ifdef __cplusplus
}
#endif
