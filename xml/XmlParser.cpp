#include "xml/XmlDocument.h"
#include "xml/XmlVector.h"

#include <utility>
#include <vector>

namespace
{
/// Fills the table with the elements of a text. A fault never stops it: the first one leaves its message in m_result,
/// since behind one broken tag nearly everything looks broken.
/// Start tags and end tags as they nearly always are it reads itself; whatever else stands at a < it leaves to
/// ReadNode.
class CTreeBuilder
{
public:
    CTreeBuilder(CXmlDocument& document, XmlScanner& scanner)
        : m_document(document),
          m_scanner(scanner),
          m_pText(scanner.text),
          m_length(document.m_text.GetLength()),
          m_tagEnds(m_pText, m_length)
    {
    }

    void Build();

private:
    XmlElementPosition& At(int index) { return m_document.At(index); }
    const WCHAR* NameAt(int index) { return m_pText + At(index).start + 1; }
    CString NameOf(int index);

    bool ReadStartTag();
    bool IsInName(int quote) const;
    bool EndsInSlash(int end) const;
    bool ReadEndTag();
    void ReadOtherNode();

    void StartElement(int length, bool isEmpty);
    void EndElement(int index, int length);
    void CloseChain();
    void EndElementByName(int start, int length);
    void EndText();
    bool IsNamed(int index, const WCHAR* pName, int length);
    void CloseUnended(int heir);
    void HandOver(int index, int heir);
    void RecordFault();
    CString& Result() { return m_document.m_result; }

    CXmlDocument& m_document;
    XmlScanner& m_scanner;
    const WCHAR* m_pText;
    int m_length;
    CTagEndFinder m_tagEnds;
    int m_next = 0;          ///< where reading goes on
    std::vector<int> m_open; ///< the open elements, outermost first
    int m_parent = 0;        ///< the innermost of them
    int m_lastChild = 0;     ///< of the parent, so far; its first child learns of it when the parent ends
};

void CTreeBuilder::Build()
{
    for (;;)
    {
        // Text leaves no trace in the table.
        if (m_pText[m_next] != TEXT('<'))
            m_next = FindUnit(m_pText, m_next, m_length, TEXT('<'));
        if (m_pText[m_next] == 0)
            return EndText();
        if (!ReadStartTag() && !ReadEndTag())
            ReadOtherNode();
    }
}

/// False: none, or none that is plain to see.
bool CTreeBuilder::ReadStartTag()
{
    const WCHAR* const pTag = m_pText + m_next;
    if (!StartsName(pTag[1]))
        return false;
    if (pTag[2] == TEXT('>'))
    {
        StartElement(3, false);
        return true;
    }
    if (pTag[2] == TEXT('/') && pTag[3] == TEXT('>'))
    {
        StartElement(4, true);
        return true;
    }
    const int end = m_tagEnds.Find(m_next + 2);
    if (end == CTagEndFinder::NotFound)
        return false;
    const int quote = m_tagEnds.GetFirstQuote();
    if (quote != CTagEndFinder::NotFound && quote < end && IsInName(quote))
        return false;
    StartElement(end + 1 - m_next, EndsInSlash(end));
    return true;
}

/// Whether a quote in the tag at m_next is part of the tag's name, where it protects nothing.
bool CTreeBuilder::IsInName(int quote) const
{
    while (quote > m_next && !EndsTagName(m_pText[quote]))
        --quote;
    return quote == m_next;
}

/// A / before the > counts directly behind the name, white space or a quote only, so that the unquoted value of
/// "<a href=x/>" keeps its slash.
bool CTreeBuilder::EndsInSlash(int end) const
{
    const int slash = end - 1;
    if (m_pText[slash] != TEXT('/'))
        return false;
    const WCHAR before = m_pText[slash - 1];
    if (IsXmlSpace(before) || before == TEXT('"') || before == TEXT('\''))
        return true;
    int nameEnd = m_next + 2;
    while (!EndsTagName(m_pText[nameEnd]))
        ++nameEnd;
    return nameEnd == slash;
}

/// An end tag without blanks that ends the innermost open element. False: none such.
bool CTreeBuilder::ReadEndTag()
{
    if (m_pText[m_next + 1] != TEXT('/') || m_open.empty())
        return false;
    const WCHAR* const pTagName = m_pText + m_next + 2;
    const WCHAR* const pName = NameAt(m_parent);
    int length = 0;
    while (pTagName[length] == pName[length] && !EndsTagName(pName[length]))
        ++length;
    if (pTagName[length] != TEXT('>') || !EndsTagName(pName[length]))
        return false;
    EndElement(m_parent, length + 3);
    m_next += length + 3;
    return true;
}

void CTreeBuilder::ReadOtherNode()
{
    XmlNodeEntry node;
    m_scanner.next = m_next;
    switch (ReadNode(m_scanner, node))
    {
    case NodeElement:
        StartElement(node.length, (node.flags & EmptyElementFlag) != 0);
        break;
    case NodeEndTag:
        EndElementByName(node.start, node.length);
        break;
    case NodeError:
        RecordFault();
        if (Result().IsEmpty())
            Result() = node.name;
        break;
    default:
        break; // leaves no trace in the table
    }
    m_next = m_scanner.next;
}

/// Of the start tag at m_next, of that length. length and tagLengths of the record are at first those of an element
/// that ends with its start tag. That is what an empty and an unended one keep.
void CTreeBuilder::StartElement(int length, bool isEmpty)
{
    if (m_document.m_usedPositions == m_document.m_capacity)
        m_document.ReserveRecords(0);
    const int index = m_document.m_usedPositions++;
    const bool isFirst = m_lastChild == 0;
    At(index) = {.start = m_next,
                 .length = length,
                 .tagLengths = static_cast<unsigned>(length) & StartTagLengthMask,
                 .levelAndFlags = (static_cast<unsigned>(m_open.size()) & LevelMask) | (isFirst ? FirstChildFlag : 0),
                 .parent = m_parent,
                 .firstChild = 0,
                 .nextSibling = 0,
                 .prevSibling = isFirst ? index : m_lastChild};
    if (isFirst)
        At(m_parent).firstChild = index;
    else
        At(m_lastChild).nextSibling = index;
    m_lastChild = index;
    m_next += length;
    if (isEmpty)
        return;
    m_open.push_back(index);
    m_parent = index;
    m_lastChild = 0;
}

/// The innermost open element, with an end tag of that length at m_next.
void CTreeBuilder::EndElement(int index, int length)
{
    CloseChain();
    XmlElementPosition& element = At(index);
    element.length = m_next - element.start + length;
    element.tagLengths |= static_cast<unsigned>(length) << StartTagLengthBits; // bits beyond the ten fall off
    m_open.pop_back();
    m_parent = element.parent;
    m_lastChild = index;
}

/// The parent's first child learns who is the last.
void CTreeBuilder::CloseChain()
{
    if (const int firstChild = At(m_parent).firstChild)
        At(firstChild).prevSibling = m_lastChild;
}

/// The end tag at start whose name is the scanner's token: of the innermost open element of that name.
void CTreeBuilder::EndElementByName(int start, int length)
{
    const WCHAR* const pName = m_pText + m_scanner.first;
    const int nameLength = m_scanner.last - m_scanner.first + 1;
    size_t depth = m_open.size();
    while (depth > 0 && !IsNamed(m_open[depth - 1], pName, nameLength))
        --depth;
    if (depth == 0)
    {
        RecordFault();
        if (Result().IsEmpty())
            Result().Format(TEXT("No start tag for end tag '%s' at offset %d"), GetTokenText(m_scanner).GetString(),
                            start);
        return;
    }
    const int index = m_open[depth - 1];
    if (index != m_parent && Result().IsEmpty())
        Result().Format(TEXT("End tag '%s' at offset %d does not match start tag '%s' at offset %d"),
                        GetTokenText(m_scanner).GetString(), m_scanner.first - 1, NameOf(m_parent).GetString(),
                        At(m_parent).start);
    CloseUnended(index);
    EndElement(index, length);
}

/// As NameMatches has it, with the name in the element's start tag. It is no NUL that ends this one.
bool CTreeBuilder::IsNamed(int index, const WCHAR* pName, int length)
{
    const WCHAR* const pOwnName = NameAt(index);
    if (wcsncmp(pName, pOwnName, static_cast<size_t>(length)) != 0)
        return false;
    const WCHAR behind = pOwnName[length];
    return EndsTagName(behind) || behind == TEXT('=') || behind == TEXT('[') || behind == TEXT(']');
}

CString CTreeBuilder::NameOf(int index)
{
    const WCHAR* const pName = NameAt(index);
    int length = 0;
    while (!EndsTagName(pName[length]))
        ++length;
    return CString(pName, length);
}

void CTreeBuilder::EndText()
{
    if (!m_open.empty() && Result().IsEmpty())
        Result().Format(TEXT("Element '%s' at offset %d not ended"), NameOf(m_parent).GetString(), At(m_parent).start);
    CloseUnended(0);
    CloseChain();
}

/// Closes, from the innermost out, the open elements inside heir, which takes over all their children.
void CTreeBuilder::CloseUnended(int heir)
{
    if (m_parent != heir)
        At(0).levelAndFlags |= DocumentIllFormedFlag;
    while (m_parent != heir)
    {
        CloseChain();
        HandOver(m_parent, heir);
        m_lastChild = m_parent;
        m_open.pop_back();
        m_parent = m_open.empty() ? 0 : m_open.back();
    }
}
/// Makes an unended element childless: its children follow it among its siblings. It is the last of these, and heir
/// will be the parent of them all. Only its own children are walked: what an inner unended element handed over hangs
/// behind the last of them, and has its parent already. So a deep damaged text costs no more than a flat one.
/// Moved elements keep level and FirstChildFlag, and heir's first child does not learn of the new last sibling: nothing
/// is appended to that chain any more.
void CTreeBuilder::HandOver(int index, int heir)
{
    XmlElementPosition& element = At(index);
    element.levelAndFlags |= UnendedFlag;
    if ((element.levelAndFlags & IllFormedFlag) != 0)
    {
        element.levelAndFlags &= ~IllFormedFlag;
        At(heir).levelAndFlags |= IllFormedFlag;
    }

    const int firstChild = std::exchange(element.firstChild, 0);
    if (firstChild == 0)
        return;
    const int lastChild = std::exchange(At(firstChild).prevSibling, index);
    element.nextSibling = firstChild;
    for (int child = firstChild; child != lastChild; child = At(child).nextSibling)
        At(child).parent = heir;
    At(lastChild).parent = heir;
}

void CTreeBuilder::RecordFault()
{
    At(0).levelAndFlags |= DocumentIllFormedFlag;
    At(m_parent).levelAndFlags |= IllFormedFlag;
}
} // namespace

int CXmlDocument::ParseElements(XmlScanner& scanner)
{
    m_result.Empty();
    scanner.next = 0;
    const int first = m_usedPositions;
    CTreeBuilder(*this, scanner).Build();
    return m_usedPositions > first ? first : 0;
}
