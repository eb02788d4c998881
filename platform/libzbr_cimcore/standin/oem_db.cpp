#include "libzbr_cimcore.h"
#include "standin.h"

using namespace sp;

namespace {

constexpr Field session_fields[] = {
    SP_FIELD(IpmiSessionInformation, Target),
    SP_FIELD(IpmiSessionInformation, Port),
    SP_FIELD(IpmiSessionInformation, UserName),
    SP_FIELD(IpmiSessionInformation, Password),
    SP_FIELD(IpmiSessionInformation, AuthenticationAlgorithm),
    SP_FIELD(IpmiSessionInformation, IntegrityAlgorithm),
    SP_FIELD(IpmiSessionInformation, AuthenticationType),
    SP_FIELD(IpmiSessionInformation, ConfidentialityAlgorithm),
    SP_FIELD(IpmiSessionInformation, PrivilegeLevel),
};
const std::string session_information = select(session_fields, "session_information");

constexpr Field profile_fields[] = {
    SP_FIELD(RegisteredProfileRow, InstanceID),
    SP_FIELD(RegisteredProfileRow, RegisteredOrganization),
    SP_FIELD(RegisteredProfileRow, RegisteredName),
    SP_FIELD(RegisteredProfileRow, RegisteredVersion),
    SP_FIELD(RegisteredProfileRow, AdvertiseTypes),
    SP_FIELD(RegisteredProfileRow, OtherRegisteredOrganization),
};
const std::string all_profiles = select(profile_fields, "registered_profile ORDER BY position");

constexpr Field psu_fields[] = {
    SP_FIELD(PsuRow, PresenceSensor), SP_FIELD(PsuRow, StatusSensor),   SP_FIELD(PsuRow, PowerSensor),
    SP_FIELD(PsuRow, FruDeviceId),    SP_FIELD(PsuRow, EntityInstance), SP_FIELD(PsuRow, Designation),
};
const std::string all_psu = select(psu_fields, "power_supply ORDER BY position");

constexpr Field fan_fields[] = {
    SP_FIELD(FanRow, StatusSensor), SP_FIELD(FanRow, SpeedSensor), SP_FIELD(FanRow, PsuPresenceSensor),
    SP_FIELD(FanRow, EntityId),     SP_FIELD(FanRow, Name),        SP_FIELD(FanRow, Attributes),
};
const std::string all_fans = select(fan_fields, "fan ORDER BY position");

constexpr Field fru_device_fields[] = {
    SP_FIELD(FruDeviceSdrRow, DeviceAddress),
    SP_FIELD(FruDeviceSdrRow, FruDeviceId),
    SP_FIELD(FruDeviceSdrRow, DeviceType),
};
const std::string all_fru_devices = select(fru_device_fields, "frudevice_sdr ORDER BY position");

constexpr Field full_sdr_fields[] = {
    SP_FIELD(FullSdrRow, SensorNumber),
    SP_FIELD(FullSdrRow, EntityId),
    SP_FIELD(FullSdrRow, EntityInstance),
    SP_FIELD(FullSdrRow, UnitModifier),
    SP_FIELD(FullSdrRow, Linear),
    SP_FIELD(FullSdrRow, M),
    SP_FIELD(FullSdrRow, B),
    SP_FIELD(FullSdrRow, Exponents),
    SP_FIELD(FullSdrRow, UpperThresholdNonRecoverable),
    SP_FIELD(FullSdrRow, UpperThresholdCritical),
    SP_FIELD(FullSdrRow, UpperThresholdNonCritical),
    SP_FIELD(FullSdrRow, LowerThresholdCritical),
    SP_FIELD(FullSdrRow, SensorName),
};
const std::string one_full_sdr = select(full_sdr_fields, "full_sdr WHERE SensorNumber = ?");

constexpr Field compact_sdr_fields[] = {
    SP_FIELD(CompactSdrRow, SensorNumber),   SP_FIELD(CompactSdrRow, EntityId),
    SP_FIELD(CompactSdrRow, EntityInstance), SP_FIELD(CompactSdrRow, BaseUnits),
    SP_FIELD(CompactSdrRow, UnitModifier),   SP_FIELD(CompactSdrRow, RateUnits),
    SP_FIELD(CompactSdrRow, SensorName),
};

const std::string of_type_and_entity =
    " WHERE SensorType = ?1 AND (EntityId = ?2 OR ?2 = 255) ORDER BY position";
const std::string specific_full_sdrs = select(full_sdr_fields, "full_sdr" + of_type_and_entity);
const std::string specific_compact_sdrs = select(compact_sdr_fields, "compact_sdr" + of_type_and_entity);

constexpr Field sel_fields[] = {
    SP_FIELD(SelRow, RecordId),  SP_FIELD(SelRow, TimeStamp),   SP_FIELD(SelRow, Flags),
    SP_FIELD(SelRow, ErrorCode), SP_FIELD(SelRow, Message),     SP_FIELD(SelRow, Summary),
    SP_FIELD(SelRow, Causes),    SP_FIELD(SelRow, Resolutions), SP_FIELD(SelRow, AlertGroup),
};
constexpr Field iel_fields[] = {
    SP_FIELD(IelRow, RecordId),  SP_FIELD(IelRow, TimeStamp),  SP_FIELD(IelRow, Flags),
    SP_FIELD(IelRow, ErrorCode), SP_FIELD(IelRow, AlertGroup), SP_FIELD(IelRow, LanguageCode),
    SP_FIELD(IelRow, Message),
};
const std::string all_sel = select(sel_fields, "sel_row ORDER BY RecordId");
const std::string one_sel = select(sel_fields, "sel_row WHERE RecordId = ?");
const std::string all_iel = select(iel_fields, "iel ORDER BY RecordId");
const std::string one_iel = select(iel_fields, "iel WHERE RecordId = ?");

/// All rows of a table's query for a caller with an open handle: 0, or 1 on failure.
template <class Row>
int rows_of(uint32_t handle, const std::string &query, std::initializer_list<Value> values,
            std::span<const Field> fields, int *count, Row **rows) {
    return is_open(Handle::OemDb, handle) && read_rows(query, values, fields, rows, count) ? 0 : 1;
}

} // namespace

int zbr_oemdb_init(uint32_t *handle) {
    return call("zbr_oemdb_init", {}, [&] {
        if (handle == nullptr) {
            return 1;
        }
        *handle = open_handle(Handle::OemDb);
        return 0;
    });
}

int zbr_oemdb_close(uint32_t handle) {
    const auto close = [&] { return close_handle(Handle::OemDb, handle) ? 0 : 1; };
    return call("zbr_oemdb_close", {Hex{handle}}, close, [&](int result) { return close(), result; });
}

int zbr_oemdb_get_ipmi_session_info(uint32_t handle, IpmiSessionInformation **information) {
    return call("zbr_oemdb_get_ipmi_session_info", {Hex{handle}}, [&] {
        return is_open(Handle::OemDb, handle) &&
                       read_one(session_information, {}, session_fields, information) &&
                       *information != nullptr
                   ? 0
                   : 1;
    });
}

int zbr_oemdb_get_all_reg_prof_info(uint32_t handle, int *count, RegisteredProfileRow **rows) {
    return call("zbr_oemdb_get_all_reg_prof_info", {Hex{handle}},
                [&] { return rows_of(handle, all_profiles, {}, profile_fields, count, rows); });
}

int zbr_oemdb_get_sys_info(uint32_t handle, char *guid) {
    return call("zbr_oemdb_get_sys_info", {Hex{handle}}, [&] {
        Query query("SELECT GUID FROM system_info");
        if (!is_open(Handle::OemDb, handle) || guid == nullptr || !query.next()) {
            return 1;
        }
        // The caller tells the text's length by its end, and has no row to look at.
        fill_text(guid, SYSTEM_GUID_SIZE, query.text(0).substr(0, SYSTEM_GUID_SIZE - 1));
        return 0;
    });
}

int zbr_oemdb_get_all_psu_info(uint32_t handle, int *count, PsuRow **rows) {
    return call("zbr_oemdb_get_all_psu_info", {Hex{handle}},
                [&] { return rows_of(handle, all_psu, {}, psu_fields, count, rows); });
}

int zbr_oemdb_get_all_fan_info(uint32_t handle, int *count, FanRow **rows) {
    return call("zbr_oemdb_get_all_fan_info", {Hex{handle}},
                [&] { return rows_of(handle, all_fans, {}, fan_fields, count, rows); });
}

int zbr_oemdb_get_all_frudevice_sdr_info(uint32_t handle, int *count, FruDeviceSdrRow **rows) {
    return call("zbr_oemdb_get_all_frudevice_sdr_info", {Hex{handle}},
                [&] { return rows_of(handle, all_fru_devices, {}, fru_device_fields, count, rows); });
}

int zbr_oemdb_get_specific_full_sdrs(uint32_t handle, int sensorType, int entityId, int *count,
                                     FullSdrRow **rows) {
    return call("zbr_oemdb_get_specific_full_sdrs", {Hex{handle}, sensorType, entityId}, [&] {
        return rows_of(handle, specific_full_sdrs, {sensorType, entityId}, full_sdr_fields, count, rows);
    });
}

int zbr_oemdb_get_specific_compact_sdrs(uint32_t handle, int sensorType, int entityId, int *count,
                                        CompactSdrRow **rows) {
    return call("zbr_oemdb_get_specific_compact_sdrs", {Hex{handle}, sensorType, entityId}, [&] {
        return rows_of(handle, specific_compact_sdrs, {sensorType, entityId}, compact_sdr_fields, count,
                       rows);
    });
}

int zbr_oemdb_get_specific_compact_sdrs_ex(uint32_t handle, int sensorType, int entityId, int, int *count,
                                           CompactSdrRow **rows) {
    return call("zbr_oemdb_get_specific_compact_sdrs_ex", {Hex{handle}, sensorType, entityId}, [&] {
        return rows_of(handle, specific_compact_sdrs, {sensorType, entityId}, compact_sdr_fields, count,
                       rows);
    });
}

int zbr_oemdb_get_full_sdr_info_by_sensor_num(uint32_t handle, uint32_t sensorNumber, FullSdrRow *row) {
    return call("zbr_oemdb_get_full_sdr_info_by_sensor_num", {Hex{handle}, Hex{sensorNumber}}, [&] {
        return is_open(Handle::OemDb, handle) &&
                       read_row(one_full_sdr, {static_cast<int64_t>(sensorNumber)}, full_sdr_fields, row) == 1
                   ? 0
                   : 1;
    });
}

int zbr_oemdb_get_all_sel_rec(uint32_t handle, int *count, SelRow **rows) {
    return call("zbr_oemdb_get_all_sel_rec", {Hex{handle}},
                [&] { return rows_of(handle, all_sel, {}, sel_fields, count, rows); });
}

int zbr_oemdb_get_all_iel_rec(uint32_t handle, int *count, IelRow **rows) {
    return call("zbr_oemdb_get_all_iel_rec", {Hex{handle}},
                [&] { return rows_of(handle, all_iel, {}, iel_fields, count, rows); });
}

int zbr_oemdb_get_sel_rec(uint32_t handle, int32_t recordId, int *count, SelRow **row) {
    return call("zbr_oemdb_get_sel_rec", {Hex{handle}, recordId},
                [&] { return rows_of(handle, one_sel, {recordId}, sel_fields, count, row); });
}

int zbr_oemdb_get_iel_rec(uint32_t handle, int32_t recordId, int *count, IelRow **row) {
    return call("zbr_oemdb_get_iel_rec", {Hex{handle}, recordId},
                [&] { return rows_of(handle, one_iel, {recordId}, iel_fields, count, row); });
}
