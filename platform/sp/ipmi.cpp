#include "ipmi.h"

#include <algorithm>
#include <iterator>

namespace sp {
namespace {

/// The maker's identification: begins each of its own commands' requests, and is repeated in the response.
constexpr uint8_t identification[] = {0x80, 0x28, 0x00};

} // namespace

ResponseData execute_ipmi(uint8_t net_function, uint8_t command, RequestData request, IpmiCommands commands) {
    const bool identified = request.size() >= std::size(identification) &&
                            std::equal(std::begin(identification), std::end(identification), request.begin());
    const RequestData own = identified ? request.subspan(std::size(identification)) : RequestData();

    uint8_t completion_code = IpmiInvalidCommand;
    ResponseData data;
    for (const IpmiCommand &known : commands) {
        if (known.net_function != net_function || known.command != command) {
            continue;
        }
        RequestData rest = request;
        if (known.sub_command != NoSubCommand) {
            if (own.empty()) {
                completion_code = request.size() <= std::size(identification) ? IpmiRequestLengthInvalid
                                                                              : IpmiInvalidCommand;
                continue;
            }
            if (own.front() != known.sub_command) {
                continue;
            }
            rest = own.subspan(1);
        }
        completion_code = rest.size() < known.request_length ? uint8_t{IpmiRequestLengthInvalid}
                                                             : known.handler(rest, data);
        break;
    }

    ResponseData response{completion_code};
    if (identified) {
        response.insert(response.end(), std::begin(identification), std::end(identification));
    }
    if (completion_code == IpmiOk) {
        response.insert(response.end(), data.begin(), data.end());
    }
    return response;
}

} // namespace sp
