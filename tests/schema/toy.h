// A class that is well declared until a test changes it.
#pragma once

#include "schema/generator.h"

#include "Utilities/PH_OEM_ModifiableProperties.h"

#include <string>
#include <vector>

// CIM_Thing, which is the toy's superclass, CIM_Keyless, and what the abstract classes need.
extern const char toy_base[];

struct Toy {
    std::vector<KeyColumn> keys;
    std::vector<PropertyColumn> properties;
    std::vector<MethodParameter> parameters; // of Grow
    std::vector<ModifiableProperty> modifiable;
    MethodColumn grow;
    ModifyTable modify;
    ClassTable table;
};

// TRV_oVTAToy: key Tag; Level, inherited; Mode, with value codes, modifiable; Ticks, a list; the method Grow.
void makeToy(Toy &toy);

// A row of a property table; its field is nowhere.
PropertyColumn column(const char *name, CMPIType type, const char *description, const char *values = nullptr);

// Points the table to the rows as they are now, and generates it.
generator::Output generateToy(Toy &toy);
