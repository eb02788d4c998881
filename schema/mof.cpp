#include "parts.h"

#include "broker/quoting.h"

#include "Utilities/PH_OEM_ModifiableProperties.h"

#include <algorithm>

namespace generator {

namespace {

constexpr std::size_t width = 100;

using Texts = std::vector<std::string>;

std::string joined(const Texts &texts, const std::string &separator) {
    std::string all;
    for (const std::string &text : texts) {
        all += (all.empty() ? "" : separator) + text;
    }
    return all;
}

// A long text as adjacent shorter ones, which are one again to a MOF compiler; the first begins at `column`.
std::string longText(std::string_view text, std::size_t column) {
    const std::size_t room = width - column - 4; // quotes, bracket and comma
    Texts pieces;
    while (text.size() > room) {
        const std::size_t blank = text.rfind(' ', room - 1);
        const std::size_t end = blank == std::string_view::npos ? room : blank + 1;
        pieces.push_back(broker::quotedText(text.substr(0, end)));
        text.remove_prefix(end);
    }
    pieces.push_back(broker::quotedText(text));
    return joined(pieces, '\n' + std::string(column, ' '));
}

std::string descriptionQualifier(const char *description, std::size_t column) {
    const std::string open = "Description(";
    return open + longText(description, column + open.size()) + ')';
}

// Values{"Off", "On"}, in lines.
std::string listQualifier(const std::string &name, const Texts &values, std::size_t column) {
    std::string list = name + '{';
    const std::string indent(column + list.size(), ' ');
    std::size_t position = column + list.size();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string value = broker::quotedText(values[i]) + (i + 1 < values.size() ? "," : "}");
        if (i > 0 && position + 1 + value.size() + 1 > width) {
            list += '\n' + indent;
            position = indent.size();
        } else if (i > 0) {
            list += ' ';
            ++position;
        }
        list += value;
        position += value.size();
    }
    return list;
}

// "[Key,\n Description("...")]\n", indented.
std::string qualifierList(const Texts &qualifiers, std::size_t indent) {
    const std::string blanks(indent, ' ');
    return blanks + '[' + joined(qualifiers, ",\n " + blanks) + "]\n";
}

bool isInherited(const broker::Class *superclass, const char *name) {
    return superclass != nullptr && (broker::findProperty(*superclass, name) != nullptr ||
                                     broker::findMethod(*superclass, name) != nullptr);
}

constexpr std::size_t feature_indent = 4;
constexpr std::size_t parameter_indent = 8;

// A feature's qualifiers: the leading ones, Override, the description and the trailing ones.
std::string featureQualifiers(const broker::Class *superclass, Texts qualifiers, const char *name,
                              const char *description, const Texts &trailing = {}) {
    if (isInherited(superclass, name)) {
        qualifiers.push_back("Override(" + broker::quotedText(name) + ')');
    }
    qualifiers.push_back(descriptionQualifier(description, feature_indent + 1));
    qualifiers.insert(qualifiers.end(), trailing.begin(), trailing.end());
    return qualifierList(qualifiers, feature_indent);
}

std::string mofOfFeature(const std::string &qualifiers, const std::string &declaration) {
    return qualifiers + std::string(feature_indent, ' ') + declaration + ";\n";
}

std::string mofOfProperty(const ClassTable &table, const PropertyColumn &property,
                          const broker::Class *superclass) {
    Texts codes;
    Texts meanings;
    for (const ValueCode &one : readValueCodes(property.values == nullptr ? "" : property.values)) {
        codes.push_back(one.code);
        meanings.push_back(one.meaning);
    }
    Texts valueMap;
    if (!codes.empty()) {
        valueMap = {listQualifier("ValueMap", codes, feature_indent + 1),
                    listQualifier("Values", meanings, feature_indent + 1)};
    }
    const Texts write = isModifiable(table, property.name) ? Texts{"Write"} : Texts{};
    return mofOfFeature(featureQualifiers(superclass, write, property.name, property.description, valueMap),
                        typedName(property.name, property.type));
}

std::string mofOfMethod(const MethodColumn &method, const broker::Class *superclass) {
    Texts parameters;
    for (const MethodParameter &parameter : method.parameters) {
        Texts qualifiers = parameter.isOut ? Texts{"In(false)", "Out"} : Texts{"In"};
        qualifiers.push_back(descriptionQualifier(parameter.description, parameter_indent + 1));
        parameters.push_back('\n' + qualifierList(qualifiers, parameter_indent) +
                             std::string(parameter_indent, ' ') +
                             typedName(parameter.name, parameter.type, parameter.referenceClass));
    }
    return mofOfFeature(featureQualifiers(superclass, {}, method.name, method.description),
                        typedName(method.name, CMPI_uint32) + '(' + joined(parameters, ",") + ')');
}

std::string mofOfHead(const Texts &qualifiers, const char *name, const char *superclass) {
    return '\n' + qualifierList(qualifiers, 0) + "class " + name +
           (superclass == nullptr ? "" : std::string(" : ") + superclass) + " {\n";
}

} // namespace

bool isModifiable(const ClassTable &table, std::string_view property) {
    return table.modify != nullptr &&
           std::ranges::any_of(table.modify->properties, [=](const ModifiableProperty &one) {
               return broker::sameName(one.name, property);
           });
}

std::string mofOfAbstractClass(const AbstractClass &abstract) {
    return mofOfHead({"Abstract", descriptionQualifier(abstract.description, 1)}, abstract.name,
                     abstract.superclass) +
           "};\n";
}

std::string mofOfClass(const ClassTable &table, const broker::Class *superclass) {
    std::string mof =
        mofOfHead({descriptionQualifier(table.description, 1)}, table.className, table.superclass);
    for (const KeyColumn &key : table.record.keys) {
        mof += mofOfFeature(featureQualifiers(superclass, {"Key"}, key.name, key.description),
                            typedName(key.name, CMPI_string));
    }
    for (const PropertyColumn &property : table.record.properties) {
        mof += mofOfProperty(table, property, superclass);
    }
    for (const MethodColumn &method : table.methods) {
        mof += mofOfMethod(method, superclass);
    }
    return mof + "};\n";
}

} // namespace generator
