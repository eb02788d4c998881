// The files that come out of a class's tables.
#include "toy.h"

#include "broker/mof.h"
#include "support/folder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

std::map<std::string, std::string> filesOf(Toy &toy) {
    generator::Output output = generateToy(toy);
    EXPECT_EQ(output.errors, Texts{});
    return output.files;
}

Texts valuesOf(const broker::Feature &feature, const char *qualifier) {
    const broker::Qualifier *found = broker::findQualifier(feature.qualifiers, qualifier);
    return found == nullptr ? Texts{"none"} : found->values;
}

// --- MOF

struct Mof : testing::Test {
    Toy toy;
    broker::Schema schema;
    const broker::Class *cls = nullptr;

    Mof() {
        makeToy(toy);
        EXPECT_EQ(broker::readMofText(toy_base, "base", schema), "");
        EXPECT_EQ(broker::readMofText(filesOf(toy)["schema/TRV_oVTA.mof"], "toys", schema), "");
        cls = broker::findClass(schema, "TRV_oVTAToy");
    }
    const broker::Property &property(const char *name) const { return *broker::findProperty(*cls, name); }
};

TEST_F(Mof, AClassHasItsSuperclassKeysAndTypes) {
    ASSERT_NE(cls, nullptr);
    EXPECT_EQ(cls->superclass->name, "CIM_Thing");
    EXPECT_TRUE(property("Tag").isKey);
    EXPECT_EQ(cls->keys.size(), 1U);
    EXPECT_EQ(property("Tag").type, CMPI_string);
    EXPECT_EQ(property("Mode").type, CMPI_uint8);
    EXPECT_EQ(property("Ticks").type, CMPI_uint32A);
}

// An override is what the superclass declares too; writable, what clients may change.
TEST_F(Mof, APropertyHasTheQualifiersOfItsRowAndItsInheritedOnesStay) {
    const Texts none = {"none"};
    const std::tuple<const char *, const char *, Texts> expected[] = {
        {"Tag", "Override", {"Tag"}},
        {"Level", "Override", {"Level"}},
        {"Mode", "Override", none},
        {"Mode", "Write", {}},
        {"Level", "Write", none},
        {"Tag", "Write", none},
        {"Mode", "ValueMap", {"0", "1", "7"}},
        {"Mode", "Values", {"Off", "On, slowly", "Odd"}},
        {"Level", "Values", {"Unknown", "Low"}},
        {"Ticks", "ValueMap", none},
        {"Ticks",
         "Description", // which is longer than a line
         {"Ticks of its clock in ms, each since the one before. Byte 3 of the answer to the command that "
          "asks the toy for its ticks."}},
    };
    for (const auto &[name, qualifier, values] : expected) {
        EXPECT_EQ(valuesOf(property(name), qualifier), values) << name << ' ' << qualifier;
    }
}

TEST_F(Mof, AMethodHasItsParametersAndTheirDirections) {
    const broker::Method *grow = broker::findMethod(*cls, "Grow");
    ASSERT_NE(grow, nullptr);
    EXPECT_EQ(grow->type, CMPI_uint32);
    ASSERT_EQ(grow->parameters.size(), 2U);
    EXPECT_EQ(grow->parameters[0].name, "Size");
    EXPECT_TRUE(grow->parameters[0].isIn);
    EXPECT_FALSE(grow->parameters[0].isOut);
    EXPECT_EQ(grow->parameters[1].referenceClass, "CIM_Thing");
    EXPECT_FALSE(grow->parameters[1].isIn);
    EXPECT_TRUE(grow->parameters[1].isOut);
}

TEST_F(Mof, NumericSensorsHaveAnAbstractClassBeforeThoseThatDeriveFromIt) {
    const broker::Class *sensor = broker::findClass(schema, "TRV_NumericSensor");
    ASSERT_NE(sensor, nullptr);
    EXPECT_TRUE(sensor->isAbstract);
    EXPECT_EQ(sensor->superclass->name, "CIM_NumericSensor");
    toy.table.superclass = "TRV_NumericSensor";
    const std::string mof = filesOf(toy)["schema/TRV_oVTA.mof"];
    EXPECT_LT(mof.find("class TRV_NumericSensor"), mof.find("class TRV_oVTAToy : TRV_NumericSensor"));
}

TEST_F(Mof, AClassStandsBehindItsSuperclassAndTheOthersByName) {
    Toy others[2];
    for (Toy &other : others) {
        makeToy(other);
        generateToy(other);
    }
    others[0].table.className = "TRV_oVTAApple";
    others[0].table.superclass = "TRV_oVTAToy";
    others[1].table.className = "TRV_oVTABrick";
    const ClassTable *const classes[] = {&toy.table, &others[1].table, &others[0].table};
    const ClassTable *const reversed[] = {&others[0].table, &others[1].table, &toy.table};
    const generator::Output output = generator::generate(classes, toy_base);
    ASSERT_EQ(output.errors, Texts{});
    const std::string mof = output.files.at("schema/TRV_oVTA.mof");
    EXPECT_LT(mof.find("class TRV_oVTAToy"), mof.find("class TRV_oVTAApple"));
    EXPECT_LT(mof.find("class TRV_oVTAApple"), mof.find("class TRV_oVTABrick"));
    EXPECT_EQ(generator::generate(reversed, toy_base).files, output.files);
}

// --- Registration and pages

struct Files : testing::Test {
    Toy toy;
    Files() { makeToy(toy); }
};

TEST_F(Files, SfcbHasASectionForAClassWhichIsAMethodProviderOnlyWithMethods) {
    EXPECT_EQ(filesOf(toy)["schema/sfcb/TRVProviders.reg"], "[TRV_oVTAToy]\n"
                                                            "   provider: TRVProviders\n"
                                                            "   location: TRVProviders\n"
                                                            "   type: instance method\n"
                                                            "   namespace: root/cimv2\n");
    toy.table.methods = {};
    const ClassTable *const classes[] = {&toy.table};
    const auto files = generator::generate(classes, toy_base).files;
    EXPECT_NE(files.at("schema/sfcb/TRVProviders.reg").find("type: instance\n"), std::string::npos);
    EXPECT_NE(files.at("schema/pegasus/TRVProviders.mof").find("ProviderType = {2};"), std::string::npos);
}

TEST_F(Files, PegasusLearnsModuleProviderAndClassesInThisOrder) {
    const std::string mof = filesOf(toy)["schema/pegasus/TRVProviders.mof"];
    std::size_t position = 0;
    for (const char *next : {"instance of PG_ProviderModule {", "    Name = \"TRVProviders\";",
                             "    InterfaceType = \"CMPI\";", "    Location = \"TRVProviders\";",
                             "instance of PG_Provider {", "    ProviderModuleName = \"TRVProviders\";",
                             "    Name = \"TRVProviders\";", "instance of PG_ProviderCapabilities {",
                             "    ProviderName = \"TRVProviders\";", "    ClassName = \"TRV_oVTAToy\";",
                             "    Namespaces = {\"root/cimv2\"};", "    ProviderType = {2, 5};"}) {
        position = mof.find(next, position);
        ASSERT_NE(position, std::string::npos) << next << " is missing or out of order in\n" << mof;
    }
    EXPECT_EQ(mof.find("class "), std::string::npos) << "classes and registration are separate files";
}

TEST_F(Files, APageSaysWhatTheTablesSayAndTheIndexHasEveryClass) {
    toy.properties.push_back(column("Age", CMPI_dateTime, "Time since it was made."));
    toy.properties.back().flags = PH_OEM_PROP_INTERVAL;
    auto files = filesOf(toy);
    const std::string page = files["docs/classes/TRV_oVTAToy.md"], index = files["docs/classes/README.md"];
    for (const char *line : {"# TRV_oVTAToy\n", "A toy \\| to play with.\n", "* Derives from: `CIM_Thing`\n",
                             "* Operations: get, enumerate, modify, invoke method\n",
                             "[TRVToyProfile/TRV_oVTAToy.cpp](../../src/TRVToyProfile/TRV_oVTAToy.cpp)\n",
                             "| `Tag` | string | Identifies the toy. Row of toys: Tag. |\n",
                             "| `Level` | uint16 | no | `CIM_Thing` | How full it is. |\n",
                             "| `Mode` | uint8 | yes | this class | What it does. |\n",
                             "| `Age` | datetime (interval) | no | this class | Time since it was made. |\n",
                             "| `Level` | 0 Unknown, 1 Low |\n", "| `Mode` | 0 Off, 1 On, slowly, 7 Odd |\n",
                             "### `uint32 Grow(in uint16 Size, out CIM_Thing REF Job)`\n",
                             "Makes it larger. Returns 0.\n", "| `Size` | New size in mm. |\n"}) {
        EXPECT_NE(page.find(line), std::string::npos) << line << "is missing in\n" << page;
    }
    EXPECT_NE(
        index.find("| [TRV_oVTAToy](TRV_oVTAToy.md) | TRVToyProfile | `CIM_Thing` | get, enumerate, modify, "
                   "invoke method | A toy \\| to play with. |\n"),
        std::string::npos)
        << index;
    EXPECT_NE(index.find("| `TRV_NumericSensor` | `CIM_NumericSensor` |"), std::string::npos) << index;
}

// --- Writing

struct Writing : Files {
    const Folder temporary;
    const fs::path folder = temporary.path;
    generator::Output output;

    Writing() {
        output = generateToy(toy);
        fs::create_directories(folder / "docs/classes");
        fs::create_directories(folder / "schema");
    }
};

TEST_F(Writing, PutsEveryFileInItsPlaceAndRemovesNothingButThePageOfAClassThatIsGone) {
    for (const char *other : {"docs/classes/TRV_oVTAGone.md", "docs/classes.md", "schema/CIM_base.mof"}) {
        std::ofstream(folder / other) << "by hand\n";
    }
    ASSERT_EQ(generator::writeFiles(output, folder), "");
    for (const auto &[path, text] : output.files) {
        std::ifstream file(folder / path);
        const std::string written{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(written, text) << path;
    }
    EXPECT_FALSE(fs::exists(folder / "docs/classes/TRV_oVTAGone.md"));
    EXPECT_TRUE(fs::exists(folder / "docs/classes.md"));
    EXPECT_TRUE(fs::exists(folder / "schema/CIM_base.mof"));
}

TEST_F(Writing, SaysWhichFileCannotBeWritten) {
    fs::create_directories(folder / "schema/TRV_oVTA.mof");
    EXPECT_EQ(generator::writeFiles(output, folder),
              "can't write " + (folder / "schema/TRV_oVTA.mof").string() + ": Is a directory");
}

} // namespace
