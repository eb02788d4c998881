/// What the states of sensors, LEDs and units mean. All of it is this simulation's choice: values by the DMTF
/// schema, texts as a client would like to read them.
#pragma once

#include <cstdint>
#include <iterator>
#include <span>

#include "ipmi.h"

namespace sp {

/// How an element is.
enum Condition : uint8_t { Unknown, Good, Warned, FailureNear, Stressed, Unsupplied, Failed, Critical };

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
static_assert(std::size(cim_status) == Critical + 1);

/// One state of a kind of element, with the bits that are set in it.
struct State {
    const char *text;
    uint16_t bits;
    Condition condition = Unknown;
};

/// All states of a kind. The last is what an element is in when nothing is known of it; the others stand in
/// the order of their seriousness. A state without bits is the one that remains when no other holds.
using States = std::span<const State>;

constexpr uint16_t psu_not_present = 0x0001;

constexpr State psu_states[] = {
    {"Not Present", psu_not_present},
    {"OK", 0x0002, Good},
    {"Failure Predicted", 0x0004, FailureNear},
    {"Overloaded", 0x0008, Stressed},
    {"Input Lost", 0x0010, Unsupplied},
    {"Failed", 0x0020, Failed},
    {"Unknown", 0xFFFF},
};

constexpr State fan_states[] = {
    {"OK", 0x0001, Good},
    {"Running At Full Speed", 0x0002, Stressed},
    {"Failure Predicted", 0x0004, FailureNear},
    {"Failed", 0x0008, Failed},
    {"Not Managed", 0x0020},
    {"Not Present", 0x0040},
    {"Unknown", 0xFFFF},
};

/// By the LED's state, which is a number: 0 nobody knows, 1 off, 2 on, 3 blinking.
constexpr Condition error_led_conditions[] = {Unknown, Good, Warned, Critical};

/// By the state byte of a threshold sensor.
constexpr State threshold_states[] = {
    {"Normal", 0},
    {"Lower Non-Critical", BelowLowerNonCritical},
    {"Upper Non-Critical", AboveUpperNonCritical},
    {"Lower Critical", BelowLowerCritical},
    {"Upper Critical", AboveUpperCritical},
    {"Lower Fatal", BelowLowerNonRecoverable},
    {"Upper Fatal", AboveUpperNonRecoverable},
    {"Unknown", 0xFF},
};

/// By the status byte of a reading.
constexpr State scanning_states[] = {
    {"Not Scanned", 0},
    {"Normal", ScanningEnabled},
    {"Unavailable", ReadingUnavailable},
    {"Unknown", 0xFF},
};

constexpr State power_level_states[] = {
    {"Normal", 0x0001},
    {"Warning Level Exceeded", 0x0002},
    {"Critical Level Exceeded", 0x0004},
    {"Unknown", 0xFFFF},
};

constexpr State i2c_states[] = {
    {"OK", 0},
    {"Arbitration Lost", 0x0001},
    {"Device Not Responding", 0x0002},
    {"Bus Blocked", 0x0004},
    {"Unknown", 0xFFFF},
};

constexpr State cpu_configuration_states[] = {
    {"OK", 0},           {"CPU Disabled", 0x0001}, {"CPU Missing", 0x0002}, {"CPU Mix Not Supported", 0x0004},
    {"Unknown", 0xFFFF},
};

constexpr State bmc_communication_states[] = {
    {"No Request Pending", 0},
    {"Power On Request Pending", 0x0001},
    {"Shutdown Request Pending", 0x0002},
    {"Power Off Request Pending", 0x0004},
    {"Power Cycle Request Pending", 0x0008},
    {"Reset Request Pending", 0x0010},
    {"Unknown", 0xFFFF},
};

constexpr State bmc_flash_states[] = {
    {"OK", 0},
    {"Update Running", 0x0001},
    {"Running From Second Image", 0x0002},
    {"Image Invalid", 0x0004},
    {"Unknown", 0xFFFF},
};

constexpr State idprom_states[] = {
    {"Synchronized", 0},       {"Synchronization Running", 0x0001},
    {"Copy Outdated", 0x0002}, {"Copy Not Readable", 0x0004},
    {"Unknown", 0xFFFF},
};

/// Of the flags of a log entry.
constexpr uint8_t entry_customer_replaceable = 0x80;
constexpr uint8_t entry_severity_shift = 4, entry_severity_mask = 0x07;

/// By the severity of a log entry.
constexpr const char *entry_severities[] = {"Informational", "Minor", "Major", "Critical"};

/// A language by its locale identifier. The first is what 0 stands for as well.
struct Language {
    uint16_t code;
    const char *text;
};

constexpr Language languages[] = {
    {1033, "en_US"}, {1031, "de_DE"}, {1034, "es_ES"}, {1036, "fr_FR"},
    {1040, "it_IT"}, {1041, "ja_JP"}, {2052, "zh_CN"},
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
