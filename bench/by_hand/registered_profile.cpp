#include "by_hand.h"

#include "libzbr_cimcore.h"

#include <iterator>

namespace {

constexpr char class_name[] = "TRV_oVTARegisteredProfile";
constexpr const char *view_features[] = {
    "DMTF:Physical AssetView",  "DMTF:CPUView",           "DMTF:SystemMemoryView", "DMTF:OSView",
    "DMTF:Computer SystemView", "DMTF:NumericSensorView", "DMTF:Record LogView",   "DMTF:Boot ControlView",
};

struct Rows {
    RegisteredProfileRow *rows = nullptr;
    int count = 0;
};

bool ReadRows(Rows &rows) {
    std::uint32_t handle = 0;
    const bool isRead =
        zbr_oemdb_init(&handle) == 0 && zbr_oemdb_get_all_reg_prof_info(handle, &rows.count, &rows.rows) == 0;
    zbr_oemdb_close(handle);
    return isRead && (rows.rows != nullptr || rows.count < 1);
}

bool SetProperties(const CMPIBroker *broker, const Instance &instance, RegisteredProfileRow &row) {
    if (!SetKey(instance, "InstanceID", Ended(row.InstanceID)) ||
        !SetNumber(instance, "RegisteredOrganization", row.RegisteredOrganization, CMPI_uint16) ||
        !SetText(instance, "RegisteredName", Ended(row.RegisteredName)) ||
        !SetText(instance, "OtherRegisteredOrganization", Ended(row.OtherRegisteredOrganization)) ||
        !SetText(instance, "RegisteredVersion", Ended(row.RegisteredVersion))) {
        return false;
    }
    if (IsWanted(instance, "AdvertiseTypes") &&
        !SetArray(instance, "AdvertiseTypes", NewNumbers(broker, Ended(row.AdvertiseTypes)), CMPI_uint16A)) {
        return false;
    }
    if (!IsWanted(instance, "ImplementedFeatures")) {
        return true;
    }
    const bool isView = std::strcmp(row.RegisteredName, "Physical Computer System View") == 0;
    return SetArray(instance, "ImplementedFeatures",
                    isView ? NewTexts(broker, view_features, std::size(view_features)) : nullptr,
                    CMPI_stringA);
}

bool ReturnRow(const CMPIBroker *broker, const CMPIObjectPath *cop, const char **properties,
               const CMPIResult *rslt, RegisteredProfileRow &row) {
    const Instance instance = NewInstance(broker, cop, class_name, properties);
    if (instance.inst == nullptr) {
        return false;
    }
    if (!SetProperties(broker, instance, row)) {
        CMRelease(instance.inst);
        return false;
    }
    CMReturnInstance(rslt, instance.inst);
    return true;
}

bool ReturnName(const CMPIBroker *broker, const CMPIObjectPath *cop, const CMPIResult *rslt,
                RegisteredProfileRow &row) {
    CMPIObjectPath *path = NewPath(broker, cop, class_name);
    if (path == nullptr) {
        return false;
    }
    if (row.InstanceID[0] == '\0' || !AddKey(path, "InstanceID", Ended(row.InstanceID))) {
        CMRelease(path);
        return false;
    }
    CMReturnObjectPath(rslt, path);
    return true;
}

} // namespace

EXPORTED void PH_OEM_GI_RegisteredProfile(const CMPIBroker *broker, const CMPIContext *,
                                          const CMPIObjectPath *cop, const char **properties,
                                          const CMPIResult *rslt, CMPIStatus *status) {
    constexpr const char *names[] = {"InstanceID"};
    CMPIString *key = nullptr;
    const char *id = ReadKeys(cop, names, &key, 1) ? CMGetCharsPtr(key, nullptr) : nullptr;
    Rows rows;
    if (id != nullptr && ReadRows(rows)) {
        const Block<RegisteredProfileRow> owner{rows.rows};
        for (int i = 0; i < rows.count; ++i) {
            if (std::strcmp(id, Ended(rows.rows[i].InstanceID)) == 0 &&
                ReturnRow(broker, cop, properties, rslt, rows.rows[i])) {
                return;
            }
        }
    }
    Fail(broker, status, "Failed to Get Instance");
}

EXPORTED void PH_OEM_EI_RegisteredProfile(const CMPIBroker *broker, const CMPIContext *,
                                          const CMPIObjectPath *cop, const char **properties,
                                          const CMPIResult *rslt, CMPIStatus *status) {
    Rows rows;
    bool isDone = ReadRows(rows);
    const Block<RegisteredProfileRow> owner{rows.rows};
    for (int i = 0; isDone && i < rows.count; ++i) {
        isDone = ReturnRow(broker, cop, properties, rslt, rows.rows[i]);
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Enumerate Instance");
    }
}

EXPORTED void PH_OEM_EIN_RegisteredProfile(const CMPIBroker *broker, const CMPIContext *,
                                           const CMPIObjectPath *cop, const CMPIResult *rslt,
                                           CMPIStatus *status) {
    Rows rows;
    bool isDone = ReadRows(rows);
    const Block<RegisteredProfileRow> owner{rows.rows};
    for (int i = 0; isDone && i < rows.count; ++i) {
        isDone = ReturnName(broker, cop, rslt, rows.rows[i]);
    }
    if (!isDone) {
        Fail(broker, status, "Failed to Enumerate Instance Names");
    }
}
