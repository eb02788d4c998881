#include <arpa/inet.h>

#include <algorithm>

#include "ipmi.h"
#include "libCIMBaseHooks.h"
#include "standin.h"

using namespace sp;

int LIBIPMI_HL_GetChassisStatus(IpmiSession *session, int, ChassisStatus *status) {
    return call("LIBIPMI_HL_GetChassisStatus", {}, [&] {
        if (!is_open(session) || status == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT CurrentPowerState & 1 FROM chassis_status");
        if (!query.next()) {
            return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
        }
        *status = {static_cast<uint8_t>(query.number(0)), {}};
        return 0;
    });
}

int CIM_GetSELInfo(IpmiSession *session, SelInfo *info, int) {
    return call("CIM_GetSELInfo", {}, [&] {
        if (!is_open(session) || info == nullptr) {
            return NoAnswer;
        }
        const ResponseData answer = execute_ipmi(storage_net_function, get_sel_info_command, {});
        *info = {};
        std::copy_n(answer.begin(), std::min(answer.size(), sizeof *info), reinterpret_cast<uint8_t *>(info));
        return answer.front() == IpmiOk ? 0 : CompletionCode + answer.front();
    });
}

int LIBIPMI_HL_GetIPv4Address(IpmiSession *session, uint32_t *address, int channel, int) {
    return call("LIBIPMI_HL_GetIPv4Address", {channel}, [&] {
        if (!is_open(session) || address == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT IPv4Address FROM lan_channel WHERE Channel = ?", {channel});
        if (!query.next()) {
            return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
        }
        in_addr binary;
        if (inet_pton(AF_INET, std::string(query.text(0)).c_str(), &binary) != 1) {
            return CompletionCode + IpmiUnspecifiedError;
        }
        *address = binary.s_addr;
        return 0;
    });
}
