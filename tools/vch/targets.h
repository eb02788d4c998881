#pragma once

#include "session.h"

#include <string>
#include <string_view>
#include <vector>

/**
 * What a command line names: classes, instances, properties. A name that can't be meant throws a Failure that
 * says which it is and offers the nearest declared one.
 */

/** The class of a name, with or without the prefix TRV_oVTA and in any case. */
const broker::Class &resolveClass(const broker::Broker &broker, std::string_view name);

/** Does a target that may be a class or a glob have a '*' or a '?'? */
bool isGlob(std::string_view target);

/** The classes whose name a glob of '*' and '?' matches, with or without the prefix; an empty one matches
 * all. */
std::vector<const broker::Class *> findByName(const broker::Schema &schema, const std::string &glob);

/**
 * The path of `[namespace:]Class[.Key="value",...]`, the class as resolveClass takes it.
 *
 * A path without keys is a class's.
 */
CMPIObjectPath *resolvePath(const Session &session, std::string_view text);

/** As resolvePath; without keys, the path of the class's instance if there is exactly one. */
CMPIObjectPath *resolveInstance(const Session &session, std::string_view text);

/** The class that a path of this session names. */
const broker::Class &classOf(const Session &session, const CMPIObjectPath *path);

/** Throws unless the class or one of its subclasses declares every name. */
void requireProperties(const broker::Class &cls, const std::vector<std::string> &names);

/** "Name=text" taken apart; a name that stands several times has all its texts. */
struct Assignment {
    std::string name;
    std::vector<std::string> texts;
};

/** Takes command line words of the form Name=text apart, in the order in which the names first stand. */
std::vector<Assignment> parseAssignments(const std::vector<std::string> &words);

/**
 * The value that an assignment gives to a property or parameter.
 *
 * An array's elements are the assignment's texts or, when there is one text, its parts between commas; a
 * comma of an element's own stands behind a backslash.
 */
CMPIData assignedValue(const Session &session, const broker::Feature &feature, const Assignment &assignment);
