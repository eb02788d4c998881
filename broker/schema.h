// Class declarations that the broker knows, as read from MOF.
#pragma once

#include <cmpidt.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace broker {

// [Key], [Description("...")], [ValueMap{"0", "1"}]: a bare qualifier has no values.
struct Qualifier {
    std::string name;
    std::vector<std::string> values;
};

// A property, a parameter, or what a method returns.
struct Feature {
    std::string name;
    CMPIType type = CMPI_null;  // with CMPI_ARRAY for arrays; references are CMPI_ref
    std::string referenceClass; // of a reference
    std::vector<Qualifier> qualifiers;
    std::string origin; // class that declares it, the most derived one
};

struct Property : Feature {
    bool isKey = false;
    bool isEmbedded = false; // a string that carries an instance
};

struct Parameter : Feature {
    bool isIn = true;
    bool isOut = false;
};

struct Method : Feature { // type is that of the return value
    std::vector<Parameter> parameters;
};

struct Class {
    std::string name;
    const Class *superclass = nullptr;
    std::vector<const Class *> subclasses; // direct ones, in order of declaration
    std::vector<Qualifier> qualifiers;     // own ones; Abstract and the like aren't inherited
    bool isAbstract = false;
    bool isAssociation = false;
    std::vector<Property> properties; // inherited ones first, overridden ones in place
    std::vector<Method> methods;      // likewise
    std::vector<size_t> keys;         // indices into properties
};

// Names without regard to the case of ASCII letters, as CIM compares them.
bool sameName(std::string_view a, std::string_view b);
struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const;
};
struct NameEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return sameName(a, b); }
};

struct Schema {
    std::vector<std::unique_ptr<Class>> classes; // in order of declaration
    std::unordered_map<std::string, Class *, NameHash, NameEqual> byName;
};

// Null where there is none.
const Class *findClass(const Schema &schema, std::string_view name);
const Property *findProperty(const Class &cls, std::string_view name);
const Method *findMethod(const Class &cls, std::string_view name);
const Parameter *findParameter(const Method &method, std::string_view name);
const Qualifier *findQualifier(const std::vector<Qualifier> &qualifiers, std::string_view name);

// True for the class itself too.
bool isA(const Class &cls, const Class &ancestor);

// Does a name match a glob of '*' and '?', without regard to case?
bool matchesGlob(std::string_view name, std::string_view glob);
std::vector<const Class *> findClasses(const Schema &schema, std::string_view glob);

// The class and all its subclasses, each class before its own subclasses.
std::vector<const Class *> withSubclasses(const Class &cls);

} // namespace broker
