#include "platform/console/console.h"

#include "platform/console/system.h"
#include "platform/win32/utf8.h"

#include <cerrno>
#include <cstring>
#include <exception>

int RunConsoleProgram(const char* pName, int (*pRun)(const std::vector<WString>& arguments))
{
    int exitCode = 1;
    ReserveStandardStreams();
    try
    {
        exitCode = pRun(GetProgramArguments());
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s: %s\n", pName, error.what());
    }
    const bool hasFailed = std::fflush(stdout) != 0 || std::ferror(stdout) != 0;
    if (!hasFailed)
        return exitCode;
    std::fprintf(stderr, "%s: the output cannot be written: %s\n", pName, std::strerror(errno));
    return exitCode == 0 ? 1 : exitCode;
}

void PrintText(FILE* pStream, const WString& text)
{
    const std::string bytes = ToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), pStream);
}

std::string Printable(std::basic_string_view<WCHAR> text, Backslash backslash)
{
    const auto isSurrogate = [&](size_t at, WCHAR first)
    { return at < text.size() && text[at] >= first && text[at] < first + 0x400; };
    WString printable;
    printable.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i)
    {
        const WCHAR unit = text[i];
        const bool isPair = isSurrogate(i, 0xD800) && isSurrogate(i + 1, 0xDC00);
        const bool isControl = unit < TEXT(' ') || (unit >= 0x7F && unit < 0xA0);
        if (isPair)
        {
            printable.append(text.substr(i++, 2));
        }
        else if (isControl || isSurrogate(i, 0xD800) || isSurrogate(i, 0xDC00))
        {
            char escape[16];
            std::snprintf(escape, sizeof escape, "\\x%x;", static_cast<unsigned>(unit));
            printable.append(escape, escape + std::strlen(escape));
        }
        else
        {
            printable.append(unit == TEXT('\\') && backslash == Backslash::Double ? 2 : 1, unit);
        }
    }
    return ToUtf8(printable);
}

bool ReadStandardInput(std::string& bytes)
{
    SetBinaryMode(stdin);
    char block[65536];
    while (const size_t count = std::fread(block, 1, sizeof block, stdin))
        bytes.append(block, count);
    return std::ferror(stdin) == 0;
}

void WriteStandardOutput(std::string_view bytes)
{
    SetBinaryMode(stdout);
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

namespace
{
/// The length of the sequence that starts there; 0 if it is not well-formed (Unicode, table 3-7).
size_t LengthOfUtf8Sequence(std::string_view bytes)
{
    const auto byteAt = [&](size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U; };
    const auto continues = [&](size_t i) { return (byteAt(i) & 0xC0U) == 0x80U; };
    const unsigned first = byteAt(0);
    const unsigned second = byteAt(1);
    if (first < 0x80)
        return 1;
    if (first < 0xC2 || first > 0xF4 || !continues(1))
        return 0;
    if (first < 0xE0)
        return 2;
    if (first < 0xF0)
    {
        const bool isLongForm = first == 0xE0 && second < 0xA0;
        const bool isSurrogate = first == 0xED && second >= 0xA0;
        return continues(2) && !isLongForm && !isSurrogate ? 3 : 0;
    }
    const bool isLongForm = first == 0xF0 && second < 0x90;
    const bool isBeyondUnicode = first == 0xF4 && second >= 0x90;
    return continues(2) && continues(3) && !isLongForm && !isBeyondUnicode ? 4 : 0;
}
} // namespace

size_t FindInvalidUtf8(std::string_view bytes)
{
    for (size_t at = 0; at < bytes.size();)
    {
        const size_t length = LengthOfUtf8Sequence(bytes.substr(at));
        if (length == 0)
            return at;
        at += length;
    }
    return std::string_view::npos;
}
