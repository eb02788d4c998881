// What the conformance checks say of classes that are broken on purpose: class, property and cause.
#include "broker/fixture.h"
#include "tools/selfcheck/selfcheck.h"

#include <algorithm>

namespace {

// All findings of a class of the tests' own providers, one on a line.
std::string findingsOf(const std::string &className) {
    broker::Settings settings = testSettings();
    settings.providedClasses.push_back("T_Unfetchable");
    std::string error;
    const broker::BrokerPointer broker = broker::openBroker(settings, error);
    EXPECT_NE(broker, nullptr) << error;
    std::string all;
    for (const selfcheck::Finding &finding :
         selfcheck::check(*broker, {}, *broker::classNamed(*broker, className))) {
        all += selfcheck::textOf(finding) + '\n';
    }
    return all;
}

TEST(BrokenClasses, AreNamedWithThePropertyAndTheCause) {
    const std::pair<const char *, const char *> cases[] = {
        {"T_Undeclared", "T_Undeclared: enumerating instances fails: rc 1 \"class T_Undeclared declares no "
                         "property Surprise\"\n"},
        {"T_WrongType", "T_WrongType.Value: enumerating this property alone fails: rc 61, declared uint16\n"},
        {"T_NoKey", "T_NoKey: enumerating instances fails: rc 1 \"class T_NoKey: the key property Id is "
                    "missing or empty\"\n"},
        {"T_OtherKey", "T_OtherKey: enumerating instances fails: rc 1 \"class T_OtherKey: the key Id of the "
                       "object path differs from the property\"\n"},
        {"T_Unfetchable",
         "T_Unfetchable: T_Unfetchable.Id=\"one\" can't be fetched: rc 7 \"not supported\"\n"},
    };
    for (const auto &[className, expected] : cases) {
        const std::string found = findingsOf(className);
        EXPECT_TRUE(found.starts_with(expected)) << found;
    }
}

// The note of a thing tells which properties were asked for.
TEST(BrokenClasses, AreNamedWhereTheAnswersDontAgree) {
    const std::string found = findingsOf("T_Thing");
    EXPECT_NE(
        found.find(
            "T_Thing.Note: a list of Note gives \"Note;\" and not \"all\" for T_Thing.Id=\"thing 0\"\n"),
        std::string::npos)
        << found;
}

} // namespace
