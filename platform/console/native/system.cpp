#include "platform/console/system.h"

#include "platform/console/console.h"
#include "platform/win32/utf8.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

void ReserveStandardStreams()
{
    // Opened the wrong way round, so that reading or writing fails as on the closed stream.
    for (const auto& [stream, mode] : {std::pair(0, O_WRONLY), {1, O_RDONLY}, {2, O_RDONLY}})
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", mode); // takes the lowest free number, which is this one
}

void SetBinaryMode(FILE*)
{
}

std::vector<WString> GetProgramArguments()
{
    std::ifstream commandLine("/proc/self/cmdline", std::ios::binary);
    std::vector<WString> arguments;
    for (std::string argument; std::getline(commandLine, argument, '\0');)
    {
        if (FindInvalidUtf8(argument) != std::string::npos)
            throw std::runtime_error("argument " + std::to_string(arguments.size()) + ", '" +
                                     Printable(FromUtf8(argument)) + "', is not UTF-8; rename the file");
        arguments.push_back(FromUtf8(argument));
    }
    if (!arguments.empty())
        arguments.erase(arguments.begin());
    return arguments;
}

bool IsTerminal(FILE* pStream)
{
    return isatty(fileno(pStream)) == 1;
}

int GetTerminalWidth()
{
    winsize size{};
    return IsTerminal(stdout) && ioctl(fileno(stdout), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool TakesColours()
{
    const char* pTerminal = std::getenv("TERM");
    return IsTerminal(stdout) && std::getenv("NO_COLOR") == nullptr && pTerminal != nullptr &&
           std::string_view(pTerminal) != "dumb";
}

bool RunEditor(const WString& path)
{
    std::string file = ToUtf8(path);
    std::replace(file.begin(), file.end(), '\\', '/');
    // The shell splits the variable, which may hold options, and leaves the path as it is.
    std::string script = R"(${VISUAL:-${EDITOR:-vi}} "$1")";
    std::string shell = "sh";
    std::string option = "-c";
    char* const arguments[] = {shell.data(), option.data(), script.data(), shell.data(), file.data(), nullptr};
    pid_t process = 0;
    int status = 0;
    return posix_spawn(&process, "/bin/sh", nullptr, nullptr, arguments, environ) == 0 &&
           waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
