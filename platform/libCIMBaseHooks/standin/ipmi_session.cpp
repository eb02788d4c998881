#include "libCIMBaseHooks.h"

#include <algorithm>
#include <cstring>

#include "ipmi.h"
#include "standin.h"

using namespace sp;

namespace {

/// Whether the service processor accepts the login, with that privilege level.
bool accepts(const char *target, uint16_t port, const char *userName, const char *password,
             uint8_t privilegeLevel) {
    Query query(
        "SELECT PrivilegeLimit FROM login WHERE Target = ? AND Port = ? AND UserName = ? AND Password = ?",
        {target, port, userName, password});
    return query.next() && privilegeLevel <= query.number(0);
}

} // namespace

int CIM_Create_IPMI20_Session(IpmiSession *session, const char *target, uint16_t port, const char *userName,
                              const char *password, uint8_t authenticationType, int, int,
                              uint8_t *confidentialityAlgorithm, uint8_t privilegeLevel,
                              uint8_t authenticationAlgorithm, uint8_t integrityAlgorithm, int, int,
                              int timeout) {
    const int confidentiality = confidentialityAlgorithm != nullptr ? *confidentialityAlgorithm : -1;
    return call("CIM_Create_IPMI20_Session",
                {target, port, userName, Hidden{}, authenticationType, confidentiality, privilegeLevel,
                 authenticationAlgorithm, integrityAlgorithm, timeout},
                [&] {
                    if (session == nullptr || target == nullptr || userName == nullptr ||
                        password == nullptr || confidentialityAlgorithm == nullptr || is_open(session) ||
                        !accepts(target, port, userName, password, privilegeLevel)) {
                        return NoAnswer;
                    }
                    open_session(session);
                    return 0;
                });
}

int CIM_Close_Session(IpmiSession *session) {
    // A zeroed object that never became a session has nothing to close, and that is no failure.
    const auto close = [&] {
        constexpr IpmiSession zeroed{};
        return session != nullptr && (close_session(session) || memcmp(session, &zeroed, sizeof zeroed) == 0)
                   ? 0
                   : NoAnswer;
    };
    return call("CIM_Close_Session", {}, close, [&](int result) { return close(), result; });
}

int LIBIPMI_Send_RAW_IPMI2_0_Command(IpmiSession *session, int, uint8_t netFnLun, uint8_t command,
                                     const uint8_t *request, uint32_t requestLength, uint8_t *response,
                                     uint32_t *responseLength, int) {
    // Hands over as much of an answer as the caller has room for.
    const auto deliver = [&](const ResponseData &answer) {
        if (response == nullptr || responseLength == nullptr) {
            return;
        }
        *responseLength = std::min(*responseLength, static_cast<uint32_t>(answer.size()));
        std::copy_n(answer.begin(), *responseLength, response);
    };
    const Bytes data = request != nullptr ? Bytes(request, requestLength) : Bytes();
    return call(
        "LIBIPMI_Send_RAW_IPMI2_0_Command", {Hex{netFnLun}, Hex{command}, data},
        [&] {
            if (!is_open(session) || response == nullptr || responseLength == nullptr ||
                (request == nullptr && requestLength > 0)) {
                return NoAnswer;
            }
            const ResponseData answer = execute_ipmi(netFnLun >> 2, command, data);
            deliver(answer);
            return answer.front() == IpmiOk ? 0 : CompletionCode + answer.front();
        },
        [&](int result) {
            const bool answered = result >= 0 && result >> 8 <= CompletionCode >> 8;
            deliver(answered ? ResponseData{static_cast<uint8_t>(result)} : ResponseData());
            return answered && result < CompletionCode ? 0 : result;
        });
}
