#pragma once
/// Text helpers for expectations.
#include "platform/text.h"
#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

/// For checks whose outcome the system's own calls decide.
constexpr bool OnWindows = std::filesystem::path::preferred_separator == '\\';

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

/// The text, count times.
inline WString Repeated(const WCHAR* pText, int count)
{
    WString text;
    while (count-- > 0)
        text += pText;
    return text;
}

/// UTF-16 of a UTF-8 text; ill-formed bytes become U+FFFD.
inline CString Wide(const std::string& utf8)
{
    const auto count = static_cast<int>(utf8.size());
    WString wide(utf8.size(), WCHAR{0});
    const int units = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), count, wide.data(), count);
    return CString(wide.data(), units);
}
