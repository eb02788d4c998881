#include "failure.h"

#include <fmt/format.h>

namespace {

struct Code {
    CMPIrc rc;
    const char *name;
};

#define CODE(name)                                                                                           \
    { name, #name }
constexpr Code codes[] = {
    CODE(CMPI_RC_ERR_FAILED),
    CODE(CMPI_RC_ERR_ACCESS_DENIED),
    CODE(CMPI_RC_ERR_INVALID_NAMESPACE),
    CODE(CMPI_RC_ERR_INVALID_PARAMETER),
    CODE(CMPI_RC_ERR_INVALID_CLASS),
    CODE(CMPI_RC_ERR_NOT_FOUND),
    CODE(CMPI_RC_ERR_NOT_SUPPORTED),
    CODE(CMPI_RC_ERR_CLASS_HAS_CHILDREN),
    CODE(CMPI_RC_ERR_CLASS_HAS_INSTANCES),
    CODE(CMPI_RC_ERR_INVALID_SUPERCLASS),
    CODE(CMPI_RC_ERR_ALREADY_EXISTS),
    CODE(CMPI_RC_ERR_NO_SUCH_PROPERTY),
    CODE(CMPI_RC_ERR_TYPE_MISMATCH),
    CODE(CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED),
    CODE(CMPI_RC_ERR_INVALID_QUERY),
    CODE(CMPI_RC_ERR_METHOD_NOT_AVAILABLE),
    CODE(CMPI_RC_ERR_METHOD_NOT_FOUND),
    CODE(CMPI_RC_ERR_INVALID_HANDLE),
    CODE(CMPI_RC_ERR_INVALID_DATA_TYPE),
    CODE(CMPI_RC_ERROR_SYSTEM),
    CODE(CMPI_RC_ERROR),
};
#undef CODE

const char *nameOf(CMPIrc rc) {
    for (const Code &code : codes) {
        if (code.rc == rc) {
            return code.name;
        }
    }
    return "unknown CMPI return code";
}

} // namespace

Failure cimFailure(CMPIrc rc, const std::string &message) {
    return {CimError, fmt::format("{} ({}): {}", nameOf(rc), static_cast<int>(rc),
                                  message.empty() ? "the provider gave no message" : message)};
}

Failure noFormFailure(const char *format, const char *answer) {
    return {UsageError, fmt::format("{} has no form for {}; table and json have", format, answer)};
}
