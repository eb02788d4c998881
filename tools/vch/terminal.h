#pragma once

#include <cstddef>
#include <string>

/** Columns that a line of standard output may take: the terminal's, else COLUMNS, else 120. */
size_t outputWidth();

/** Writes what was printed. Throws a Failure when standard output doesn't take it. */
void flushOutput();

/** `text` in bold when standard output is a terminal, and as it is otherwise or when NO_COLOR is set. */
std::string emphasized(const std::string &text);

/** How well something is, as far as a colour can tell. */
enum class Health { Unknown, Good, Warning, Bad };

/** `text` in green, yellow or red where emphasized() would have an effect; as it is for Unknown. */
std::string coloured(const std::string &text, Health health);
