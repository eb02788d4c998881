// The back ends of the measured classes, which hand out prepared rows: a block from malloc, a copy, and
// nothing else. A program that is linked with them takes the place of the firmware libraries' functions that
// it has; those that it hasn't stay the stand-ins'.
#pragma once

#include <string>

namespace bench {

// How many rows there are of what there may be many: registered profiles, temperature sensors and entries of
// logs, half of them in each. With a class's name there are that many only of its own, and none of the
// others.
void PrepareRows(int count, const std::string &onlyClass = "");

// Names in the rows, for the keys of a request.
std::string ProfileId(int row);
std::string SensorName(int row);
constexpr char chassis_serial[] = "YLVM000123";

} // namespace bench
