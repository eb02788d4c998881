// Reading requests through the provider module: object paths with any keys, and property lists.
#include "operation.h"
#include "server.h"
#include "target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool ready = (restoreServer(), true);
    const std::string_view text = textOf(data, size);
    if (ready && !asksForChange(text)) {
        run(text);
    }
    return 0;
}
