// A broker that does nothing: its tables' functions take everything and give the same few objects again and
// again, so that what is counted of a request is the class library's own work. A second set of tables records
// each call with its values.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>

#include <span>

namespace bench {

struct PathKey {
    const char *name;
    const char *value;
};

// What an operation of the class library is called with. Keys are those of the path, which is of one request
// at a time.
struct IdleRequest {
    const CMPIBroker *broker;
    const CMPIContext *context;
    const CMPIObjectPath *path;
    const CMPIResult *result;
};
IdleRequest NewIdleRequest(std::span<const PathKey> keys, bool recorded);

} // namespace bench
