/// Core DB: the service processor's database of capabilities, services and FRU data.
///
/// Every function gives 0 on success unless its comment says otherwise. Rows hold no pointers, and texts in
/// them may fill their field to the last byte without an end: never read one past its field.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// One capabilities row: what a class of managed elements allows a client to request.
typedef struct CapabilitiesRow {
    char InstanceID[256];
    char RequestedStatesSupported[256]; ///< numbers in a comma text, at most 16
    uint32_t ElementNameEditSupported;  ///< 0 or 1 in the low byte
    char ElementName[256];
    uint32_t MaxElementNameLen; ///< in the low 16 bits
} CapabilitiesRow;

static_assert(offsetof(CapabilitiesRow, RequestedStatesSupported) == 256, "");
static_assert(offsetof(CapabilitiesRow, ElementNameEditSupported) == 512, "");
static_assert(offsetof(CapabilitiesRow, ElementName) == 516, "");
static_assert(offsetof(CapabilitiesRow, MaxElementNameLen) == 772, "");
static_assert(sizeof(CapabilitiesRow) == 776, "");

/// One protocol service. What follows the name is between the database and `PH_Fill_ProtocolService`.
typedef struct ProtocolServiceRow {
    char Name[256];
    uint32_t private_data[197];
} ProtocolServiceRow;

static_assert(offsetof(ProtocolServiceRow, private_data) == 256, "");
static_assert(sizeof(ProtocolServiceRow) == 1044, "");

/// One FRU device, filled from its IPMI FRU areas. Reserved bytes are carried and not interpreted.
typedef struct FruRow {
    int32_t DeviceId;
    uint8_t reserved4[12];
    int32_t EntityId; ///< IPMI entity id: 7 system board, 23 and 24 chassis
    uint8_t reserved20[264];
    char ChassisType[256];
    uint8_t reserved540[256];
    char ChassisPartNumber[256];
    uint8_t reserved1052[260];
    char ProductName[256];
    char ProductVersion[256];
    char ProductAssetTag[256];
    char ProductSerialNumber[256];
    char ProductPartNumber[256]; ///< part or model number
    char ProductManufacturer[256];
    uint8_t reserved2848[260];
    int32_t BoardManufacturingDate; ///< seconds
    char BoardProductName[256];
    char BoardSerialNumber[256];
    char BoardPartNumber[256];
    char BoardManufacturer[256];
    char BoardCustomFields[256]; ///< comma-separated list
} FruRow;

static_assert(offsetof(FruRow, DeviceId) == 0, "");
static_assert(offsetof(FruRow, EntityId) == 16, "");
static_assert(offsetof(FruRow, ChassisType) == 284, "");
static_assert(offsetof(FruRow, ChassisPartNumber) == 796, "");
static_assert(offsetof(FruRow, ProductName) == 1312, "");
static_assert(offsetof(FruRow, ProductVersion) == 1568, "");
static_assert(offsetof(FruRow, ProductAssetTag) == 1824, "");
static_assert(offsetof(FruRow, ProductSerialNumber) == 2080, "");
static_assert(offsetof(FruRow, ProductPartNumber) == 2336, "");
static_assert(offsetof(FruRow, ProductManufacturer) == 2592, "");
static_assert(offsetof(FruRow, BoardManufacturingDate) == 3108, "");
static_assert(offsetof(FruRow, BoardProductName) == 3112, "");
static_assert(offsetof(FruRow, BoardSerialNumber) == 3368, "");
static_assert(offsetof(FruRow, BoardPartNumber) == 3624, "");
static_assert(offsetof(FruRow, BoardManufacturer) == 3880, "");
static_assert(offsetof(FruRow, BoardCustomFields) == 4136, "");
static_assert(sizeof(FruRow) == 4392, "");

/// Opens the database and stores a handle, which isn't 0.
int db_init(uint32_t *handle);

/// Closes a handle. Only a result of 1 is a failure.
int db_close(uint32_t handle);

/// The capabilities row of that name as a heap block for `free`; NULL, and success, when there is none.
int db_get_elec(uint32_t handle, const char *rowName, CapabilitiesRow **row);

/// Fills the caller's row with the protocol service of that name; all zero, and success, when there is none.
int db_get_protocol_service(uint32_t handle, const char *rowName, ProtocolServiceRow *row);

/// All FRU devices as one heap block of `*count` rows for `free`; NULL or a count of 0 when there are none.
int db_get_all_fru_info(uint32_t handle, int *count, FruRow **rows);

/// The row of one FRU device as a heap block for `free`. The three zeros are passed as they stand.
int db_get_fru_info(uint32_t handle, int deviceId, int zero1, int zero2, int zero3, FruRow **row);

#ifdef __cplusplus
}
#endif
