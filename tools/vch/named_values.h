#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

#include <string>
#include <vector>

/** A value with its name: a property, a key, a parameter. The value stays the request's. */
struct NamedValue {
    std::string name;
    CMPIData value;
};

/** What an object holds, in its own order. */
std::vector<NamedValue> propertiesOf(const CMPIInstance *instance);
std::vector<NamedValue> keysOf(const CMPIObjectPath *path);
std::vector<NamedValue> argumentsOf(const CMPIArgs *arguments);

/** The text of a string, of a class name or a namespace; empty for NULL. */
std::string textOf(const CMPIString *string);

/** The text of a property as broker::textOfValue gives it; empty for one that isn't there. */
std::string textOf(const CMPIInstance *instance, const char *property);
