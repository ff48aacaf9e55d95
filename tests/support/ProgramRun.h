#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace tavrelle::testing {

struct CommandResult {
    int exitCode = -1;
    std::string output;  // standard output; standard error too when the command sends it there
};

// Runs a shell command and collects what it writes to standard output.
inline CommandResult RunCommand(const std::string& command) {
    CommandResult result;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 65536> buffer{};
    for (std::size_t n; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        result.output.append(buffer.data(), n);
    int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

// A text as one shell word.
inline std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// tavrelle-batch with the given arguments (shell words, redirections too), standard error joined
// to the output unless the arguments send it elsewhere.
inline CommandResult RunBatchProgram(const std::string& arguments) {
    return RunCommand(std::string(TAVRELLE_BATCH) + " 2>&1 " + arguments);
}

}  // namespace tavrelle::testing
