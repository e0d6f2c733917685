#include "tests/sdk/ChildProcess.h"

#include "platform/win32/win32.h"

#include <filesystem>
#include <stdexcept>

constexpr UINT s_killedCode = 77; // none of the child's own

CChildProcess::CChildProcess(const char* pProgram, const WString& argument)
{
    WCHAR own[MAX_PATH];
    ::GetModuleFileNameW(nullptr, own, MAX_PATH);
    const auto program = std::filesystem::path(own).parent_path() / (std::string(pProgram) + ".exe");
    WString commandLine = TEXT("\"") + program.wstring() + TEXT("\" \"") + argument + TEXT("\"");
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process;
    if (!::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                          &process))
        throw std::runtime_error("cannot start " + program.string());
    ::CloseHandle(process.hThread);
    m_process = reinterpret_cast<long long>(process.hProcess);
}

bool CChildProcess::Kill()
{
    if (m_process == 0)
        return false;
    const HANDLE process = reinterpret_cast<HANDLE>(m_process);
    DWORD code = 0;
    ::TerminateProcess(process, s_killedCode);
    ::WaitForSingleObject(process, INFINITE);
    ::GetExitCodeProcess(process, &code);
    ::CloseHandle(process);
    m_process = 0;
    return code == s_killedCode;
}
