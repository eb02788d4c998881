// Custom fields of a FRU record: one field of a comma text, into a buffer of the caller's.
//
// Input: number of the field, size of the buffer, text.
#include "target.h"

#include "Utilities/PH_OEM_Values.h"

#include <cstring>
#include <memory>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const int index = data[0] < 0x80 ? data[0] : data[0] - 0x100; // negative ones too
    const int room = data[1];
    const std::string_view bytes = textOf(data + 2, size - 2);
    const std::string text(bytes.substr(0, bytes.find('\0')));
    // One byte on the heap at least, and no more than told, so that a write beyond it is seen.
    const auto out = std::make_unique<char[]>(static_cast<std::size_t>(room == 0 ? 1 : room));
    out[0] = 'x';
    const int length = PH_OEM_GetFruCustomField(text.c_str(), index, out.get(), room);

    std::string_view rest = text;
    bool exists = index >= 0;
    for (int skipped = 0; exists && skipped < index; ++skipped) {
        exists = rest.find(',') != std::string_view::npos;
        take(rest, ',');
    }
    const std::string field(take(rest, ','));
    const bool fits = exists && field.size() < static_cast<std::size_t>(room);
    require((length >= 0) == fits, "a field that exists and fits is given, no other", field);
    if (fits) {
        requireEqual("field and answer", field, out.get());
        require(length == static_cast<int>(field.size()), "the result is the field's length", field);
    } else {
        require(out[0] == 'x', "a failure leaves the buffer as it was");
    }
    return 0;
}
