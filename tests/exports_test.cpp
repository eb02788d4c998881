// The library exports what its list names, and every name of the list.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <regex>
#include <set>
#include <string>

namespace {

std::set<std::string> namesInList() {
    std::set<std::string> names;
    std::ifstream list(EXPORT_LIST);
    const std::regex entry(R"(^\s+(\w+);$)");
    std::smatch match;
    for (std::string line; std::getline(list, line);) {
        if (std::regex_match(line, match, entry)) {
            names.insert(match[1]);
        }
    }
    return names;
}

std::set<std::string> namesInLibrary() {
    std::set<std::string> names;
    const std::unique_ptr<FILE, int (*)(FILE *)> nm(popen("nm -D --defined-only " CLASS_LIBRARY, "r"),
                                                    pclose);
    char name[256];
    while (nm != nullptr && std::fscanf(nm.get(), "%*s %*s %255s", name) == 1) {
        names.insert(name);
    }
    return names;
}

TEST(Exports, TheLibraryExportsExactlyItsList) {
    const std::set<std::string> listed = namesInList();
    const std::set<std::string> exported = namesInLibrary();
    EXPECT_GT(listed.size(), 30U);
    for (const std::string &name : listed) {
        EXPECT_TRUE(exported.contains(name)) << name << " is in the list and isn't exported";
    }
    for (const std::string &name : exported) {
        EXPECT_TRUE(listed.contains(name)) << name << " is exported and isn't in the list";
    }
}

} // namespace
