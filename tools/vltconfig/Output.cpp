#include "tools/vltconfig/Output.h"

#include <algorithm>
#include <cstdio>

std::string ToUtf8(const CString& text)
{
    const int length = text.GetLength();
    if (length == 0)
        return {};
    std::string bytes(
        static_cast<size_t>(::WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, length, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    return bytes;
}

std::string ToOneLine(const CString& text, int units)
{
    const bool isCut = text.GetLength() > units;
    CString line;
    for (int i = 0; i < std::min(text.GetLength(), units); ++i)
    {
        const WCHAR unit = text.GetAt(i);
        CString piece(&unit, 1);
        if (unit == TEXT('\\'))
            piece = TEXT("\\\\");
        else if (unit < TEXT(' ') || (unit >= 0x7F && unit < 0xA0))
            piece.Format(TEXT("\\x%x;"), unit);
        line += piece;
    }
    return ToUtf8(line) + (isCut ? "\xE2\x80\xA6" : "");
}

namespace
{
size_t CountCodePoints(const std::string& text)
{
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}
} // namespace

void CTable::Print() const
{
    if (m_rows.size() == 1)
        return; // nothing under the header
    std::vector<size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows)
        for (size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], CountCodePoints(row[i]));
    for (const auto& row : m_rows)
    {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i)
        {
            line += row[i];
            if (i + 1 < row.size())
                line.append(widths[i] - CountCodePoints(row[i]) + 2, ' ');
        }
        std::printf("%s\n", line.c_str());
    }
}
