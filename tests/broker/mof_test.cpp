// The reader of class declarations.
#include "broker/mof.h"

#include <gtest/gtest.h>

namespace {

using broker::Schema;

TEST(Mof, AClassHasWhatItInheritsAndWhatItDeclares) {
    Schema schema;
    const std::string fault = broker::readMofText(R"(
        #pragma locale ("en_US")
        Qualifier Key : boolean = false, Scope(property), Flavor(DisableOverride);
        /* a comment
           of two lines */
        [Abstract, Version("1.0"), Description("two " // split
                                               "parts")]
        class A {
            string InstanceID;
            [Description("old"), ValueMap{"1", "2"}, Values{"One", "Two \"quoted\""}] uint16 State = 1;
            sint8 List[] = {1, -2};
            uint32 Start([In] string Name, [IN(false), OUT] uint16 Codes[], A REF Where, [OUT] string Said);
        };
        class B : A {
            [Key, Description("new") : ToSubclass] string InstanceID;
            [Description("new")] uint16 State;
            datetime Fixed[4];
        };
        [Association] class C { [Key] A REF Left; B ref Right; };
        class D : C {};
    )",
                                                  "test.mof", schema);
    ASSERT_EQ(fault, "");

    const broker::Class &a = *findClass(schema, "a"), &b = *findClass(schema, "B");
    EXPECT_TRUE(a.isAbstract && !b.isAbstract);
    EXPECT_EQ(findQualifier(a.qualifiers, "description")->values, std::vector<std::string>{"two parts"});
    EXPECT_EQ(b.superclass, &a);
    EXPECT_EQ(a.subclasses, std::vector<const broker::Class *>{&b});
    std::string order;
    for (const broker::Property &property : b.properties) {
        order += property.name + ' ' + property.origin + ' ' + std::to_string(property.type) + ';';
    }
    EXPECT_EQ(order, "InstanceID B 5632;State B 144;List A 8384;Fixed B 14336;");
    EXPECT_EQ(a.keys, std::vector<size_t>{});
    EXPECT_EQ(b.keys, std::vector<size_t>{0});
    const broker::Property &state = *findProperty(b, "STATE");
    EXPECT_EQ(findQualifier(state.qualifiers, "Description")->values[0], "new");
    EXPECT_EQ(findQualifier(state.qualifiers, "Values")->values[1], "Two \"quoted\"");

    std::string parameters;
    for (const broker::Parameter &parameter : findMethod(b, "start")->parameters) {
        parameters += std::to_string(parameter.type) + parameter.referenceClass +
                      (parameter.isIn ? " in" : "") + (parameter.isOut ? " out;" : ";");
    }
    EXPECT_EQ(parameters, "5632 in;8336 out;4352A in;5632 out;");

    EXPECT_TRUE(findClass(schema, "D")->isAssociation);
    EXPECT_EQ(findProperty(*findClass(schema, "D"), "Right")->type, CMPI_ref);
}

TEST(Mof, AFaultIsNamedWithItsPlace) {
    const struct {
        const char *text, *fault;
    } cases[] = {
        {"class A {\n  uint17 X;\n};",
         "f:2:3: 'uint17' is no type; a reference to a class is written uint17 REF"},
        {"class A {\n  uint16 X\n};", "f:3:1: expected ';' after X, found '}'"},
        {"class A : B {};", "f:1:11: superclass B of A isn't declared before it"},
        {"class A {}; class a {};", "f:1:19: class a is declared twice"},
        {"class A { string X; uint8 x; };", "f:1:21: class A declares x twice"},
        {"class A { string X; };\nclass B : A { uint8 X; };", "f:2:15: B.X has another type than in A"},
        {"class A { [Description(\"x] string X; };", "f:1:24: this text has no closing quote on its line"},
        {"class A { /* string X; };", "f:1:11: this comment has no end"},
        {"instance of A {};", "f:1:1: expected a class, found 'instance'"},
        {"[Key class A {};", "f:1:6: expected ']' after the qualifiers, found 'class'"},
        {"class A { uint32 M(string); };", "f:1:26: expected the name of a parameter, found ')'"},
    };
    for (const auto &[text, fault] : cases) {
        Schema schema;
        EXPECT_EQ(broker::readMofText(text, "f", schema), fault);
    }
    Schema schema;
    EXPECT_EQ(broker::readMof("/nowhere/x.mof", schema),
              "can't read the MOF file /nowhere/x.mof: No such file or directory");
    EXPECT_NE(broker::readMof("/", schema), "");
}

TEST(Mof, EveryCutOfADeclarationIsAFaultAndNoneEndsTheProgram) {
    const std::string text = "[Abstract, Values{\"a\", \"b\"}] class A { [Key] string X = \"v\"; "
                             "uint8 M([In] A REF r, sint8 l[2]); };";
    for (size_t length = 1; length <= text.size(); ++length) {
        Schema schema;
        EXPECT_EQ(broker::readMofText(text.substr(0, length), "f", schema) == "", length == text.size())
            << text.substr(0, length);
    }
}

TEST(Mof, GlobsMatchWholeNames) {
    for (const char *glob : {"TRV_Fan", "trv_fan", "TRV_*", "*fan", "T?V_F*n", "*", "**n"}) {
        EXPECT_TRUE(broker::matchesGlob("TRV_Fan", glob)) << glob;
    }
    for (const char *glob : {"*a*a*", "Fan", "TRV_", "TRV_Fan?", ""}) {
        EXPECT_FALSE(broker::matchesGlob("TRV_Fan", glob)) << glob;
    }
}

} // namespace
