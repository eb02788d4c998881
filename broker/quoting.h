// Texts in double quotes as MOF and object paths write them.
#pragma once

#include <string>
#include <string_view>

namespace broker {

// With quotes around it and escapes inside.
std::string quotedText(std::string_view text);

// The character that a letter after a backslash stands for; a letter without a meaning is itself.
char escaped(char letter);

} // namespace broker
