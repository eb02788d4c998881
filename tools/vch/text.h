#pragma once

#include <string>
#include <string_view>
#include <vector>

/** `text` with every byte that isn't UTF-8 replaced by U+FFFD. Back ends deliver what their memory holds. */
std::string validUtf8(std::string_view text);

/** `text` for a terminal: as validUtf8, and control characters as \n, \t or \x1B. */
std::string printable(std::string_view text);

/** Columns that UTF-8 text takes on a terminal, one for each character. */
size_t columns(std::string_view text);

/** `text` with blanks behind it up to so many columns. */
std::string padded(const std::string &text, size_t width);

std::string withoutTrailingBlanks(std::string line);

/** Splits at every `separator` but those behind a backslash, which is taken away; an empty text has no parts.
 */
std::vector<std::string> split(std::string_view text, char separator);

/** The texts with ", " between them. */
std::string joined(const std::vector<std::string> &texts);

/**
 * The one of `candidates` that somebody who typed `text` most likely meant.
 *
 * @return an empty text when none is near: more than a third of the characters would have to change.
 */
std::string closest(std::string_view text, const std::vector<std::string> &candidates);
