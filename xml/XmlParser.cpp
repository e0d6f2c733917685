#include "platform/compiler.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNames.h"
#include "xml/XmlOpenNames.h"
#include "xml/fast/XmlTagIndex.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace
{
/// Fills the table with the elements of a text. A fault never stops it.
/// Handles common tags here: start tags, and end tags of the innermost open element. ReadNode handles everything else.
class CTreeBuilder
{
public:
    CTreeBuilder(CXmlDocument& document, XmlScanner& scanner, int length)
        : m_document(document), m_scanner(scanner), m_pText(scanner.text), m_length(length), m_tagIndex(m_pText, length)
    {
        m_walk.used = document.m_usedPositions;
        m_walk = WithRecords(m_walk);
    }

    void Build();

private:
    /// How far the walk over the text is. The loop over common tags works on a copy in registers: the compiler would
    /// reload a member after each store into a record.
    struct CWalk
    {
        int next = 0;      ///< offset at which reading goes on
        int used = 0;      ///< records in use
        int depth = 0;     ///< number of open elements
        int lastChild = 0; ///< last child so far of the innermost open element, 0: none

        // Where records are, until the table grows.
        XmlElementPosition* pFree = nullptr;      ///< the first free record
        XmlElementPosition* pEndOfFree = nullptr; ///< after the free ones that can be taken one by one
        XmlElementPosition* pParent = nullptr;    ///< the innermost open element
        XmlElementPosition* pLastChild = nullptr; ///< lastChild's, if there is one
    };

    int Innermost(const CWalk& walk) const { return m_open[static_cast<size_t>(walk.depth)]; }
    XmlElementPosition& At(int index) { return m_document.At(index); }

    void ReadCommonTags();
    bool ReadTag(CWalk& walk);
    bool ReadStartTag(CWalk& walk, const WCHAR* pTag);
    bool ReadEndTag(CWalk& walk, const WCHAR* pEndName);
    [[nodiscard]] bool StartElement(CWalk& walk, int length, bool isEmpty);
    void EndElement(CWalk& walk, int length);
    void LeaveElement(CWalk& walk);
    CWalk WithMoreRecords(CWalk walk);
    CWalk WithRecords(CWalk walk);

    void ReadOtherNode();
    void EndElementByName(int length);
    void EndText();
    int FindOpen(const WCHAR* pName, int length);
    bool IsNamed(int index, const WCHAR* pName, int length);
    COpenNames::Name NameOf(int index);
    CString NameText(int index) { return CString(NameOf(index).data(), static_cast<int>(NameOf(index).size())); }
    void CloseUnended(int heir);
    void CloseChildren();
    void HandOver(int index, int heir);
    template <typename MakeMessage>
    void RecordFault(int offset, MakeMessage makeMessage);

    CXmlDocument& m_document;
    XmlScanner& m_scanner;
    const WCHAR* const m_pText;
    const int m_length;
    CTagIndex m_tagIndex;
    CWalk m_walk;
    bool m_needsRecords = false; ///< StartElement found no free record
    std::vector<int> m_open =
        std::vector<int>(16); ///< open elements, outermost first, after record 0; the rest is room
    COpenNames m_openNames;
};

void CTreeBuilder::Build()
{
    for (;;)
    {
        ReadCommonTags();
        if (m_pText[m_walk.next] == TEXT('<'))
        {
            ReadOtherNode();
            continue;
        }
        // Text is not in the table.
        m_walk.next = FindUnit(m_pText, m_walk.next, m_length, TEXT('<'));
        if (m_pText[m_walk.next] == 0)
            break;
    }
    EndText();
    m_document.m_usedPositions = m_walk.used;
}

/// Reads common tags as long as they follow each other. The inner loop makes no calls, so the walk stays in registers.
VELTRANO_NO_INLINE void CTreeBuilder::ReadCommonTags()
{
    CWalk walk = m_walk;
    do
    {
        if (m_needsRecords)
            walk = WithMoreRecords(walk); // by value: a walk whose address is taken would not stay in registers
        while (ReadTag(walk))
        {
        }
    } while (m_needsRecords || m_tagIndex.Extend());
    m_walk = walk;
}

/// False: not a common tag, or the caller must get records or extend the index first.
inline bool CTreeBuilder::ReadTag(CWalk& walk)
{
    const WCHAR* const pTag = m_pText + walk.next;
    if (pTag[0] != TEXT('<'))
        return false;
    if (pTag[1] == TEXT('/'))
        return walk.depth != 0 && ReadEndTag(walk, pTag + 2);
    const bool isCommonStart = pTag[1] > TEXT('`'); // small letters; nothing above ` fails to start a name
    return (isCommonStart || StartsName(pTag[1])) && ReadStartTag(walk, pTag);
}

inline bool CTreeBuilder::ReadStartTag(CWalk& walk, const WCHAR* pTag)
{
    // <a> and <a/> need no search.
    if (pTag[2] == TEXT('>'))
        return StartElement(walk, 3, false);
    if (pTag[2] == TEXT('/') && pTag[3] == TEXT('>'))
        return StartElement(walk, 4, true);
    const int end = m_tagIndex.Find(walk.next + 2);
    if (end == CTagIndex::NotFound)
        return false;
    const int nameEnd = FindTagNameEnd(m_pText, walk.next + 2, m_length);
    if (IsIn(m_pText[nameEnd], XmlQuote)) // in a name a quote protects nothing, but the index does not know
        return false;
    return StartElement(walk, end + 1 - walk.next, IsEmptyElementTag(m_pText, nameEnd, end));
}

/// pEndName: after the </. False: not an end tag without white space that ends the innermost open element.
inline bool CTreeBuilder::ReadEndTag(CWalk& walk, const WCHAR* pEndName)
{
    const WCHAR* const pName = m_pText + walk.pParent->start + 1;
    int length = 0; // the NUL that ends the text differs from every unit before it, so this ends in the text
    for (; pEndName[length] != TEXT('>'); ++length)
        if (pEndName[length] != pName[length])
            return false;
    if (!IsIn(pName[length], EndsTagName))
        return false;
    EndElement(walk, length + 3);
    return true;
}

/// Adds the element of the start tag of that length. Until its end tag comes, its record is that of an unended element.
/// False: there is no free record.
inline bool CTreeBuilder::StartElement(CWalk& walk, int length, bool isEmpty)
{
    if (walk.pFree == walk.pEndOfFree) [[unlikely]]
    {
        m_needsRecords = true;
        return false;
    }
    constexpr int recordsAhead = 64; // waiting for their memory costs more than filling them
    _mm_prefetch(reinterpret_cast<const char*>(walk.pFree + recordsAhead), _MM_HINT_T0);

    const int index = walk.used++;
    XmlElementPosition& element = *walk.pFree++;
    const bool isFirst = walk.lastChild == 0;
    element = {.start = walk.next,
               .length = length,
               .tagLengths = static_cast<unsigned>(length) & StartTagLengthMask,
               .levelAndFlags = (static_cast<unsigned>(walk.depth) & LevelMask) | (isFirst ? FirstChildFlag : 0),
               .parent = Innermost(walk),
               .firstChild = 0,
               .nextSibling = 0,
               .prevSibling = isFirst ? index : walk.lastChild};
    if (isFirst)
        walk.pParent->firstChild = index;
    else
        walk.pLastChild->nextSibling = index;
    walk.next += length;
    walk.lastChild = index;
    walk.pLastChild = &element;
    if (isEmpty)
        return true;
    walk.pParent = &element;
    walk.lastChild = 0;
    ++walk.depth;
    m_open[static_cast<size_t>(walk.depth)] = index;
    return true;
}

/// Ends the innermost open element with an end tag of that length.
inline void CTreeBuilder::EndElement(CWalk& walk, int length)
{
    XmlElementPosition& element = *walk.pParent;
    element.length = walk.next - element.start + length;
    element.tagLengths |= static_cast<unsigned>(length) << StartTagLengthBits; // bits beyond the ten are lost
    if (element.firstChild != walk.lastChild)
        At(element.firstChild).prevSibling = walk.lastChild;
    walk.next += length;
    LeaveElement(walk);
}

/// Makes the innermost open element the last child of the one around it.
inline void CTreeBuilder::LeaveElement(CWalk& walk)
{
    walk.lastChild = Innermost(walk);
    walk.pLastChild = walk.pParent;
    --walk.depth;
    walk.pParent = &At(Innermost(walk));
}

/// Returns the walk with free records.
CTreeBuilder::CWalk CTreeBuilder::WithMoreRecords(CWalk walk)
{
    m_needsRecords = false;
    if (walk.used == m_document.m_capacity)
    {
        m_document.m_usedPositions = walk.used;
        m_document.ReserveRecords(0);
    }
    const auto depth = static_cast<size_t>(walk.depth);
    m_open.resize(std::max(m_open.size(), depth + std::max<size_t>(depth, 512)));
    return WithRecords(walk);
}

/// Returns the walk with the addresses of its records as they are now. Each free one that can be taken has room in
/// m_open.
CTreeBuilder::CWalk CTreeBuilder::WithRecords(CWalk walk)
{
    const int inSegment = RecordsPerSegment - (walk.used & (RecordsPerSegment - 1));
    const int room = static_cast<int>(m_open.size()) - walk.depth - 1;
    walk.pFree = &At(walk.used);
    walk.pEndOfFree = walk.pFree + std::min({m_document.m_capacity - walk.used, inSegment, room});
    walk.pParent = &At(Innermost(walk));
    walk.pLastChild = &At(walk.lastChild);
    return walk;
}

void CTreeBuilder::ReadOtherNode()
{
    XmlNodeEntry node;
    m_scanner.next = m_walk.next;
    switch (ReadNode(m_scanner, node))
    {
    case NodeElement:
        while (!StartElement(m_walk, node.length, (node.flags & EmptyElementFlag) != 0))
            m_walk = WithMoreRecords(m_walk);
        break;
    case NodeEndTag:
        EndElementByName(node.length);
        break;
    case NodeError:
        RecordFault(node.start, [&] { return node.name; });
        At(Innermost(m_walk)).levelAndFlags |= IllFormedFlag;
        break;
    default:
        break; // not in the table
    }
    m_walk.next = m_scanner.next;
}

/// Ends the innermost open element of the name that is the scanner's token, with an end tag of that length.
void CTreeBuilder::EndElementByName(int length)
{
    const int depth = FindOpen(m_pText + m_scanner.first, m_scanner.last - m_scanner.first + 1);
    if (depth == 0)
    {
        RecordFault(m_walk.next,
                    [this]
                    {
                        CString message;
                        message.Format(TEXT("No start tag for end tag '%s' at offset %d"),
                                       GetTokenText(m_scanner).GetString(), m_walk.next);
                        return message;
                    });
        At(Innermost(m_walk)).levelAndFlags |= IllFormedFlag;
        return;
    }
    if (depth != m_walk.depth)
        RecordFault(m_scanner.first - 1,
                    [this]
                    {
                        CString message;
                        message.Format(TEXT("End tag '%s' at offset %d does not match start tag '%s' at offset %d"),
                                       GetTokenText(m_scanner).GetString(), m_scanner.first - 1,
                                       NameText(Innermost(m_walk)).GetString(), At(Innermost(m_walk)).start);
                        return message;
                    });
    CloseUnended(m_open[static_cast<size_t>(depth)]);
    EndElement(m_walk, length);
}

/// Returns the depth of the innermost open element that an end tag of that name ends; 0 if there is none.
int CTreeBuilder::FindOpen(const WCHAR* pName, int length)
{
    constexpr int comparedFirst = 16; // nearly every search ends here
    int depth = m_walk.depth;
    const int outermostCompared = std::max(depth - comparedFirst, 0);
    while (depth > outermostCompared && !IsNamed(m_open[static_cast<size_t>(depth)], pName, length))
        --depth;
    if (depth != outermostCompared || depth == 0)
        return depth;
    const std::span<const int> open(m_open.data() + 1, static_cast<size_t>(m_walk.depth));
    m_openNames.Follow(open, [this](int index) { return NameOf(index); });
    return m_openNames.FindInnermost({pName, static_cast<size_t>(length)});
}

/// Whether an end tag of that name ends the element, as COpenNames has it.
bool CTreeBuilder::IsNamed(int index, const WCHAR* pName, int length)
{
    const WCHAR* const pOwnName = m_pText + At(index).start + 1;
    return wcsncmp(pName, pOwnName, static_cast<size_t>(length)) == 0 &&
           IsIn(pOwnName[length], EndsTagName | EndsRequestedName);
}

COpenNames::Name CTreeBuilder::NameOf(int index)
{
    const WCHAR* const pName = m_pText + At(index).start + 1;
    const WCHAR* pEnd = pName;
    while (!IsIn(*pEnd, EndsTagName))
        ++pEnd;
    return {pName, static_cast<size_t>(pEnd - pName)};
}

void CTreeBuilder::EndText()
{
    const XmlElementPosition& innermost = At(Innermost(m_walk));
    if (m_walk.depth != 0)
        RecordFault(innermost.start,
                    [&]
                    {
                        CString message;
                        message.Format(TEXT("Element '%s' at offset %d not ended"),
                                       NameText(Innermost(m_walk)).GetString(), innermost.start);
                        return message;
                    });
    CloseUnended(0);
    CloseChildren();
}

/// Closes the open elements inside heir, innermost first. heir takes over all their children.
void CTreeBuilder::CloseUnended(int heir)
{
    while (Innermost(m_walk) != heir)
    {
        CloseChildren();
        HandOver(Innermost(m_walk), heir);
        LeaveElement(m_walk);
    }
}

/// Stores the last child of the innermost open element in its first.
void CTreeBuilder::CloseChildren()
{
    if (const int firstChild = At(Innermost(m_walk)).firstChild)
        At(firstChild).prevSibling = m_walk.lastChild;
}

/// Moves the children of an unended element to the place after it among its siblings, of which it is the last; heir
/// becomes the parent of them all. Walks only the element's own children: what an inner unended element handed over
/// follows the last of them and already has its parent. So a deep damaged text costs no more than a flat one.
/// Moved elements keep their level and FirstChildFlag. heir's first child does not get the new last sibling, as nothing
/// more is appended to that chain.
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

/// Marks the document as ill-formed. Keeps the first message and its offset: after one broken tag nearly everything
/// looks broken.
template <typename MakeMessage>
void CTreeBuilder::RecordFault(int offset, MakeMessage makeMessage)
{
    At(0).levelAndFlags |= DocumentIllFormedFlag;
    if (!m_document.m_result.IsEmpty())
        return;
    m_document.m_result = makeMessage();
    m_document.m_faultOffset = offset;
}
} // namespace

int CXmlDocument::ParseElements(XmlScanner& scanner)
{
    m_result.Empty();
    scanner.next = 0;
    const int first = m_usedPositions;
    CTreeBuilder(*this, scanner, m_unitCount).Build();
    return m_usedPositions > first ? first : 0;
}
