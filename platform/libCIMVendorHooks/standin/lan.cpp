#include <algorithm>

#include "ipmi.h"
#include "libCIMVendorHooks.h"
#include "standin.h"

using namespace sp;

int CIM_Get_MACAddress(IpmiSession *session, uint8_t *address, uint8_t channel, int) {
    return call("CIM_Get_MACAddress", {channel}, [&] {
        if (!is_open(session) || address == nullptr) {
            return NoAnswer;
        }
        Query query("SELECT MACAddress FROM lan_channel WHERE Channel = ?", {channel});
        if (!query.next()) {
            return query.failed ? NoAnswer : CompletionCode + IpmiNotPresent;
        }
        std::ranges::copy(query.blob(0), address);
        return 0;
    });
}
