#pragma once
/// Texts in a form that reads well in a failed expectation.
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

inline CString Wide(const std::string& ascii)
{
    const WString wide(ascii.begin(), ascii.end());
    return CString(wide.data(), static_cast<int>(wide.size()));
}
