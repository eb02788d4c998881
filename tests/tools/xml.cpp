#include "xml.h"

#include <expat.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

struct Reader {
    XmlElement document; // stands above the document's element
    std::vector<XmlElement *> open = {&document};
};

void begin(void *reader, const XML_Char *name, const XML_Char **attributes) {
    std::vector<XmlElement *> &open = static_cast<Reader *>(reader)->open;
    XmlElement &element = open.back()->children.emplace_back();
    element.name = name;
    for (; *attributes != nullptr; attributes += 2)
        element.attributes[attributes[0]] = attributes[1];
    open.push_back(&element);
}

void end(void *reader, const XML_Char *) {
    static_cast<Reader *>(reader)->open.pop_back();
}

void characters(void *reader, const XML_Char *text, int length) {
    static_cast<Reader *>(reader)->open.back()->text.append(text, static_cast<size_t>(length));
}

void collect(const XmlElement &element, const std::string &name, std::vector<const XmlElement *> &found) {
    if (element.name == name)
        found.push_back(&element);
    for (const XmlElement &child : element.children)
        collect(child, name, found);
}

} // namespace

XmlElement parseXml(const std::string &document) {
    Reader reader;
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"),
                                                                         XML_ParserFree);
    XML_SetUserData(parser.get(), &reader);
    XML_SetElementHandler(parser.get(), begin, end);
    XML_SetCharacterDataHandler(parser.get(), characters);
    if (XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK)
        return reader.document.children.front();
    ADD_FAILURE() << XML_ErrorString(XML_GetErrorCode(parser.get())) << " in line "
                  << XML_GetCurrentLineNumber(parser.get()) << " of:\n"
                  << document;
    return {};
}

std::vector<const XmlElement *> elementsNamed(const XmlElement &element, const std::string &name) {
    std::vector<const XmlElement *> found;
    collect(element, name, found);
    return found;
}
