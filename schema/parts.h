// The parts of the generator: types and value codes, checks, and the text of each kind of file.
#pragma once

#include "generator.h"

#include "broker/schema.h"

#include <cstdint>

namespace generator {

using Classes = std::vector<const ClassTable *>;
using Errors = std::vector<std::string>;

// --- Types and values

// A type as MOF writes it. An integer has a range; it is empty in all others.
struct MofType {
    CMPIType type;
    const char *name;
    long long lowest;
    std::uint64_t highest;
};

// The type, or that of an array's elements; null where MOF has none.
const MofType *mofType(CMPIType type);

// The type by which the schema knows what the tables call CMPI_chars or CMPI_string.
CMPIType declaredType(CMPIType type);

// "uint16 Name[]", "CIM_Job REF Name".
std::string typedName(const std::string &name, CMPIType type, const char *referenceClass = nullptr);

// "uint16[]"; "REF" for a reference.
std::string typeName(CMPIType type);

// A code and what it means.
struct ValueCode {
    std::string code;
    std::string meaning;
};

// Reads "0 Off, 1 On". A comma ends a meaning only before another code. Empty for a text of another form.
std::vector<ValueCode> readValueCodes(std::string_view text);

// The codes that a declaration has, inherited or not.
std::vector<ValueCode> declaredValueCodes(const broker::Feature &feature);

// --- Classes

// Is it among the properties that clients may change?
bool isModifiable(const ClassTable &table, std::string_view property);

// Appends what is wrong with a class, given the classes that it may derive from.
void checkClass(const ClassTable &table, const broker::Schema &schema, Errors &errors);

// --- Texts

// A class without instances of its own, as the head of a family.
struct AbstractClass {
    const char *name;
    const char *superclass;
    const char *description;
};

// Declarations in MOF. A feature that the superclass has too gets the qualifier Override.
std::string mofOfAbstractClass(const AbstractClass &abstract);
std::string mofOfClass(const ClassTable &table, const broker::Class *superclass);

// How CIM servers learn which classes the provider module serves.
std::string sfcbRegistration(const Classes &classes);
std::string pegasusRegistration(const Classes &classes);

// Pages in Markdown. `declared` is the class as the schema has it, with what it inherits.
std::string pageOfClass(const ClassTable &table, const broker::Class &declared);
std::string indexOfPages(const Classes &classes, std::span<const AbstractClass> abstractClasses);

} // namespace generator
