// What holds for every class, asked of all of them.
#include "support/fixture.h"

#include <set>

namespace {

// Every class of the library: a new class is added here.
const char *const classes[] = {
    "RegisteredProfile",
    "ServerConfigSettings",
};

struct AllClasses : ServiceProcessorTest, testing::WithParamInterface<const char *> {};

INSTANTIATE_TEST_SUITE_P(Class, AllClasses, testing::ValuesIn(classes),
                         [](const auto &each) { return std::string(each.param); });

std::set<std::string> pathsOf(const Reply &reply) {
    std::set<std::string> paths;
    for (const CMPIInstance *inst : reply.answer.instances) {
        paths.insert(broker::textOfPath(CMGetObjectPath(inst, nullptr)));
    }
    for (const CMPIObjectPath *path : reply.answer.paths) {
        paths.insert(broker::textOfPath(path));
    }
    return paths;
}

TEST_P(AllClasses, NamesAndInstancesAreTheSameSetAndUnique) {
    const Reply instances = enumerate(GetParam());
    const Reply paths = names(GetParam());
    ASSERT_EQ(instances.answer.rc, CMPI_RC_OK) << instances.answer.message;
    ASSERT_EQ(paths.answer.rc, CMPI_RC_OK) << paths.answer.message;
    EXPECT_GT(instances.size(), 0U) << "the sample server has none";
    EXPECT_EQ(pathsOf(instances), pathsOf(paths));
    EXPECT_EQ(pathsOf(paths).size(), paths.size());
}

TEST_P(AllClasses, EveryNameCanBeFetched) {
    const Reply paths = names(GetParam());
    for (const CMPIObjectPath *path : paths.answer.paths) {
        const std::string text = broker::textOfPath(path).substr(std::string("TRV_oVTA").size());
        const Reply one = get(text);
        ASSERT_EQ(one.answer.rc, CMPI_RC_OK) << text << ": " << one.answer.message;
        EXPECT_EQ(pathsOf(one), std::set<std::string>{broker::textOfPath(path)});
    }
}

TEST_P(AllClasses, AListWithoutKnownNamesStillGivesWholePaths) {
    for (const Reply &reply :
         {enumerate(GetParam(), PropertyNames{std::in_place}), enumerate(GetParam(), {{"NoSuchProperty"}})}) {
        ASSERT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        EXPECT_EQ(reply.propertyNames(0).size(), 0U);
        EXPECT_EQ(pathsOf(reply), pathsOf(names(GetParam())));
    }
}

TEST_P(AllClasses, AQuoteInAKeyIsRefusedBeforeAnythingIsRead) {
    const std::string path = broker::textOfPath(names(GetParam()).answer.paths.at(0));
    sp::start_journal();
    const std::string prefix = "TRV_oVTA";
    const std::string quoted = path.substr(prefix.size(), path.size() - prefix.size() - 1) + "'\"";
    const Reply reply = get(quoted);
    EXPECT_EQ(reply.answer.rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(reply.answer.message, "Failed to Get Instance");
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        EXPECT_EQ(std::string(entry.function).find("zbr_debug"), 0U) << entry.function << " was called";
    }
}

} // namespace
