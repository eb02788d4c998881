#pragma once

#include "session.h"

/** What a monitoring system reads from the exit code of `health`. */
enum HealthExitCode { HealthOk = 0, HealthWarning = 1, HealthCritical = 2, HealthUnknown = 3 };

/** What `health` takes from the command line. */
struct HealthOptions {
    RequestOptions request;
    bool quick = false; ///< without the logs, which may be long or take long to fail
};

/**
 * Prints the server's health tree: each node beneath its parent with its state, coloured on a terminal, and
 * why it is in that state where it isn't well.
 *
 * @return how the server as a whole is
 */
HealthExitCode printHealth(const HealthOptions &options);
