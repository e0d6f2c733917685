#include "tools/vltconfig/Output.h"

#include "platform/win32/utf8.h"

#include <algorithm>
#include <cstdio>

int Complain(TextView message)
{
    std::fprintf(stderr, "vltconfig: %s\n", Printable(message).c_str());
    return ExitFault;
}

int Complain(const WString& path, TextView what)
{
    return Complain((path.empty() ? TEXT("''") : path) + TEXT(": ") + WString(what));
}

std::string ToOneLine(TextView text, size_t units)
{
    const bool isCut = text.size() > units;
    return Printable(text.substr(0, units), Backslash::Double) + (isCut ? "\xE2\x80\xA6" : "");
}

std::string Count(size_t count, const char* pNoun)
{
    return std::to_string(count) + " " + pNoun + (count == 1 ? "" : "s");
}

void PrintLines(const std::string& prefix, TextView text)
{
    for (;;)
    {
        const size_t end = text.find(TEXT('\n'));
        std::printf("%s%s\n", prefix.c_str(), Printable(text.substr(0, end), Backslash::Double).c_str());
        if (end == TextView::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

namespace
{
bool StartsCodePoint(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

size_t CountCodePoints(const std::string& text)
{
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), StartsCodePoint));
}

/// At most that many code points, the last of them an ellipsis if anything is cut.
std::string CutTo(size_t codePoints, const std::string& text)
{
    if (CountCodePoints(text) <= codePoints)
        return text;
    size_t end = 0;
    for (size_t taken = 0; taken + 1 < codePoints;)
        taken += StartsCodePoint(text[++end]) ? 1 : 0;
    return text.substr(0, end) + "\xE2\x80\xA6";
}
} // namespace

void CTable::Print(bool isLong) const
{
    if (m_rows.size() == 1)
        return; // only the header
    std::vector<size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows)
        for (size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], CountCodePoints(row[i]));
    const bool isColoured = TakesColours();
    size_t room = isLong ? 0 : static_cast<size_t>(GetTerminalWidth());
    for (size_t i = 0; i + 1 < widths.size(); ++i)
        room = room > widths[i] + 2 ? room - widths[i] - 2 : 0;
    for (const auto& row : m_rows)
    {
        std::string line;
        for (size_t i = 0; i + 1 < row.size(); ++i)
        {
            line += row[i];
            line.append(widths[i] - CountCodePoints(row[i]) + 2, ' ');
        }
        line += room == 0 ? row.back() : CutTo(room, row.back());
        const bool isBold = isColoured && &row == &m_rows.front();
        std::printf(isBold ? "\x1b[1m%s\x1b[0m\n" : "%s\n", line.c_str());
    }
}
