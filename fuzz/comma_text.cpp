// Comma texts as the back end gives them: the split into items.
#include "target.h"

#include "Utilities/PH_OEM_Utilities.h"

#include <algorithm>
#include <memory>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr std::size_t longest = 255;
    const std::string text(textOf(data, size).substr(0, textOf(data, size).find('\0')));
    char untouched = 0;
    char *const mark = &untouched;
    char *const *const initial = &mark;
    char **items = const_cast<char **>(initial);
    std::uint16_t count = 1;
    const int result = PH_OEM_GetArrayCount(text.c_str(), &items, &count);

    require((result == 0) == (text.size() <= longest), "a text is refused for its length alone");
    if (result != 0 || text.empty()) {
        require(items == initial, "without a list the caller's pointer stays");
        require(count == 0, "without a list the count is 0");
        return 0;
    }
    require(count == std::ranges::count(text, ',') + 1, "there is an entry for each comma and one more");

    // The items are the tokens that aren't empty, without the blanks before them; then come nulls.
    std::string_view rest = text;
    std::size_t item = 0;
    while (!rest.empty()) {
        std::string_view token = take(rest, ',');
        if (token.empty()) {
            continue;
        }
        token.remove_prefix(std::min(token.find_first_not_of(" \t"), token.size()));
        require(item < count && items[item] != nullptr, "a token is missing", std::string(token));
        requireEqual("token and item", std::string(token), items[item]);
        std::free(items[item++]);
    }
    require(std::all_of(items + item, items + count, [](const char *left) { return left == nullptr; }),
            "there are more items than tokens");
    std::free(items);
    return 0;
}
