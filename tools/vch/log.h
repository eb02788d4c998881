#pragma once

#include "output.h"
#include "session.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** An entry of one of the service processor's logs. The instance stays the request's. */
struct LogLine {
    CMPIInstance *instance;
    int64_t time; ///< seconds since 1970
    uint64_t severity;
    std::string message;
};

/**
 * The entries of both logs, the oldest first.
 *
 * @param properties those wanted, among them CreationTimeStamp, Severity and Message; null for all
 * @throws Failure when they can't be read
 */
std::vector<LogLine> readLogs(const Session &session, broker::PropertyList properties);

/** What `log show` takes from the command line. */
struct LogOptions {
    RequestOptions request;
    const OutputFormat *format = outputFormats[0];
    std::string log;      ///< sel or iel; empty for both
    std::string severity; ///< the least, as a name or a number; empty for all
    std::string since, until;
    std::optional<size_t> last; ///< only so many, the newest
    bool details = false;       ///< with summary, causes and actions
    bool follow = false;        ///< go on with new ones until interrupted
};

/**
 * The commands. Each prints its answer on standard output, or throws a Failure.
 */
void showLog(const LogOptions &options);

/** Erases a log, sel or iel, under the rights of the user. */
void clearLog(const RequestOptions &request, const std::string &log);

/** Adds a note of 1 to 255 bytes to the internal event log. */
void addServiceNote(const RequestOptions &request, const std::string &note);
