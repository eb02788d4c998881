#include "named_values.h"
#include "output.h"
#include "text.h"

#include <broker/broker.h>

#include <fmt/format.h>

namespace {

// Text of an element or an attribute. XML 1.0 has no way to write most control characters.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : validUtf8(text)) {
        switch (c) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        case '\t': result += "&#9;"; break;
        case '\n': result += "&#10;"; break;
        case '\r': result += "&#13;"; break;
        default: result += static_cast<unsigned char>(c) < 0x20 ? validUtf8("\xFF") : std::string(1, c);
        }
    }
    return result;
}

// CIM-XML's name of a type. An array's is that of its elements, and only a reference's differs from MOF's.
std::string typeName(CMPIType type) {
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    return element == CMPI_ref ? "reference" : broker::textOfType(element);
}

std::string instanceName(const CMPIObjectPath *path);

std::string reference(const CMPIObjectPath *path) {
    const std::string nameSpace = textOf(CMGetNameSpace(path, nullptr));
    std::string text = instanceName(path);
    if (!nameSpace.empty()) {
        std::string parts;
        for (const std::string &part : split(nameSpace, '/')) {
            parts += fmt::format("<NAMESPACE NAME=\"{}\"/>", escaped(part));
        }
        text = fmt::format(
            "<LOCALINSTANCEPATH><LOCALNAMESPACEPATH>{}</LOCALNAMESPACEPATH>{}</LOCALINSTANCEPATH>", parts,
            text);
    }
    return "<VALUE.REFERENCE>" + text + "</VALUE.REFERENCE>";
}

// Text of a scalar that isn't a reference. CIM-XML writes a character as itself, as texts are written.
std::string scalar(const CMPIData &data) {
    return escaped(broker::textOfValue(data));
}

std::string keyValue(const CMPIData &data) {
    if (data.type == CMPI_ref && !CMIsNullValue(data)) {
        return reference(data.value.ref);
    }
    const bool numeric = (data.type & (CMPI_UINT | CMPI_REAL)) != 0 && data.type < CMPI_ENC;
    return fmt::format("<KEYVALUE VALUETYPE=\"{}\" TYPE=\"{}\">{}</KEYVALUE>",
                       numeric                     ? "numeric"
                       : data.type == CMPI_boolean ? "boolean"
                                                   : "string",
                       typeName(data.type), CMIsNullValue(data) ? "" : scalar(data));
}

std::string instanceName(const CMPIObjectPath *path) {
    std::string keys;
    for (const NamedValue &key : keysOf(path)) {
        keys +=
            fmt::format("<KEYBINDING NAME=\"{}\">{}</KEYBINDING>", escaped(key.name), keyValue(key.value));
    }
    return fmt::format("<INSTANCENAME CLASSNAME=\"{}\">{}</INSTANCENAME>",
                       escaped(textOf(CMGetClassName(path, nullptr))), keys);
}

// The element that holds a value; nothing for NULL, which CIM-XML tells by the element's absence.
std::string content(const CMPIData &data) {
    if (CMIsNullValue(data)) {
        return "";
    }
    if (CMIsArray(data)) {
        std::string elements;
        for (const CMPIData &element : broker::elementsOf(data)) {
            elements += CMIsNullValue(element) ? "<VALUE.NULL/>" : content(element);
        }
        return fmt::format("<{0}>{1}</{0}>", data.type == CMPI_refA ? "VALUE.REFARRAY" : "VALUE.ARRAY",
                           elements);
    }
    return data.type == CMPI_ref ? reference(data.value.ref) : "<VALUE>" + scalar(data) + "</VALUE>";
}

std::string property(const NamedValue &named) {
    if (named.value.type == CMPI_ref) {
        return fmt::format("<PROPERTY.REFERENCE NAME=\"{}\">{}</PROPERTY.REFERENCE>\n", escaped(named.name),
                           content(named.value));
    }
    return fmt::format("<{0} NAME=\"{1}\" TYPE=\"{2}\">{3}</{0}>\n",
                       CMIsArray(named.value) ? "PROPERTY.ARRAY" : "PROPERTY", escaped(named.name),
                       typeName(named.value.type), content(named.value));
}

std::string document(const std::string &element) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + element + "\n";
}

std::string returned(const std::string &elements) {
    return document("<IRETURNVALUE>\n" + elements + "</IRETURNVALUE>");
}

std::string instances(const std::vector<CMPIInstance *> &list) {
    std::string elements;
    for (const CMPIInstance *instance : list) {
        const CMPIObjectPath *path = CMGetObjectPath(instance, nullptr);
        elements += fmt::format("<VALUE.NAMEDINSTANCE>{}<INSTANCE CLASSNAME=\"{}\">\n", instanceName(path),
                                escaped(textOf(CMGetClassName(path, nullptr))));
        for (const NamedValue &named : propertiesOf(instance)) {
            elements += property(named);
        }
        elements += "</INSTANCE></VALUE.NAMEDINSTANCE>\n";
    }
    return returned(elements);
}

std::string paths(const std::vector<CMPIObjectPath *> &list) {
    std::string elements;
    for (const CMPIObjectPath *path : list) {
        elements += instanceName(path) + "\n";
    }
    return returned(elements);
}

std::string methodResult(const MethodResult &result) {
    std::string elements = fmt::format("<RETURNVALUE PARAMTYPE=\"{}\">{}</RETURNVALUE>\n",
                                       typeName(result.returnValue.type), content(result.returnValue));
    for (const NamedValue &named : argumentsOf(result.outParameters)) {
        elements += fmt::format("<PARAMVALUE NAME=\"{}\" PARAMTYPE=\"{}\">{}</PARAMVALUE>\n",
                                escaped(named.name), typeName(named.value.type), content(named.value));
    }
    return document(
        fmt::format("<METHODRESPONSE NAME=\"{}\">\n{}</METHODRESPONSE>", escaped(result.method), elements));
}

// A qualifier's values are kept as text, and so are written as strings; a bare one is true.
std::string qualifiers(const std::vector<broker::Qualifier> &list) {
    std::string elements;
    for (const broker::Qualifier &qualifier : list) {
        std::string values;
        for (const std::string &value : qualifier.values) {
            values += fmt::format("<VALUE>{}</VALUE>", escaped(value));
        }
        if (qualifier.values.empty()) {
            values = "<VALUE>TRUE</VALUE>";
        }
        if (qualifier.values.size() > 1) {
            values = fmt::format("<VALUE.ARRAY>{}</VALUE.ARRAY>", values);
        }
        elements +=
            fmt::format("<QUALIFIER NAME=\"{}\" TYPE=\"{}\">{}</QUALIFIER>\n", escaped(qualifier.name),
                        qualifier.values.empty() ? "boolean" : "string", values);
    }
    return elements;
}

// A property's or a parameter's declaration: the element's name says its shape, its attributes the rest.
std::string declaration(const char *element, const broker::Feature &feature) {
    const bool isArray = (feature.type & CMPI_ARRAY) != 0;
    const bool isReference = (feature.type & ~CMPI_ARRAY) == CMPI_ref;
    const std::string name = fmt::format("{}{}", element,
                                         isReference ? (isArray ? ".REFARRAY" : ".REFERENCE")
                                         : isArray   ? ".ARRAY"
                                                     : "");
    const std::string kind = isReference ? fmt::format("REFERENCECLASS=\"{}\"", feature.referenceClass)
                                         : fmt::format("TYPE=\"{}\"", typeName(feature.type));
    return fmt::format("<{0} NAME=\"{1}\" {2}>{3}</{0}>\n", name, escaped(feature.name), kind,
                       qualifiers(feature.qualifiers));
}

std::string classes(const std::vector<const broker::Class *> &list) {
    std::string elements;
    for (const broker::Class *declared : list) {
        const std::string superclass = declared->superclass == nullptr
                                           ? ""
                                           : fmt::format(" SUPERCLASS=\"{}\"", declared->superclass->name);
        elements += fmt::format("<CLASS NAME=\"{}\"{}>\n{}", declared->name, superclass,
                                qualifiers(declared->qualifiers));
        for (const broker::Property &declaredProperty : declared->properties) {
            elements += declaration("PROPERTY", declaredProperty);
        }
        for (const broker::Method &method : declared->methods) {
            elements += fmt::format("<METHOD NAME=\"{}\" TYPE=\"{}\">\n{}", method.name,
                                    typeName(method.type), qualifiers(method.qualifiers));
            for (const broker::Parameter &parameter : method.parameters) {
                elements += declaration("PARAMETER", parameter);
            }
            elements += "</METHOD>\n";
        }
        elements += "</CLASS>\n";
    }
    return returned(elements);
}

std::string classNames(const std::vector<const broker::Class *> &list) {
    std::string elements;
    for (const broker::Class *declared : list) {
        elements += fmt::format("<CLASSNAME NAME=\"{}\"/>\n", declared->name);
    }
    return returned(elements);
}

} // namespace

const OutputFormat xmlOutput = {"xml", instances, paths, methodResult, classes, classNames, nullptr, nullptr};
