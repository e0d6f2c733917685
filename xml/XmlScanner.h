#pragma once
/// Cuts a text into XML nodes and a start tag into attributes. Knows nothing of the tree.
/// Everything here works on NUL-terminated text and ends at its first NUL; offsets and lengths count UTF-16 code units.
#include <afxstr.h>

class CRunOnSearches;

/// What a node is.
enum XmlNodeType : int
{
    NodeEndOfText = -2,
    NodeError = -1, ///< a broken node, with a message in the place of its name
    NodeEndTag = 0,
    NodeElement = 1, ///< a start tag or an empty-element tag
    NodeText = 2,    ///< has at least one unit that is no white space
    NodeWhitespace = 4,
    NodeCData = 8,
    NodeProcessingInstruction = 16,
    NodeComment = 32,
    NodeDoctype = 64, ///< a doctype with all that stands in it, or a declaration on its own
};

/// A cursor over a text, with the token that was read last.
struct XmlScanner
{
    int first = 0;      ///< offset of the token's first unit
    int last = -1;      ///< offset of its last unit; below first for an empty token
    int next = 0;       ///< where scanning goes on
    const WCHAR* text;  ///< NUL-terminated, borrowed; must outlive the scanner
    unsigned flags = 0; ///< QuotedTokenFlag
    int savedStart = 0; ///< ScanAttribute: where the white space before the matched name begins
    int savedGap = 0;   ///< ScanAttribute: how much white space that is
};

/// A set of units below 64, with NUL in it: a bit for each.
constexpr uint64_t UnitSet(const WCHAR* pUnits)
{
    uint64_t set = 1;
    for (; *pUnits != 0; ++pUnits)
        set |= uint64_t{1} << *pUnits;
    return set;
}
constexpr bool IsIn(uint64_t set, WCHAR unit)
{
    return unit < 64 && (set >> unit & 1) != 0;
}

/// In XmlScanner::flags: the token stood in quotes.
constexpr unsigned QuotedTokenFlag = 0x8000;

/// One node of the text.
struct XmlNodeEntry
{
    int nodeType = NodeEndOfText; ///< an XmlNodeType
    int start = 0;                ///< offset of the first unit; for all markup the <
    int length = 0;
    unsigned flags = 0; ///< EmptyElementFlag
    CString name;       ///< of an element or processing instruction, or the message of a NodeError; else what it was
};

/// In XmlNodeEntry::flags: the tag ended in "/>".
constexpr unsigned EmptyElementFlag = 0x10000;

/// White space of XML.
inline bool IsXmlSpace(WCHAR unit)
{
    return unit == TEXT(' ') || unit == TEXT('\t') || unit == TEXT('\n') || unit == TEXT('\r');
}

inline bool IsXmlQuote(WCHAR unit)
{
    return unit == TEXT('"') || unit == TEXT('\'');
}

/// Nothing up to '9' starts a name, nor does ; < = > ? @ [ \ ] ^ or the backtick; all of non-ASCII does.
inline bool StartsName(WCHAR unit)
{
    if (unit > TEXT('`')) // nearly all do
        return true;
    return unit > TEXT('9') && (unit < TEXT(';') || unit > TEXT('@')) && (unit < TEXT('[') || unit > TEXT('^')) &&
           unit != TEXT('`');
}

/// What ends the name of a tag, apart from the end of the text.
inline bool EndsTagName(WCHAR unit)
{
    return unit == TEXT('>') || unit == TEXT('/') || IsXmlSpace(unit);
}

/// Reads the node at scanner.next, moves scanner.next behind it and fills entry. For an end tag the scanner's token is
/// the tag's name. Returns the node's type, NodeEndOfText when nothing is left.
int ReadNode(XmlScanner& scanner, XmlNodeEntry& entry);

/// The scanner's token; empty if it has none.
CString GetTokenText(const XmlScanner& scanner);

/// What ends a name that is asked for, in NameMatches.
inline bool EndsAskedName(WCHAR unit)
{
    return unit <= TEXT(']') && (IsIn(UnitSet(TEXT(" =/")), unit) || unit == TEXT('[') || unit == TEXT(']'));
}

/// What ends the name of an attribute.
inline bool EndsAttributeName(WCHAR unit)
{
    return IsIn(UnitSet(TEXT("= \t\n\r>/?")), unit);
}

/// How many units the name has before the first that ends a name somewhere, asked for or found, or is a quote.
inline int PlainLength(const WCHAR* pName)
{
    const auto isPlain = [](WCHAR unit)
    { return unit > TEXT(']') || (unit >= 64 ? unit < TEXT('[') : !IsIn(UnitSet(TEXT(" \t\n\r<>=/?!\"'")), unit)); };
    const WCHAR* pEnd = pName;
    while (isPlain(pEnd[0]) && isPlain(pEnd[1]) && isPlain(pEnd[2]) && isPlain(pEnd[3])) // jumps cost more than looks
        pEnd += 4;
    while (isPlain(*pEnd))
        ++pEnd;
    return static_cast<int>(pEnd - pName);
}

/// Whether pName asks for the token of length units at pToken: equal unit by unit up to the end of pName or to one of
/// " =/[]" in it. What stands behind that delimiter is ignored.
inline bool NameMatches(const WCHAR* pToken, int length, const WCHAR* pName)
{
    for (int i = 0; i < length; ++i)
        if (pToken[i] != pName[i])
            return false;
    return EndsAskedName(pName[length]);
}

/// Looks for the attribute of that name, from scanner.next, behind the < of a start tag, on. True: the scanner's token
/// is its value, without quotes and undecoded; an attribute without = has its own name as value. The first of several
/// wins. False: there is none up to the tag's end.
bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName);
/// The same for one of many tags. tagEnd: the offset after the start tag's >. searches: of this text so far.
bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName, int tagEnd, CRunOnSearches& searches);

/// The text with its five named entities and its numeric references replaced; what cannot be decoded stays.
/// pSource: length units, not null, and a NUL somewhere behind them: the ; of a numeric reference is sought there too.
/// A reference gives one unit, the low 16 bits of its number.
CString DecodeEntities(const WCHAR* pSource, int length);
