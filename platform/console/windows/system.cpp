#include "platform/console/system.h"

#include "platform/console/console.h"
#include "platform/win32/win32.h"

#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdexcept>

void ReserveStandardStreams()
{
    // The runtime opens no file on a standard stream's number.
}

void SetBinaryMode(FILE* pStream)
{
    ::_setmode(::_fileno(pStream), _O_BINARY);
}

std::vector<WString> GetProgramArguments()
{
    int count = 0;
    LPWSTR* ppArguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<WString> arguments;
    for (int i = 1; i < count; ++i)
        arguments.emplace_back(ppArguments[i]);
    ::LocalFree(ppArguments);
    return arguments;
}

bool IsTerminal(FILE* pStream)
{
    return ::_isatty(::_fileno(pStream)) != 0;
}

int GetTerminalWidth()
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const bool isKnown = IsTerminal(stdout) && ::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &info);
    return isKnown ? info.srWindow.Right - info.srWindow.Left + 1 : 0;
}

bool TakesColours()
{
    const HANDLE console = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return IsTerminal(stdout) && ::_wgetenv(L"NO_COLOR") == nullptr && ::GetConsoleMode(console, &mode) &&
           ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool RunEditor(const WString& path)
{
    const WCHAR* pEditor = ::_wgetenv(L"VISUAL");
    if (pEditor == nullptr)
        pEditor = ::_wgetenv(L"EDITOR");
    const WString editor = pEditor == nullptr ? L"notepad" : pEditor;
    return ::_wsystem((editor + L" \"" + path + L"\"").c_str()) == 0;
}
