#pragma once
/// Texts and records in a form that reads well in a failed expectation.
#include "platform/text.h"
#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// For checks whose outcome the system's own calls decide.
constexpr bool OnWindows = std::filesystem::path::preferred_separator == '\\';

using Strings = std::vector<std::string>;

/// ASCII as it is, any other unit as <U+XXXX>.
inline std::string Readable(const CString& text)
{
    std::string readable;
    for (int i = 0; i < text.GetLength(); ++i)
    {
        const WCHAR unit = text.GetAt(i);
        char escaped[16];
        std::snprintf(escaped, sizeof escaped, unit >= ' ' && unit < 0x7F ? "%c" : "<U+%04X>", unit);
        readable += escaped;
    }
    return readable;
}

inline CString Wide(const std::string& ascii)
{
    const WString wide(ascii.begin(), ascii.end());
    return CString(wide.data(), static_cast<int>(wide.size()));
}

/// "start+length startTag/endTag level parent firstChild nextSibling prevSibling flags", of flags the first letters.
inline std::string Readable(const XmlElementPosition& record)
{
    char text[200];
    std::snprintf(text, sizeof text, "%d+%d %u/%u L%u p%d c%d n%d v%d ", record.start, record.length,
                  record.tagLengths & 0x3FFFFF, record.tagLengths >> 22, record.levelAndFlags & 0xFFFF, record.parent,
                  record.firstChild, record.nextSibling, record.prevSibling);
    std::string readable = text;
    for (const auto& [flag, letter] : {std::pair(0x80000U, 'F'), {0x100000U, 'U'}, {0x200000U, 'I'}, {0x800000U, 'D'}})
        if ((record.levelAndFlags & flag) != 0)
            readable += letter;
    return readable;
}
