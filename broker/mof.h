// Reader of class declarations in MOF.
#pragma once

#include "schema.h"

namespace broker {

// Adds the classes of a file to a schema. On a fault it returns "file:line:column: what is wrong", and
// the schema holds the classes before it; else an empty text.
//
// Read are class declarations with their qualifiers. Qualifier declarations, comments and #pragma lines
// are skipped, so are default values; instances are refused.
std::string readMof(const std::string &file, Schema &schema);

// The same from text; name stands for the file in messages.
std::string readMofText(std::string_view text, const std::string &name, Schema &schema);

} // namespace broker
