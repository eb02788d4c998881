#include "libzbr_cim.h"
#include "standin.h"

using namespace sp;

int ZBR_CIM_CreateAuthenticatedLocalSession(IpmiSession *session, const char *remoteAddress,
                                            const char *principal, int) {
    return call("ZBR_CIM_CreateAuthenticatedLocalSession", {remoteAddress, principal}, [&] {
        if (session == nullptr || principal == nullptr || is_open(session)) {
            return NoAnswer;
        }
        Query query("SELECT 1 FROM principal WHERE Name = ?", {principal});
        if (!query.next()) {
            return NoAnswer;
        }
        open_session(session);
        return 0;
    });
}
