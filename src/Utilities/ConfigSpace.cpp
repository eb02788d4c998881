#include "Utilities/ConfigSpace.h"

#include "Utilities/PH_OEM_Utilities.h"

#include "libzbr_cim.h"

#include <cstring>

int ReadVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, void *buffer, std::uint16_t size,
                 std::uint8_t *completionCode) {
    std::memset(buffer, 0, size);
    std::uint16_t length = size;
    std::uint8_t unread = 0;
    const int result = ZBR_CIM_GetConfigSpaceVariables(session, id, index,
                                                       completionCode != nullptr ? completionCode : &unread,
                                                       buffer, &length, backend_timeout);
    if (result != 0) {
        std::memset(buffer, 0, size); // whatever came with the failure
    }
    return result;
}

int WriteVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, const void *value, int length) {
    return ZBR_CIM_SetConfigSpaceVariables(session, id, index, value, length, backend_timeout);
}

int WriteText(IpmiSession *session, std::uint16_t id, std::uint8_t index, const char *text) {
    return WriteVariable(session, id, index, text, static_cast<std::uint8_t>(std::strlen(text)));
}
