// Paths and values as text, both ways.
#include "fixture.h"

namespace {

using Texts = BrokerTest;

TEST_F(Texts, APathReadsBackAsItIsWritten) {
    const struct {
        const char *text, *written;
    } cases[] = {
        {"T_Thing", "root/cimv2:T_Thing"},
        {"thing", "root/cimv2:T_Thing"}, // without prefix, in any case
        {"T_Thing.Id=\"a.b:c,d=e\"", "root/cimv2:T_Thing.Id=\"a.b:c,d=e\""},
        {"root/x:Thing.id=\"\"", "root/x:T_Thing.Id=\"\""},
        {R"(Thing.Id="say \"x\" \\ \n")", R"(root/cimv2:T_Thing.Id="say \"x\" \\ \n")"},
        {"Other.Slot=0x10,Id=\"a\"", "root/cimv2:T_Other.Id=\"a\",Slot=16"}, // as declared
        {R"(Link.Left="T_Thing.Id=\"a\"",Right="T_Other.Id=\"b\",Slot=1")",
         R"(root/cimv2:T_Link.Left="T_Thing.Id=\"a\"",Right="T_Other.Id=\"b\",Slot=1")"},
    };
    for (const auto &[text, written] : cases) {
        for (const char *form : {text, written}) {
            EXPECT_EQ(broker::textOfPath(path(form), true), written);
        }
    }
    EXPECT_EQ(CMGetKey(path("Other.Slot=3"), "Slot", nullptr).type, CMPI_uint16);
}

TEST_F(Texts, AMalformedPathIsExplained) {
    const struct {
        const char *text, *error;
    } cases[] = {
        {"", "class \"\" isn't declared"},
        {"Thing.Id", "expected Key=value at \"Id\""},
        {"Thing.Id=x", "key Id is a string: write it as Id=\"x\""},
        {"Thing.Id=\"x", "the value of key Id has no closing quote"},
        {"Thing.Id=\"x\"y", "expected a comma after key Id, found \"y\""},
        {"Thing.Id=\"x\",", "expected Key=value at \"\""},
        {"Thing.Id=\"x\",ID=\"y\"", "key Id is given twice"},
        {"Other.Number=1", "class T_Other has no key \"Number\"; its keys are Id, Slot"},
        {"Other.Slot=\"1\"", "key Slot is a uint16: write it without quotes"},
        {"Other.Slot=65536", "key Slot: \"65536\" is no uint16: expected a number in its range"},
        {"Link.Left=\"Nothing\"", "key Left: \"Nothing\" is no ref: class \"Nothing\" isn't declared"},
    };
    for (const auto &[text, expected] : cases) {
        std::string error;
        EXPECT_EQ(broker::parsePath(*request, text, error), nullptr) << text;
        EXPECT_EQ(error, expected);
    }
}

TEST_F(Texts, ValuesAreReadByTheirTypeAndWrittenBackOrRefused) {
    const struct {
        CMPIType type;
        std::vector<std::string> texts;
        const char *written;       // or the error
        const char *mof = nullptr; // where it is written otherwise
    } cases[] = {
        {CMPI_boolean, {"TRUE"}, "true"},
        {CMPI_uint16, {"+7"}, "7"},
        {CMPI_uint64, {"18446744073709551615"}, "18446744073709551615"},
        {CMPI_sint64, {"-9223372036854775808"}, "-9223372036854775808"},
        {CMPI_real32, {"0.1"}, "0.1"},
        {CMPI_real64, {"3"}, "3.0"},
        {CMPI_char16, {"\u20ac"}, "\u20ac", "'\u20ac'"},
        {CMPI_char16, {"'"}, "'", "'\\''"},
        {CMPI_dateTime,
         {"00000001000000.000000:000"},
         "00000001000000.000000:000",
         "\"00000001000000.000000:000\""},
        {CMPI_ref, {"Thing.Id=\"x\""}, "T_Thing.Id=\"x\"", R"("T_Thing.Id=\"x\"")"},
        {CMPI_uint16A, {"1", "0x2"}, "{1, 2}"},
        {CMPI_stringA, {"a", "b, c"}, "{a, b, c}", R"({"a", "b, c"})"},
        {CMPI_stringA, {}, "{}"},
        {CMPI_boolean, {"yes"}, "\"yes\" is no boolean: expected true or false"},
        {CMPI_uint8, {"256"}, "\"256\" is no uint8: expected a number in its range"},
        {CMPI_sint16, {"12x"}, "\"12x\" is no sint16: expected a number in its range"},
        {CMPI_uint32, {"0x"}, "\"0x\" is no uint32: expected a number in its range"},
        {CMPI_char16, {"ab"}, "\"ab\" is no char16: expected one character"},
        {CMPI_char16, {"\xC3"}, "\"\xC3\" is no char16: expected one character"},
        {CMPI_uint8, {"1", "2"}, "a value of type uint8 is a single one, not 2"},
        {CMPI_uint8A, {"1", "x"}, "\"x\" is no uint8: expected a number in its range"},
        {CMPI_instance, {"x"}, "\"x\" is no object: values of this type can't be written as text"},
    };
    for (const auto &[type, texts, written, mof] : cases) {
        CMPIData value = {CMPI_null, CMPI_badValue, {}};
        std::string error;
        if (!broker::parseValue(*request, type, texts, value, error)) {
            EXPECT_EQ(error, written);
            EXPECT_EQ(value.state, CMPI_badValue) << written;
            continue;
        }
        EXPECT_EQ(value.type, type);
        EXPECT_EQ(broker::textOfValue(value), written);
        EXPECT_EQ(broker::mofOfValue(value), mof == nullptr ? written : mof);
    }
    CMPIInstance *instance = thing();
    CMSetProperty(instance, "Number", nullptr, CMPI_uint32);
    CMPIArray *names = CMNewArray(cmpi, 1, CMPI_string, nullptr);
    CMSetProperty(instance, "Names", &names, CMPI_stringA);
    EXPECT_EQ(broker::mofOfInstance(instance),
              "instance of T_Thing {\n    Number = NULL;\n    Names = {NULL};\n};\n");
}

} // namespace
