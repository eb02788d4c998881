// vch as its users meet it: a process with arguments, an exit code and two outputs.

#include "tool.h"
#include "xml.h"

#include <platform/sp/sp.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

constexpr char viewPath[] = "RegisteredProfile.InstanceID=\"MARLOVEN:Profile:DSP1108:1.0.0\"";
constexpr char fullViewPath[] =
    "root/cimv2:TRV_oVTARegisteredProfile.InstanceID=\"MARLOVEN:Profile:DSP1108:1.0.0\"";

// What a command answers, by the format that is asked for.
Json jsonOf(const Tool &tool, Words arguments) {
    arguments.insert(arguments.end(), {"-o", "json"});
    const Ended ended = tool.vch(arguments);
    EXPECT_EQ(ended.code, 0) << ended.err;
    return Json::parse(ended.out);
}

XmlElement xmlOf(const Tool &tool, Words arguments) {
    arguments.insert(arguments.end(), {"-o", "xml"});
    return parseXml(tool.vch(arguments).out);
}

Words memberNames(const Json &object) {
    Words names;
    for (const auto &[name, value] : object.items())
        names.push_back(name);
    return names;
}

// --- Answers ----------------------------------------------------------------------------------------

TEST_F(Tool, JsonHoldsEveryProfileAsTheStoreHasItAndItsPathGivesItBack) {
    const Json answer = jsonOf(*this, {"instance", "enumerate", "RegisteredProfile"});
    const Json paths = jsonOf(*this, {"ein", "RegisteredProfile"});
    const auto rows = sp::sql("SELECT InstanceID, RegisteredName, RegisteredOrganization, "
                              "'[' || AdvertiseTypes || ']' FROM registered_profile ORDER BY position");
    ASSERT_EQ(answer.size(), rows.size());
    ASSERT_EQ(paths.size(), rows.size());
    for (size_t i = 0; i < rows.size(); ++i) {
        const Json &instance = answer[i], &properties = instance["properties"];
        EXPECT_EQ(memberNames(instance), (Words{"class", "path", "properties"}));
        EXPECT_EQ(instance["class"], "TRV_oVTARegisteredProfile");
        EXPECT_EQ(instance["path"], "root/cimv2:TRV_oVTARegisteredProfile.InstanceID=\"" + rows[i][0] + "\"");
        EXPECT_EQ(properties["InstanceID"], rows[i][0]);
        EXPECT_EQ(properties["RegisteredName"], rows[i][1]);
        EXPECT_EQ(properties["RegisteredOrganization"], std::stoi(rows[i][2]));
        EXPECT_EQ(properties["AdvertiseTypes"], Json::parse(rows[i][3]));
        EXPECT_EQ(properties["ImplementedFeatures"].is_null(), instance["path"] != fullViewPath);
        EXPECT_EQ(paths[i], instance["path"]);
        EXPECT_EQ(jsonOf(*this, {"gi", paths[i]}), Json::array({instance}));
    }
}

TEST_F(Tool, ClassesAndVerbsHaveSeveralNames) {
    const std::pair<Words, Words> cases[] = {
        {{"instance", "enumerate", "TRV_oVTARegisteredProfile"}, {"ei", "registeredprofile"}},
        {{"instance", "enumerate", "RegisteredProfile"}, {"ei", "trv_ovtaREGISTEREDPROFILE"}},
        {{"instance", "enumerate", "RegisteredProfile", "--names-only"}, {"ein", "RegisteredProfile"}},
        {{"instance", "get", viewPath}, {"gi", std::string("/") + fullViewPath}},
        {{"class", "get", "RegisteredProfile"}, {"gc", "RegisteredProfile"}},
    };
    for (const auto &[one, other] : cases) {
        EXPECT_NE(vch(one).out, "") << testing::PrintToString(one);
        EXPECT_EQ(vch(one).out, vch(other).out) << testing::PrintToString(other);
    }
}

TEST_F(Tool, APropertyListNarrowsTheAnswerToItsNames) {
    const struct {
        Words lists, properties;
    } cases[] = {
        {{"registeredname,RegisteredVersion"}, {"RegisteredName", "RegisteredVersion"}},
        {{"RegisteredVersion", "RegisteredName"}, {"RegisteredName", "RegisteredVersion"}},
        {{""}, {}},
    };
    for (const auto &one : cases) {
        for (Words arguments : {Words{"ei", "RegisteredProfile"}, Words{"gi", viewPath}}) {
            for (const std::string &list : one.lists)
                arguments.insert(arguments.end(), {"--propertylist", list});
            const Json answer = jsonOf(*this, arguments);
            ASSERT_FALSE(answer.empty());
            for (const Json &instance : answer) {
                EXPECT_EQ(memberNames(instance["properties"]), one.properties);
                EXPECT_NE(instance["path"].dump().find("InstanceID="), std::string::npos);
            }
        }
    }
}

// A text with everything that formats treat specially, and a byte that isn't UTF-8.
constexpr char oddName[] = "a<b>&\"c\" \\ d\te\x01 \xC3\xBC";
constexpr char oddNameSql[] =
    "UPDATE registered_profile SET RegisteredName = 'a<b>&\"c\" \\ d' || char(9) || 'e' || "
    "char(1) || ' ' || char(252) WHERE InstanceID = 'MARLOVEN:Profile:DSP1108:1.0.0'";

std::string plainText(const Json &value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

TEST_F(Tool, XmlSaysWhatJsonSays) {
    sp::sql(oddNameSql);
    const Json json = jsonOf(*this, {"ei", "RegisteredProfile"});
    const XmlElement document = xmlOf(*this, {"ei", "RegisteredProfile"});
    EXPECT_EQ(document.name, "IRETURNVALUE");
    ASSERT_EQ(document.children.size(), json.size());
    for (size_t i = 0; i < json.size(); ++i) {
        const XmlElement &named = document.children[i];
        EXPECT_EQ(named.name, "VALUE.NAMEDINSTANCE");
        ASSERT_EQ(named.children.size(), 2u);
        EXPECT_EQ(named.children[0].attributes.at("CLASSNAME"), "TRV_oVTARegisteredProfile");
        const XmlElement &binding = named.children[0].children.at(0);
        EXPECT_EQ(binding.attributes.at("NAME"), "InstanceID");
        EXPECT_EQ(binding.children.at(0).attributes.at("VALUETYPE"), "string");
        EXPECT_EQ(binding.children.at(0).text, json[i]["properties"]["InstanceID"]);

        ASSERT_EQ(named.children[1].children.size(), json[i]["properties"].size());
        for (const XmlElement &property : named.children[1].children) {
            const std::string name = property.attributes.at("NAME");
            const Json &value = json[i]["properties"][name];
            const bool isNumber = name == "RegisteredOrganization" || name == "AdvertiseTypes";
            EXPECT_EQ(property.attributes.at("TYPE"), isNumber ? "uint16" : "string");
            if (!value.is_null()) {
                EXPECT_EQ(property.name, value.is_array() ? "PROPERTY.ARRAY" : "PROPERTY");
            }
            Words expected, texts;
            for (const Json &element : value.is_array() ? value : Json::array({value}))
                if (!element.is_null())
                    expected.push_back(plainText(element));
            if (expected == Words{oddName}) // XML has no way to write this control character
                expected[0].replace(expected[0].find('\x01'), 1, "\xEF\xBF\xBD");
            for (const XmlElement *element : elementsNamed(property, "VALUE"))
                texts.push_back(element->text);
            EXPECT_EQ(texts, expected);
        }
    }
}

TEST_F(Tool, JsonKeepsEveryCharacterAndReplacesBytesThatAreNone) {
    sp::sql(oddNameSql);
    EXPECT_EQ(jsonOf(*this, {"gi", viewPath})[0]["properties"]["RegisteredName"], oddName);
    sp::sql("UPDATE registered_profile SET RegisteredName = CAST(x'FF42' AS TEXT)");
    EXPECT_EQ(jsonOf(*this, {"gi", viewPath})[0]["properties"]["RegisteredName"], "\xEF\xBF\xBD"
                                                                                  "B");
}

TEST_F(Tool, MofIsAnInstanceDeclaration) {
    sp::sql("UPDATE registered_profile SET RegisteredName = 'say \"\\\"'");
    EXPECT_EQ(vch({"gi", "RegisteredProfile.InstanceID=\"MARLOVEN:Profile:DSP1004:1.0.0\"", "-o", "mof"}).out,
              "instance of TRV_oVTARegisteredProfile {\n"
              "    InstanceID = \"MARLOVEN:Profile:DSP1004:1.0.0\";\n"
              "    RegisteredOrganization = 2;\n"
              "    RegisteredName = \"say \\\"\\\\\\\"\";\n"
              "    OtherRegisteredOrganization = \"\";\n"
              "    RegisteredVersion = \"1.0.0\";\n"
              "    AdvertiseTypes = {3};\n"
              "    ImplementedFeatures = NULL;\n"
              "};\n");
}

TEST_F(Tool, ATableHasAColumnForEachPropertyWhereTheyFit) {
    sp::sql("DELETE FROM registered_profile WHERE position > 2");
    const Words narrow = {"ei", "RegisteredProfile", "--pl", "RegisteredName"};
    EXPECT_EQ(vch(narrow).out, "TRV_oVTARegisteredProfile (2)\n"
                               "InstanceID                      RegisteredName\n"
                               "MARLOVEN:Profile:DSP1033:1.0.0  Profile Registration\n"
                               "MARLOVEN:Profile:DSP1004:1.0.0  Base Server\n");
    environment["COLUMNS"] = "51"; // one less than the widest line
    EXPECT_EQ(vch(narrow).out, "TRV_oVTARegisteredProfile (2)\n"
                               "InstanceID      MARLOVEN:Profile:DSP1033:1.0.0\n"
                               "RegisteredName  Profile Registration\n"
                               "\n"
                               "InstanceID      MARLOVEN:Profile:DSP1004:1.0.0\n"
                               "RegisteredName  Base Server\n");
}

TEST_F(Tool, OutputThatIsNoTerminalHasNoEscapeSequences) {
    sp::sql("UPDATE registered_profile SET RegisteredName = char(27) || '[2J'");
    for (const char *format : {"table", "mof", "json", "xml"}) {
        const Ended ended = vch({"ei", "RegisteredProfile", "-o", format});
        EXPECT_EQ(ended.code, 0) << format;
        EXPECT_EQ(ended.out.find('\033'), std::string::npos) << format;
    }
}

TEST_F(Tool, FewInstancesAreCountedAndNoneAreAnAnswer) {
    EXPECT_EQ(vch({"instance", "count", "RegisteredProfile", "-o", "xml"}).code, 2);
    sp::sql("DELETE FROM registered_profile WHERE position > 7");
    EXPECT_EQ(jsonOf(*this, {"instance", "count", "RegisteredProfile"}),
              (Json::array({{{"class", "TRV_oVTARegisteredProfile"}, {"count", 7}}})));
    EXPECT_EQ(vch({"instance", "count", "Registered*"}).out, "     7  TRV_oVTARegisteredProfile\n");
    sp::sql("DELETE FROM registered_profile");
    EXPECT_EQ(vch({"ei", "RegisteredProfile"}).code, 0);
    EXPECT_EQ(jsonOf(*this, {"ei", "RegisteredProfile"}), Json::array());
    EXPECT_EQ(jsonOf(*this, {"ein", "RegisteredProfile"}), Json::array());
    EXPECT_EQ(xmlOf(*this, {"ei", "RegisteredProfile"}).children.size(), 0u);
}

TEST_F(Tool, KeysMayBeLeftOutWhereThereIsOneInstance) {
    const Ended several = vch({"gi", "RegisteredProfile"});
    EXPECT_EQ(several.code, 2);
    EXPECT_NE(several.err.find("MARLOVEN:Profile:DSP1108"), std::string::npos) << several.err;
    sp::sql("DELETE FROM registered_profile WHERE position > 1");
    EXPECT_EQ(jsonOf(*this, {"gi", "RegisteredProfile"})[0]["properties"]["InstanceID"],
              "MARLOVEN:Profile:DSP1033:1.0.0");
    sp::sql("DELETE FROM registered_profile");
    const Ended none = vch({"gi", "RegisteredProfile"});
    EXPECT_EQ(none.code, 1);
    EXPECT_NE(none.err.find("CMPI_RC_ERR_NOT_FOUND (6)"), std::string::npos) << none.err;
}

TEST_F(Tool, TheJournalGoesToStandardErrorAndChangesNothingElse) {
    const Ended plain = vch({"ei", "RegisteredProfile"});
    const Ended journal = vch({"ei", "RegisteredProfile", "--journal"});
    EXPECT_EQ(journal.code, 0);
    EXPECT_EQ(journal.out, plain.out);
    EXPECT_EQ(plain.err, "");
    for (const char *call : {"zbr_oemdb_init(", "zbr_oemdb_get_all_reg_prof_info(", "zbr_oemdb_close("})
        EXPECT_NE(journal.err.find(call), std::string::npos) << journal.err;
    const Words lines = linesOf(journal.err);
    const std::string total = " " + std::to_string(lines.size() - 1) + " back-end calls";
    EXPECT_NE(lines.back().find(total), std::string::npos) << journal.err;
}

// --- Changes ----------------------------------------------------------------------------------------

TEST_F(Tool, AChangeIsThereForTheNextProcess) {
    const Ended ended = vch({"instance", "modify", "ServerConfigSettings", "ConfPowerCycleDelay=7",
                             "confdisablefantest=TRUE", "ConfErrorOffRestartTime=0x1234"});
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out + ended.err, "");
    const Json shown = jsonOf(*this, {"gi", "ServerConfigSettings"})[0]["properties"];
    EXPECT_EQ(shown["ConfPowerCycleDelay"], 7);
    EXPECT_EQ(shown["ConfDisableFanTest"], true);
    EXPECT_EQ(shown["ConfErrorOffRestartTime"], 0x1234);
}

TEST_F(Tool, AMethodsAnswerComesInEveryFormat) {
    const Words invoke = {"cm", "ServerConfigSettings", "resetpoweroncounter"};
    EXPECT_EQ(jsonOf(*this, invoke),
              (Json{{"method", "ResetPowerOnCounter"}, {"returnValue", 0}, {"parameters", Json::object()}}));
    EXPECT_EQ(sp::sql("SELECT Counter FROM power_on_hours")[0][0], "0");
    const XmlElement xml = xmlOf(*this, invoke);
    EXPECT_EQ(xml.name, "METHODRESPONSE");
    EXPECT_EQ(xml.attributes.at("NAME"), "ResetPowerOnCounter");
    EXPECT_EQ(elementsNamed(xml, "RETURNVALUE").at(0)->attributes.at("PARAMTYPE"), "uint32");
    EXPECT_EQ(elementsNamed(xml, "VALUE").at(0)->text, "0");
    EXPECT_EQ(vch({"cm", "ServerConfigSettings", "ResetPowerOnCounter", "-o", "mof"}).out,
              "ReturnValue = 0;\n");
    EXPECT_EQ(vch({"instance", "invokemethod", "ServerConfigSettings", "ResetPowerOnCounter"}).out,
              "ReturnValue  0\n");
}

// --- Classes ----------------------------------------------------------------------------------------

TEST_F(Tool, ClassDeclarationsComeInEveryFormat) {
    const Json declared = jsonOf(*this, {"class", "get", "RegisteredProfile"})[0];
    EXPECT_EQ(declared["class"], "TRV_oVTARegisteredProfile");
    std::map<std::string, std::string> types; // with ! at keys
    for (const Json &one : declared["properties"])
        types[one["name"]] = one["type"].get<std::string>() + (one["key"] ? "!" : "");
    EXPECT_EQ(types["InstanceID"], "string!");
    EXPECT_EQ(types["AdvertiseTypes"], "uint16[]");

    const XmlElement xml = xmlOf(*this, {"gc", "RegisteredProfile"});
    const std::vector<const XmlElement *> classes = elementsNamed(xml, "CLASS");
    ASSERT_EQ(classes.size(), 1u);
    EXPECT_EQ(classes[0]->attributes.at("NAME"), "TRV_oVTARegisteredProfile");
    EXPECT_EQ(elementsNamed(xml, "PROPERTY").size() + elementsNamed(xml, "PROPERTY.ARRAY").size(),
              declared["properties"].size());

    const std::string mof = vch({"gc", "RegisteredProfile", "-o", "mof"}).out;
    EXPECT_NE(mof.find("class TRV_oVTARegisteredProfile : "), std::string::npos);
    EXPECT_NE(mof.find("uint16 AdvertiseTypes[];\n"), std::string::npos);
    EXPECT_NE(vch({"gc", "RegisteredProfile"}).out.find("key string     InstanceID"), std::string::npos);
}

TEST_F(Tool, FindsClassesByGlobAndNamesThemAlone) {
    EXPECT_EQ(vch({"class", "find", "trv_*edprofile"}).out, "TRV_oVTARegisteredProfile\n");
    EXPECT_EQ(vch({"class", "find", "NoSuch*"}).out, "");
    EXPECT_EQ(jsonOf(*this, {"class", "find", "RegisteredProf?le"}),
              Json::array({"TRV_oVTARegisteredProfile"}));
    const size_t all = jsonOf(*this, {"class", "find"}).size();
    EXPECT_LT(jsonOf(*this, {"class", "enumerate", "--names-only"}).size(), all);
    EXPECT_EQ(jsonOf(*this, {"class", "enumerate", "--deep", "--names-only"}).size(), all);
    EXPECT_EQ(linesOf(vch({"class", "tree"}).out).size(), all);
}

// --- Bad input --------------------------------------------------------------------------------------

TEST_F(Tool, BadInputGetsOneLineThatNamesTheCauseAndAWayOut) {
    const struct {
        Words arguments;
        int code;
        Words said;
    } cases[] = {
        {{}, 2, {"--help"}},
        {{"frobnicate"}, 2, {"--help"}},
        {{"ei"}, 2, {"CLASS"}},
        {{"ei", "RegisteredProfile", "--bogus"}, 2, {"--bogus"}},
        {{"ei", "TRV_oVTARegisterdProfile"},
         1,
         {"CMPI_RC_ERR_INVALID_CLASS (5)", "TRV_oVTARegisterdProfile;", "RegisteredProfile?"}},
        {{"ei", ""}, 1, {"(5)", "class find"}},
        {{"gc", "Nonsense"}, 1, {"(5)", "Nonsense", "class find"}},
        {{"ei", "Fan", "-n", "root/other"}, 1, {"CMPI_RC_ERR_INVALID_NAMESPACE (3)", "root/other"}},
        {{"gi", "root/other:RegisteredProfile.InstanceID=\"x\""}, 1, {"(3)", "root/other"}},
        {{"ei", "RegisteredProfile", "-o", "yaml"}, 2, {"yaml", "table, mof, json, xml"}},
        {{"ei", viewPath}, 2, {"instance get"}},
        {{"ei", "RegisteredProfile", "--pl", "RegisterdName"}, 2, {"RegisterdName", "RegisteredName?"}},
        {{"ei", "RegisteredProfile", "--pl", "RegisteredName,Voltage,Colour"}, 2, {"Voltage", "Colour"}},
        {{"gi", viewPath, "--pl", "InstanceId,Nam"}, 2, {"Nam"}},
        {{"gi", "RegisteredProfile.InstanceID=x"}, 2, {"quotes"}},
        {{"gi", "RegisteredProfile.Instance=\"x\""}, 2, {"Instance"}},
        {{"gi", "RegisteredProfile.InstanceID=\"it's\""}, 1, {"RC_ERR_FAILED (1): Failed to Get Instance"}},
        {{"mi", viewPath, "RegisteredName"}, 2, {"RegisteredName", "Name=value"}},
        {{"mi", viewPath, "RegisterdName=x"}, 2, {"RegisterdName", "RegisteredName?"}},
        {{"mi", viewPath}, 2, {"Name=value", "--null"}},
        {{"mi", viewPath, "RegisteredName=x"},
         1,
         {"CMPI_RC_ERR_NOT_SUPPORTED (7)", "modifyInstance", "TRV_oVTARegisteredProfile"}},
        {{"mi", "ServerConfigSettings", "ConfPowerCycleDelay=256"}, 2, {"ConfPowerCycleDelay", "uint8"}},
        {{"mi", "ServerConfigSettings", "ConfPowerCycleDelay=7", "Description=x"},
         1,
         {"CMPI_RC_ERR_INVALID_PARAMETER (4): Invalid Property: Description"}},
        {{"mi", "ServerConfigSettings", "--null", "Colour"}, 2, {"Colour"}},
        {{"mi", "ServerConfigSettings", "--null", "confpowercycledelay"}, // which the class has no null for
         1,
         {"failed to get the ConfPowerCycleDelay value"}},
        {{"cm", "ServerConfigSettings", "ResetPowerOnCounter", "x=1"}, 2, {"ResetPowerOnCounter", "x"}},
        {{"cm", "ServerConfigSettings", "Reset"}, 1, {"(17)", "ResetPowerOnCounter"}},
        {{"cm", "ServerConfigSettings"}, 2, {"METHOD"}},
        {{"cm", viewPath, "Frobnicate"}, 1, {"CMPI_RC_ERR_METHOD_NOT_FOUND (17)"}},
        {{"sp", "mask", "red"}, 2, {"MASK"}},
        {{"sp", "mask", "65536"}, 2, {"MASK"}},
        {{"sp", "notify", "post", "0"}, 2, {"PID"}},
        {{"sp", "notify", "post", "2147483647"}, 2, {"2147483647", "notify watch"}},
    };
    const std::string before = storeContent();
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.arguments));
        const Ended ended = vch(one.arguments);
        EXPECT_EQ(ended.code, one.code);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(linesOf(ended.err).size(), 1u) << ended.err;
        EXPECT_EQ(ended.err.rfind("vch: ", 0), 0u) << ended.err;
        for (const std::string &text : one.said)
            EXPECT_NE(ended.err.find(text), std::string::npos) << "'" << text << "' in: " << ended.err;
    }
    EXPECT_TRUE(storeContent() == before) << "the store has changed";
}

TEST_F(Tool, AStoreOrPartThatCannotBeUsedIsNamed) {
    const std::string text = folder + "/text", missing = folder + "/missing";
    std::ofstream(text) << "no database at all, but long enough to be looked at as one";
    const struct {
        const char *variable;
        std::string value;
    } cases[] = {
        {"VCH_STORE", text},
        {"VCH_STORE", missing},
        {"VCH_STORE", folder},
        {"VCH_MODULE", text},
        {"VCH_MODULE", missing},
        {"VCH_SCHEMA", missing},
        {"VCH_SCHEMA", folder}, // no MOF files in it
        {"VCH_FAULTS", "no_such_function"},
    };
    const std::map<std::string, std::string> usual = environment;
    for (const auto &[variable, value] : cases) {
        environment = usual;
        environment[variable] = value;
        const bool isStore = std::string_view(variable) == "VCH_STORE";
        std::vector<Words> commands = {{"ei", "RegisteredProfile"}};
        if (isStore)
            commands.insert(commands.end(), {{"sp", "info"}, {"sp", "mask", "512"}});
        for (const Words &arguments : commands) {
            const Ended ended = vch(arguments);
            EXPECT_EQ(ended.code, 3) << value;
            EXPECT_EQ(ended.out, "") << value;
            EXPECT_EQ(linesOf(ended.err).size(), 1u) << ended.err;
            EXPECT_NE(ended.err.find(value), std::string::npos) << ended.err;
            EXPECT_EQ(ended.err.find("vch sp create") != std::string::npos, isStore) << ended.err;
        }
    }
    EXPECT_EQ(contentOf(text).find("no database at all"), 0u);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(Tool, AStoreIsMadeWithItsFoldersAndReplacedOnlyWithForce) {
    const std::string path = environment["VCH_STORE"] = folder + "/new/folders/store.db";
    EXPECT_EQ(vch({"sp", "path"}).out, path + "\n");
    EXPECT_EQ(vch({"sp", "create"}).out, "created " + path + "\n");
    const std::string info = vch({"sp", "info"}).out;
    EXPECT_NE(info.find(path), std::string::npos);
    const std::string rows = sp::sql("SELECT count(*) FROM registered_profile").front().front();
    EXPECT_NE(info.find(" " + rows + "  registered_profile\n"), std::string::npos) << info;

    EXPECT_EQ(vch({"sp", "mask"}).out, "256\n");
    EXPECT_EQ(vch({"sp", "mask", "768"}).out, "768\n");
    const Ended refused = vch({"sp", "create"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_NE(refused.err.find("--force"), std::string::npos) << refused.err;
    EXPECT_EQ(vch({"sp", "mask"}).out, "768\n") << "it is as it was";
    EXPECT_EQ(vch({"sp", "create", "--force"}).code, 0);
    EXPECT_EQ(vch({"sp", "mask"}).out, "256\n");
}

TEST_F(Tool, FaultsShowInTheJournalAndFailTheRequest) {
    environment["VCH_FAULTS"] = "zbr_oemdb_init";
    const Ended ended = vch({"ei", "RegisteredProfile", "--journal"});
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "");
    for (const char *text : {"Failed to Enumerate Instance", "(told to fail)"})
        EXPECT_NE(ended.err.find(text), std::string::npos) << ended.err;
    const Ended counted = vch({"instance", "count", "Registered*"});
    EXPECT_EQ(counted.code, 1);
    EXPECT_EQ(counted.out, "");
    EXPECT_NE(counted.err.find("TRV_oVTARegisteredProfile: CMPI_RC_ERR_FAILED (1)"), std::string::npos)
        << counted.err;
}

TEST_F(Tool, AFullDiskIsAnError) {
    const std::string command =
        std::string("VCH_STORE='") + store + "' '" VCH "' ei RegisteredProfile > /dev/full 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(system(command.c_str())), 3);
}

TEST_F(Tool, HelpNamesEveryCommandAndGoesToStandardOutput) {
    const Ended help = vch({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_EQ(help.err, "");
    for (const char *word : {"instance", "class", "sp", "overview", "selfcheck", "ei", "ein", "gi", "mi",
                             "cm", "gc", "VCH_STORE"})
        EXPECT_NE(help.out.find(word), std::string::npos) << word;
    const std::string sub = vch({"instance", "--help"}).out;
    for (const char *word : {"enumerate", "get", "count", "modify", "invokemethod"})
        EXPECT_NE(sub.find(word), std::string::npos) << word;
    EXPECT_EQ(vch({"--version"}).out.find_first_of("0123456789"), 0u);
}

} // namespace
