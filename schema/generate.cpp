// Writes the MOF of the project's classes from their tables, to standard output.
//
// The tables of keys and properties in src/ are the only place that declares a class; what comes out of here
// is committed, and a test holds it against the tables.
#include "Utilities/ClassFrame.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct MofType {
    CMPIType type;
    const char *name;
};
constexpr MofType mof_types[] = {
    {CMPI_boolean, "boolean"}, {CMPI_char16, "char16"},     {CMPI_uint8, "uint8"},   {CMPI_uint16, "uint16"},
    {CMPI_uint32, "uint32"},   {CMPI_uint64, "uint64"},     {CMPI_sint8, "sint8"},   {CMPI_sint16, "sint16"},
    {CMPI_sint32, "sint32"},   {CMPI_sint64, "sint64"},     {CMPI_real32, "real32"}, {CMPI_real64, "real64"},
    {CMPI_chars, "string"},    {CMPI_dateTime, "datetime"}, {CMPI_string, "string"},
};

const char *MofTypeName(const char *className, const char *name, CMPIType type) {
    for (const MofType &row : mof_types) {
        if (row.type == (type & ~CMPI_ARRAY)) {
            return row.name;
        }
    }
    std::fprintf(stderr, "generate-schema: %s.%s has the type 0x%x, which MOF doesn't know\n", className,
                 name, type);
    std::exit(1);
}

// "uint16 Name[]", "CIM_Job REF Name"
void WriteTyped(const char *className, const char *name, CMPIType type,
                const char *referenceClass = nullptr) {
    if (referenceClass != nullptr) {
        std::printf("%s REF %s", referenceClass, name);
    } else {
        std::printf("%s %s", MofTypeName(className, name, type), name);
    }
    std::printf("%s", (type & CMPI_ARRAY) != 0 ? "[]" : "");
}

void WriteMethod(const char *className, const Method &method) {
    std::printf("    uint32 %s(", method.name);
    const char *separator = "";
    for (const MethodParameter &parameter : method.parameters) {
        std::printf("%s%s ", separator, parameter.isOut ? "[IN(false), OUT]" : "[IN]");
        WriteTyped(className, parameter.name, parameter.type, parameter.referenceClass);
        separator = ", ";
    }
    std::printf(");\n");
}

void WriteClass(const ClassTable &table) {
    std::printf("class %s : %s {\n", table.className, table.superclass);
    for (const KeyColumn &key : table.record.keys) {
        std::printf("    [Key] string %s;\n", key.name);
    }
    for (const PropertyColumn &property : table.record.properties) {
        std::printf("    ");
        WriteTyped(table.className, property.name, property.type);
        std::printf(";\n");
    }
    for (const Method &method : table.methods) {
        WriteMethod(table.className, method);
    }
    std::printf("};\n\n");
}

} // namespace

int main() {
    const auto all = AllClasses();
    std::vector<const ClassTable *> classes(all.begin(), all.end());
    std::ranges::sort(classes, {},
                      [](const ClassTable *table) { return std::string_view(table->className); });
    std::printf("// Generated from the tables of the classes in src/; don't edit. ./check says when it is "
                "out of date, and\n"
                "// the target schema-update makes it anew.\n\n");
    for (const ClassTable *table : classes) {
        WriteClass(*table);
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
