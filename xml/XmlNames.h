#pragma once
/// How names are compared. They are looked up in the text each time, so that nothing is stored for them.
#include "xml/fast/XmlVector.h"

inline bool StartsName(WCHAR unit)
{
    return !IsIn(unit, NotNameStart);
}

/// Returns the part of a requested name that is certain to be one token: up to the first unit that ends a name of any
/// kind, or is a quote. pName: NUL-terminated.
inline XmlName FirstToken(const WCHAR* pName)
{
    const WCHAR* pEnd = pName;
    while (*pEnd > TEXT(']') || !IsIn(*pEnd, EndsFoundName | EndsRequestedName | XmlQuote)) // mostly small letters
        ++pEnd;
    return {pName, static_cast<int>(pEnd - pName)};
}

/// Whether pName requests the token of length units at pToken. A requested name ends at the first of " =/[]" after the
/// token; what follows there is ignored: both "a" and "a[1]" request the token a.
inline bool NameMatches(const WCHAR* pToken, int length, const WCHAR* pName)
{
    for (int i = 0; i < length; ++i)
        if (pToken[i] != pName[i])
            return false;
    return IsIn(pName[length], EndsRequestedName);
}
