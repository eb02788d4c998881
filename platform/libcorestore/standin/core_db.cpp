#include "libcorestore.h"
#include "protocol_service.h"
#include "standin.h"

using namespace sp;

namespace {

constexpr Field capabilities_fields[] = {
    SP_FIELD(CapabilitiesRow, InstanceID),
    SP_FIELD(CapabilitiesRow, RequestedStatesSupported),
    SP_FIELD(CapabilitiesRow, ElementNameEditSupported),
    SP_FIELD(CapabilitiesRow, ElementName),
    SP_FIELD(CapabilitiesRow, MaxElementNameLen),
};
const std::string one_capabilities = select(capabilities_fields, "capabilities WHERE RowName = ?");

constexpr Field protocol_service_fields[] = {
    SP_FIELD(ProtocolServiceData, Name),           SP_FIELD(ProtocolServiceData, ElementName),
    SP_FIELD(ProtocolServiceData, OtherProtocol),  SP_FIELD(ProtocolServiceData, OperationalStatus),
    SP_FIELD(ProtocolServiceData, Protocol),       SP_FIELD(ProtocolServiceData, MaxConnections),
    SP_FIELD(ProtocolServiceData, RequestedState), SP_FIELD(ProtocolServiceData, EnabledState),
    SP_FIELD(ProtocolServiceData, HealthState),
};
const std::string one_protocol_service =
    select(protocol_service_fields, "protocol_service WHERE RowName = ?");

constexpr Field fru_fields[] = {
    SP_FIELD(FruRow, DeviceId),
    SP_FIELD(FruRow, EntityId),
    SP_FIELD(FruRow, ChassisType),
    SP_FIELD(FruRow, ChassisPartNumber),
    SP_FIELD(FruRow, ProductName),
    SP_FIELD(FruRow, ProductVersion),
    SP_FIELD(FruRow, ProductAssetTag),
    SP_FIELD(FruRow, ProductSerialNumber),
    SP_FIELD(FruRow, ProductPartNumber),
    SP_FIELD(FruRow, ProductManufacturer),
    SP_FIELD(FruRow, BoardManufacturingDate),
    SP_FIELD(FruRow, BoardProductName),
    SP_FIELD(FruRow, BoardSerialNumber),
    SP_FIELD(FruRow, BoardPartNumber),
    SP_FIELD(FruRow, BoardManufacturer),
    SP_FIELD(FruRow, BoardCustomFields),
};
const std::string all_fru = select(fru_fields, "fru ORDER BY position");
const std::string one_fru = select(fru_fields, "fru WHERE DeviceId = ?");

} // namespace

int db_init(uint32_t *handle) {
    return call("db_init", {}, [&] {
        if (handle == nullptr) {
            return 1;
        }
        *handle = open_handle(Handle::CoreDb);
        return 0;
    });
}

int db_close(uint32_t handle) {
    const auto close = [&] { return close_handle(Handle::CoreDb, handle) ? 0 : 1; };
    return call("db_close", {Hex{handle}}, close, [&](int result) { return close(), result; });
}

int db_get_elec(uint32_t handle, const char *rowName, CapabilitiesRow **row) {
    return call("db_get_elec", {Hex{handle}, rowName}, [&] {
        return is_open(Handle::CoreDb, handle) && rowName != nullptr &&
                       read_one(one_capabilities, {rowName}, capabilities_fields, row)
                   ? 0
                   : 1;
    });
}

int db_get_protocol_service(uint32_t handle, const char *rowName, ProtocolServiceRow *row) {
    return call("db_get_protocol_service", {Hex{handle}, rowName}, [&] {
        if (!is_open(Handle::CoreDb, handle) || rowName == nullptr || row == nullptr) {
            return 1;
        }
        *row = {};
        return read_row(one_protocol_service, {rowName}, protocol_service_fields, row) < 0 ? 1 : 0;
    });
}

int db_get_all_fru_info(uint32_t handle, int *count, FruRow **rows) {
    return call("db_get_all_fru_info", {Hex{handle}}, [&] {
        return is_open(Handle::CoreDb, handle) && read_rows(all_fru, {}, fru_fields, rows, count) ? 0 : 1;
    });
}

int db_get_fru_info(uint32_t handle, int deviceId, int, int, int, FruRow **row) {
    return call("db_get_fru_info", {Hex{handle}, deviceId}, [&] {
        return is_open(Handle::CoreDb, handle) && read_one(one_fru, {deviceId}, fru_fields, row) &&
                       *row != nullptr
                   ? 0
                   : 1;
    });
}
