// Odd rows from the back ends: texts of any length without an end, numbers at their limits, counts that lie.
// A class must answer with instances or say that it failed, and must never run on from one text into the
// next. What a read outside of its bounds is, the address sanitizer says.
#include "sweep/operations.h"

#include "libzbr_cimcore.h"

#include <algorithm>
#include <climits>
#include <set>

namespace {

// A value for a column, and its text where it is one.
struct Odd {
    std::string literal; // of SQL
    std::string text;
};

Odd oddText(const std::string &text) {
    std::string quoted;
    for (const char c : text) {
        quoted += c == '\'' ? "''" : std::string(1, c);
    }
    return {'\'' + quoted + '\'', text};
}

// Rows' texts have 256 bytes: one less, as many, and more.
const Odd odd_values[] = {
    oddText(""),
    oddText(std::string(255, 'x')),
    oddText(std::string(256, 'x')),
    oddText(std::string(300, 'x')),
    oddText("'\"\\,;%s%n<&>"),
    oddText(",,3,, ,x,-7,99999999999,"),
    oddText("\xC3\xA4\xE2\x82\xAC\xFF\x80\x01\n"),
    {"0", ""},
    {"-1", ""},
    {"-2147483648", ""},
    {"2147483647", ""},
    {"4294967295", ""},
};

using Answers = std::vector<Outcome>;

Answers answersOf(const std::vector<Operation> &operations) {
    Answers answers;
    for (const Operation &operation : operations) {
        answers.push_back(runBalanced(operation));
    }
    return answers;
}

void expectToldOrAnswered(const Operation &operation, const Outcome &outcome) {
    if (outcome.rc != CMPI_RC_OK) {
        EXPECT_TRUE(isTold(operation, outcome))
            << operation.name << ": " << outcome.rc << ' ' << outcome.message;
    }
}

// No value that begins with the odd text holds more than it.
void expectTextsEnd(const Operation &operation, const Outcome &outcome, const std::string &text) {
    constexpr size_t recognisable = 100;
    if (text.size() < recognisable) {
        return;
    }
    for (const auto &[path, values] : outcome.instances) {
        for (const auto &[property, value] : values) {
            EXPECT_TRUE(!value.starts_with(text.substr(0, recognisable)) || text.starts_with(value))
                << operation.name << ": " << property << " runs on: " << value;
        }
    }
}

struct OddRows : SmallServer, testing::WithParamInterface<std::string> {
    const std::vector<Operation> operations = operationsOf(*this, GetParam(), Kinds::Reading);

    // Runs all operations on a server that the statement changed, and undoes the change.
    template <typename Look> void afterSql(const std::string &statement, Look look) {
        sp::sql("SAVEPOINT odd; " + statement);
        look();
        sp::sql("ROLLBACK TO odd; RELEASE odd");
    }

    // The tables without whose rows the class answers otherwise.
    std::vector<std::string> tables() {
        const Answers usual = answersOf(operations);
        std::vector<std::string> feeding;
        for (const auto &table : sp::sql("SELECT name FROM sqlite_master WHERE type = 'table'")) {
            afterSql("DELETE FROM " + table[0], [&] {
                if (answersOf(operations) != usual) {
                    feeding.push_back(table[0]);
                }
            });
        }
        return feeding;
    }
};

INSTANTIATE_TEST_SUITE_P(Class, OddRows, testing::ValuesIn(allClasses()),
                         [](const auto &each) { return each.param; });

// Rows whose constraints forbid the value keep the one that they have; the number of a row is no part of it.
TEST_P(OddRows, AreAnsweredOrToldAsAFailure) {
    for (const std::string &table : tables()) {
        for (const auto &column : sp::sql("SELECT name FROM pragma_table_info('" + table +
                                          "') WHERE pk = 0 OR type <> 'INTEGER'")) {
            for (const Odd &odd : odd_values) {
                const std::string statement =
                    "UPDATE OR IGNORE " + table + " SET " + column[0] + " = " + odd.literal;
                SCOPED_TRACE(statement);
                afterSql(statement, [&] {
                    for (const Operation &operation : operations) {
                        const Outcome outcome = runBalanced(operation);
                        expectToldOrAnswered(operation, outcome);
                        expectTextsEnd(operation, outcome, odd.text);
                    }
                });
            }
        }
    }
}

TEST_P(OddRows, CountsThatLieAreAnsweredOrToldAsAFailure) {
    for (const Operation &operation : operations) {
        const Outcome usual = runBalanced(operation);
        std::set<std::string> functions;
        for (const sp::JournalEntry &entry : sp::take_journal()) {
            functions.insert(entry.function);
        }
        for (const std::string &function : functions) {
            for (const int count : {0, -1, INT_MIN, 1, INT_MAX}) {
                SCOPED_TRACE(operation.name + ": " + function + " says " + std::to_string(count));
                const Outcome outcome = runBalanced(operation, [&] { sp::lie_about_count(function, count); });
                expectToldOrAnswered(operation, outcome);
                EXPECT_LE(outcome.instances.size(), usual.instances.size());
            }
        }
    }
}

// What the lies are worth: the stand-ins tell them.
TEST_F(ServiceProcessorTest, AFunctionLiesAboutItsCountWhenItIsToldTo) {
    const std::pair<int, bool> cases[] = {{0, true}, {-1, true}, {1, false}, {INT_MAX, false}};
    std::uint32_t handle = 0;
    ASSERT_EQ(zbr_oemdb_init(&handle), 0);
    for (const auto &[told, withRows] : cases) {
        sp::clear_faults();
        sp::lie_about_count("zbr_oemdb_get_all_reg_prof_info", told);
        RegisteredProfileRow *rows = nullptr;
        int count = 7;
        EXPECT_EQ(zbr_oemdb_get_all_reg_prof_info(handle, &count, &rows), 0);
        EXPECT_EQ(count, told);
        EXPECT_EQ(rows != nullptr, withRows) << told;
        free(rows);
    }
    zbr_oemdb_close(handle);
}

} // namespace
