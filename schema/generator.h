// Makes everything that follows from the classes' tables: the MOF, registration files for CIM servers, and
// reference pages.
#pragma once

#include "Utilities/ClassFrame.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#ifndef VCH_SCHEMA
#error "The classes' tables hold their descriptions only where VCH_SCHEMA is defined."
#endif

namespace generator {

// Where the project's own classes live.
constexpr char name_space[] = "root/cimv2";

// What was made: the contents of each file by its path below the output folder. When there are errors, each
// names class and feature and what is wrong, and there are no files.
struct Output {
    std::map<std::string, std::string> files;
    std::vector<std::string> errors;
};

// Checks the classes against each other and against the classes of baseMof, the text of CIM_base.mof, and
// makes their files. The order of the classes doesn't matter.
Output generate(std::span<const ClassTable *const> classes, std::string_view baseMof);

// Writes the files below the folder, and removes what else lies in the folders that hold nothing but
// generated files. An empty text, or what is wrong.
std::string writeFiles(const Output &output, const std::string &folder);

} // namespace generator
