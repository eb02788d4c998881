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

TEST_F(CommittedSchema, HasEveryClassWithTheKeysPropertiesAndTypesOfItsTablesAndNoOther) {
    EXPECT_EQ(broker::findClasses(schema, "TRV_oVTA*").size(), AllClasses().size());
    for (const ClassTable *table : AllClasses()) {
        SCOPED_TRACE(table->className);
        const broker::Class *cls = broker::findClass(schema, table->className);
        ASSERT_NE(cls, nullptr);
        EXPECT_FALSE(cls->isAbstract);
        EXPECT_EQ(cls->superclass == nullptr ? "" : cls->superclass->name,
                  table->superclass == nullptr ? "" : table->superclass);
        std::vector<std::string> keys;
        for (const KeyColumn &key : table->record.keys) {
            keys.emplace_back(key.name);
            EXPECT_EQ(broker::findProperty(*cls, key.name)->type, CMPI_string) << key.name;
        }
        std::ranges::sort(keys);
        EXPECT_EQ(keysOf(*cls), keys);
        for (const PropertyColumn &column : table->record.properties) {
            const broker::Property *property = broker::findProperty(*cls, column.name);
            ASSERT_NE(property, nullptr) << column.name;
            EXPECT_EQ(property->type, column.type == CMPI_chars ? CMPI_string : column.type) << column.name;
        }
        EXPECT_EQ(std::ranges::count(cls->properties, cls->name, &broker::Property::origin),
                  std::ssize(keys) + std::ssize(table->record.properties));
        EXPECT_EQ(std::ranges::count(cls->methods, cls->name, &broker::Method::origin),
                  std::ssize(table->methods));
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
