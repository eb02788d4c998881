/// What the states of sensors, LEDs and units mean. All of it is this simulation's choice: values by the DMTF
/// schema, texts as a client would like to read them.
#pragma once

#include <cstdint>
#include <span>

#include "ipmi.h"

namespace sp {

/// How an element is.
enum Condition { Unknown, Good, Warned, FailureNear, Stressed, Unsupplied, Failed, Critical };

/// The same in CIM's values.
struct CimStatus {
    uint16_t HealthState;    ///< 0 unknown, 5 OK, 10 degraded, 15 minor, 20 major, 25 critical failure
    uint16_t PrimaryStatus;  ///< 0 unknown, 1 OK, 2 degraded, 3 error
    uint16_t DetailedStatus; ///< 0 not available, 1 no more information, 2 stressed, 3 failure predicted,
                             ///< 4 not recoverable, 5 a supporting entity has an error
    const char *Status;
};

constexpr CimStatus cim_status[] = {
    {0, 0, 0, "Unknown"},    // Unknown
    {5, 1, 1, "OK"},         // Good
    {10, 2, 1, "Degraded"},  // Warned
    {10, 2, 3, "Pred Fail"}, // FailureNear
    {10, 2, 2, "Stressed"},  // Stressed
    {15, 3, 5, "Error"},     // Unsupplied
    {20, 3, 1, "Error"},     // Failed
    {25, 3, 4, "Error"},     // Critical
};

/// One state of a kind of element: the bits that are set in it.
struct State {
    uint16_t bits;
    const char *text;
    Condition condition = Unknown;
};

/// All states of a kind. The last is what an element is in when nothing is known of it; the others stand in
/// the order of their seriousness. A state without bits is the one that remains when no other holds.
using States = std::span<const State>;

constexpr uint16_t psu_not_present = 0x0001;

constexpr State psu_states[] = {
    {psu_not_present, "Not Present"},
    {0x0002, "OK", Good},
    {0x0004, "Failure Predicted", FailureNear},
    {0x0008, "Overloaded", Stressed},
    {0x0010, "Input Lost", Unsupplied},
    {0x0020, "Failed", Failed},
    {0xFFFF, "Unknown"},
};

constexpr State fan_states[] = {
    {0x0001, "OK", Good},
    {0x0002, "Running At Full Speed", Stressed},
    {0x0004, "Failure Predicted", FailureNear},
    {0x0008, "Failed", Failed},
    {0x0020, "Not Managed"},
    {0x0040, "Not Present"},
    {0xFFFF, "Unknown"},
};

/// By the LED's state, which is a number: 0 nobody knows, 1 off, 2 on, 3 blinking.
constexpr Condition error_led_conditions[] = {Unknown, Good, Warned, Critical};

/// By the state byte of a threshold sensor.
constexpr State threshold_states[] = {
    {0, "Normal"},
    {BelowLowerNonCritical, "Lower Non-Critical"},
    {AboveUpperNonCritical, "Upper Non-Critical"},
    {BelowLowerCritical, "Lower Critical"},
    {AboveUpperCritical, "Upper Critical"},
    {BelowLowerNonRecoverable, "Lower Fatal"},
    {AboveUpperNonRecoverable, "Upper Fatal"},
    {0xFF, "Unknown"},
};

/// By the status byte of a reading.
constexpr State scanning_states[] = {
    {0, "Not Scanned"},
    {ScanningEnabled, "Normal"},
    {ReadingUnavailable, "Unavailable"},
    {0xFF, "Unknown"},
};

constexpr State power_level_states[] = {
    {0x0001, "Normal"},
    {0x0002, "Warning Level Exceeded"},
    {0x0004, "Critical Level Exceeded"},
    {0xFFFF, "Unknown"},
};

constexpr State i2c_states[] = {
    {0, "OK"},
    {0x0001, "Arbitration Lost"},
    {0x0002, "Device Not Responding"},
    {0x0004, "Bus Blocked"},
    {0xFFFF, "Unknown"},
};

constexpr State cpu_configuration_states[] = {
    {0, "OK"},           {0x0001, "CPU Disabled"}, {0x0002, "CPU Missing"}, {0x0004, "CPU Mix Not Supported"},
    {0xFFFF, "Unknown"},
};

constexpr State bmc_communication_states[] = {
    {0, "No Request Pending"},
    {0x0001, "Power On Request Pending"},
    {0x0002, "Shutdown Request Pending"},
    {0x0004, "Power Off Request Pending"},
    {0x0008, "Power Cycle Request Pending"},
    {0x0010, "Reset Request Pending"},
    {0xFFFF, "Unknown"},
};

constexpr State bmc_flash_states[] = {
    {0, "OK"},
    {0x0001, "Update Running"},
    {0x0002, "Running From Second Image"},
    {0x0004, "Image Invalid"},
    {0xFFFF, "Unknown"},
};

constexpr State idprom_states[] = {
    {0, "Synchronized"},       {0x0001, "Synchronization Running"},
    {0x0002, "Copy Outdated"}, {0x0004, "Copy Not Readable"},
    {0xFFFF, "Unknown"},
};

/// The states of OEM discrete sensors, by their OEM sensor type.
struct OemStates {
    int sensor_type;
    States states;
};

constexpr OemStates oem_states[] = {
    {0xC0, i2c_states},
    {0xDC, cpu_configuration_states},
    {0xEA, bmc_communication_states},
    {0xEC, bmc_flash_states},
    {0xEF, idprom_states},
};

} // namespace sp
