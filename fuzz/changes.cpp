// Changing requests through the provider module: values of a modified instance, and arguments of a method.
#include "operation.h"
#include "server.h"
#include "target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static bool isChanged = true;
    const std::string_view text = textOf(data, size);
    if (!asksForChange(text)) {
        return 0;
    }
    if (isChanged) { // an input's finding mustn't depend on the inputs before it
        restoreServer();
    }
    isChanged = run(text);
    return 0;
}
