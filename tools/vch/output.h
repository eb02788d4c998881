#pragma once

#include <broker/schema.h>
#include <cmpidt.h>

#include <string>
#include <vector>

struct OverviewAnswer;

/** What a method answered. */
struct MethodResult {
    std::string method;
    CMPIData returnValue;
    const CMPIArgs *outParameters;
};

/** How many instances a class has. */
struct InstanceCount {
    const broker::Class *countedClass;
    size_t instances;
};

/**
 * An output format: how answers become text, complete with the last newline. What is printed belongs to a
 * request that hasn't ended. Bytes of a value that aren't UTF-8 come out as U+FFFD.
 */
struct OutputFormat {
    const char *name;
    std::string (*instances)(const std::vector<CMPIInstance *> &instances);
    std::string (*paths)(const std::vector<CMPIObjectPath *> &paths);
    std::string (*methodResult)(const MethodResult &result);
    std::string (*classes)(const std::vector<const broker::Class *> &classes);
    std::string (*classNames)(const std::vector<const broker::Class *> &classes);
    std::string (*counts)(
        const std::vector<InstanceCount> &counts); ///< NULL where the format has no form for it
    std::string (*overview)(const std::vector<OverviewAnswer> &answers); ///< likewise
};

/** For people: columns, or a block for each instance where those are too wide; a path is its text. */
extern const OutputFormat tableOutput;

/** MOF: `instance of Class { Name = value; };`. A path, for which MOF has no form, is its text. */
extern const OutputFormat mofOutput;

/** JSON: an array of `{"class", "path", "properties"}`, or of paths; a method's `{"method", "returnValue",
 * ...}`. */
extern const OutputFormat jsonOutput;

/** CIM-XML: VALUE.NAMEDINSTANCE, INSTANCENAME or CLASS elements in one IRETURNVALUE; METHODRESPONSE. */
extern const OutputFormat xmlOutput;

/** All of them, in the order in which help names them; the first is the default. */
inline constexpr const OutputFormat *outputFormats[] = {&tableOutput, &mofOutput, &jsonOutput, &xmlOutput};
