// The committed schema, as the broker reads it, against the tables of all classes.
#include "schema/generator.h"

#include "broker/mof.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace {

struct CommittedSchema : testing::Test {
    broker::Schema schema;
    CommittedSchema() {
        EXPECT_EQ(broker::readMof(SCHEMA_FOLDER "/CIM_base.mof", schema), "");
        EXPECT_EQ(broker::readMof(SCHEMA_FOLDER "/TRV_oVTA.mof", schema), "");
    }
};

std::vector<std::string> keysOf(const broker::Class &cls) {
    std::vector<std::string> names;
    for (const std::size_t key : cls.keys) {
        names.push_back(cls.properties[key].name);
    }
    std::ranges::sort(names);
    return names;
}

TEST_F(CommittedSchema, HasEveryClassAndNoOther) {
    EXPECT_EQ(broker::findClasses(schema, "TRV_oVTA*").size(), AllClasses().size());
    for (const ClassTable *table : AllClasses()) {
        const broker::Class *cls = broker::findClass(schema, table->className);
        ASSERT_NE(cls, nullptr) << table->className;
        EXPECT_FALSE(cls->isAbstract) << table->className;
        EXPECT_EQ(cls->superclass == nullptr ? "" : cls->superclass->name,
                  table->superclass == nullptr ? "" : table->superclass);
    }
}

TEST_F(CommittedSchema, HasTheKeysPropertiesAndTypesOfTheTables) {
    for (const ClassTable *table : AllClasses()) {
        const broker::Class &cls = *broker::findClass(schema, table->className);
        std::vector<std::string> keys;
        for (const KeyColumn &key : table->record.keys) {
            keys.emplace_back(key.name);
            EXPECT_EQ(broker::findProperty(cls, key.name)->type, CMPI_string) << cls.name << '.' << key.name;
        }
        std::ranges::sort(keys);
        EXPECT_EQ(keysOf(cls), keys) << cls.name;
        std::size_t own = table->record.keys.size();
        for (const PropertyColumn &column : table->record.properties) {
            const broker::Property *property = broker::findProperty(cls, column.name);
            ASSERT_NE(property, nullptr) << cls.name << '.' << column.name;
            const bool isText = column.type == CMPI_chars;
            EXPECT_EQ(property->type, isText ? CMPI_string : column.type) << cls.name << '.' << column.name;
            ++own;
        }
        EXPECT_EQ(std::ranges::count(cls.properties, cls.name, &broker::Property::origin),
                  static_cast<std::ptrdiff_t>(own))
            << cls.name << " declares what isn't in its tables";
    }
}

TEST_F(CommittedSchema, HasTheMethodsOfTheTables) {
    for (const ClassTable *table : AllClasses()) {
        const broker::Class &cls = *broker::findClass(schema, table->className);
        EXPECT_EQ(std::ranges::count(cls.methods, cls.name, &broker::Method::origin),
                  static_cast<std::ptrdiff_t>(table->methods.size()))
            << cls.name;
        for (const MethodColumn &column : table->methods) {
            const broker::Method *method = broker::findMethod(cls, column.name);
            ASSERT_NE(method, nullptr) << cls.name << '.' << column.name;
            ASSERT_EQ(method->parameters.size(), column.parameters.size()) << cls.name << '.' << column.name;
            for (std::size_t i = 0; i < column.parameters.size(); ++i) {
                EXPECT_EQ(method->parameters[i].name, column.parameters[i].name);
                EXPECT_EQ(method->parameters[i].isOut, column.parameters[i].isOut);
            }
        }
    }
}

TEST_F(CommittedSchema, ModifiablePropertiesAreWritable) {
    const broker::Class *settings = broker::findClass(schema, "TRV_oVTAServerConfigSettings");
    ASSERT_NE(settings, nullptr);
    for (const auto &[name, isWritable] : {std::pair{"BIOSRecoveryFlash", true},
                                           {"ConfPowerCycleDelay", true},
                                           {"PowerOnCounter", false},
                                           {"InstanceID", false}}) {
        const auto &qualifiers = broker::findProperty(*settings, name)->qualifiers;
        EXPECT_EQ(broker::findQualifier(qualifiers, "Write") != nullptr, isWritable) << name;
    }
}

TEST_F(CommittedSchema, DeclaresNoClassOfTheDmtfSchemaBesideTheProjectsOwn) {
    std::ifstream file(SCHEMA_FOLDER "/TRV_oVTA.mof");
    const std::string mof{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(mof.find("#pragma include"), std::string::npos);
    for (const auto &cls : schema.classes) {
        EXPECT_EQ(mof.find("class " + cls->name + ' ') != std::string::npos, cls->name.starts_with("TRV_"))
            << cls->name;
    }
}

TEST(ClassLibrary, DoesNotHoldTheTextsOfTheSchema) {
#ifndef __OPTIMIZE__
    GTEST_SKIP() << "only an optimised library is without the tables that it doesn't use";
#endif
    std::ifstream file(CLASS_LIBRARY, std::ios::binary);
    const std::string library{std::istreambuf_iterator<char>(file), {}};
    ASSERT_NE(library.find("ResetPowerOnCounter"), std::string::npos) << "not the class library";
    for (const ClassTable *table : AllClasses()) {
        std::vector<std::string> texts = {table->description};
        for (const KeyColumn &key : table->record.keys) {
            texts.emplace_back(key.description);
        }
        for (const PropertyColumn &property : table->record.properties) {
            texts.emplace_back(property.description);
        }
        for (const MethodColumn &method : table->methods) {
            texts.emplace_back(method.description);
            for (const MethodParameter &parameter : method.parameters) {
                texts.emplace_back(parameter.description);
            }
        }
        for (const std::string &text : texts) {
            EXPECT_EQ(library.find(text), std::string::npos) << table->className << ": " << text;
        }
    }
}

} // namespace
