// What a command line names, and the values that it gives.

#include <tools/vch/failure.h>
#include <tools/vch/targets.h>

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

struct Targets : testing::Test {
    Session session;

    void SetUp() override {
        broker::Settings settings;
        settings.providerModule = PROVIDER_MODULE;
        settings.mofFiles = {TOY_MOF};
        settings.classPrefix = classPrefix;
        std::string error;
        session.broker = broker::openBroker(settings, error);
        ASSERT_NE(session.broker, nullptr) << error;
        session.request = broker::beginRequest(*session.broker, {});
        session.nameSpace = "root/cimv2";
    }

    // The value that command line words give a property, as text; the failure's message otherwise.
    std::string assigned(const Texts &words) {
        try {
            const Assignment assignment = parseAssignments(words).at(0);
            const broker::Property *property =
                broker::findProperty(resolveClass(*session.broker, "Toy"), assignment.name);
            return broker::textOfValue(assignedValue(session, *property, assignment));
        } catch (const Failure &failure) {
            EXPECT_EQ(failure.exitCode, UsageError);
            return failure.message;
        }
    }
};

TEST_F(Targets, ValuesHaveTheDeclaredType) {
    const struct {
        Texts words;
        std::string value;
    } cases[] = {
        {{"Numbers=1,2,3"}, "{1, 2, 3}"},
        {{"Numbers=1", "Numbers=0x10"}, "{1, 16}"},
        {{"Numbers=7"}, "{7}"},
        {{"Numbers="}, "{}"},
        {{"Words=a,b"}, "{a, b}"},
        {{"Words=a\\,b,c"}, "{a,b, c}"},
        {{"Words=a,b", "Words=c"}, "{a,b, c}"}, // given one by one, each is one element
        {{"words=a", "WORDS=b"}, "{a, b}"},
        {{"Word=a,b=c"}, "a,b=c"},
        {{"Word="}, ""},
        {{"Small=-128"}, "-128"},
        {{"When=20240229120000.000000+060"}, "20240229120000.000000+060"},
        {{"When=00000001020304.000000:000"}, "00000001020304.000000:000"},
        {{"Friend=Toy.Name=\"x\""}, "TRV_oVTAToy.Name=\"x\""},
    };
    for (const auto &one : cases)
        EXPECT_EQ(assigned(one.words), one.value) << testing::PrintToString(one.words);
}

TEST_F(Targets, AValueOfAnotherTypeIsRefusedWithTheDeclaredOne) {
    const struct {
        Texts words;
        const char *property, *type;
    } cases[] = {
        {{"Numbers=1,two"}, "Numbers", "uint16"},   {{"Numbers=1,,2"}, "Numbers", "uint16"},
        {{"Numbers=65536"}, "Numbers", "uint16"},   {{"Small=128"}, "Small", "sint8"},
        {{"Small=1", "Small=2"}, "Small", "sint8"}, {{"=7"}, "'=7'", "Name=value"},
        {{"When=yesterday"}, "When", "datetime"},   {{"Friend=Nobody.Name=\"x\""}, "Friend", "Nobody"},
    };
    for (const auto &one : cases) {
        const std::string message = assigned(one.words);
        EXPECT_NE(message.find(one.property), std::string::npos) << message;
        EXPECT_NE(message.find(one.type), std::string::npos) << message;
    }
}

TEST_F(Targets, APathMayHaveANamespaceAndTheShortClassName) {
    const char *expected = "root/cimv2:TRV_oVTAToy.Name=\"a:b.c\"";
    for (const char *text :
         {"Toy.Name=\"a:b.c\"", "root/cimv2:toy.Name=\"a:b.c\"", "/root/cimv2:TRV_oVTAToy.Name=\"a:b.c\""})
        EXPECT_EQ(broker::textOfPath(resolvePath(session, text), true), expected) << text;
    EXPECT_EQ(broker::textOfPath(resolvePath(session, "root/other:Toy"), true), "root/other:TRV_oVTAToy");
}

TEST_F(Targets, GlobsMatchWithAndWithoutThePrefix) {
    for (const char *glob : {"T*y", "trv_ovta*", "T?y", "*"}) {
        const auto found = findByName(broker::schemaOf(*session.broker), glob);
        ASSERT_EQ(found.size(), 1u) << glob;
        EXPECT_EQ(found[0]->name, "TRV_oVTAToy");
    }
    EXPECT_TRUE(findByName(broker::schemaOf(*session.broker), "oy").empty());
}

} // namespace
