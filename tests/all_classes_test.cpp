// What holds for every class, asked of all that the schema declares.
#include "support/fixture.h"
#include "tools/selfcheck/selfcheck.h"

#include <algorithm>
#include <dlfcn.h>
#include <map>

namespace {

struct AllClasses : ServiceProcessorTest, testing::WithParamInterface<std::string> {
    const std::string fullName = "TRV_oVTA" + GetParam();

    // Path of the first instance, without the class's prefix, up to its last character.
    std::string openPath() {
        const Reply reply = names(GetParam());
        EXPECT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        const std::string path = broker::textOfPath(reply.answer.paths.at(0));
        return path.substr(std::string("TRV_oVTA").size(), path.size() - std::string("TRV_oVTA\"").size());
    }
};

INSTANTIATE_TEST_SUITE_P(Class, AllClasses, testing::ValuesIn(allClasses()),
                         [](const auto &each) { return each.param; });

TEST_P(AllClasses, ConformsAsAClientSeesIt) {
    EXPECT_GT(names(GetParam()).size(), 0U) << "the sample server has none";
    const broker::Class *cls = broker::classNamed(theBroker(), fullName);
    for (const selfcheck::Finding &finding : selfcheck::check(theBroker(), theClient(), *cls)) {
        ADD_FAILURE() << selfcheck::textOf(finding);
    }
}

// What a run for the names alone may call; a class without a row may call what the whole run calls.
const std::map<std::string, std::vector<std::string>> calls_for_names = {
    {"RegisteredProfile", {"zbr_oemdb_init", "zbr_oemdb_get_all_reg_prof_info", "zbr_oemdb_close"}},
    {"ServerConfigSettings", {}}, // its one key is a constant
    {"GeneralRecordLogConfigSettings", {}},
    {"RecordLogConfigSettings", {}},
    {"RecordLog", {"db_init", "db_get_all_fru_info", "db_close"}},
    {"LogEntry",
     {"zbr_oemdb_init", "zbr_oemdb_get_all_sel_rec", "zbr_oemdb_get_all_iel_rec", "zbr_oemdb_close"}},
};

TEST_P(AllClasses, NamesCallNoMoreThanTheyNeed) {
    const auto row = calls_for_names.find(GetParam());
    if (row == calls_for_names.end()) {
        return; // ConformsAsAClientSeesIt has compared them with the whole run
    }
    sp::start_journal();
    names(GetParam());
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        EXPECT_TRUE(std::ranges::count(row->second, entry.function) == 1 ||
                    std::string_view(entry.function).starts_with("zbr_debug"))
            << entry.function << " was called";
    }
}

TEST_P(AllClasses, AQuoteInAKeyIsRefusedBeforeAnythingIsRead) {
    const std::string quoted = openPath() + "'\"";
    sp::start_journal();
    const Reply reply = get(quoted);
    EXPECT_EQ(textOf(reply.answer), "1 Failed to Get Instance");
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        EXPECT_EQ(std::string(entry.function).find("zbr_debug"), 0U) << entry.function << " was called";
    }
}

TEST_P(AllClasses, AnInstanceThatIsNotThereIsNotFound) {
    EXPECT_EQ(textOf(get(openPath() + "-not\"").answer), "1 Failed to Get Instance");
}

// Where it is offered, no changes at all are done at once.
TEST_P(AllClasses, ModifyingIsRefusedWhereTheLibraryDoesNotOfferIt) {
    const auto library = dlopen("libVendorClassHelper.so", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    const bool offered = dlsym(library, ("PH_OEM_MI_" + GetParam()).c_str()) != nullptr;
    dlclose(library);
    EXPECT_EQ(textOf(modify(openPath() + '"', {}, PropertyNames{std::in_place}).answer),
              offered ? "0" : "7 modifyInstance isn't supported by class " + fullName);
}

} // namespace
