// The capabilities classes: each shows one row of the Core DB, and its file is a name, the name of the row
// and a text.
#pragma once

#include "Utilities/PH_OEM_Common.h"

inline constexpr Key<CapabilitiesRecord> capabilities_keys[] = {
    {"InstanceID", FIELD(CapabilitiesRecord, InstanceID),
     "Identifies the capabilities. Core DB, capabilities: InstanceID."},
};
inline constexpr Property<CapabilitiesRecord> capabilities_properties[] = {
    {"ElementName", CMPI_chars, FIELD(CapabilitiesRecord, ElementName),
     "Name for people. Core DB, capabilities: ElementName.", When::NotEmpty},
    {"ElementNameEditSupported", CMPI_boolean, FIELD(CapabilitiesRecord, ElementNameEditSupported),
     "Whether clients may change ElementName. Core DB, capabilities: ElementNameEditSupported."},
    {.name = "MaxElementNameLen",
     .type = CMPI_uint16,
     .field = FIELD(CapabilitiesRecord, MaxElementNameLen),
     .description = "Longest ElementName in characters, where it can be changed. Core DB, capabilities: "
                    "MaxElementNameLen.",
     .onlyIf = FIELD(CapabilitiesRecord, ElementNameEditSupported)},
    {"RequestedStatesSupported", CMPI_uint16A, FIELD(CapabilitiesRecord, RequestedStatesSupported),
     "States that clients may request. Core DB, capabilities: RequestedStatesSupported."},
};

// clang-format off

// Declares and exports a capabilities class.
#define DECLARE_CAPABILITIES_CLASS(C)                                                                        \
    using C##Record = CapabilitiesRecord;                                                                    \
    DECLARE_CLASS(C)

#define EXPORT_CAPABILITIES_CLASS(C, rowName, text, base)                                                    \
    int PH_OEM_Enum_##C##_Instance(C##Record **records, int *count, int namesOnly) {                         \
        TRACE(TraceProgress, "Entering %s", __func__);                                                       \
        return PH_OEM_Common_EnumAll_ForCapabilities(rowName, records, count, namesOnly);                    \
    }                                                                                                        \
    static constexpr const auto &keys = capabilities_keys;                                                   \
    static constexpr const auto &properties = capabilities_properties;                                       \
    EXPORT_CLASS(C, text, .superclass = (base))
// clang-format on
