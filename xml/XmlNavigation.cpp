#include "xml/XmlDocument.h"
#include "xml/XmlPlainAttributes.h"
#include "xml/XmlVector.h"

#include <algorithm>

namespace
{
bool EndsFoundName(WCHAR unit)
{
    return unit <= TEXT('\\') && (IsIn(UnitSet(TEXT(" \t\n\r<>=/?!")), unit) || unit == TEXT('\\'));
}

/// pValue: ShortUnits units, of which the first length are the value. All are copied, since the processor cannot
/// foretell a length.
CString ShortValue(const WCHAR* pValue, int length)
{
    CString value;
    const uint64_t references = CopyShort(pValue, value.GetBuffer(ShortUnits), TEXT('&'));
    if ((references & ((uint64_t{1} << length) - 1)) != 0)
        return DecodeEntities(pValue, length);
    value.ReleaseBufferSetLength(length);
    return value;
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
bool CXmlDocument::HasName(int index, const WCHAR* pName) const
{
    const WCHAR* pToken = m_text.GetString() + At(index).start + 1;
    int length = 0;
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
    const std::basic_string_view<WCHAR> raw = GetRawAttributeAt(position, pName);
    if (raw.empty())
        return CString();
    const int length = static_cast<int>(raw.size());
    const int first = static_cast<int>(raw.data() - m_text.GetString());
    if (length <= ShortUnits && m_text.GetLength() - first >= ShortUnits)
        return ShortValue(raw.data(), length);
    if (FindUnit(m_text, first, first + length, TEXT('&')) < first + length)
        return DecodeEntities(raw.data(), length);
    return CString(raw.data(), length);
}

std::basic_string_view<WCHAR> CXmlDocument::GetRawAttribute(const WCHAR* pName) const
{
    return GetRawAttributeAt(m_currentPos, pName);
}

std::basic_string_view<WCHAR> CXmlDocument::GetRawAttributeAt(int position, const WCHAR* pName) const
{
    if (position == 0 || !IsInUse(position) || m_nodeType != NodeElement || pName == nullptr)
        return {};
    const WCHAR* const pText = m_text.GetString();
    const int tagName = At(position).start + 1;
    const PlainAttribute plain = FindPlainAttribute(pText, m_text.GetLength(), tagName, pName);
    if (plain.outcome == PlainAttribute::Found)
        return {pText + plain.first, pText + plain.end};
    XmlScanner scanner{.next = tagName, .text = pText};
    if (plain.outcome == PlainAttribute::Missing || !ScanAttribute(scanner, pName))
        return {};
    return {pText + scanner.first, static_cast<size_t>(std::max(scanner.last + 1 - scanner.first, 0))};
}
