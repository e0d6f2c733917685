#pragma once
#include "platform/win32/win32.h"

#include <string>
#include <string_view>

/// UTF-8 of at most 2^31 - 1 units; a lone surrogate becomes U+FFFD.
inline std::string ToUtf8(std::basic_string_view<WCHAR> text)
{
    const int length = static_cast<int>(text.size());
    if (length == 0)
        return {};
    std::string bytes(
        static_cast<size_t>(::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                          nullptr);
    return bytes;
}

/// UTF-16 of at most 2^31 - 1 bytes; U+FFFD for each maximal ill-formed part.
inline WString FromUtf8(std::string_view bytes)
{
    WString text(bytes.size(), 0); // never more units than bytes
    if (!bytes.empty())
        text.resize(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()),
                                                              text.data(), static_cast<int>(text.size()))));
    return text;
}
