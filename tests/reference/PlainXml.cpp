#include "tests/reference/PlainXml.h"

#include "xml/XmlAttributes.h"
#include "xml/XmlNames.h"

namespace
{
template <typename... Arguments>
CString Formatted(const WCHAR* pFormat, Arguments... arguments)
{
    CString text;
    text.Format(pFormat, arguments...);
    return text;
}
} // namespace

void CPlainXml::ReserveRecords(int count)
{
    const auto used = static_cast<int>(m_records.size());
    if (count == 0)
        count = used + used / 2;
    if (m_capacity >= count)
        return;
    const int lastSegment = m_capacity == 0 ? 0 : (m_capacity - 1) / 65536;
    if ((count - 1) / 65536 > lastSegment + 1)
        count = (lastSegment + 2) * 65536;
    if (m_segmentSlots <= (count - 1) / 65536)
        m_segmentSlots = (count - 1) / 65536 * 2 + 4;
    m_capacity = count;
}

bool CPlainXml::Parse()
{
    const CString previous = m_result;
    m_result.Empty();
    m_faultOffset = -1;
    m_parentPos = m_currentPos = m_nodeType = 0;
    m_records.assign(1, XmlElementPosition());
    ReserveRecords(m_text.GetLength() / 64 + 8);
    ParseElements();
    m_records[0].length = m_text.GetLength();

    const int root = m_records[0].firstChild;
    const int sibling = m_records[root].nextSibling;
    if (root == 0 || sibling != 0)
    {
        m_result = m_text.IsEmpty() ? TEXT("Empty document")
                   : root == 0      ? TEXT("No root element")
                                    : TEXT("Root element has sibling");
        m_faultOffset = m_records[sibling].start;
    }
    if (!previous.IsEmpty())
        m_result = m_result.IsEmpty() ? previous : previous + TEXT(", ") + m_result;
    return root != 0 && sibling == 0 && (m_records[0].levelAndFlags & DocumentIllFormedFlag) == 0;
}

void CPlainXml::RecordFault(const CString& message, int offset)
{
    m_records[0].levelAndFlags |= DocumentIllFormedFlag;
    if (!m_result.IsEmpty())
        return;
    m_result = message;
    m_faultOffset = offset;
}

void CPlainXml::ParseElements()
{
    std::vector<CString> names; // of the open elements, outermost first
    int parent = 0;
    XmlScanner scanner{.text = m_text.GetString()};
    XmlNodeEntry node;
    for (int type = ReadNode(scanner, node); type != NodeEndOfText; type = ReadNode(scanner, node))
    {
        if (type == NodeError)
        {
            RecordFault(node.name, node.start);
            m_records[parent].levelAndFlags |= IllFormedFlag;
        }
        else if (type == NodeElement)
        {
            AddElement(node.start, node.length, parent, names.size());
            if ((node.flags & EmptyElementFlag) != 0)
                continue;
            names.push_back(node.name);
            parent = static_cast<int>(m_records.size()) - 1;
        }
        else if (type == NodeEndTag)
        {
            const CString name = GetTokenText(scanner);
            int match = parent;
            for (size_t depth = names.size(); depth > 0 && !NameMatches(name, name.GetLength(), names[depth - 1]);
                 --depth)
                match = m_records[match].parent;
            if (match == 0)
            {
                RecordFault(Formatted(TEXT("No start tag for end tag '%s' at offset %d"), name.GetString(), node.start),
                            node.start);
                m_records[parent].levelAndFlags |= IllFormedFlag;
                continue;
            }
            m_records[match].length = node.start + node.length - m_records[match].start;
            m_records[match].tagLengths |= static_cast<unsigned>(node.length) << StartTagLengthBits;
            for (; parent != match; parent = m_records[parent].parent, names.pop_back())
            {
                CloseUnended(parent);
                RecordFault(Formatted(TEXT("End tag '%s' at offset %d does not match start tag '%s' at offset %d"),
                                      name.GetString(), node.start + 1, names.back().GetString(),
                                      m_records[parent].start),
                            node.start + 1);
            }
            parent = m_records[match].parent;
            names.pop_back();
        }
    }
    for (; parent != 0; parent = m_records[parent].parent, names.pop_back())
    {
        CloseUnended(parent);
        const int start = m_records[parent].start;
        RecordFault(Formatted(TEXT("Element '%s' at offset %d not ended"), names.back().GetString(), start), start);
    }
}

void CPlainXml::AddElement(int start, int length, int parent, size_t level)
{
    const auto index = static_cast<int>(m_records.size());
    if (index == m_capacity)
        ReserveRecords(0);
    XmlElementPosition record{start,
                              length,
                              static_cast<unsigned>(length) & StartTagLengthMask,
                              static_cast<unsigned>(level) & LevelMask,
                              parent,
                              0,
                              0,
                              index};
    if (const int eldest = m_records[parent].firstChild; eldest != 0)
    {
        record.prevSibling = m_records[eldest].prevSibling;
        m_records[record.prevSibling].nextSibling = index;
        m_records[eldest].prevSibling = index;
    }
    else
    {
        m_records[parent].firstChild = index;
        record.levelAndFlags |= FirstChildFlag;
    }
    m_records.push_back(record);
}

// The length stays that of the start tag. The children move up and follow their former parent, with the level and the
// flags that they had.
void CPlainXml::CloseUnended(int element)
{
    XmlElementPosition& unended = m_records[element];
    m_records[unended.parent].levelAndFlags |= unended.levelAndFlags & IllFormedFlag;
    unended.levelAndFlags = (unended.levelAndFlags & ~IllFormedFlag) | UnendedFlag;
    int before = element;
    for (int child = unended.firstChild; child != 0; child = m_records[child].nextSibling)
    {
        m_records[child].parent = unended.parent;
        m_records[child].prevSibling = before;
        m_records[before].nextSibling = child;
        before = child;
    }
    unended.firstChild = 0;
}

bool CPlainXml::FindElement(const WCHAR* pName)
{
    const WCHAR* const p = m_text;
    int found = m_currentPos != 0 ? m_records[m_currentPos].nextSibling : m_records[m_parentPos].firstChild;
    for (; found != 0 && pName != nullptr && *pName != 0; found = m_records[found].nextSibling)
    {
        const int begin = m_records[found].start + 1;
        int end = begin;
        while (!IsIn(p[end], EndsFoundName))
            ++end;
        if (NameMatches(p + begin, end - begin, pName))
            break;
    }
    if (found == 0)
        return false;
    m_parentPos = m_records[found].parent;
    m_currentPos = found;
    m_nodeType = NodeElement;
    return true;
}

void CPlainXml::EnterElement()
{
    if (m_currentPos == 0 || m_nodeType != NodeElement)
        return;
    m_parentPos = m_currentPos;
    m_currentPos = m_nodeType = 0;
}

CString CPlainXml::GetAttribute(int position, const WCHAR* pName) const
{
    XmlScanner scanner{.text = m_text.GetString()};
    scanner.next = m_records[position].start + 1;
    if (position == 0 || m_nodeType != NodeElement || pName == nullptr || !ScanAttribute(scanner, pName))
        return CString();
    return DecodeEntities(scanner.text + scanner.first, scanner.last - scanner.first + 1);
}
