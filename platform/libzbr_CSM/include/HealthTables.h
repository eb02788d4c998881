/// The health tree: which subsystems and components a server has, and from which parameters of the LCM
/// parameter store each node's state comes. The component status library and whoever names its nodes must
/// agree on these tables to the letter, so that both take them from here.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

/// A parameter of the LCM parameter store; two null pointers for none.
struct HealthSource {
    const char *Group;
    const char *Parameter;
};

constexpr std::size_t max_health_children = 22;
constexpr std::size_t max_health_states = 12;
constexpr std::size_t max_health_attributes = 7;

/// A subsystem. Status values give the state's text for each value of the status parameter, from 0.
struct HealthSubsystemRow {
    std::uint32_t Id;
    const char *Group;
    const char *DisplayName;
    HealthSource Status; ///< of the subsystem's own group
    std::uint32_t ChildCount;
    std::uint32_t ChildIds[max_health_children]; ///< unused ones are 0
    std::uint32_t StatusValueCount;
    const char *StatusValues[max_health_states];
};

/// A component. A request attribute's value is a placeholder that names the source; an instance has that
/// parameter's value in its place.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): only 64-bit pointers make padding here
struct HealthComponentRow {
    std::uint32_t Id; ///< that of its subsystem plus a number from 1
    const char *Group;
    const char *DisplayName;
    HealthSource Status;
    HealthSource InstanceCount;
    HealthSource Designation;
    HealthSource Css;
    std::uint32_t StatusValueCount;
    const char *StatusValues[max_health_states];
    std::uint32_t AttributeCount;
    const char *AttributeNames[max_health_attributes];
    const char *AttributeValues[max_health_attributes];
};

namespace health {

/// A source, and the placeholder for its value.
struct NamedSource {
    HealthSource Source;
    const char *Placeholder;
};
#define HEALTH_SOURCE(group, parameter)                                                                      \
    { {group, parameter}, "<Group = " group "; ParamName = " parameter ">" }

/// What tells a component from the others. Counts and attributes follow from it.
struct Component {
    std::uint32_t Id;
    const char *Group;
    const char *DisplayName;
    NamedSource Status = {};
    NamedSource InstanceCount = {};
    NamedSource Designation = {};
    NamedSource Css = {};
    bool PhysicalLed = false; ///< the CSS source also tells whether there is an LED
    const char *StatusValues[max_health_states] = {};
    const char *InstanceName = nullptr;
    const char *Category = "Optional";
    const char *ObjectName = nullptr;
};

template <std::size_t N> consteval std::uint32_t Used(const char *const (&texts)[N]) {
    return static_cast<std::uint32_t>(std::ranges::find(texts, nullptr) - std::begin(texts));
}

consteval HealthComponentRow Row(const Component &component) {
    HealthComponentRow row{};
    row.Id = component.Id;
    row.Group = component.Group;
    row.DisplayName = component.DisplayName;
    row.Status = component.Status.Source;
    row.InstanceCount = component.InstanceCount.Source;
    row.Designation = component.Designation.Source;
    row.Css = component.Css.Source;
    row.StatusValueCount = Used(component.StatusValues);
    std::ranges::copy(component.StatusValues, row.StatusValues);
    const struct {
        const char *name;
        const char *value; ///< null where the component hasn't the attribute
    } attributes[] = {
        {"InstanceName", component.InstanceName},
        {"Category", component.Category},
        {"Source", "LCM"},
        {"ObjectName", component.ObjectName},
        {"DesignationRequest", component.Designation.Placeholder},
        {"CssRequest", component.Css.Placeholder},
        {"PhysicalLEDRequest", component.PhysicalLed ? component.Css.Placeholder : nullptr},
    };
    for (const auto &[name, value] : attributes) {
        if (value != nullptr) {
            row.AttributeNames[row.AttributeCount] = name;
            row.AttributeValues[row.AttributeCount++] = value;
        }
    }
    return row;
}

/// The children's ids follow the subsystem's own.
consteval HealthSubsystemRow Row(std::uint32_t id, const char *group, const char *displayName,
                                 std::uint32_t childCount) {
    HealthSubsystemRow row{.Id = id,
                           .Group = group,
                           .DisplayName = displayName,
                           .Status = {group, "SubsystemStatus"},
                           .ChildCount = childCount,
                           .ChildIds = {},
                           .StatusValueCount = 4,
                           .StatusValues = {"Unknown", "OK", "Warning", "Error"}};
    for (std::uint32_t i = 0; i < childCount; ++i) {
        row.ChildIds[i] = id + 1 + i;
    }
    return row;
}

} // namespace health

constexpr HealthSubsystemRow HealthSubsystemTable[] = {
    health::Row(0x01010000, "Environment", "Environment Subsystem", 3),
    health::Row(0x01020000, "PowerSupply", "Power Supply Subsystem", 4),
    health::Row(0x01030000, "Systemboard", "System Board Subsystem", 6),
    health::Row(0x01040000, "MassStorage", "Mass Storage Subsystem", 6),
    health::Row(0x01050000, "Network", "Network", 1),
    health::Row(0x01060000, "DrvMonitor", "Driver Monitor", 1),
    health::Row(0x01070000, "AgentStatus", "System Mgmt. Software", 1),
};

constexpr HealthComponentRow HealthComponentTable[] = {
    health::Row({.Id = 0x01010001,
                 .Group = "TqFans",
                 .DisplayName = "Fans",
                 .Status = HEALTH_SOURCE("TqFans", "SensorReadingStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqFans", "NrFanInstances"),
                 .Designation = HEALTH_SOURCE("TqFans", "Designation"),
                 .Css = HEALTH_SOURCE("TqFans", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"NotManageable", "OK", "Error", "Warning", "Warning", "NotManageable",
                                  "NotPresent"},
                 .InstanceName = "Fan",
                 .ObjectName = "FanStatus (0301)"}),
    health::Row({.Id = 0x01010002,
                 .Group = "TqFanConfig",
                 .DisplayName = "Fan Configuration",
                 .Status = HEALTH_SOURCE("TqFanConfig", "ComponentSignalStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqFanConfig", "NrFanConfigInstances"),
                 .Designation = HEALTH_SOURCE("TqFanConfig", "Designation"),
                 .Css = HEALTH_SOURCE("TqFanConfig", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"OK", "OK", "Warning", "Error"},
                 .ObjectName = "ComponentStatusSignalRead - Fan Configuration (1042-2F)"}),
    health::Row({.Id = 0x01010003,
                 .Group = "TqTempSensors",
                 .DisplayName = "Temperature",
                 .Status = HEALTH_SOURCE("TqTempSensors", "SensorReadingStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqTempSensors", "NrTempInstances"),
                 .Designation = HEALTH_SOURCE("TqTempSensors", "Designation"),
                 .StatusValues = {"NotPresent", "OK", "Ignore", "Error", "Warning", "Error", "OK", "Warning"},
                 .InstanceName = "TempSensor",
                 .ObjectName = "TempSensorStatus (0401)"}),
    health::Row({.Id = 0x01020001,
                 .Group = "TqPowerSupplies",
                 .DisplayName = "Power Supply",
                 .Status = HEALTH_SOURCE("TqPowerSupplies", "SensorReadingStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqPowerSupplies", "NrPowerSupplyInstances"),
                 .Designation = HEALTH_SOURCE("TqPowerSupplies", "Designation"),
                 .Css = HEALTH_SOURCE("TqPowerSupplies", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"NotPresent", "OK", "Error", "Error", "Warning", "Warning", "Warning",
                                  "Warning", "NotManageable", "Warning", "Warning", "OK"},
                 .InstanceName = "PowerSupply",
                 .ObjectName = "PowerSupplyStatus (0501)"}),
    health::Row({.Id = 0x01020002,
                 .Group = "TqPowerLevel",
                 .DisplayName = "Power Level",
                 .Status = HEALTH_SOURCE("TqPowerLevel", "SensorReadingStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqPowerLevel", "NrPowerLevelInstances"),
                 .Designation = HEALTH_SOURCE("TqPowerLevel", "Designation"),
                 .Css = HEALTH_SOURCE("TqPowerLevel", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"OK", "Warning", "Error", "OK"},
                 .InstanceName = "PowerLevel",
                 .ObjectName = "PowerConsumptionLimitStatus (0534)"}),
    health::Row({.Id = 0x01020003,
                 .Group = "TqPowerRedundancy",
                 .DisplayName = "Power Redundancy",
                 .Status = HEALTH_SOURCE("TqPowerRedundancy", "ComponentSignalStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqPowerRedundancy", "NrPowerRedundancyInstances"),
                 .Designation = HEALTH_SOURCE("TqPowerRedundancy", "Designation"),
                 .Css = HEALTH_SOURCE("TqPowerRedundancy", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"OK", "OK", "Warning", "Error"},
                 .InstanceName = "PowerRedundancy",
                 .ObjectName = "ComponentStatusSignalRead - Power Unit(1042-09)"}),
    health::Row({.Id = 0x01020004,
                 .Group = "TqPowerConfig",
                 .DisplayName = "Power Configuration",
                 .Status = HEALTH_SOURCE("TqPowerConfig", "ComponentSignalStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqPowerConfig", "NrPowerConfigInstances"),
                 .Designation = HEALTH_SOURCE("TqPowerConfig", "Designation"),
                 .Css = HEALTH_SOURCE("TqPowerConfig", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"OK", "OK", "Warning", "Error"},
                 .InstanceName = "PowerConfig",
                 .ObjectName = "ComponentStatusSignalRead - Power Config(1042-2B)"}),
    health::Row({.Id = 0x01030001,
                 .Group = "TqVoltages",
                 .DisplayName = "System Board Voltages",
                 .Status = HEALTH_SOURCE("TqVoltages", "SensorReadingStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqVoltages", "NrVoltageInstances"),
                 .Designation = HEALTH_SOURCE("TqVoltages", "Designation"),
                 .Css = HEALTH_SOURCE("TqVoltages", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"NotPresent", "OK", "Error", "Error", "Error", "Warning"},
                 .InstanceName = "Voltage",
                 .ObjectName = "VoltageStatus (0521)"}),
    health::Row({.Id = 0x01030002,
                 .Group = "TqMemModules",
                 .DisplayName = "Memory Modules",
                 .Status = HEALTH_SOURCE("TqMemModules", "MemModuleStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqMemModules", "NrMemModuleInstances"),
                 .Designation = HEALTH_SOURCE("TqMemModules", "Designation"),
                 .Css = HEALTH_SOURCE("TqMemModules", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"NotPresent", "OK", "Error", "Error", "Error", "Warning", "OK", "Unknown",
                                  "OK", "Ignore"},
                 .InstanceName = "MemModule",
                 .ObjectName = "MemoryModuleStatus (0701)"}),
    health::Row({.Id = 0x01030003,
                 .Group = "TqCPUs",
                 .DisplayName = "System Processors",
                 .Status = HEALTH_SOURCE("TqCPUs", "CPUStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqCPUs", "NrCPUInstances"),
                 .Designation = HEALTH_SOURCE("TqCPUs", "Designation"),
                 .Css = HEALTH_SOURCE("TqCPUs", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"NotPresent", "OK", "OK", "Error", "Error", "Error", "Unknown"},
                 .InstanceName = "Cpu",
                 .Category = "Mandatory",
                 .ObjectName = "CPUStatus (0601)"}),
    health::Row({.Id = 0x01030004,
                 .Group = "TqBIOS",
                 .DisplayName = "BIOS Selftest",
                 .Status = HEALTH_SOURCE("TqBIOS", "ComponentSignalStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqBIOS", "NrBIOSInstances"),
                 .Designation = HEALTH_SOURCE("TqBIOS", "Designation"),
                 .StatusValues = {"OK", "OK", "Warning", "Error"},
                 .ObjectName = "ComponentStatusSignalRead - BIOS (1042-A0)"}),
    health::Row({.Id = 0x01030005,
                 .Group = "TqPCISlots",
                 .DisplayName = "PCI Slots",
                 .Status = HEALTH_SOURCE("TqPCISlots", "ComponentSignalStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqPCISlots", "NrPCISlotInstances"),
                 .Designation = HEALTH_SOURCE("TqPCISlots", "Designation"),
                 .Css = HEALTH_SOURCE("TqPCISlots", "CSS_LED"),
                 .PhysicalLed = true,
                 .StatusValues = {"OK", "OK", "Warning", "Error"},
                 .InstanceName = "PciSlot",
                 .ObjectName = "ComponentStatusSignalRead - PCI Slot (1042-28)"}),
    health::Row({.Id = 0x01030006,
                 .Group = "TqTPM",
                 .DisplayName = "Trusted Platform Module",
                 .Status = HEALTH_SOURCE("TqTPM", "TPMHardwareAvailable"),
                 .StatusValues = {"NotPresent", "OK"},
                 .ObjectName = "TPMHardwareAvailable (4000)"}),
    health::Row({.Id = 0x01040001,
                 .Group = "TqMassStorageAdapters",
                 .DisplayName = "Mass Storage Adapters",
                 .Status = HEALTH_SOURCE("Mass Storage", "DrvMonStorageSummaryStatus"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "DrvMonSummaryStatus (1820-0003)"}),
    health::Row({.Id = 0x01040002,
                 .Group = "TqRaidAura",
                 .DisplayName = "Kestrovane RAID System",
                 .Status = HEALTH_SOURCE("Mass Storage", "TQRaidOverallStatus"),
                 .Css = HEALTH_SOURCE("Mass Storage", "TQRaidStatusCss"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "TQRaidOverallStatus (2120)"}),
    health::Row({.Id = 0x01040003,
                 .Group = "TqRaidAdapters",
                 .DisplayName = "RAID Adapters",
                 .Status = HEALTH_SOURCE("Mass Storage", "TQRaidAdapterOverallStatus"),
                 .Css = HEALTH_SOURCE("Mass Storage", "TQRaidStatusCss"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "TQRaidAdapterOverallStatus (2121)"}),
    health::Row({.Id = 0x01040004,
                 .Group = "TqRaidLogicalDrives",
                 .DisplayName = "RAID Logical drives",
                 .Status = HEALTH_SOURCE("Mass Storage", "TQRaidLogicalDrivesOverallStatus"),
                 .Css = HEALTH_SOURCE("Mass Storage", "TQRaidStatusCss"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "TQRaidLogicalDrivesOverallStatus  (2122)"}),
    health::Row({.Id = 0x01040005,
                 .Group = "TqRaidPhysicalDisks",
                 .DisplayName = "RAID Physical disks",
                 .Status = HEALTH_SOURCE("Mass Storage", "TQRaidPhysicalDrivesOverallStatus"),
                 .Css = HEALTH_SOURCE("Mass Storage", "TQRaidStatusCss"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "TQRaidPhysicalDrivesOverallStatus (2123)"}),
    health::Row({.Id = 0x01040006,
                 .Group = "TqRaidSmart",
                 .DisplayName = "S.M.A.R.T. (RAID)",
                 .Status = HEALTH_SOURCE("Mass Storage", "TQRaidOverallSmartStatus"),
                 .StatusValues = {"OK", "Warning"},
                 .ObjectName = "TQRaidOverallSmartStatus (2125)"}),
    health::Row({.Id = 0x01050001,
                 .Group = "TqNetworkAdapters",
                 .DisplayName = "Network Adapters",
                 .Status = HEALTH_SOURCE("Network", "DrvMonNetworkSummaryStatus"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "DrvMonSummaryStatus (1820-0002)"}),
    health::Row({.Id = 0x01060001,
                 .Group = "TqMonitoredComponents",
                 .DisplayName = "Monitored Components",
                 .Status = HEALTH_SOURCE("Driver Monitoring", "DrvMonComponentStatus"),
                 .InstanceCount = HEALTH_SOURCE("Driver Monitoring", "DrvMonNumberComponents"),
                 .Designation = HEALTH_SOURCE("Driver Monitoring", "DrvMonComponentName"),
                 .StatusValues = {"Unknown", "OK", "Warning", "Error"},
                 .ObjectName = "DrvMonSummaryStatus (1820)"}),
    health::Row({.Id = 0x01070001,
                 .Group = "TqAgent",
                 .DisplayName = "System Mgmt. Software",
                 .Status = HEALTH_SOURCE("TqAgent", "ComponentSignalStatus"),
                 .InstanceCount = HEALTH_SOURCE("TqAgent", "NrAgentInstances"),
                 .Designation = HEALTH_SOURCE("TqAgent", "Designation"),
                 .StatusValues = {"OK", "OK", "Warning", "Error"},
                 .ObjectName = "ComponentStatusSignalRead - Agent"}),
};

#undef HEALTH_SOURCE

static_assert(
    [] {
        std::size_t children = 0;
        for (const HealthSubsystemRow &subsystem : HealthSubsystemTable) {
            for (std::size_t i = 0; i < subsystem.ChildCount; ++i, ++children) {
                if (children == std::size(HealthComponentTable) ||
                    HealthComponentTable[children].Id != subsystem.ChildIds[i]) {
                    return false;
                }
            }
        }
        return children == std::size(HealthComponentTable);
    }(),
    "the components aren't the subsystems' children, in their order");
static_assert(
    [] {
        const auto splits = [](const auto &row) {
            return std::string_view(row.DisplayName).find('-') != std::string_view::npos;
        };
        return std::ranges::none_of(HealthSubsystemTable, splits) &&
               std::ranges::none_of(HealthComponentTable, splits);
    }(),
    "a display name holds the character at which a node's path is split");
