#include "generator.h"

#include "parts.h"

#include "broker/mof.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <system_error>

namespace generator {

namespace {

constexpr AbstractClass abstract_classes[] = {
    {"TRV_NumericSensor", "CIM_NumericSensor",
     "A sensor of this system with a reading: all of them answer an enumeration of this class."},
};

constexpr char mof_path[] = "schema/TRV_oVTA.mof";

// The folders that hold nothing but generated files.
constexpr const char *generated_folders[] = {"schema/sfcb", "schema/pegasus", "docs/classes"};

// Puts classes in an order in which each comes after its superclass and the classes that its methods refer
// to, and otherwise in that of the names.
struct Sorting {
    Classes byName;
    Classes sorted = {};
    std::set<const ClassTable *> seen = {};
};

void visit(Sorting &sorting, const ClassTable *table);

void visitNamed(Sorting &sorting, const char *className) {
    for (const ClassTable *table : sorting.byName) {
        if (className != nullptr && broker::sameName(table->className, className)) {
            visit(sorting, table);
        }
    }
}

void visit(Sorting &sorting, const ClassTable *table) {
    if (!sorting.seen.insert(table).second) {
        return;
    }
    visitNamed(sorting, table->superclass);
    for (const MethodColumn &method : table->methods) {
        for (const MethodParameter &parameter : method.parameters) {
            visitNamed(sorting, parameter.referenceClass);
        }
    }
    sorting.sorted.push_back(table);
}

Classes declarationOrder(const Classes &byName) {
    Sorting sorting{byName};
    for (const ClassTable *table : byName) {
        visit(sorting, table);
    }
    return sorting.sorted;
}

// Adds what the MOF declares to the schema, which is what the classes after it are checked against.
void declare(const std::string &mof, broker::Schema &schema, Errors &errors) {
    if (const std::string fault = broker::readMofText(mof, "TRV_oVTA.mof", schema); !fault.empty()) {
        errors.push_back(fault);
    }
}

std::string mofOfAll(const Classes &byName, broker::Schema &schema, Errors &errors) {
    std::string mof =
        "// Generated from the tables of the classes in src/; don't edit. ./check says when it is "
        "out of date, and\n// the target schema-update makes it anew.\n";
    for (const AbstractClass &abstract : abstract_classes) {
        const std::string text = mofOfAbstractClass(abstract);
        declare(text, schema, errors);
        mof += text;
    }
    for (const ClassTable *table : declarationOrder(byName)) {
        const std::size_t faults = errors.size();
        checkClass(*table, schema, errors);
        if (errors.size() > faults) {
            continue;
        }
        const std::string text = mofOfClass(
            *table, table->superclass == nullptr ? nullptr : broker::findClass(schema, table->superclass));
        declare(text, schema, errors);
        mof += text;
    }
    return mof;
}

// Classes that parameters refer to must be declared, before or after.
void checkReferences(const Classes &classes, const broker::Schema &schema, Errors &errors) {
    for (const ClassTable *table : classes) {
        for (const MethodColumn &method : table->methods) {
            for (const MethodParameter &parameter : method.parameters) {
                if (parameter.referenceClass != nullptr &&
                    broker::findClass(schema, parameter.referenceClass) == nullptr) {
                    errors.push_back(std::string(table->className) + '.' + method.name + '.' +
                                     parameter.name + ": the class " + parameter.referenceClass +
                                     " that it refers to isn't declared; declare it in schema/CIM_base.mof");
                }
            }
        }
    }
}

} // namespace

Output generate(std::span<const ClassTable *const> classes, std::string_view baseMof) {
    Classes byName(classes.begin(), classes.end());
    std::ranges::sort(byName, {}, [](const ClassTable *table) { return std::string_view(table->className); });

    Output output;
    broker::Schema schema;
    if (const std::string fault = broker::readMofText(baseMof, "CIM_base.mof", schema); !fault.empty()) {
        output.errors.push_back(fault);
        return output;
    }
    const std::string mof = mofOfAll(byName, schema, output.errors);
    if (output.errors.empty()) {
        checkReferences(byName, schema, output.errors);
    }
    if (!output.errors.empty()) {
        return output;
    }
    output.files[mof_path] = mof;
    output.files["schema/sfcb/TRVProviders.reg"] = sfcbRegistration(byName);
    output.files["schema/pegasus/TRVProviders.mof"] = pegasusRegistration(byName);
    output.files["docs/classes/README.md"] = indexOfPages(byName, abstract_classes);
    for (const ClassTable *table : byName) {
        output.files[std::string("docs/classes/") + table->className + ".md"] =
            pageOfClass(*table, *broker::findClass(schema, table->className));
    }
    return output;
}

// --- Files

namespace {

namespace fs = std::filesystem;

std::string writeFile(const fs::path &path, const std::string &text) {
    const auto failed = [&] { return "can't write " + path.string() + ": " + std::strerror(errno); };
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    if (error) {
        return "can't make the folder " + path.parent_path().string() + ": " + error.message();
    }
    std::unique_ptr<FILE, int (*)(FILE *)> stream(std::fopen(path.c_str(), "we"), std::fclose);
    if (stream == nullptr || std::fwrite(text.data(), 1, text.size(), stream.get()) != text.size() ||
        std::fclose(stream.release()) != 0) {
        return failed();
    }
    return "";
}

std::string removeOthers(const Output &output, const fs::path &top, const char *folder) {
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(top / folder, error)) {
        const std::string path = std::string(folder) + '/' + entry.path().filename().string();
        if (!output.files.contains(path) && entry.is_regular_file() && !fs::remove(entry.path(), error)) {
            return "can't remove " + entry.path().string() + ": " + error.message();
        }
    }
    return error ? "can't read the folder " + (top / folder).string() + ": " + error.message() : "";
}

} // namespace

std::string writeFiles(const Output &output, const std::string &folder) {
    std::string fault;
    for (auto file = output.files.begin(); fault.empty() && file != output.files.end(); ++file) {
        fault = writeFile(fs::path(folder) / file->first, file->second);
    }
    for (const char *generated : generated_folders) {
        if (fault.empty()) {
            fault = removeOthers(output, folder, generated);
        }
    }
    return fault;
}

} // namespace generator
