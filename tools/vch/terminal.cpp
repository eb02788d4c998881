#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

size_t outputWidth() {
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    const char *wished = getenv("COLUMNS");
    const unsigned long columns = wished == nullptr ? 0 : strtoul(wished, nullptr, 10);
    return columns > 0 ? columns : 120;
}

std::string emphasized(const std::string &text) {
    static const bool onTerminal = isatty(STDOUT_FILENO) == 1 && getenv("NO_COLOR") == nullptr;
    return onTerminal ? "\033[1m" + text + "\033[0m" : text;
}
