/// The service processor's IPMI command interface.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace sp {

using RequestData = std::span<const uint8_t>;
using ResponseData = std::vector<uint8_t>;

/// Completion codes of the IPMI standard, as far as they occur here.
enum CompletionCodes : uint8_t {
    IpmiOk = 0x00,
    IpmiEraseInProgress = 0x81, ///< of the commands for the system event log
    IpmiInvalidCommand = 0xC1,
    IpmiOutOfSpace = 0xC4,
    IpmiReservationCancelled = 0xC5,
    IpmiRequestLengthInvalid = 0xC7,
    IpmiNotPresent = 0xCB,
    IpmiInvalidDataField = 0xCC,
    IpmiUnspecifiedError = 0xFF,
};

/// Of the status byte of a sensor's reading.
enum ReadingStatusBits : uint8_t {
    ReadingUnavailable = 0x20,
    ScanningEnabled = 0x40,
};

/// Of the state byte of a threshold sensor.
enum ThresholdBits : uint8_t {
    BelowLowerNonCritical = 0x01,
    BelowLowerCritical = 0x02,
    BelowLowerNonRecoverable = 0x04,
    AboveUpperNonCritical = 0x08,
    AboveUpperCritical = 0x10,
    AboveUpperNonRecoverable = 0x20,
};

/// What the libraries send on their own.
constexpr uint8_t storage_net_function = 0x0A;
constexpr uint8_t get_sel_info_command = 0x40;
constexpr uint8_t get_sel_allocation_info_command = 0x41;

/// Does what one command asks for: takes the data bytes behind the command, and behind the sub-command where
/// there is one, appends the response's data and gives the completion code.
using IpmiHandler = uint8_t(RequestData request, ResponseData &response);

/// A command that the service processor knows.
struct IpmiCommand {
    uint8_t net_function;
    uint8_t command;
    int sub_command;       ///< behind the maker's three identification bytes; NoSubCommand without them
    size_t request_length; ///< the data bytes that it needs
    IpmiHandler *handler;
};
constexpr int NoSubCommand = -1;

using IpmiCommands = std::span<const IpmiCommand>;

/// All of them.
extern const IpmiCommands ipmi_commands;

/// Executes a command. The response begins with the completion code; with one other than 0 there is no data
/// behind it but the identification that the request came with.
ResponseData execute_ipmi(uint8_t net_function, uint8_t command, RequestData request,
                          IpmiCommands commands = ipmi_commands);

} // namespace sp
