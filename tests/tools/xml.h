// Reads XML, to see that what the tool prints is XML and what it says.
#pragma once

#include <map>
#include <string>
#include <vector>

struct XmlElement {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::string text; ///< its own, without its children's
    std::vector<XmlElement> children;
};

/** The document's element. A fault is reported as a test failure and gives an element without a name. */
XmlElement parseXml(const std::string &document);

/** All elements of a name, the element itself and below it, in the document's order. */
std::vector<const XmlElement *> elementsNamed(const XmlElement &element, const std::string &name);
