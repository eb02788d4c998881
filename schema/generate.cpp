// generate-schema <folder>: makes the MOF, registration files and reference pages of all classes from their
// tables, below the folder.
//
// The tables of keys, properties and methods in src/ are the only place that declares a class; what comes out
// of here is committed, and a test holds it against the tables.
#include "generator.h"

#include <cstdio>
#include <fstream>
#include <iterator>

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: generate-schema <folder>\n");
        return 2;
    }
    std::ifstream base(CIM_BASE_MOF, std::ios::binary);
    if (!base) {
        std::fprintf(stderr, "generate-schema: can't read %s\n", CIM_BASE_MOF);
        return 1;
    }
    const std::string baseMof{std::istreambuf_iterator<char>(base), {}};
    generator::Output output = generator::generate(AllClasses(), baseMof);
    if (output.errors.empty()) {
        if (std::string fault = generator::writeFiles(output, argv[1]); !fault.empty()) {
            output.errors.push_back(std::move(fault));
        }
    }
    for (const std::string &error : output.errors) {
        std::fprintf(stderr, "generate-schema: %s\n", error.c_str());
    }
    return output.errors.empty() ? 0 : 1;
}
