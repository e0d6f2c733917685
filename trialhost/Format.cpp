#include "trialhost/Format.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace
{
WString FromAscii(const std::string& text)
{
    return WString(text.begin(), text.end());
}

WString EscapeControl(WCHAR unit)
{
    switch (unit)
    {
    case TEXT('\n'):
        return TEXT("\\n");
    case TEXT('\r'):
        return TEXT("\\r");
    case TEXT('\t'):
        return TEXT("\\t");
    default:
        break;
    }
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned int>(unit));
    return FromAscii(text);
}

bool IsHighSurrogate(WCHAR unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
} // namespace

WString Number(long long number)
{
    return FromAscii(std::to_string(number));
}

WString Fixed(double value, int digits)
{
    char text[400]; // the largest double has 309 digits before the point
    std::snprintf(text, sizeof text, "%.*f", digits, value == 0 ? 0.0 : value);
    return FromAscii(text);
}

WString Quoted(const WString& text, size_t maximum)
{
    size_t length = std::min(text.size(), maximum);
    if (length > 0 && length < text.size() && IsHighSurrogate(text[length - 1]))
        --length; // no half character
    WString quoted = TEXT("\"");
    for (const WCHAR unit : text.substr(0, length))
        quoted += unit < 0x20 || unit == 0x7F ? EscapeControl(unit) : WString(1, unit);
    return quoted += length < text.size() ? TEXT("...\"") : TEXT("\"");
}

WString Coordinate(double value)
{
    const double rounded = std::round(value * 100) / 100;
    if (rounded == std::floor(rounded))
        return Fixed(rounded, 0);
    return Fixed(rounded, rounded * 10 == std::floor(rounded * 10) ? 1 : 2);
}

WString Point(double x, double y)
{
    WString text(1, TEXT('('));
    text.append(Coordinate(x)).append(TEXT(", ")).append(Coordinate(y));
    return text += TEXT(')');
}
