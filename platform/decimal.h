#pragma once
#include "platform/text.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <string_view>

/// Converts the number at the start of the text as _wtoi does: white space, a sign, digits. Returns 0 without digits,
/// and the nearest int for a number out of range. Runtimes differ in what counts as white space and digits beyond
/// ASCII; here only ASCII counts.
inline int DecimalToInt(std::basic_string_view<WCHAR> text)
{
    text.remove_prefix(std::min(text.find_first_not_of(TEXT(" \t\n\v\f\r")), text.size()));
    const bool isNegative = text.starts_with(TEXT('-'));
    if (isNegative || text.starts_with(TEXT('+')))
        text.remove_prefix(1);
    const int64_t limit = isNegative ? -int64_t{INT_MIN} : INT_MAX;
    int64_t value = 0;
    for (const WCHAR unit : text)
    {
        if (unit < TEXT('0') || unit > TEXT('9'))
            break;
        value = std::min(limit, value * 10 + (unit - TEXT('0')));
    }
    return static_cast<int>(isNegative ? -value : value);
}
