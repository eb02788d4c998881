// Whole requests: the embedded broker over a class library.
#pragma once

#include "broker/broker.h"

#include <string>
#include <vector>

namespace bench {

// A broker over the provider module in a folder, which takes the class library beside it. Throws when there
// is none.
broker::BrokerPointer OpenBroker(const std::string &folder);

// The names of all classes that the library serves, with their prefix.
std::vector<std::string> ServedClasses(const broker::Broker &broker);

// Enumerates the instances of a class in a request of its own; their number. Throws when that fails.
std::size_t Enumerate(broker::Broker &broker, const std::string &className);

} // namespace bench
