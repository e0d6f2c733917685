#include "platform/console/console.h"

#include "platform/win32/win32.h"

#include <string>

static WString FromUtf8(const std::string& bytes)
{
    WString text(bytes.size(), 0); // never more units than bytes
    if (!bytes.empty())
        text.resize(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()),
                                                              text.data(), static_cast<int>(text.size()))));
    return text;
}

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

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

static void SetBinaryMode(FILE* pStream)
{
    ::_setmode(::_fileno(pStream), _O_BINARY);
}
#else
#include <fstream>

std::vector<WString> GetProgramArguments()
{
    std::ifstream commandLine("/proc/self/cmdline", std::ios::binary);
    std::vector<WString> arguments;
    for (std::string argument; std::getline(commandLine, argument, '\0');)
        arguments.push_back(FromUtf8(argument));
    if (!arguments.empty())
        arguments.erase(arguments.begin());
    return arguments;
}

static void SetBinaryMode(FILE*)
{
}
#endif

void PrintText(FILE* pStream, const WString& text)
{
    if (text.empty())
        return;
    const int length = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    std::fwrite(bytes.data(), 1, bytes.size(), pStream);
}

WString ReadStandardInput()
{
    SetBinaryMode(stdin);
    std::string bytes;
    char block[65536];
    while (const size_t count = std::fread(block, 1, sizeof block, stdin))
        bytes.append(block, count);
    return FromUtf8(bytes);
}

void WriteStandardOutput(const std::string& bytes)
{
    SetBinaryMode(stdout);
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}
