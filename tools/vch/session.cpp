#include "session.h"

#include "failure.h"

#include <platform/sp/sp.h>

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

constexpr const char *schemaFiles[] = {"CIM_base.mof", "TRV_oVTA.mof"}; // in order of declaration

// Where the tool's parts lie as seen from its own folder: in the build tree, and installed.
constexpr const char *modulePlaces[] = {"../lib/libTRVProviders.so", "../lib/vch/libTRVProviders.so"};
constexpr const char *schemaPlaces[] = {"../schema", "../share/vch"};

// The path in an environment variable, or else the first place that exists.
template <size_t N> fs::path locate(const char *variable, const char *const (&places)[N], const char *what) {
    if (const char *told = getenv(variable); told != nullptr && *told != '\0') {
        if (!fs::exists(told)) {
            throw Failure{BackEndError,
                          fmt::format("{} says {}, where there is no {}", variable, told, what)};
        }
        return told;
    }
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const char *place : places) {
        if (fs::exists(folder / place)) {
            return (folder / place).lexically_normal();
        }
    }
    throw Failure{BackEndError, fmt::format("no {} at {} or {}: build or install it, or set {}", what,
                                            (folder / places[0]).lexically_normal().string(),
                                            (folder / places[1]).lexically_normal().string(), variable)};
}

} // namespace

broker::Client localClient(const std::string &user) {
    broker::Client client;
    client.principal = user;
    client.remoteAddress = "127.0.0.1";
    return client;
}

Session openSession(const std::string &nameSpace, const std::string &user) {
    broker::Settings settings;
    settings.providerModule = locate("VCH_MODULE", modulePlaces, "provider module");
    settings.providedClasses = {servedClasses};
    settings.classPrefix = classPrefix;
    const fs::path schema = locate("VCH_SCHEMA", schemaPlaces, "schema folder");
    for (const char *file : schemaFiles) {
        settings.mofFiles.push_back(schema / file);
    }

    Session session;
    std::string error;
    session.broker = broker::openBroker(settings, error);
    if (session.broker == nullptr) {
        throw Failure{BackEndError, error};
    }
    session.request = broker::beginRequest(*session.broker, localClient(user));
    session.nameSpace = nameSpace.empty() ? broker::nameSpaceOf(*session.broker) : nameSpace;
    return session;
}

Session openSession(const RequestOptions &options) {
    requireServiceProcessor();
    Session session = openSession(options.nameSpace, options.user);
    session.journal = startJournal(options.journal);
    return session;
}

broker::Answer succeeded(broker::Answer answer) {
    if (answer.rc != CMPI_RC_OK) {
        throw cimFailure(answer.rc, answer.message);
    }
    return answer;
}

void requireServiceProcessor() {
    try {
        sp::check_environment();
        sp::check_store(sp::default_store());
    } catch (const std::runtime_error &error) {
        throw Failure{BackEndError, error.what()};
    }
}
