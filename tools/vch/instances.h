#pragma once

#include "output.h"
#include "session.h"

#include <optional>
#include <string>
#include <vector>

/** What the instance commands take from the command line. */
struct InstanceOptions {
    RequestOptions request;
    std::string target;                                   ///< class or path, as typed
    const OutputFormat *format = outputFormats[0];        ///< of the answer
    bool namesOnly = false;                               ///< paths instead of instances
    std::optional<std::vector<std::string>> propertyList; ///< absent: all properties
    std::vector<std::string> assignments;                 ///< Name=value
    std::vector<std::string> nulls;                       ///< properties or parameters to be set to NULL
    std::string method;
};

/**
 * The commands. Each prints its answer on standard output, or throws a Failure; then nothing was printed
 * there.
 */
void enumerateInstances(const InstanceOptions &options);
void getInstance(const InstanceOptions &options);
void modifyInstance(const InstanceOptions &options);
void invokeMethod(const InstanceOptions &options);

/** Counts the instances of every class that the target, a class or a glob, names. Classes that fail are named
 * last. */
void countInstances(const InstanceOptions &options);
