#pragma once
#include "platform/mfc/atlstr.h"

/// What _wtoi makes of the text: white space, a sign and the digits behind it; 0 without digits; the nearest int for a
/// number out of range. Runtimes differ in what they take for white space and digits beyond ASCII, so only what they
/// all read alike gets there; a number ends at any other unit anyway.
inline int DecimalToInt(const CString& text)
{
    int length = 0;
    while (length < text.GetLength() && wcschr(TEXT(" \t\n\v\f\r+-0123456789"), text.GetAt(length)) != nullptr)
        ++length;
    return _wtoi(text.Left(length));
}
