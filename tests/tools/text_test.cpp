// Texts for people and formats.

#include <tools/vch/text.h>

#include <gtest/gtest.h>

namespace {

TEST(Text, BytesThatAreNotUtf8AreReplacedOneByOne) {
    const std::string r = "\xEF\xBF\xBD"; // U+FFFD
    const struct {
        std::string text, expected;
    } cases[] = {
        {"plain Gr\xC3\xBC\xC3\x9Fungen", "plain Gr\xC3\xBC\xC3\x9Fungen"},
        {"\xE2\x82\xAC", "\xE2\x82\xAC"},         // euro sign
        {"\xF0\x9F\x94\x8C", "\xF0\x9F\x94\x8C"}, // four bytes
        {"a\xFFz", "a" + r + "z"},
        {"cut \xC3", "cut " + r},
        {"\x80", r},                         // goes on with nothing
        {"\xC0\xAF", r + r},                 // "/" in two bytes
        {"\xE0\x80\xAF", r + r + r},         // "/" in three
        {"\xED\xA0\x80", r + r + r},         // half of a surrogate pair
        {"\xF4\x90\x80\x80", r + r + r + r}, // behind the last code point
        {"\xE2\x82Z", r + r + "Z"},
    };
    for (const auto &one : cases)
        EXPECT_EQ(validUtf8(one.text), one.expected) << one.expected;
}

TEST(Text, ControlCharactersDoNotReachATerminalWhereAColumnIsACharacter) {
    EXPECT_EQ(printable("a\tb\nc\x1B[31m\x7F"), "a\\tb\\nc\\x1B[31m\\x7F");
    EXPECT_EQ(columns("Gr\xC3\xBC\xC3\x9Fung"), 7u);
}

TEST(Text, SplitsAtCommasButNotAtEscapedOnes) {
    const struct {
        std::string text;
        std::vector<std::string> parts;
    } cases[] = {
        {"", {}},
        {"a", {"a"}},
        {"a,b", {"a", "b"}},
        {",a,", {"", "a", ""}},
        {"a\\,b,c", {"a,b", "c"}},
        {"a\\b", {"a\\b"}}, // a backslash before anything else is one
        {"a\\", {"a\\"}},
    };
    for (const auto &one : cases)
        EXPECT_EQ(split(one.text, ','), one.parts) << one.text;
}

TEST(Text, FindsTheNearestNameAndNoneWhenAllAreFar) {
    const std::vector<std::string> names = {"HealthState", "EnabledState", "ElementName"};
    EXPECT_EQ(closest("HealtState", names), "HealthState");
    EXPECT_EQ(closest("healthstate", names), "HealthState");
    EXPECT_EQ(closest("EnableState", names), "EnabledState");
    EXPECT_EQ(closest("HealthyServer", names), "") << "too much is wrong with it";
    EXPECT_EQ(closest("", names), "");
}

} // namespace
