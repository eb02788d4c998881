#include "toy.h"

const char toy_base[] = R"(
[Abstract] class CIM_Thing {
    [Key] string Tag;
    [ValueMap{"0", "1"}, Values{"Unknown", "Low"}] uint16 Level;
    string Labels[];
    uint32 Paint([In] string Colour);
};
class CIM_Keyless { uint32 Size; };
class CIM_NumericSensor : CIM_Thing { };
)";

PropertyColumn column(const char *name, CMPIType type, const char *description, const char *values) {
    PropertyColumn made{};
    made.name = name;
    made.type = type;
    made.description = description;
    made.values = values;
    return made;
}

void makeToy(Toy &toy) {
    toy.keys = {{"Tag", {}, "Identifies the toy. Row of toys: Tag."}};
    toy.properties = {
        column("Level", CMPI_uint16, "How full it is."),
        column("Mode", CMPI_uint8, "What it does.", "0 Off, 1 On, slowly, 7 Odd"),
        column("Ticks", CMPI_uint32A,
               "Ticks of its clock in ms, each since the one before. Byte 3 of the answer "
               "to the command that asks the toy for its ticks."),
    };
    toy.parameters = {{"Size", CMPI_uint16, "New size in mm."},
                      {"Job", CMPI_ref, "Who grows.", true, "CIM_Thing"}};
    toy.grow = {"Grow", nullptr, "Makes it larger. Returns 0.", {}};
    ModifiableProperty mode{};
    mode.name = "mode";
    mode.readAs = CMPI_uint8;
    toy.modifiable = {mode};
    toy.table = {};
    toy.table.name = "Toy";
    toy.table.className = "TRV_oVTAToy";
    toy.table.description = "A toy | to play with.";
    toy.table.superclass = "CIM_Thing";
    toy.table.record.file = "TRVToyProfile/TRV_oVTAToy.cpp";
}

generator::Output generateToy(Toy &toy) {
    toy.table.record.keys = toy.keys;
    toy.table.record.properties = toy.properties;
    toy.grow.parameters = toy.parameters;
    toy.table.methods = {&toy.grow, 1};
    toy.modify.properties = toy.modifiable;
    toy.table.modify = &toy.modify;
    const ClassTable *const classes[] = {&toy.table};
    return generator::generate(classes, toy_base);
}
