#include "Utilities/Text.h"

#include <charconv>
#include <iterator>

// Each instance copies many short texts between long fields, so that clearing what is behind them would cost
// more than everything else that is done for it.
void CopyUpTo(char *destination, const char *source, std::size_t limit) {
    const std::size_t length = strnlen(source, limit);
    std::memcpy(destination, source, length);
    destination[length] = '\0';
}

void AppendPart(TextTail &tail, const char *text) {
    const std::size_t length = strnlen(text, tail.room);
    std::memcpy(tail.next, text, length);
    tail.next += length;
    tail.room -= length;
    tail.isCut |= tail.room == 0 && text[length] != '\0';
}

namespace {

template <typename Number> void AppendNumber(TextTail &tail, Number number, int base) {
    char digits[16];
    *std::to_chars(digits, std::end(digits) - 1, number, base).ptr = '\0';
    AppendPart(tail, digits);
}

} // namespace

void AppendPart(TextTail &tail, int number) {
    AppendNumber(tail, number, 10);
}

void AppendPart(TextTail &tail, Hexadecimal number) {
    AppendNumber(tail, number.value, 16);
}
