#include "xml/XmlDocument.h"

#include <utility>
#include <vector>

namespace
{
/// Fills the table with the elements of a text. A fault never stops it: the first one leaves its message in m_result,
/// since behind one broken tag nearly everything looks broken.
class CTreeBuilder
{
public:
    CTreeBuilder(CXmlDocument& document, XmlScanner& scanner) : m_document(document), m_scanner(scanner), m_stack(6) {}

    void Build();

private:
    /// An open element; the slot is -1 for none.
    struct COpenElement
    {
        int slot;
        int index;
    };

    XmlNodeEntry& Node() { return m_stack[m_depth]; }
    XmlElementPosition& At(int index) { return m_document.At(index); }

    void StartElement();
    void EndElement();
    void EndText();
    COpenElement FindOpenElement();
    void Push(int index);
    int AddRecord();
    void Link(int index);
    void CloseUnended(int heir);
    void HandOver(int index, int heir);
    void RecordFault();
    CString& Result() { return m_document.m_result; }

    CXmlDocument& m_document;
    XmlScanner& m_scanner;
    /// The open elements, outermost first, and behind them, at m_depth, the entry of the node that is read next.
    std::vector<XmlNodeEntry> m_stack;
    size_t m_depth = 0;
    int m_parent = 0; ///< the innermost open element
};

void CTreeBuilder::Build()
{
    for (;;)
    {
        switch (ReadNode(m_scanner, Node()))
        {
        case NodeElement:
            StartElement();
            break;
        case NodeEndTag:
            EndElement();
            break;
        case NodeError:
            RecordFault();
            if (Result().IsEmpty())
                Result() = Node().name;
            break;
        case NodeEndOfText:
            EndText();
            return;
        default:
            break; // leaves no trace in the table
        }
    }
}

void CTreeBuilder::StartElement()
{
    const int index = AddRecord();
    Link(index);
    if ((Node().flags & EmptyElementFlag) == 0)
        Push(index);
}

void CTreeBuilder::Push(int index)
{
    m_parent = index;
    if (++m_depth == m_stack.size())
        m_stack.resize(m_stack.size() * 2 + 6);
}

/// length and tagLengths are at first those of an element that ends with its start tag. That is what an empty and an
/// unended one keep.
int CTreeBuilder::AddRecord()
{
    if (m_document.m_usedPositions == m_document.m_capacity)
        m_document.ReserveRecords(0);
    const int index = m_document.m_usedPositions++;
    At(index) = {.start = Node().start,
                 .length = Node().length,
                 .tagLengths = static_cast<unsigned>(Node().length) & StartTagLengthMask,
                 .levelAndFlags = static_cast<unsigned>(m_depth) & LevelMask,
                 .parent = m_parent,
                 .firstChild = 0,
                 .nextSibling = 0,
                 .prevSibling = index};
    return index;
}

/// Appends the element to its parent's children.
void CTreeBuilder::Link(int index)
{
    XmlElementPosition& parent = At(m_parent);
    if (parent.firstChild == 0)
    {
        parent.firstChild = index;
        At(index).levelAndFlags |= FirstChildFlag;
        return;
    }
    XmlElementPosition& first = At(parent.firstChild);
    At(index).prevSibling = first.prevSibling;
    At(first.prevSibling).nextSibling = index;
    first.prevSibling = index;
}

void CTreeBuilder::EndElement()
{
    const XmlNodeEntry& tag = Node();
    const COpenElement open = FindOpenElement();
    if (open.slot < 0)
    {
        RecordFault();
        if (Result().IsEmpty())
            Result().Format(TEXT("No start tag for end tag '%s' at offset %d"), GetTokenText(m_scanner).GetString(),
                            tag.start);
        return;
    }
    if (open.index != m_parent && Result().IsEmpty())
    {
        const XmlNodeEntry& unended = m_stack[m_depth - 1];
        Result().Format(TEXT("End tag '%s' at offset %d does not match start tag '%s' at offset %d"),
                        GetTokenText(m_scanner).GetString(), m_scanner.first - 1, unended.name.GetString(),
                        unended.start);
    }
    CloseUnended(open.index);

    XmlElementPosition& element = At(open.index);
    element.length = tag.start - element.start + tag.length;
    element.tagLengths |= static_cast<unsigned>(tag.length) << StartTagLengthBits; // bits beyond the ten fall off
    m_parent = element.parent;
    m_depth = static_cast<size_t>(open.slot);
}

/// The innermost open element that the end tag's name matches.
CTreeBuilder::COpenElement CTreeBuilder::FindOpenElement()
{
    const WCHAR* pName = m_scanner.text + m_scanner.first;
    const int length = m_scanner.last - m_scanner.first + 1;
    COpenElement open{static_cast<int>(m_depth) - 1, m_parent};
    while (open.slot >= 0 && !NameMatches(pName, length, m_stack[static_cast<size_t>(open.slot)].name))
        open = {open.slot - 1, At(open.index).parent};
    return open;
}

void CTreeBuilder::EndText()
{
    if (m_depth == 0)
        return;
    const XmlNodeEntry& unended = m_stack[m_depth - 1];
    if (Result().IsEmpty())
        Result().Format(TEXT("Element '%s' at offset %d not ended"), unended.name.GetString(), unended.start);
    CloseUnended(0);
}

/// Closes, from the innermost out, the open elements inside heir, which takes over all their children.
void CTreeBuilder::CloseUnended(int heir)
{
    if (m_parent != heir)
        At(0).levelAndFlags |= DocumentIllFormedFlag;
    while (m_parent != heir)
    {
        const int outer = At(m_parent).parent;
        HandOver(m_parent, heir);
        m_parent = outer;
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
