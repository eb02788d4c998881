#pragma once

#include <cmpidt.h>

#include <string>

/** What the tool's exit code says. */
enum ExitCode {
    Success = 0,
    CimError = 1,    ///< a provider or the broker answered an error
    UsageError = 2,  ///< the command line can't be carried out as it stands
    BackEndError = 3 ///< no store, no provider module, no schema
};

/** Why a command ends: thrown where it is found, and printed as one line by main. */
struct Failure {
    ExitCode exitCode;
    std::string message;
};

/** A CIM error as a failure: "CMPI_RC_ERR_NOT_FOUND (6): message". */
Failure cimFailure(CMPIrc rc, const std::string &message);

/** An output format that can't be had for something: "xml has no form for counts; ..." */
Failure noFormFailure(const char *format, const char *answer);
