// TRV_oVTAPSRedundancySet: whether the server's power supplies form a redundant set. It is there only when
// the configured redundancy mode is one of five, and its status follows from the health of the power
// supplies.
#include "TRVPowerSupplyProfile/TRV_oVTAPSRedundancySet.h"

#include "TRVPowerSupplyProfile/TRV_oVTAPowerSupply.h"
#include "Utilities/ConfigSpace.h"
#include "Utilities/Owners.h"
#include "Utilities/Text.h"

#include <algorithm>
#include <iterator>

namespace {

using R = PSRedundancySetRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID), "Identifies the set. Constant."},
};

constexpr Property<R> properties[] = {
    {"Caption", CMPI_chars, FIELD(R, Caption), "Constant."},
    {"Description", CMPI_chars, FIELD(R, Description), "Constant."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Constant."},
    {"MaxNumberSupported", CMPI_uint32, FIELD(R, MaxNumberSupported),
     "Units needed and spare ones. Configuration variable 0x1A0D: high and low nibble."},
    {"MinNumberNeeded", CMPI_uint32, FIELD(R, MinNumberNeeded),
     "Units needed. Configuration variable 0x1A0D: high nibble."},
    {"OtherTypeOfSet", CMPI_stringA, FIELD(R, OtherTypeOfSet),
     "An empty text, and the kind of redundancy. Configuration variable 0x1A0C."},
    {"RedundancyStatus", CMPI_uint16, FIELD(R, RedundancyStatus),
     "Whether as many power supplies are well as the set holds, or fewer than are needed."},
    {"TypeOfSet", CMPI_uint16A, FIELD(R, TypeOfSet), "Constant."},
};

constexpr std::uint16_t mode_variable = 0x1A0C;
constexpr std::uint16_t units_variable = 0x1A0D;

// The redundancy modes; any other is none.
struct Mode {
    std::uint8_t value;
    const char *name;
};
constexpr Mode modes[] = {{2, "Normal"}, {4, "Normal"}, {8, "Normal"}, {16, "2-Phase"}, {32, "2-Phase"}};

enum RedundancyStatus : std::uint16_t { FullyRedundant = 2, DegradedRedundancy = 3, RedundancyLost = 4 };
constexpr std::uint32_t health_ok = 5;

bool ReadUnits(IpmiSession *session, R &record) {
    std::uint8_t units[5];
    if (ReadVariable(session, units_variable, 0, units, sizeof units) != 0) {
        TRACE(TraceFailure, "Failed to get PSU number required");
        return false;
    }
    const std::uint32_t needed = units[0] >> 4;
    const std::uint32_t spare = units[0] & 0x0F;
    record.MinNumberNeeded = needed;
    record.MaxNumberSupported = needed + spare;
    return true;
}

bool SetOtherTypeOfSet(R &record, const char *name) {
    constexpr std::size_t text_size = 256;
    const char *const texts[] = {"", name};
    for (std::size_t i = 0; i < std::size(texts); ++i) {
        record.OtherTypeOfSet[i] = NewRecords<char>(text_size);
        if (record.OtherTypeOfSet[i] == nullptr) {
            return false;
        }
        CopyBounded(record.OtherTypeOfSet[i], text_size, texts[i], text_size);
    }
    return true;
}

bool ReadRedundancyStatus(R &record) {
    PowerSupplyRecord *supplies = nullptr;
    int count = 0;
    const int result = PH_OEM_Enum_PowerSupply_Instance(&supplies, &count, 0);
    const auto ok = static_cast<std::uint32_t>(
        std::count_if(supplies, supplies + count,
                      [](const PowerSupplyRecord &supply) { return supply.HealthState == health_ok; }));
    PH_OEM_Clean_PowerSupply(&supplies);
    if (result != 0) {
        TRACE(TraceFailure, "Failed to get redundancy status");
        return false;
    }
    // More units than the set supports aren't fully redundant either: the test is for equality.
    record.RedundancyStatus = ok == record.MaxNumberSupported ? FullyRedundant
                              : ok < record.MinNumberNeeded   ? RedundancyLost
                                                              : DegradedRedundancy;
    return true;
}

bool FillRecord(IpmiSession *session, R &record, const char *modeName) {
    SetText(record.Caption, "Power Supply Redundancy");
    SetText(record.Description, "Power Supply Redundancy Set");
    SetText(record.ElementName, "Power Supply Redundancy Set");
    if (!ReadUnits(session, record) || !SetOtherTypeOfSet(record, modeName) ||
        !ReadRedundancyStatus(record)) {
        return false;
    }
    record.TypeOfSet[0] = 1;
    record.TypeOfSet[1] = 2;
    return true;
}

} // namespace

int PH_OEM_Enum_PSRedundancySet_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    IpmiSession session{};
    const SessionOwner sessionOwner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE(TraceFailure, "Create IPMI session failed");
        return -1;
    }
    std::uint8_t value = 0;
    if (ReadNumber(&session, mode_variable, 0, value) != 0) {
        TRACE(TraceFailure, "Failed to get PSU redundancy mode");
        return -1;
    }
    const Mode *mode = std::ranges::find(modes, value, &Mode::value);
    if (mode == std::end(modes)) {
        *records = nullptr;
        *count = 0;
        return 0;
    }
    R *record = NewRecords<R>(1);
    if (record == nullptr) {
        return -1;
    }
    std::ranges::fill(record->TypeOfSet, -1);
    SetText(record->InstanceID, "TRV_PSET");
    if (namesOnly == 0 && !FillRecord(&session, *record, mode->name)) {
        PH_OEM_Clean_PSRedundancySet(&record, 1);
        return -1;
    }
    *records = record;
    *count = 1;
    return 0;
}

void PH_OEM_Clean_PSRedundancySet(R **records, int count) {
    TRACE(TraceProgress, "Entering %s", __func__);
    for (int i = 0; *records != nullptr && i < count; ++i) {
        FreeTexts((*records)[i].OtherTypeOfSet);
    }
    std::free(*records);
    *records = nullptr;
}

EXPORT_OWNING_CLASS(PSRedundancySet, "Whether the server's power supplies form a redundant set.",
                    .superclass = "CIM_RedundancySet");
