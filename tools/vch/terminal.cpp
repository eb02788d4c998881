#include "terminal.h"

#include "failure.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
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

void flushOutput() {
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        throw Failure{BackEndError, "standard output can't be written"};
    }
}

namespace {

// `text` with the attribute of an escape sequence's number when standard output is a terminal.
std::string attributed(const std::string &text, const char *attribute) {
    static const char *unwanted = getenv("NO_COLOR");
    static const bool onTerminal = isatty(STDOUT_FILENO) == 1 && (unwanted == nullptr || *unwanted == '\0');
    return onTerminal ? std::string("\033[") + attribute + "m" + text + "\033[0m" : text;
}

} // namespace

std::string emphasized(const std::string &text) {
    return attributed(text, "1");
}

std::string coloured(const std::string &text, Health health) {
    switch (health) {
    case Health::Good: return attributed(text, "32");
    case Health::Warning: return attributed(text, "33");
    case Health::Bad: return attributed(text, "31");
    case Health::Unknown: break;
    }
    return text;
}
