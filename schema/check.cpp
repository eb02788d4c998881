// What a table may get wrong that the compiler can't see.
#include "parts.h"

#include "Utilities/PH_OEM_ModifiableProperties.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace generator {

namespace {

bool isName(std::string_view name) {
    const auto isWordCharacter = [](unsigned char c) {
        return c == '_' || (c < 0x80 && std::isalnum(c) != 0);
    };
    return !name.empty() && std::isdigit(static_cast<unsigned char>(name[0])) == 0 &&
           std::ranges::all_of(name, isWordCharacter);
}

bool isEmpty(const char *text) {
    return text == nullptr || *text == '\0';
}

std::string inHex(CMPIType type) {
    char text[8] = {};
    std::to_chars(text, text + sizeof text, type, 16);
    return std::string("0x") + text;
}

// A class under check.
struct Check {
    const ClassTable &table;
    const broker::Schema &schema;
    const broker::Class *superclass; // null in a class without one
    Errors &errors;
    std::vector<std::string> names = {}; // of the features so far
};

void report(const Check &check, const std::string &what) {
    check.errors.push_back(std::string(check.table.className) + ": " + what);
}

void report(const Check &check, const std::string &feature, const std::string &what) {
    check.errors.push_back(std::string(check.table.className) + '.' + feature + ": " + what);
}

const broker::Property *inheritedProperty(const Check &check, std::string_view name) {
    return check.superclass == nullptr ? nullptr : broker::findProperty(*check.superclass, name);
}

bool isAmong(const std::vector<std::string> &names, std::string_view name) {
    return std::ranges::any_of(names, [=](const auto &one) { return broker::sameName(one, name); });
}

// What every key, property, method and parameter needs. `name` may be a path of names, as "Method.Parameter".
void checkDescribed(const Check &check, const std::string &feature, const char *name,
                    const char *description) {
    if (!isName(name)) {
        report(check, feature, "the name isn't letters, digits and underscores, a digit not first");
    }
    if (isEmpty(description)) {
        report(check, feature, "it has no description; say what it is, its unit and where it comes from");
    }
}

void checkFeature(Check &check, const char *name, const char *description) {
    checkDescribed(check, name, name, description);
    if (isAmong(check.names, name)) {
        report(check, name, "it is declared twice");
    }
    check.names.emplace_back(name);
}

void checkType(const Check &check, const std::string &feature, CMPIType type, const char *referenceClass) {
    const bool isReference = (type & ~CMPI_ARRAY) == CMPI_ref;
    if (isReference != (referenceClass != nullptr)) {
        report(check, feature,
               isReference ? "a reference needs the class that it refers to"
                           : "a class to refer to is only for the type CMPI_ref");
    } else if (!isReference && mofType(type) == nullptr) {
        report(check, feature, "it has the type " + inHex(type) + ", which MOF doesn't know");
    }
}

// --- Keys and properties

// A key or property as it is declared, against what the superclass declares under its name.
void checkInherited(const Check &check, const char *name, CMPIType type) {
    const broker::Property *inherited = inheritedProperty(check, name);
    if (inherited == nullptr || mofType(type) == nullptr) {
        return;
    }
    if (inherited->type != declaredType(type)) {
        report(check, name,
               "it is " + typeName(type) + " here and " + typeName(inherited->type) + " in " +
                   inherited->origin + "; take that type, or derive from a class without " + name);
    }
    if (inherited->name != name) {
        report(check, name, inherited->origin + " spells it " + inherited->name);
    }
}

// Does an order of keys name each of the first `count` once?
bool isOrderOf(const KeyOrder &order, std::size_t count) {
    const auto end = order.begin() + static_cast<std::ptrdiff_t>(count);
    return std::is_permutation(order.begin(), end, key_list_order.begin());
}

void checkKeys(Check &check) {
    const ClassTable &table = check.table;
    const bool inheritsKeys = check.superclass != nullptr && !check.superclass->keys.empty();
    for (const KeyColumn &key : table.record.keys) {
        checkFeature(check, key.name, key.description);
        checkInherited(check, key.name, CMPI_string);
        const broker::Property *inherited = inheritedProperty(check, key.name);
        if (inheritsKeys && (inherited == nullptr || !inherited->isKey)) {
            report(check, key.name,
                   "it is a key, and not one in " + check.superclass->name +
                       "; a class with keys can't get further ones in a subclass");
        }
    }
    if (inheritsKeys) {
        for (const std::size_t key : check.superclass->keys) {
            const std::string &name = check.superclass->properties[key].name;
            if (!isAmong(check.names, name)) {
                report(check, name, "it is a key in " + check.superclass->name + " and must be one here");
            }
        }
    } else if (table.record.keys.empty()) {
        report(check, "it has no keys");
    }
    if (table.record.keys.size() > max_keys) {
        report(check, "it has more keys than max_keys, " + std::to_string(max_keys));
        return;
    }
    for (const KeyOrder &order : {table.pathOrder, table.instanceOrder}) {
        if (!isOrderOf(order, table.record.keys.size())) {
            report(check, "an order of its keys doesn't have each of them once");
        }
    }
}

bool isInRange(const std::string &code, const MofType &type) {
    const char *const end = code.data() + code.size();
    if (code.starts_with('-')) {
        long long value = 0;
        return std::from_chars(code.data(), end, value).ec == std::errc() && value >= type.lowest;
    }
    std::uint64_t value = 0;
    return std::from_chars(code.data(), end, value).ec == std::errc() && value <= type.highest;
}

void checkValues(const Check &check, const PropertyColumn &property) {
    const MofType *type = mofType(property.type);
    if (property.values == nullptr || type == nullptr) {
        return;
    }
    if (type->highest == 0) {
        report(check, property.name, "value codes are for integers, and it is " + typeName(property.type));
        return;
    }
    const auto codes = readValueCodes(property.values);
    if (codes.empty()) {
        report(check, property.name,
               std::string("the value codes \"") + property.values + "\" don't read like \"0 Off, 1 On\"");
    }
    const broker::Property *inherited = inheritedProperty(check, property.name);
    const auto known = inherited == nullptr ? std::vector<ValueCode>{} : declaredValueCodes(*inherited);
    std::vector<std::string> seen;
    for (const ValueCode &one : codes) {
        if (isAmong(seen, one.code)) {
            report(check, property.name, "the value code " + one.code + " stands twice");
        }
        seen.push_back(one.code);
        if (!isInRange(one.code, *type)) {
            report(check, property.name, "the value code " + one.code + " is no " + type->name);
        }
        const auto same = std::ranges::find(known, one.code, &ValueCode::code);
        if (same != known.end() && same->meaning != one.meaning) {
            report(check, property.name,
                   "the value code " + one.code + " means " + one.meaning + " here and " + same->meaning +
                       " in " + inherited->origin);
        }
    }
}

void checkProperties(Check &check) {
    for (const PropertyColumn &property : check.table.record.properties) {
        checkFeature(check, property.name, property.description);
        checkType(check, property.name, property.type, nullptr);
        checkInherited(check, property.name, property.type);
        checkValues(check, property);
    }
}

void checkModifiable(const Check &check) {
    if (check.table.modify == nullptr) {
        return;
    }
    std::vector<std::string> seen;
    for (const ModifiableProperty &property : check.table.modify->properties) {
        if (isAmong(seen, property.name)) {
            report(check, property.name, "it stands twice among the modifiable properties");
        }
        seen.emplace_back(property.name);
        const auto hasItsName = [&](const auto &one) { return broker::sameName(one.name, property.name); };
        if (std::ranges::none_of(check.table.record.properties, hasItsName)) {
            report(check, property.name, "it is modifiable, and isn't among the properties of the class");
        }
    }
}

// --- Methods

void checkInheritedMethod(const Check &check, const MethodColumn &method) {
    const broker::Method *inherited =
        check.superclass == nullptr ? nullptr : broker::findMethod(*check.superclass, method.name);
    if (inherited == nullptr) {
        return;
    }
    const auto isSame = [](const MethodParameter &own, const broker::Parameter &other) {
        return broker::sameName(own.name, other.name) && declaredType(own.type) == other.type &&
               own.isOut == other.isOut;
    };
    if (inherited->type != CMPI_uint32 ||
        !std::ranges::equal(method.parameters, inherited->parameters, isSame)) {
        report(check, method.name, "its parameters aren't those that it has in " + inherited->origin);
    }
}

void checkMethods(Check &check) {
    for (const MethodColumn &method : check.table.methods) {
        checkFeature(check, method.name, method.description);
        std::vector<std::string> seen;
        for (const MethodParameter &parameter : method.parameters) {
            const std::string feature = std::string(method.name) + '.' + parameter.name;
            checkDescribed(check, feature, parameter.name, parameter.description);
            checkType(check, feature, parameter.type, parameter.referenceClass);
            if (isAmong(seen, parameter.name)) {
                report(check, feature, "it is declared twice");
            }
            seen.emplace_back(parameter.name);
        }
        checkInheritedMethod(check, method);
    }
}

} // namespace

void checkClass(const ClassTable &table, const broker::Schema &schema, Errors &errors) {
    Check check{.table = table, .schema = schema, .superclass = nullptr, .errors = errors};
    if (!isName(table.className)) {
        report(check, "the name isn't letters, digits and underscores, a digit not first");
    }
    if (isEmpty(table.description)) {
        report(check, "it has no description; say what an instance is");
    }
    if (broker::findClass(schema, table.className) != nullptr) {
        report(check, "it is declared twice");
    }
    if (table.superclass != nullptr) {
        check.superclass = broker::findClass(schema, table.superclass);
        if (check.superclass == nullptr) {
            report(check, std::string("its superclass ") + table.superclass +
                              " isn't declared; declare it in schema/CIM_base.mof");
            return;
        }
    }
    checkKeys(check);
    checkProperties(check);
    checkModifiable(check);
    checkMethods(check);
}

} // namespace generator
