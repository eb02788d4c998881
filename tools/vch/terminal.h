#pragma once

#include <cstddef>
#include <string>

/** Columns that a line of standard output may take: the terminal's, else COLUMNS, else 120. */
size_t outputWidth();

/** `text` in bold when standard output is a terminal, and as it is otherwise or when NO_COLOR is set. */
std::string emphasized(const std::string &text);
