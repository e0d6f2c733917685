#include "xml/XmlDocument.h"
#include "xml/fast/XmlPlainAttributes.h"
#include "xml/fast/XmlVector.h"

#include <algorithm>

namespace
{
bool EndsFoundName(WCHAR unit)
{
    return unit <= TEXT('\\') && (IsIn(UnitSet(TEXT(" \t\n\r<>=/?!")), unit) || unit == TEXT('\\'));
}

/// False: there is no " among the units, or an & in front of it.
bool CopyLongValue(std::basic_string_view<WCHAR> units, CString& value)
{
    const int room = static_cast<int>(units.size());
    const int length = VectorSteps().pCopyValue(units.data(), room, value.GetBuffer(room));
    if (length == room || units[static_cast<size_t>(length)] != TEXT('"'))
        return false;
    value.ReleaseBufferSetLength(length);
    if (length < room / 2) // other attributes follow
        value.FreeExtra();
    return true;
}
} // namespace

bool CXmlDocument::FindElement(const WCHAR* pName)
{
    const int found = FindSibling(m_parentPos, m_currentPos, pName);
    if (found == 0)
        return false;
    m_parentPos = At(found).parent;
    m_currentPos = found;
    m_nodeType = NodeElement;
    return true;
}

int CXmlDocument::FindSibling(int parent, int current, const WCHAR* pName) const
{
    const int from = current != 0 ? current : parent;
    if (!IsInUse(from))
        return 0;
    int candidate = current != 0 ? At(from).nextSibling : At(from).firstChild;
    if (pName == nullptr || *pName == 0)
        return candidate;
    while (candidate != 0 && !HasName(candidate, pName))
        candidate = At(candidate).nextSibling;
    return candidate;
}

// As NameMatches has it, without looking for the end of the token first.
// The name ends at more units here than where the parser ends it for the end tag: "<a=b>" is found as a.
// What comes before the first of them is compared many units at once.
bool CXmlDocument::HasName(int index, const WCHAR* pName) const
{
    const int token = At(index).start + 1;
    const WCHAR* const pToken = m_pUnits + token;
    int length = PlainLength(pName);
    if (m_unitCount - token < length || !EqualUnits(pToken, pName, length))
        return false;
    while (pToken[length] == pName[length] && !EndsFoundName(pToken[length]))
        ++length;
    return EndsFoundName(pToken[length]) && EndsAskedName(pName[length]);
}

void CXmlDocument::EnterElement()
{
    if (m_currentPos == 0 || m_nodeType != NodeElement)
        return;
    m_parentPos = m_currentPos;
    m_currentPos = 0;
    m_nodeType = 0;
}

CString CXmlDocument::GetAttribute(const WCHAR* pName) const
{
    return GetAttributeAt(m_currentPos, pName);
}

CString CXmlDocument::GetAttributeAt(int position, const WCHAR* pName) const
{
    const PlainAttribute plain = FindPlainAt(position, pName);
    CString value;
    if (const int length = ShortLength(plain); length >= 0)
    {
        std::memcpy(value.GetBuffer(ShortUnits), m_pUnits + plain.first, ShortUnits * sizeof(WCHAR));
        value.ReleaseBufferSetLength(length);
        return value;
    }
    GetOtherAttribute(plain, position, pName, value);
    return value;
}

/// One that is no short plain one.
void CXmlDocument::GetOtherAttribute(PlainAttribute plain, int position, const WCHAR* pName, CString& value) const
{
    if (plain.outcome == PlainAttribute::Found && CopyLongValue(UnitsToTagEnd(plain, position), value))
        return;
    const std::basic_string_view<WCHAR> raw = RawUnits(plain, position, pName);
    value = DecodeEntities(raw.data(), static_cast<int>(raw.size()));
}

std::basic_string_view<WCHAR> CXmlDocument::GetRawAttribute(const WCHAR* pName) const
{
    return RawUnits(FindPlainAt(m_currentPos, pName), m_currentPos, pName);
}

CXmlDocument::RawAttribute CXmlDocument::FindAttribute(const WCHAR* pName) const
{
    const PlainAttribute plain = FindPlainAt(m_currentPos, pName);
    if (const int length = ShortLength(plain); length >= 0)
        return {{m_pUnits + plain.first, static_cast<size_t>(length)}, false};
    if (plain.outcome == PlainAttribute::Found)
        return {UnitsToTagEnd(plain, m_currentPos), true};
    return {RawUnits(plain, m_currentPos, pName), false};
}

/// The length of a value whose closing " stands among ShortUnits units, with no & in front of it; else -1. There is no
/// step for each unit, since the processor cannot foretell a length.
inline int CXmlDocument::ShortLength(PlainAttribute plain) const
{
    if (plain.outcome != PlainAttribute::Found || m_unitCount - plain.first < ShortUnits)
        return -1;
    const WCHAR* const pValue = m_pUnits + plain.first;
    const uint32_t stops = ShortStops(pValue);
    const int length = std::countr_zero(stops);
    return stops != 0 && pValue[length] == TEXT('"') ? length : -1;
}

PlainAttribute CXmlDocument::FindPlainAt(int position, const WCHAR* pName) const
{
    if (position == 0 || !IsInUse(position) || m_nodeType != NodeElement || pName == nullptr)
        return {PlainAttribute::Missing};
    return FindPlainAttribute(m_pUnits, m_unitCount, At(position).start + 1, pName);
}

/// The value up to its closing quote if the tag is plain, else what the tokens give.
std::basic_string_view<WCHAR> CXmlDocument::RawUnits(PlainAttribute plain, int position, const WCHAR* pName) const
{
    const WCHAR* const pText = m_pUnits;
    if (plain.outcome == PlainAttribute::Missing)
        return {};
    if (plain.outcome == PlainAttribute::Found)
    {
        const int end = FindUnit(pText, plain.first, m_unitCount, TEXT('"'));
        if (pText[end] == TEXT('"'))
            return {pText + plain.first, pText + end};
    }
    XmlScanner scanner{.next = At(position).start + 1, .text = pText};
    if (!ScanAttribute(scanner, pName, TagEnd(position), m_runOnSearches))
        return {};
    return {pText + scanner.first, static_cast<size_t>(std::max(scanner.last + 1 - scanner.first, 0))};
}

/// From the value on. Too few, if the length of the tag is beyond what a record holds.
std::basic_string_view<WCHAR> CXmlDocument::UnitsToTagEnd(PlainAttribute plain, int position) const
{
    return {m_pUnits + plain.first, static_cast<size_t>(std::max(TagEnd(position) - plain.first, 0))};
}

/// The offset after the start tag; less, if the length of the tag is beyond what a record holds.
int CXmlDocument::TagEnd(int position) const
{
    const XmlElementPosition& element = At(position);
    return element.start + static_cast<int>(element.tagLengths & StartTagLengthMask);
}
