#pragma once
#include "platform/win32/win32.h"

#include <memory>

/// The system's text for an error code, without the line end that the system appends; empty for an unknown code.
inline WString SystemErrorText(DWORD code)
{
    LPWSTR pText = nullptr;
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0,
                                          reinterpret_cast<LPWSTR>(&pText), 1, nullptr);
    if (length == 0)
        return {};
    const std::unique_ptr<WCHAR, decltype(&::LocalFree)> pRelease(pText, ::LocalFree);
    constexpr DWORD lineEnd = 2; // CR LF
    return WString(pText, length >= lineEnd ? length - lineEnd : length);
}
