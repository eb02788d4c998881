// What is wrong with a table is said with the names of class and feature, and nothing is generated.
#include "toy.h"

#include <gtest/gtest.h>

namespace {

using Errors = std::vector<std::string>;

struct Broken {
    void (*damage)(Toy &toy);
    const char *error; // behind "TRV_oVTAToy"
};

const Broken cases[] = {
    {[](Toy &toy) { toy.properties[0].type = CMPI_uint32; },
     ".Level: it is uint32 here and uint16 in CIM_Thing; take that type, or derive from a class without "
     "Level"},
    {[](Toy &toy) { toy.properties[0].type = CMPI_uint16A; },
     ".Level: it is uint16[] here and uint16 in CIM_Thing; take that type, or derive from a class without "
     "Level"},
    {[](Toy &toy) { toy.properties[0].name = "level"; }, ".level: CIM_Thing spells it Level"},
    {[](Toy &toy) {
         toy.table.superclass = "CIM_Keyless";
         toy.keys = {{"Size", {}, "Identifies it."}};
     },
     ".Size: it is string here and uint32 in CIM_Keyless; take that type, or derive from a class without "
     "Size"},
    {[](Toy &toy) { toy.properties[2].name = "Mode-1"; },
     ".Mode-1: the name isn't letters, digits and underscores, a digit not first"},
    {[](Toy &toy) { toy.properties[2].name = "1st"; },
     ".1st: the name isn't letters, digits and underscores, a digit not first"},
    {[](Toy &toy) { toy.table.superclass = "CIM_Toy"; },
     ": its superclass CIM_Toy isn't declared; declare it in schema/CIM_base.mof"},
    {[](Toy &toy) { toy.properties[2].name = "MODE"; }, ".MODE: it is declared twice"},
    {[](Toy &toy) { toy.grow.name = "Ticks"; }, ".Ticks: it is declared twice"},
    {[](Toy &toy) { toy.parameters[1].name = "size"; }, ".Grow.size: it is declared twice"},
    {[](Toy &toy) { toy.table.description = ""; }, ": it has no description; say what an instance is"},
    {[](Toy &toy) { toy.keys[0].description = nullptr; },
     ".Tag: it has no description; say what it is, its unit and where it comes from"},
    {[](Toy &toy) { toy.parameters[0].description = ""; },
     ".Grow.Size: it has no description; say what it is, its unit and where it comes from"},
    {[](Toy &toy) { toy.properties[2].type = CMPI_instance; },
     ".Ticks: it has the type 0x1000, which MOF doesn't know"},
    {[](Toy &toy) { toy.parameters[1].referenceClass = nullptr; },
     ".Grow.Job: a reference needs the class that it refers to"},
    {[](Toy &toy) { toy.parameters[1].referenceClass = "CIM_Job"; },
     ".Grow.Job: the class CIM_Job that it refers to isn't declared; declare it in schema/CIM_base.mof"},
    {[](Toy &toy) { toy.parameters[0].referenceClass = "CIM_Thing"; },
     ".Grow.Size: a class to refer to is only for the type CMPI_ref"},
    {[](Toy &toy) {
         toy.keys.insert(toy.keys.end(), {"Serial", {}, "Serial number."});
     },
     ".Serial: it is a key, and not one in CIM_Thing; a class with keys can't get further ones in a "
     "subclass"},
    {[](Toy &toy) { toy.keys.clear(); }, ".Tag: it is a key in CIM_Thing and must be one here"},
    {[](Toy &toy) { toy.table.superclass = "CIM_Keyless", toy.keys.clear(); }, ": it has no keys"},
    {[](Toy &toy) {
         toy.table.superclass = nullptr;
         toy.keys = {{"A", {}, "a"}, {"B", {}, "b"}, {"C", {}, "c"}, {"D", {}, "d"}, {"E", {}, "e"}};
     },
     ": it has more keys than max_keys, 4"},
    {[](Toy &toy) {
         toy.table.pathOrder = KeyOrder{1, 0, 2, 3};
     },
     ": an order of its keys doesn't have each of them once"},
    {[](Toy &toy) { toy.properties[1].values = "0=Off"; },
     ".Mode: the value codes \"0=Off\" don't read like \"0 Off, 1 On\""},
    {[](Toy &toy) { toy.properties[1].values = "- Off"; },
     ".Mode: the value codes \"- Off\" don't read like \"0 Off, 1 On\""},
    {[](Toy &toy) { toy.properties[1].values = "0 Off, 1 On, 0 None"; },
     ".Mode: the value code 0 stands twice"},
    {[](Toy &toy) { toy.properties[1].values = "255 On, 256 Off"; }, ".Mode: the value code 256 is no uint8"},
    {[](Toy &toy) { toy.properties[1].values = "-1 On"; }, ".Mode: the value code -1 is no uint8"},
    {[](Toy &toy) { toy.properties[2] = column("Note", CMPI_chars, "A text.", "0 Off"); },
     ".Note: value codes are for integers, and it is string"},
    {[](Toy &toy) { toy.properties[0].values = "0 Unknown, 1 High"; },
     ".Level: the value code 1 means High here and Low in CIM_Thing"},
    {[](Toy &toy) { toy.modifiable[0].name = "Tag"; },
     ".Tag: it is modifiable, and isn't among the properties of the class"},
    {[](Toy &toy) { toy.modifiable.push_back(toy.modifiable[0]); },
     ".mode: it stands twice among the modifiable properties"},
    {[](Toy &toy) { toy.grow.name = "Paint"; },
     ".Paint: its parameters aren't those that it has in CIM_Thing"},
    {[](Toy &toy) { // the other way round
         toy.grow.name = "Paint";
         toy.parameters = {{"Colour", CMPI_chars, "Its colour.", true}};
     },
     ".Paint: its parameters aren't those that it has in CIM_Thing"},
    {[](Toy &toy) { toy.table.className = "CIM_Keyless"; }, ": it is declared twice"},
};

TEST(Tables, ThatAreBrokenAreToldByClassAndFeatureAndMakeNoFiles) {
    for (const auto &[damage, error] : cases) {
        Toy toy;
        makeToy(toy);
        damage(toy);
        const generator::Output output = generateToy(toy);
        EXPECT_EQ(output.errors, Errors{toy.table.className + std::string(error)});
        EXPECT_TRUE(output.files.empty()) << error;
    }
}

TEST(Tables, AreAllToldOfTheirFaultsInOneRun) {
    Toy first;
    Toy second;
    for (Toy *toy : {&first, &second}) {
        makeToy(*toy);
        toy->properties[0].type = CMPI_boolean;
        toy->properties[1].description = nullptr;
        generateToy(*toy);
    }
    second.table.className = "TRV_oVTAOther";
    const ClassTable *const classes[] = {&first.table, &second.table};
    const Errors errors = generator::generate(classes, toy_base).errors;
    ASSERT_EQ(errors.size(), 4U);
    EXPECT_TRUE(errors[0].starts_with("TRV_oVTAOther.Level: it is boolean here")) << errors[0];
    EXPECT_TRUE(errors[3].starts_with("TRV_oVTAToy.Mode: it has no description")) << errors[3];
}

TEST(Tables, AreNotCheckedAgainstABaseThatCannotBeRead) {
    const Errors errors = generator::generate({}, "class A { uint17 B; };").errors;
    EXPECT_EQ(errors,
              Errors{"CIM_base.mof:1:11: 'uint17' is no type; a reference to a class is written uint17 "
                     "REF"});
}

} // namespace
