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
            uint32 Start([In] string Name, [IN(false), OUT] uint16 Codes[], A REF Where);
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
    EXPECT_TRUE(a.isAbstract);
    EXPECT_FALSE(b.isAbstract);
    EXPECT_EQ(findQualifier(a.qualifiers, "description")->values, std::vector<std::string>{"two parts"});
    EXPECT_TRUE(a.keys.empty());
    EXPECT_EQ(b.superclass, &a);
    EXPECT_EQ(a.subclasses, std::vector<const broker::Class *>{&b});

    std::string order;
    for (const broker::Property &property : b.properties) {
        order += property.name + ' ' + property.origin + ' ' + std::to_string(property.type) + ';';
    }
    EXPECT_EQ(order, "InstanceID B 5632;State B 144;List A 8384;Fixed B 14336;");
    EXPECT_EQ(b.keys, std::vector<size_t>{0});
    const broker::Property &state = *findProperty(b, "STATE");
    EXPECT_EQ(findQualifier(state.qualifiers, "Description")->values[0], "new");
    EXPECT_EQ(findQualifier(state.qualifiers, "Values")->values[1], "Two \"quoted\"");

    const broker::Method &start = *findMethod(b, "start");
    EXPECT_EQ(start.type, CMPI_uint32);
    ASSERT_EQ(start.parameters.size(), 3U);
    EXPECT_TRUE(start.parameters[0].isIn && !start.parameters[0].isOut);
    EXPECT_TRUE(!start.parameters[1].isIn && start.parameters[1].isOut);
    EXPECT_EQ(start.parameters[1].type, CMPI_uint16A);
    EXPECT_TRUE(start.parameters[2].isIn && !start.parameters[2].isOut); // without qualifiers
    EXPECT_EQ(start.parameters[2].referenceClass, "A");

    EXPECT_TRUE(findClass(schema, "D")->isAssociation);
    EXPECT_EQ(findProperty(*findClass(schema, "D"), "Right")->type, CMPI_ref);
    EXPECT_EQ(withSubclasses(a).size(), 2U);
    EXPECT_TRUE(isA(b, a));
    EXPECT_FALSE(isA(a, b));
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
        {"class A { string X;",
         "f:1:20: expected the type of a property or method, found the end of the file"},
        {"instance of A {};", "f:1:1: expected a class, found 'instance'"},
        {"[Key class A {};", "f:1:6: expected ']' after the qualifiers, found 'class'"},
        {"class A { [Values{\"a\" 7}] string X; };",
         "f:1:23: expected '}' after the values of qualifier Values, found '7'"},
        {"class A { uint32 M(string); };", "f:1:26: expected the name of a parameter, found ')'"},
        {"class {", "f:1:7: expected the name of a class, found '{'"},
    };
    for (const auto &[text, fault] : cases) {
        Schema schema;
        EXPECT_EQ(broker::readMofText(text, "f", schema), fault);
    }
}

TEST(Mof, EveryCutOfADeclarationIsAFaultAndNoneEndsTheProgram) {
    const std::string text = "[Abstract, Values{\"a\", \"b\"}] class A { [Key] string X = \"v\"; "
                             "uint8 M([In] A REF r, sint8 l[2]); };";
    for (size_t length = 1; length < text.size(); ++length) {
        Schema schema;
        EXPECT_NE(broker::readMofText(text.substr(0, length), "f", schema), "") << text.substr(0, length);
    }
    Schema schema;
    EXPECT_EQ(broker::readMofText(text, "f", schema), "");
}

TEST(Mof, AMissingFileIsNamed) {
    Schema schema;
    EXPECT_EQ(broker::readMof("/nowhere/x.mof", schema),
              "can't read the MOF file /nowhere/x.mof: No such file or directory");
    EXPECT_NE(broker::readMof("/", schema), "");
}

TEST(Mof, GlobsMatchWholeNames) {
    const struct {
        const char *glob;
        bool matches;
    } cases[] = {{"TRV_Fan", true}, {"trv_fan", true},   {"TRV_*", true},  {"*fan", true},
                 {"T?V_F*n", true}, {"*", true},         {"*a*a*", false}, {"Fan", false},
                 {"TRV_", false},   {"TRV_Fan?", false}, {"", false},      {"**n", true}};
    for (const auto &[glob, matches] : cases) {
        EXPECT_EQ(broker::matchesGlob("TRV_Fan", glob), matches) << glob;
    }
}

} // namespace
