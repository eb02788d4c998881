#pragma once

#include <string>
#include <vector>

/**
 * Checks classes as a client meets them, and prints for each that it is well or what it does wrong. The store
 * isn't changed: the checks run on a copy of it, in which readings stand still.
 *
 * @param targets classes or globs, each of which stands for its subclasses too; empty: all classes
 *
 * Throws a Failure when something was found.
 */
void checkConformance(const std::vector<std::string> &targets);
