#include "xml/XmlDocument.h"

#include "xml/XmlAttributes.h"
#include "xml/XmlNames.h"

#include <algorithm>
#include <climits>
#include <new>

CXmlDocument::CXmlDocument()
{
    Parse();
}

CXmlDocument::CXmlDocument(std::basic_string_view<WCHAR> text)
{
    ParseInPlace(text);
}

bool CXmlDocument::SetText(const WCHAR* pText)
{
    m_text = pText;
    m_result.Empty();
    return Parse();
}

bool CXmlDocument::Parse()
{
    return ParseUnits({m_text.GetString(), static_cast<size_t>(m_text.GetLength())});
}

bool CXmlDocument::ParseInPlace(std::basic_string_view<WCHAR> text)
{
    if (text.size() > INT_MAX)
        throw std::bad_alloc(); // as a CString of that length
    m_text.Empty();
    m_result.Empty();
    return ParseUnits(text);
}

bool CXmlDocument::ParseUnits(std::basic_string_view<WCHAR> units)
{
    m_pUnits = units.data();
    m_unitCount = static_cast<int>(units.size());
    m_runOnSearches.Clear();
    m_faultOffset = -1;
    const CString previousResult = m_result;
    m_parentPos = m_currentPos = m_nodeType = 0;

    BuildTable();
    if (!previousResult.IsEmpty())
        m_result = m_result.IsEmpty() ? previousResult : previousResult + TEXT(", ") + m_result;

    const XmlElementPosition& document = At(0);
    return (document.levelAndFlags & DocumentIllFormedFlag) == 0 && document.firstChild != 0 &&
           At(document.firstChild).nextSibling == 0;
}

void CXmlDocument::BuildTable()
{
    m_usedPositions = 1;
    ReserveRecords(m_unitCount / 64 + 8); // a guess of an element for 64 units; the table grows if there are more
    At(0) = {};
    if (m_unitCount == 0)
        return SetFault(TEXT("Empty document"), 0);

    XmlScanner scanner{.text = m_pUnits};
    const int root = ParseElements(scanner);
    At(0).length = m_unitCount;
    if (root == 0)
        SetFault(TEXT("No root element"), 0);
    else if (const int sibling = At(root).nextSibling)
        SetFault(TEXT("Root element has sibling"), At(sibling).start);
}

/// Sets what is wrong with the document as a whole, which matters more than a fault inside it.
void CXmlDocument::SetFault(const WCHAR* pMessage, int offset)
{
    m_result = pMessage;
    m_faultOffset = offset;
}

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

/// Returns the index of the next element of that name after current, or from the first child of parent on if current
/// is 0; 0 if there is none.
int CXmlDocument::FindSibling(int parent, int current, const WCHAR* pName) const
{
    const int from = current != 0 ? current : parent;
    if (!IsInUse(from))
        return 0;
    int candidate = current != 0 ? At(from).nextSibling : At(from).firstChild;
    if (pName == nullptr || *pName == 0)
        return candidate;
    const XmlName name = FirstToken(pName);
    while (candidate != 0 && !HasName(candidate, name))
        candidate = At(candidate).nextSibling;
    return candidate;
}

/// As NameMatches, but finds the end of the token on the way. The token ends at more units than the name that the
/// parser compares with the end tag: <a=b> is found as a.
bool CXmlDocument::HasName(int index, XmlName name) const
{
    const int token = At(index).start + 1;
    const WCHAR* const pToken = m_pUnits + token;
    int length = name.length;
    if (m_unitCount - token < length || !EqualUnits(pToken, name.pUnits, length))
        return false;
    while (pToken[length] == name.pUnits[length] && !IsIn(pToken[length], EndsFoundName))
        ++length;
    return IsIn(pToken[length], EndsFoundName) && IsIn(name.pUnits[length], EndsRequestedName);
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
    const PlainAttribute plain = FindPlainAttribute(position, pName);
    CString value;
    if (const int length = ShortValueLength(plain); length >= 0)
    {
        std::memcpy(value.GetBuffer(ShortUnits), m_pUnits + plain.value, ShortUnits * sizeof(WCHAR));
        value.ReleaseBufferSetLength(length);
        return value;
    }
    GetLongAttribute(plain, position, pName, value);
    return value;
}

namespace
{
/// Copies a value up to its closing ". False if there is none among the units, or a & in front of it.
bool CopyOpenValue(std::basic_string_view<WCHAR> units, CString& value)
{
    const int room = static_cast<int>(units.size());
    const int length = VectorLoops().pCopyValue(units.data(), room, value.GetBuffer(room));
    if (length == room || units[static_cast<size_t>(length)] != TEXT('"'))
        return false;
    value.ReleaseBufferSetLength(length);
    if (length < room / 2) // other attributes follow
        value.FreeExtra();
    return true;
}
} // namespace

/// Any value but a short one without references.
void CXmlDocument::GetLongAttribute(PlainAttribute plain, int position, const WCHAR* pName, CString& value) const
{
    if (plain.outcome == PlainAttribute::Found && CopyOpenValue(OpenUnits(plain, position), value))
        return;
    const std::basic_string_view<WCHAR> units = ClosedUnits(plain, position, pName);
    value = DecodeEntities(units.data(), static_cast<int>(units.size()));
}

CXmlDocument::RawAttribute CXmlDocument::GetRawAttribute(const WCHAR* pName) const
{
    const PlainAttribute plain = FindPlainAttribute(m_currentPos, pName);
    if (plain.outcome == PlainAttribute::Found)
        return ReadPlainValue(plain, m_currentPos);
    return {ClosedUnits(plain, m_currentPos, pName), false};
}

/// plain: found.
CXmlDocument::RawAttribute CXmlDocument::ReadPlainValue(PlainAttribute plain, int position) const
{
    if (const int length = ShortValueLength(plain); length >= 0)
        return {{m_pUnits + plain.value, static_cast<size_t>(length)}, false};
    return {OpenUnits(plain, position), true};
}

PlainAttribute CXmlDocument::FindPlainAttribute(int position, const WCHAR* pName) const
{
    if (position == 0 || !IsInUse(position) || m_nodeType != NodeElement || pName == nullptr)
        return {PlainAttribute::Missing};
    const XmlName name = FirstToken(pName);
    if (name.length == 0 || pName[name.length] != 0)
        return {PlainAttribute::NotPlain};
    return VectorLoops().pFindAttribute(m_pUnits, m_unitCount, At(position).start + 1, StartTagEnd(position), name);
}

/// Returns the length of a value whose closing " is among ShortUnits units, with no & in front of it; else -1. Does not
/// loop over the units, as the length of a value cannot be predicted.
inline int CXmlDocument::ShortValueLength(PlainAttribute plain) const
{
    if (plain.outcome != PlainAttribute::Found || m_unitCount - plain.value < ShortUnits)
        return -1;
    const WCHAR* const pValue = m_pUnits + plain.value;
    const uint32_t stops = FindValueStops(pValue);
    const int length = std::countr_zero(stops);
    return stops != 0 && pValue[length] == TEXT('"') ? length : -1;
}

/// The value up to its closing quote if the tag is plain, else as ScanAttribute finds it.
std::basic_string_view<WCHAR> CXmlDocument::ClosedUnits(PlainAttribute plain, int position, const WCHAR* pName) const
{
    if (plain.outcome == PlainAttribute::Missing)
        return {};
    if (plain.outcome == PlainAttribute::Found)
    {
        const int end = FindUnit(m_pUnits, plain.value, m_unitCount, TEXT('"'));
        if (m_pUnits[end] == TEXT('"'))
            return {m_pUnits + plain.value, m_pUnits + end};
    }
    XmlScanner scanner{.next = At(position).start + 1, .text = m_pUnits};
    if (!ScanAttribute(scanner, pName, StartTagEnd(position), m_runOnSearches))
        return {};
    return {m_pUnits + scanner.first, static_cast<size_t>(std::max(scanner.last + 1 - scanner.first, 0))};
}

/// From the value to the end of the start tag.
std::basic_string_view<WCHAR> CXmlDocument::OpenUnits(PlainAttribute plain, int position) const
{
    return {m_pUnits + plain.value, static_cast<size_t>(std::max(StartTagEnd(position) - plain.value, 0))};
}

/// The offset after the start tag; less if the tag is too long for its record.
int CXmlDocument::StartTagEnd(int position) const
{
    const XmlElementPosition& element = At(position);
    return element.start + static_cast<int>(element.tagLengths & StartTagLengthMask);
}
