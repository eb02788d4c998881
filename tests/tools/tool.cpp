#include "tool.h"

#include <platform/sp/sp.h>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

void Tool::SetUp() {
    sp::create_store(store);
    sp::use_store(store);
    environment = {{"VCH_STORE", store}, {"COLUMNS", "100"}};
}

namespace {

// Becomes vch with these arguments and variables.
[[noreturn]] void become(const std::vector<std::string> &arguments,
                         const std::map<std::string, std::string> &environment) {
    for (const auto &[variable, value] : environment)
        setenv(variable.c_str(), value.c_str(), 1);
    std::vector<char *> argv = {const_cast<char *>(VCH)};
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    execv(VCH, argv.data());
    _exit(127);
}

} // namespace

Ended Tool::vch(const std::vector<std::string> &arguments) const {
    const std::string out = folder + "/out", err = folder + "/err";
    const pid_t child = fork();
    if (child == 0) {
        const int flags = O_WRONLY | O_CREAT | O_TRUNC;
        dup2(open(out.c_str(), flags, 0600), STDOUT_FILENO);
        dup2(open(err.c_str(), flags, 0600), STDERR_FILENO);
        become(arguments, environment);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(err)};
}

pid_t Tool::start(const std::vector<std::string> &arguments, int output) const {
    const pid_t child = fork();
    if (child == 0) {
        dup2(output, STDOUT_FILENO);
        become(arguments, environment);
    }
    return child;
}

std::string Tool::storeContent() const {
    sp::sql("PRAGMA wal_checkpoint(TRUNCATE)");
    return contentOf(store);
}

std::string Tool::onTerminal(const std::vector<std::string> &arguments) const {
    int terminal = -1;
    const winsize size = {50, 100, 0, 0};
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0)
        become(arguments, environment);
    std::string shown;
    char bytes[4096];
    for (ssize_t length = 0; (length = read(terminal, bytes, sizeof bytes)) > 0;)
        shown.append(bytes, static_cast<size_t>(length));
    close(terminal);
    waitpid(child, nullptr, 0);
    return shown;
}

std::string contentOf(const std::string &path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::vector<std::string> linesOf(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
