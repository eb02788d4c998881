// The requests that are measured: the three reading operations of some unlike classes.
#pragma once

#include "idle_broker.h"

#include <array>
#include <string>
#include <vector>

namespace bench {

struct MeasuredClass {
    std::string name; // without the prefix
    std::vector<PathKey> keys;
};

// The classes over the prepared rows, with the keys of one in the middle.
std::vector<MeasuredClass> MeasuredClasses(int rows);

// Those of them that may have very many instances.
inline constexpr std::array growing_classes = {"LogEntry", "RegisteredProfile"};

enum class Operation { GetInstance, EnumerateInstances, EnumerateInstanceNames };
inline constexpr std::array operations = {Operation::GetInstance, Operation::EnumerateInstances,
                                          Operation::EnumerateInstanceNames};
const char *ShortName(Operation operation); // GI, EI or EIN

// The class library in a folder, which is never closed.
void *OpenClassLibrary(const std::string &folder);

// Calls an operation of a class of the library. Throws when it fails.
void CallOperation(void *library, const std::string &className, Operation operation,
                   const IdleRequest &request);

} // namespace bench
