#include "mof.h"

#include "quoting.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

namespace broker {

namespace {

// --- Words ----------------------------------------------------------------------------------------------

enum class TokenKind { Name, Number, Text, Symbol, End };

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text; // of a text without its quotes and escapes
    size_t line = 1, column = 1;
};

// The file while it is read. After the first fault every step fails, so that the parser needs no other
// way out than "not this".
struct Reader {
    std::string_view rest;
    const std::string &file;
    Schema &schema;
    size_t line = 1, column = 1;
    Token token; // the next one
    std::string fault = {};
};

bool fail(Reader &r, const Token &at, const std::string &what) {
    if (r.fault.empty()) {
        r.fault = r.file + ':' + std::to_string(at.line) + ':' + std::to_string(at.column) + ": " + what;
    }
    return false;
}

std::string describe(const Token &token) {
    switch (token.kind) {
    case TokenKind::End: return "the end of the file";
    case TokenKind::Text: return "the text \"" + token.text + '"';
    default: return '\'' + token.text + '\'';
    }
}

bool isNameStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

void skip(Reader &r, size_t count) {
    for (const char c : r.rest.substr(0, count)) {
        r.column = c == '\n' ? 1 : r.column + 1;
        r.line += c == '\n';
    }
    r.rest.remove_prefix(std::min(count, r.rest.size()));
}

// Skips white space, comments and #pragma lines.
bool skipBlanks(Reader &r) {
    while (!r.rest.empty()) {
        if (std::strchr(" \t\r\n\f\v", r.rest[0]) != nullptr && r.rest[0] != '\0') {
            skip(r, 1);
        } else if (r.rest.starts_with("//") || r.rest.starts_with("#pragma")) {
            skip(r, std::min(r.rest.find('\n'), r.rest.size()));
        } else if (r.rest.starts_with("/*")) {
            const size_t end = r.rest.find("*/", 2);
            if (end == std::string_view::npos) {
                return fail(r, {TokenKind::End, {}, r.line, r.column}, "this comment has no end");
            }
            skip(r, end + 2);
        } else {
            break;
        }
    }
    return true;
}

// A quoted text; quote is '"', or '\'' for a character, which counts as a text of one.
bool readQuoted(Reader &r, char quote) {
    const Token start = {TokenKind::End, {}, r.line, r.column};
    skip(r, 1);
    while (!r.rest.empty() && r.rest[0] != quote && r.rest[0] != '\n') {
        char c = r.rest[0];
        if (c == '\\' && r.rest.size() > 1) {
            skip(r, 1);
            c = escaped(r.rest[0]);
        }
        r.token.text += c;
        skip(r, 1);
    }
    if (r.rest.empty() || r.rest[0] != quote) {
        return fail(r, start, "this text has no closing quote on its line");
    }
    skip(r, 1);
    return true;
}

// Moves on to the next token.
bool advance(Reader &r) {
    if (!r.fault.empty() || !skipBlanks(r)) {
        return false;
    }
    r.token = {TokenKind::End, {}, r.line, r.column};
    if (r.rest.empty()) {
        return true;
    }
    const char c = r.rest[0];
    if (c == '"' || c == '\'') {
        r.token.kind = TokenKind::Text;
        return readQuoted(r, c);
    }
    size_t length = 1;
    if (isNameStart(c)) {
        r.token.kind = TokenKind::Name;
        while (length < r.rest.size() && (isNameStart(r.rest[length]) || isDigit(r.rest[length]))) {
            ++length;
        }
    } else if (isDigit(c) || c == '-' || c == '+') {
        r.token.kind = TokenKind::Number;
        while (length < r.rest.size() &&
               (isNameStart(r.rest[length]) || isDigit(r.rest[length]) || r.rest[length] == '.')) {
            ++length;
        }
    } else {
        r.token.kind = TokenKind::Symbol;
    }
    r.token.text = r.rest.substr(0, length);
    skip(r, length);
    return true;
}

bool isSymbol(const Reader &r, char symbol) {
    return r.token.kind == TokenKind::Symbol && r.token.text[0] == symbol;
}

bool isWord(const Reader &r, std::string_view word) {
    return r.token.kind == TokenKind::Name && sameName(r.token.text, word);
}

// Takes a symbol if it is the next token.
bool take(Reader &r, char symbol) {
    return isSymbol(r, symbol) && advance(r);
}

bool expect(Reader &r, char symbol, const std::string &where) {
    if (isSymbol(r, symbol)) {
        return advance(r);
    }
    return fail(r, r.token,
                std::string("expected '") + symbol + "' " + where + ", found " + describe(r.token));
}

bool expectName(Reader &r, const std::string &what, std::string &name) {
    if (r.token.kind != TokenKind::Name) {
        return fail(r, r.token, "expected " + what + ", found " + describe(r.token));
    }
    name = r.token.text;
    return advance(r);
}

// --- Qualifiers and values --------------------------------------------------------------------------------

// A literal; adjacent texts are one.
bool readLiteral(Reader &r, std::string &value) {
    if (r.token.kind == TokenKind::End || r.token.kind == TokenKind::Symbol) {
        return fail(r, r.token, "expected a value, found " + describe(r.token));
    }
    const bool isText = r.token.kind == TokenKind::Text;
    value = r.token.text;
    if (!advance(r)) {
        return false;
    }
    while (isText && r.token.kind == TokenKind::Text) {
        value += r.token.text;
        if (!advance(r)) {
            return false;
        }
    }
    return true;
}

// Values up to a closing symbol, separated by commas.
bool readValues(Reader &r, char end, const std::string &where, std::vector<std::string> &values) {
    if (take(r, end)) {
        return true;
    }
    do {
        if (!readLiteral(r, values.emplace_back())) {
            return false;
        }
    } while (take(r, ','));
    return expect(r, end, where);
}

// [Key, Description("..."), Values{"a", "b"} : ToSubclass]; nothing if there is no bracket.
bool readQualifiers(Reader &r, std::vector<Qualifier> &qualifiers) {
    if (!isSymbol(r, '[')) {
        return true;
    }
    do {
        if (!advance(r)) {
            return false;
        }
        Qualifier &qualifier = qualifiers.emplace_back();
        if (!expectName(r, "a qualifier", qualifier.name)) {
            return false;
        }
        const std::string where = "after the values of qualifier " + qualifier.name;
        if (take(r, '(')) {
            if (!readValues(r, ')', where, qualifier.values)) {
                return false;
            }
        } else if (take(r, '{') && !readValues(r, '}', where, qualifier.values)) {
            return false;
        }
        if (take(r, ':')) {
            for (std::string flavor; r.token.kind == TokenKind::Name;) {
                if (!expectName(r, "a flavor", flavor)) {
                    return false;
                }
            }
        }
    } while (isSymbol(r, ','));
    return expect(r, ']', "after the qualifiers");
}

// A boolean qualifier is true when it stands bare.
bool isQualified(const std::vector<Qualifier> &qualifiers, std::string_view name) {
    const Qualifier *found = findQualifier(qualifiers, name);
    return found != nullptr && (found->values.empty() || sameName(found->values[0], "true"));
}

// --- Features ---------------------------------------------------------------------------------------------

constexpr struct {
    std::string_view name;
    CMPIType type;
} types[] = {
    {"boolean", CMPI_boolean}, {"char16", CMPI_char16}, {"string", CMPI_string}, {"datetime", CMPI_dateTime},
    {"uint8", CMPI_uint8},     {"uint16", CMPI_uint16}, {"uint32", CMPI_uint32}, {"uint64", CMPI_uint64},
    {"sint8", CMPI_sint8},     {"sint16", CMPI_sint16}, {"sint32", CMPI_sint32}, {"sint64", CMPI_sint64},
    {"real32", CMPI_real32},   {"real64", CMPI_real64},
};

std::optional<CMPIType> typeNamed(std::string_view name) {
    for (const auto &type : types) {
        if (sameName(type.name, name)) {
            return type.type;
        }
    }
    return std::nullopt;
}

// Type and name: "uint16 Name" or "CIM_X REF Name". Array brackets follow in readArray.
bool readTypeAndName(Reader &r, const std::string &what, Feature &feature) {
    const Token type = r.token;
    std::string name;
    if (!expectName(r, "the type of a " + what, name)) {
        return false;
    }
    if (isWord(r, "REF")) {
        feature.type = CMPI_ref;
        feature.referenceClass = name;
        if (!advance(r)) {
            return false;
        }
    } else if (const auto known = typeNamed(name)) {
        feature.type = *known;
    } else {
        return fail(r, type,
                    '\'' + name + "' is no type; a reference to a class is written " + name + " REF");
    }
    return expectName(r, "the name of a " + what, feature.name);
}

bool readArray(Reader &r, Feature &feature) {
    if (!take(r, '[')) {
        return true;
    }
    feature.type |= CMPI_ARRAY;
    if (r.token.kind == TokenKind::Number && !advance(r)) { // a fixed size says nothing to providers
        return false;
    }
    return expect(r, ']', "after " + feature.name + '[');
}

bool readParameters(Reader &r, Method &method) {
    if (take(r, ')')) {
        return true;
    }
    do {
        Parameter &parameter = method.parameters.emplace_back();
        if (!readQualifiers(r, parameter.qualifiers) || !readTypeAndName(r, "parameter", parameter) ||
            !readArray(r, parameter)) {
            return false;
        }
        parameter.origin = method.origin;
        parameter.isOut = isQualified(parameter.qualifiers, "Out");
        const Qualifier *in = findQualifier(parameter.qualifiers, "In");
        parameter.isIn = in == nullptr ? !parameter.isOut : isQualified(parameter.qualifiers, "In");
    } while (take(r, ','));
    return expect(r, ')', "after the parameters of method " + method.name);
}

// The default value of a property, which is of no use here: an instance holds what its provider sets.
bool skipDefault(Reader &r) {
    if (!take(r, '=')) {
        return true;
    }
    std::vector<std::string> values;
    if (take(r, '{')) {
        return readValues(r, '}', "after the default values", values);
    }
    return readLiteral(r, values.emplace_back());
}

// --- Classes ----------------------------------------------------------------------------------------------

// Puts a declaration in the place of the inherited one, whose qualifiers go on unless they are given
// anew; a new one goes to the end. False for another type than inherited.
template <typename Named> bool declare(std::vector<Named> &all, Named declared) {
    for (Named &inherited : all) {
        if (!sameName(inherited.name, declared.name)) {
            continue;
        }
        if (inherited.type != declared.type) {
            return false;
        }
        for (Qualifier &qualifier : inherited.qualifiers) {
            if (findQualifier(declared.qualifiers, qualifier.name) == nullptr) {
                declared.qualifiers.push_back(std::move(qualifier));
            }
        }
        inherited = std::move(declared);
        return true;
    }
    all.push_back(std::move(declared));
    return true;
}

bool isOwn(const Feature *feature, const Class &cls) {
    return feature != nullptr && feature->origin == cls.name;
}

// A property or a method of the class, up to its semicolon.
bool readFeature(Reader &r, Class &cls) {
    Property property;
    if (!readQualifiers(r, property.qualifiers)) {
        return false;
    }
    const Token at = r.token;
    if (!readTypeAndName(r, "property or method", property)) {
        return false;
    }
    property.origin = cls.name;
    const std::string name = property.name;
    if (isOwn(findProperty(cls, name), cls) || isOwn(findMethod(cls, name), cls)) {
        return fail(r, at, "class " + cls.name + " declares " + name + " twice");
    }
    bool isSameType;
    if (take(r, '(')) {
        Method method = {std::move(static_cast<Feature &>(property)), {}};
        if (!readParameters(r, method)) {
            return false;
        }
        isSameType = declare(cls.methods, std::move(method));
    } else {
        if (!readArray(r, property) || !skipDefault(r)) {
            return false;
        }
        isSameType = declare(cls.properties, std::move(property));
    }
    if (!isSameType) {
        return fail(r, at, cls.name + '.' + name + " has another type than in " + cls.superclass->name);
    }
    return expect(r, ';', "after " + name);
}

bool readSuperclass(Reader &r, Class &cls) {
    if (!take(r, ':')) {
        return true;
    }
    const Token at = r.token;
    std::string name;
    if (!expectName(r, "the superclass of " + cls.name, name)) {
        return false;
    }
    cls.superclass = findClass(r.schema, name);
    if (cls.superclass == nullptr) {
        return fail(r, at, "superclass " + name + " of " + cls.name + " isn't declared before it");
    }
    cls.properties = cls.superclass->properties;
    cls.methods = cls.superclass->methods;
    cls.isAssociation = cls.superclass->isAssociation;
    return true;
}

bool readClass(Reader &r, std::vector<Qualifier> &&qualifiers) {
    auto cls = std::make_unique<Class>();
    cls->qualifiers = std::move(qualifiers);
    if (!advance(r)) {
        return false;
    }
    const Token at = r.token;
    if (!expectName(r, "the name of a class", cls->name)) {
        return false;
    }
    if (findClass(r.schema, cls->name) != nullptr) {
        return fail(r, at, "class " + cls->name + " is declared twice");
    }
    if (!readSuperclass(r, *cls) || !expect(r, '{', "after class " + cls->name)) {
        return false;
    }
    while (!isSymbol(r, '}')) {
        if (!readFeature(r, *cls)) {
            return false;
        }
    }
    if (!advance(r) || !expect(r, ';', "after class " + cls->name)) {
        return false;
    }

    cls->isAbstract = isQualified(cls->qualifiers, "Abstract");
    cls->isAssociation |= isQualified(cls->qualifiers, "Association");
    for (size_t p = 0; p < cls->properties.size(); ++p) {
        Property &property = cls->properties[p];
        property.isKey = isQualified(property.qualifiers, "Key");
        property.isEmbedded = findQualifier(property.qualifiers, "EmbeddedInstance") != nullptr ||
                              isQualified(property.qualifiers, "EmbeddedObject");
        if (property.isKey) {
            cls->keys.push_back(p);
        }
    }
    if (cls->superclass != nullptr) {
        r.schema.byName[cls->superclass->name]->subclasses.push_back(cls.get());
    }
    r.schema.byName[cls->name] = cls.get();
    r.schema.classes.push_back(std::move(cls));
    return true;
}

// "Qualifier Key : boolean = false, Scope(property), Flavor(...);"
bool skipQualifierDeclaration(Reader &r) {
    while (!isSymbol(r, ';') && r.token.kind != TokenKind::End) {
        if (!advance(r)) {
            return false;
        }
    }
    return expect(r, ';', "after the declaration of a qualifier");
}

bool readDeclaration(Reader &r) {
    std::vector<Qualifier> qualifiers;
    if (!readQualifiers(r, qualifiers)) {
        return false;
    }
    if (isWord(r, "class")) {
        return readClass(r, std::move(qualifiers));
    }
    if (isWord(r, "qualifier")) {
        return skipQualifierDeclaration(r);
    }
    return fail(r, r.token, "expected a class, found " + describe(r.token));
}

} // namespace

std::string readMofText(std::string_view text, const std::string &name, Schema &schema) {
    Reader r = {.rest = text, .file = name, .schema = schema, .token = {}};
    advance(r);
    while (r.fault.empty() && r.token.kind != TokenKind::End) {
        readDeclaration(r);
    }
    return r.fault;
}

std::string readMof(const std::string &file, Schema &schema) {
    const std::unique_ptr<FILE, int (*)(FILE *)> stream(std::fopen(file.c_str(), "re"), std::fclose);
    std::string text;
    char block[16384];
    size_t size = 0;
    while (stream != nullptr && (size = std::fread(block, 1, sizeof block, stream.get())) > 0) {
        text.append(block, size);
    }
    if (stream == nullptr || std::ferror(stream.get())) {
        return "can't read the MOF file " + file + ": " + std::strerror(errno);
    }
    return readMofText(text, file, schema);
}

} // namespace broker
