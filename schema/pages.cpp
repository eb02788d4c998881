// Reference pages, in Markdown.
#include "parts.h"

#include <filesystem>

namespace generator {

namespace {

constexpr char generated[] = "<!-- Generated from the tables of the classes in src/; don't edit. -->\n";

// Text as it stands in a table's cell.
std::string cell(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '|' || c == '*' || c == '\\') {
            escaped += '\\';
        }
        escaped += c == '<' ? "&lt;" : std::string(1, c == '\n' ? ' ' : c);
    }
    return escaped;
}

std::string code(const std::string &text) {
    return '`' + text + '`';
}

// A source file's folder is its profile.
std::string profileOf(const ClassTable &table) {
    return std::filesystem::path(table.record.file).parent_path().filename().string();
}

std::string operationsOf(const ClassTable &table) {
    return std::string("get, enumerate") + (table.modify != nullptr ? ", modify" : "") +
           (table.methods.empty() ? "" : ", invoke method");
}

// "`CIM_SettingData`, a `CIM_ManagedElement`".
std::string ancestorsOf(const broker::Class &declared) {
    std::string text;
    for (const broker::Class *one = declared.superclass; one != nullptr; one = one->superclass) {
        text += (text.empty() ? "" : ", a ") + code(one->name);
    }
    return text.empty() ? "none" : text;
}

// The class from which a property comes.
std::string originOf(const broker::Class &declared, const char *name) {
    const broker::Property *inherited =
        declared.superclass == nullptr ? nullptr : broker::findProperty(*declared.superclass, name);
    return inherited == nullptr ? "this class" : code(inherited->origin);
}

std::string keysOf(const ClassTable &table) {
    std::string text = "\n## Keys\n\n| Key | Type | What it says |\n|---|---|---|\n";
    for (const KeyColumn &key : table.record.keys) {
        text +=
            "| " + code(key.name) + " | " + typeName(CMPI_string) + " | " + cell(key.description) + " |\n";
    }
    return text;
}

std::string propertiesOf(const ClassTable &table, const broker::Class &declared) {
    std::string text = "\n## Properties\n\n"
                       "| Property | Type | Clients may change it | Declared by | What it says |\n"
                       "|---|---|---|---|---|\n";
    for (const PropertyColumn &property : table.record.properties) {
        const bool isInterval = (property.flags & PH_OEM_PROP_INTERVAL) != 0;
        text += "| " + code(property.name) + " | " + typeName(property.type) +
                (isInterval ? " (interval)" : "") + " | " +
                (isModifiable(table, property.name) ? "yes" : "no") + " | " +
                originOf(declared, property.name) + " | " + cell(property.description) + " |\n";
    }
    return table.record.properties.empty() ? "" : text;
}

std::string valueCodesOf(const ClassTable &table, const broker::Class &declared) {
    std::string rows;
    for (const PropertyColumn &property : table.record.properties) {
        std::string codes;
        for (const ValueCode &one : declaredValueCodes(*broker::findProperty(declared, property.name))) {
            codes += (codes.empty() ? "" : ", ") + one.code + ' ' + one.meaning;
        }
        if (!codes.empty()) {
            rows += "| " + code(property.name) + " | " + cell(codes) + " |\n";
        }
    }
    return rows.empty() ? "" : "\n## Value codes\n\n| Property | Values |\n|---|---|\n" + rows;
}

// "uint32 Reset(in string Name, out CIM_Job REF Job)".
std::string signatureOf(const MethodColumn &method) {
    std::string parameters;
    for (const MethodParameter &parameter : method.parameters) {
        parameters += std::string(parameters.empty() ? "" : ", ") + (parameter.isOut ? "out " : "in ") +
                      typedName(parameter.name, parameter.type, parameter.referenceClass);
    }
    return typedName(method.name, CMPI_uint32) + '(' + parameters + ')';
}

std::string methodsOf(const ClassTable &table) {
    std::string text = table.methods.empty() ? "" : "\n## Methods\n";
    for (const MethodColumn &method : table.methods) {
        text += "\n### " + code(signatureOf(method)) + "\n\n" + cell(method.description) + '\n';
        if (!method.parameters.empty()) {
            text += "\n| Parameter | What it says |\n|---|---|\n";
        }
        for (const MethodParameter &parameter : method.parameters) {
            text += "| " + code(parameter.name) + " | " + cell(parameter.description) + " |\n";
        }
    }
    return text;
}

} // namespace

std::string pageOfClass(const ClassTable &table, const broker::Class &declared) {
    return std::string(generated) + "# " + table.className + "\n\n" + cell(table.description) +
           "\n\n* Derives from: " + ancestorsOf(declared) + "\n* Operations: " + operationsOf(table) +
           "\n* Source: [" + table.record.file + "](../../src/" + table.record.file + ")\n" + keysOf(table) +
           propertiesOf(table, declared) + valueCodesOf(table, declared) + methodsOf(table);
}

std::string indexOfPages(const Classes &classes, std::span<const AbstractClass> abstractClasses) {
    std::string text = std::string(generated) +
                       "# Classes\n\n"
                       "All are in the namespace `" +
                       std::string(name_space) +
                       "`. Every class answers get and enumerate.\n\n"
                       "| Class | Profile | Derives from | Operations | What it is |\n"
                       "|---|---|---|---|---|\n";
    for (const ClassTable *table : classes) {
        text += std::string("| [") + table->className + "](" + table->className + ".md) | " +
                profileOf(*table) + " | " +
                (table->superclass == nullptr ? "none" : code(table->superclass)) + " | " +
                operationsOf(*table) + " | " + cell(table->description) + " |\n";
    }
    text += "\nAbstract classes, which have instances only through their subclasses:\n\n"
            "| Class | Derives from | What it is |\n|---|---|---|\n";
    for (const AbstractClass &abstract : abstractClasses) {
        text += "| " + code(abstract.name) + " | " + code(abstract.superclass) + " | " +
                cell(abstract.description) + " |\n";
    }
    return text;
}

} // namespace generator
