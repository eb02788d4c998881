/// IPMI 2.0 sessions to the service processor's own command interface, and raw commands on them.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A session. The caller provides it, zeroes it and never looks inside; no two threads share one.
typedef struct IpmiSession {
    uint8_t opaque[42];
} IpmiSession;

static_assert(sizeof(IpmiSession) == 42, "");

/// Opens a session in the caller's zeroed object and logs in. 0 when the session stands.
int CIM_Create_IPMI20_Session(IpmiSession *session, const char *target, uint16_t port, const char *userName,
                              const char *password, uint8_t authenticationType, int zero1, int zero2,
                              uint8_t *confidentialityAlgorithm, uint8_t privilegeLevel,
                              uint8_t authenticationAlgorithm, uint8_t integrityAlgorithm, int zero3,
                              int zero4, int timeout);

/// Closes a session. Harmless on a zeroed object that never became a session.
int CIM_Close_Session(IpmiSession *session);

/// Sends one command and waits for the response.
///
/// `netFnLun` is the network function in the high six bits and the LUN in the low two, as on the wire.
/// `*responseLength` holds the size of `response` on entry and the number of bytes delivered on return; the
/// first byte of a response is the completion code. The low 16 bits of the result are 0 on success, 0x0100 +
/// completion code when the command was answered with one other than 0, and any other value when no response
/// came.
int LIBIPMI_Send_RAW_IPMI2_0_Command(IpmiSession *session, int zero, uint8_t netFnLun, uint8_t command,
                                     const uint8_t *request, uint32_t requestLength, uint8_t *response,
                                     uint32_t *responseLength, int timeout);

/// The chassis as `LIBIPMI_HL_GetChassisStatus` tells it.
typedef struct ChassisStatus {
    uint8_t PowerState; ///< not 0: the server is powered on
    uint8_t reserved1[63];
} ChassisStatus;

/// Reads the chassis status. 0 on success.
int LIBIPMI_HL_GetChassisStatus(IpmiSession *session, int timeout, ChassisStatus *status);

/// The response to IPMI's Get SEL Info. Numbers are little-endian and not aligned.
typedef struct SelInfo {
    uint8_t CompletionCode;
    uint8_t Version;
    uint8_t Entries[2];
    uint8_t FreeSpace[2];
    uint8_t LastAddition[4]; ///< seconds since 1970
    uint8_t LastErase[4];    ///< seconds since 1970
    uint8_t OperationSupport;
} SelInfo;

static_assert(offsetof(SelInfo, Entries) == 2, "");
static_assert(offsetof(SelInfo, LastAddition) == 6, "");
static_assert(offsetof(SelInfo, LastErase) == 10, "");
static_assert(sizeof(SelInfo) == 15, "");

/// Reads the state of the system event log. 0 on success; in the low byte of another result is the completion
/// code, 0x81 while the log is being erased.
int CIM_GetSELInfo(IpmiSession *session, SelInfo *info, int timeout);

/// Stores the IPv4 address of a LAN channel, in network byte order as `inet_ntop` takes it. 0 on success.
int LIBIPMI_HL_GetIPv4Address(IpmiSession *session, uint32_t *address, int channel, int timeout);

#ifdef __cplusplus
}
#endif
