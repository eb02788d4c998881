#include "Utilities/Text.h"

#include <algorithm>

// memccpy looks for the end and copies in one call. Each instance copies many short texts between long
// fields, so that clearing what is behind them would cost more than everything else that is done for it.
void CopyBounded(char *destination, std::size_t size, const char *source, std::size_t limit) {
    const std::size_t length = std::min(limit, size - 1);
    if (memccpy(destination, source, '\0', length) == nullptr) {
        destination[length] = '\0';
    }
}
