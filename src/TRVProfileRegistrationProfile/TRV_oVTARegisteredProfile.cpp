// TRV_oVTARegisteredProfile: the management profiles that this service processor implements, one instance for
// each row of the OEM DB's table of registered profiles. Only the computer system view lists features, and
// those aren't in the table.
#include "TRVProfileRegistrationProfile/TRV_oVTARegisteredProfile.h"

#include "Utilities/Owners.h"
#include "Utilities/Text.h"

#include "libzbr_cimcore.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

using R = RegisteredProfileRecord;
using Row = RegisteredProfileRow;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the profile. OEM DB, registered profiles: InstanceID."},
};

constexpr Property<R> properties[] = {
    {"RegisteredOrganization", CMPI_uint16, FIELD(R, RegisteredOrganization),
     "Who defines the profile. OEM DB, registered profiles: RegisteredOrganization, low 16 bits."},
    {"RegisteredName", CMPI_chars, FIELD(R, RegisteredName),
     "Name of the profile. OEM DB, registered profiles: RegisteredName."},
    {"OtherRegisteredOrganization", CMPI_chars, FIELD(R, OtherRegisteredOrganization),
     "Who defines the profile, where RegisteredOrganization is 1 (Other). OEM DB, registered profiles: "
     "OtherRegisteredOrganization."},
    {"RegisteredVersion", CMPI_chars, FIELD(R, RegisteredVersion),
     "Version of the profile. OEM DB, registered profiles: RegisteredVersion."},
    {"AdvertiseTypes", CMPI_uint16A, FIELD(R, AdvertiseTypes),
     "How the profile is advertised. OEM DB, registered profiles: the numbers of AdvertiseTypes."},
    {"ImplementedFeatures", CMPI_stringA, FIELD(R, ImplementedFeatures),
     "Features of the profile that are there. Constant for the computer system view, null for all others."},
};

constexpr char view_profile[] = "Physical Computer System View";
constexpr const char *view_features[] = {
    "DMTF:Physical AssetView",  "DMTF:CPUView",           "DMTF:SystemMemoryView", "DMTF:OSView",
    "DMTF:Computer SystemView", "DMTF:NumericSensorView", "DMTF:Record LogView",   "DMTF:Boot ControlView",
};
static_assert(std::size(view_features) < std::extent_v<decltype(R::ImplementedFeatures)>);

void FillRecord(R &record, const Row &row) {
    record.RegisteredOrganization = static_cast<std::uint16_t>(row.RegisteredOrganization);
    CopyText(record.OtherRegisteredOrganization, row.OtherRegisteredOrganization);
    CopyText(record.RegisteredName, row.RegisteredName);
    CopyText(record.RegisteredVersion, row.RegisteredVersion);
    // The whole field, so that a row of more numbers than usual ends behind its last one; what doesn't fit is
    // dropped.
    std::ranges::fill(record.AdvertiseTypes, -1);
    FillValueList("AdvertiseTypes", row.AdvertiseTypes, record.AdvertiseTypes,
                  std::size(record.AdvertiseTypes));
    if (std::strcmp(record.RegisteredName, view_profile) == 0) {
        std::ranges::copy(view_features, record.ImplementedFeatures);
    }
}

// All other fields are written for each row.
void Recycle(void *record) {
    std::ranges::fill(static_cast<R *>(record)->ImplementedFeatures, nullptr);
}

int List(Listing<R> listing) {
    std::uint32_t handle = 0;
    OEMDBOwner handleOwner{&handle};
    if (!OpenOEMDB(&handle)) {
        return -1;
    }
    Row *rows = nullptr;
    int rowCount = 0;
    const int result = zbr_oemdb_get_all_reg_prof_info(handle, &rowCount, &rows);
    const Block<Row> rowsOwner{rows};
    handleOwner.reset();
    if (result != 0) {
        TRACE(TraceFailure, "Failed in zbr_oemdb_get_all_reg_prof_info");
        return -1;
    }
    if (rows == nullptr || rowCount < 1) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    if (!StartRecords(listing, rowCount)) {
        return -1;
    }
    for (int i = 0; i < rowCount; ++i) {
        if (LeavesOut(listing, 0, rows[i].InstanceID)) {
            continue;
        }
        R &record = NextRecord(listing);
        CopyText(record.InstanceID, rows[i].InstanceID);
        if (FillsThis(listing)) {
            FillRecord(record, rows[i]);
        }
    }
    return 0;
}

} // namespace

EXPORT_CLASS(RegisteredProfile, "A management profile that this service processor implements.",
             .superclass = "CIM_RegisteredProfile", .list = ListUntyped<R, List>, .recycle = Recycle);
EXPORT_ENUM(RegisteredProfile);
