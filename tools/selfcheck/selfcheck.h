// Conformance of the classes that a broker serves: what a CIM client relies on, asked of every class by its
// declaration, so that a class falls under it as soon as it is declared.
#pragma once

#include "broker/broker.h"

#include <string>
#include <vector>

namespace selfcheck {

// Something that a class does wrong.
struct Finding {
    std::string className;
    std::string property; // empty where it is about the class, or where the cause names it
    std::string cause;    // the operation and what came of it
};

// "TRV_oVTAThing.Name: ..." on one line.
std::string textOf(const Finding &finding);

// Text of a path with its keys in order of their names: one text for all paths that name an instance.
std::string textOfPath(const CMPIObjectPath *path);

// The classes that are looked at: those that match the glob and aren't abstract, in order of declaration.
std::vector<const broker::Class *> classesToCheck(const broker::Broker &broker, const std::string &glob);

// Checks one class as a client; no findings mean that it conforms:
//   - its instances, enumerated twice, named and got one by one, are the same set with the same values, and
//     their paths are unique; the broker's own checks of declaration, types and keys say what they refuse
//   - a property list is honoured: each property alone, all of them in another case, an unknown name, none
//   - the names cost no more calls of any back-end function than the instances do
//   - what the class doesn't offer is refused as such: create, delete, associations, unknown methods
// It changes nothing on the service processor. The process's call journal is used, and is off afterwards.
std::vector<Finding> check(broker::Broker &broker, const broker::Client &client, const broker::Class &cls);

} // namespace selfcheck
