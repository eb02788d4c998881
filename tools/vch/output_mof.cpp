#include "named_values.h"
#include "output.h"
#include "text.h"

#include <broker/broker.h>
#include <broker/quoting.h>

#include <fmt/format.h>

namespace {

// A whole document: a control character in one of its texts becomes MOF's \x with the character's code.
std::string document(const std::string &text) {
    std::string result;
    for (const char c : validUtf8(text)) {
        const bool isControl = (static_cast<unsigned char>(c) < 0x20 && c != '\n') || c == 0x7F;
        result += isControl ? fmt::format("\\x{:04X}", c) : std::string(1, c);
    }
    return result;
}

std::string instances(const std::vector<CMPIInstance *> &list) {
    std::string text;
    for (const CMPIInstance *instance : list) {
        text += broker::mofOfInstance(instance);
    }
    return document(text);
}

std::string paths(const std::vector<CMPIObjectPath *> &list) {
    std::string text;
    for (const CMPIObjectPath *path : list) {
        text += printable(broker::textOfPath(path, true)) + "\n";
    }
    return text;
}

// MOF has no form for a method's answer: the values are written as an instance's would be.
std::string methodResult(const MethodResult &result) {
    std::string text = fmt::format("ReturnValue = {};\n", broker::mofOfValue(result.returnValue));
    for (const NamedValue &named : argumentsOf(result.outParameters)) {
        text += fmt::format("{} = {};\n", named.name, broker::mofOfValue(named.value));
    }
    return document(text);
}

// [Key, Description("..."), ValueMap{"0", "1"}] on a line of its own, or nothing.
std::string qualifiers(const std::vector<broker::Qualifier> &list, const char *indent) {
    std::vector<std::string> texts;
    for (const broker::Qualifier &qualifier : list) {
        std::vector<std::string> values;
        for (const std::string &value : qualifier.values) {
            values.push_back(broker::quotedText(value));
        }
        if (values.empty()) {
            texts.push_back(qualifier.name);
        } else if (values.size() == 1) {
            texts.push_back(fmt::format("{}({})", qualifier.name, values.front()));
        } else {
            texts.push_back(fmt::format("{}{{{}}}", qualifier.name, joined(values)));
        }
    }
    return texts.empty() ? "" : fmt::format("{}[{}]\n", indent, joined(texts));
}

// "uint16 Name[]", "CIM_System ref Name"
std::string declaration(const broker::Feature &feature) {
    const auto element = static_cast<CMPIType>(feature.type & ~CMPI_ARRAY);
    const std::string type =
        element == CMPI_ref ? feature.referenceClass + " ref" : broker::textOfType(element);
    return fmt::format("{} {}{}", type, feature.name, (feature.type & CMPI_ARRAY) != 0 ? "[]" : "");
}

std::string parameters(const broker::Method &method) {
    std::vector<std::string> texts;
    for (const broker::Parameter &parameter : method.parameters) {
        texts.push_back(
            fmt::format("[In({}), Out({})] {}", parameter.isIn, parameter.isOut, declaration(parameter)));
    }
    return joined(texts);
}

std::string classes(const std::vector<const broker::Class *> &list) {
    std::string text;
    for (const broker::Class *declared : list) {
        const std::string superclass =
            declared->superclass == nullptr ? "" : " : " + declared->superclass->name;
        text += qualifiers(declared->qualifiers, "");
        text += fmt::format("class {}{} {{\n", declared->name, superclass);
        for (const broker::Property &property : declared->properties) {
            text += qualifiers(property.qualifiers, "    ") + "    " + declaration(property) + ";\n";
        }
        for (const broker::Method &method : declared->methods) {
            text += qualifiers(method.qualifiers, "    ") +
                    fmt::format("    {}({});\n", declaration(method), parameters(method));
        }
        text += "};\n";
    }
    return document(text);
}

std::string classNames(const std::vector<const broker::Class *> &list) {
    std::string text;
    for (const broker::Class *declared : list) {
        text += declared->name + "\n";
    }
    return text;
}

} // namespace

const OutputFormat mofOutput = {"mof", instances, paths, methodResult, classes, classNames, nullptr, nullptr};
