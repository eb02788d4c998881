#include "Utilities/Records.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace {

TEST(Records, AddedOnesAreZeroAndTheFirstStay) {
    int *block = nullptr;
    ASSERT_TRUE(AppendRecords(block, 0, 3));
    EXPECT_TRUE(std::all_of(block, block + 3, [](int record) { return record == 0; }));
    std::fill_n(block, 3, 7);
    ASSERT_TRUE(AppendRecords(block, 3, 1000));
    EXPECT_TRUE(std::all_of(block, block + 3, [](int record) { return record == 7; }));
    EXPECT_TRUE(std::all_of(block + 3, block + 1003, [](int record) { return record == 0; }));
    std::free(block);
}

TEST(Records, MoreThanCanBeCountedLeaveTheBlockAsItWas) {
    int *block = nullptr;
    ASSERT_TRUE(AppendRecords(block, 0, 1));
    int *const before = block;
    EXPECT_FALSE(AppendRecords(block, 1, INT_MAX));
    EXPECT_EQ(block, before);
    std::free(block);
}

// Which slots are used, a letter for each.
TEST(Records, AllTextsOfAListAreFreed) {
    for (const std::string used : {"....", "xx..", "xxxx", "x.x.", "...x", ".x..", "x..x"}) {
        char *texts[4] = {};
        for (std::size_t i = 0; i < used.size(); ++i) {
            texts[i] = used[i] == 'x' ? static_cast<char *>(std::malloc(1)) : nullptr;
        }
        FreeTexts(texts); // a sanitizer finds what it leaves
        EXPECT_EQ(std::count(texts, texts + 4, nullptr), 4) << used;
    }
}

} // namespace
