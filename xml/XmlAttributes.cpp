#include "xml/XmlAttributes.h"

#include "xml/XmlNames.h"

#include <algorithm>
#include <utility>

namespace
{
/// Reads the token at next. False at the end of the text; first and last are then unchanged.
/// afterEqual: an unquoted token is a value, which fewer units end than a name.
bool ReadToken(XmlScanner& scanner, bool afterEqual)
{
    const WCHAR* pText = scanner.text;
    while (IsIn(pText[scanner.next], XmlSpace))
        ++scanner.next;
    const WCHAR unit = pText[scanner.next];
    if (unit == 0)
        return false;

    int end = scanner.next;
    if (IsIn(unit, XmlQuote))
    {
        scanner.flags |= QuotedTokenFlag;
        scanner.first = ++end;
        while (pText[end] != 0 && pText[end] != unit)
            ++end;
        scanner.last = end - 1;
        scanner.next = pText[end] == 0 ? end : end + 1;
        return true;
    }
    scanner.flags &= ~QuotedTokenFlag;
    scanner.first = end;
    while (!IsIn(pText[end], afterEqual ? EndsUnquotedValue : EndsAttributeName))
        ++end;
    scanner.last = std::max(end - 1, scanner.first); // a delimiter is a token of its own
    scanner.next = scanner.last + 1;
    return true;
}

/// Makes the matched name, whose last unit is at matchEnd, the token.
bool TakeNameAsValue(XmlScanner& scanner, int matchEnd)
{
    scanner.first = scanner.savedStart + scanner.savedGap;
    scanner.last = matchEnd;
    scanner.next = matchEnd + 1;
    return true;
}

/// Only a token that starts with >, / or ? ends the search. After a = such a unit is a value, so the search in a
/// damaged tag can run on into what follows the tag. mayStop: called with the offset in front of each token as long as
/// the outcome depends on nothing but what follows there; true ends the search.
template <typename MayStop>
bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName, MayStop mayStop)
{
    int matchEnd = 0; // 0: no match yet; no name ends there, since a < is in front of it
    bool tagNameSeen = false;
    bool afterEqual = false;
    for (;;)
    {
        const int before = scanner.next;
        if (matchEnd == 0 && tagNameSeen && !afterEqual && mayStop(before))
            return false;
        if (!ReadToken(scanner, afterEqual))
            break;
        const bool isValue = std::exchange(afterEqual, false);
        const bool isQuoted = (scanner.flags & QuotedTokenFlag) != 0;
        if (isValue || isQuoted)
        {
            if (matchEnd == 0)
                continue;
            return isValue || TakeNameAsValue(scanner, matchEnd);
        }

        const WCHAR unit = scanner.text[scanner.first];
        if (unit == TEXT('='))
        {
            afterEqual = true;
            continue;
        }
        if (unit == TEXT('>') || unit == TEXT('/') || unit == TEXT('?'))
        {
            scanner.next = before;
            break;
        }
        if (matchEnd != 0)
            return TakeNameAsValue(scanner, matchEnd);
        if (tagNameSeen && NameMatches(scanner.text + scanner.first, scanner.last - scanner.first + 1, pName))
        {
            scanner.savedStart = before;
            scanner.savedGap = scanner.first - before;
            matchEnd = scanner.last;
        }
        tagNameSeen = true;
    }
    if (matchEnd == 0)
        return false;
    return afterEqual || TakeNameAsValue(scanner, matchEnd); // a text that ends after the = leaves that as value
}
} // namespace

bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName)
{
    return ScanAttribute(scanner, pName, [](int) { return false; });
}

bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName, int tagEnd, CRunOnSearches& searches)
{
    std::optional<CRunOnSearches::COutcome> known;
    CRunOnSearches::Offsets passed;
    const bool isFound = ScanAttribute(scanner, pName,
                                       [&](int token)
                                       {
                                           if (token >= tagEnd)
                                               known = searches.Join(pName, token, passed);
                                           return known.has_value();
                                       });
    const auto outcome = known.value_or(CRunOnSearches::COutcome{isFound, scanner.first, scanner.last});
    if (!passed.empty())
        searches.Add(pName, passed, outcome);
    scanner.first = outcome.first;
    scanner.last = outcome.last;
    return outcome.isFound;
}

namespace
{
/// A reference and what it stands for; length 0: there is no reference.
struct CReference
{
    int length; ///< from the & through the ;
    WCHAR unit;
};

/// pReference: points at the &. room: units from there to the end of the value.
CReference ReadNamedReference(const WCHAR* pReference, int room)
{
    static constexpr struct
    {
        const WCHAR* pText;
        int length;
        WCHAR unit;
    } s_entities[] = {{TEXT("lt;"), 3, TEXT('<')},
                      {TEXT("amp;"), 4, TEXT('&')},
                      {TEXT("gt;"), 3, TEXT('>')},
                      {TEXT("apos;"), 5, TEXT('\'')},
                      {TEXT("quot;"), 5, TEXT('"')}};
    for (const auto& entity : s_entities)
        if (entity.length < room && wcsncmp(pReference + 1, entity.pText, static_cast<size_t>(entity.length)) == 0)
            return {entity.length + 1, entity.unit};
    return {0, 0};
}

/// pReference: points at the & of "&#". At most seven units can be in front of the ;. wcstol reads them: it accepts
/// white space, a sign and, in base 16, a prefix, and ignores what follows the digits. Runtimes differ in which units
/// beyond ASCII are digits or white space; XML has none of them, so the number ends there.
CReference ReadNumericReference(const WCHAR* pReference)
{
    const bool isHex = pReference[2] == TEXT('x');
    const WCHAR* pNumber = pReference + (isHex ? 3 : 2);
    const WCHAR* pEnd = pNumber;
    while (*pEnd != 0 && *pEnd != TEXT(';') && pEnd < pNumber + 7)
        ++pEnd;
    if (*pEnd != TEXT(';'))
        return {0, 0};
    WCHAR number[8] = {};
    std::copy(pNumber, std::find_if(pNumber, pEnd, [](WCHAR unit) { return unit > 0x7F; }), number);
    const long value = wcstol(number, nullptr, isHex ? 16 : 10);
    if (value == 0)
        return {0, 0};
    return {static_cast<int>(pEnd + 1 - pReference), static_cast<WCHAR>(value & 0xFFFF)};
}
} // namespace

CString DecodeEntities(const WCHAR* pSource, int length)
{
    int next = FindUnit(pSource, 0, length, TEXT('&'));
    if (next >= length)
        return CString(pSource, std::max(length, 0));

    CString decoded;
    WCHAR* const pBuffer = decoded.GetBuffer(length);
    WCHAR* pEnd = std::copy_n(pSource, next, pBuffer);
    while (next < length)
    {
        CReference reference{0, 0};
        if (pSource[next] == TEXT('&'))
            reference = pSource[next + 1] == TEXT('#') ? ReadNumericReference(pSource + next)
                                                       : ReadNamedReference(pSource + next, length - next);
        *pEnd++ = reference.length == 0 ? pSource[next] : reference.unit;
        next += std::max(reference.length, 1);
        const int run = next; // may be after the end: a numeric reference can reach that far
        next = FindUnit(pSource, run, length, TEXT('&'));
        pEnd = std::copy(pSource + run, pSource + next, pEnd);
    }
    decoded.ReleaseBufferSetLength(static_cast<int>(pEnd - pBuffer));
    return decoded;
}
