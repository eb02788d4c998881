#pragma once

#include "output.h"

#include <string>
#include <vector>

/** What the class commands take from the command line. */
struct ClassOptions {
    std::string target; ///< a class or, for find, a glob; empty: all
    const OutputFormat *format = outputFormats[0];
    bool namesOnly = false; ///< names instead of declarations
    bool deep = false;      ///< subclasses of subclasses too
};

/** The commands. They read the schema alone; each prints its answer or throws a Failure. */
void getClass(const ClassOptions &options);
void enumerateClasses(const ClassOptions &options);
void findClasses(const ClassOptions &options);
void printClassTree(const ClassOptions &options);
