#include "tests/sdk/ChildProcess.h"

#include <csignal>
#include <filesystem>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>

CChildProcess::CChildProcess(const char* pProgram, const WString& argument)
{
    std::string path = (std::filesystem::read_symlink("/proc/self/exe").parent_path() / pProgram).string();
    std::string text = std::filesystem::path(argument).string();
    char* const arguments[] = {path.data(), text.data(), nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, path.c_str(), nullptr, nullptr, arguments, environ) != 0)
        throw std::runtime_error("cannot start " + path);
    m_process = process;
}

bool CChildProcess::Kill()
{
    if (m_process == 0)
        return false;
    int status = 0;
    kill(static_cast<pid_t>(m_process), SIGKILL);
    waitpid(static_cast<pid_t>(m_process), &status, 0);
    m_process = 0;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}
