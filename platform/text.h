#pragma once
/// The module's text: 16-bit code units under the Windows names, in both builds.
/// On Windows WCHAR is wchar_t, so WString is std::wstring; elsewhere it is char16_t, never a 32-bit wchar_t.
/// Does not include the Windows headers, which a source has to get by the framework's.
#ifdef _WIN32
using WCHAR = wchar_t; // as the Windows headers define both
#ifndef TEXT
#define __TEXT(quote) L##quote
#define TEXT(quote) __TEXT(quote)
#endif
#else
#define TEXT_LITERAL(quote) u##quote
#define TEXT(quote) TEXT_LITERAL(quote)
using WCHAR = char16_t;
#endif

#include <sstream>
#include <string>

static_assert(sizeof(WCHAR) == 2);

using WString = std::basic_string<WCHAR>;
using WStringStream = std::basic_stringstream<WCHAR>;
