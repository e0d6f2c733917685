#include "platform/compiler.h"
#include "xml/XmlDocument.h"
#include "xml/XmlOpenNames.h"
#include "xml/fast/XmlTagEnds.h"

#include <algorithm>
#include <span>
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
          m_length(document.m_unitCount),
          m_tagEnds(m_pText, m_length),
          m_open(256, 0)
    {
        m_at.used = document.m_usedPositions;
        m_at = WithRecords(m_at);
    }

    void Build();

private:
    /// How far the walk is. The reading of common tags keeps it in a variable of its own: a member the compiler would
    /// fetch anew after every store into a record.
    struct Place
    {
        int next = 0;      ///< where reading goes on
        int used = 0;      ///< of the document's records
        int depth = 0;     ///< how many elements are open
        int lastChild = 0; ///< of the parent so far; its first child learns of it when the parent ends

        // Where these records lie, which growth of the table changes.
        XmlElementPosition* pFree = nullptr;      ///< the first not in use
        XmlElementPosition* pEndOfFree = nullptr; ///< behind those that follow in one piece, and have room in m_open
        XmlElementPosition* pParent = nullptr;    ///< the innermost open element
        XmlElementPosition* pLastChild = nullptr; ///< if there is one
    };

    int Innermost(const Place& at) const { return m_open[static_cast<size_t>(at.depth)]; }
    XmlElementPosition& At(int index) { return m_document.At(index); }
    const WCHAR* NameAt(int index) { return m_pText + At(index).start + 1; }
    COpenNames::Name NameOf(int index);
    CString TextOf(int index) { return CString(NameOf(index).data(), static_cast<int>(NameOf(index).size())); }
    CString& Result() { return m_document.m_result; }

    /// Asks for the records that come into use soon: to wait for their memory costs more than to fill them.
    static void FetchRecords(const XmlElementPosition* pFree)
    {
        constexpr int recordsAhead = 64;
        _mm_prefetch(reinterpret_cast<const char*>(pFree + recordsAhead), _MM_HINT_T0);
    }

    void ReadCommonTags();
    bool ReadStartTag(Place& at);
    int FindTagNameEnd(int tag, int end, uint64_t inside);
    bool EndsInSlash(int nameEnd, int end) const;
    bool ReadEndTag(Place& at);
    [[nodiscard]] bool StartElement(Place& at, int length, bool isEmpty);
    void EndElement(Place& at, int length);
    void GoUp(Place& at);
    Place WithMoreRecords(Place at);
    Place WithRecords(Place at);

    void ReadOtherNode();
    void EndElementByName(int length);
    void EndText();
    int FindOpen(const WCHAR* pName, int length);
    bool IsNamed(int index, const WCHAR* pName, int length);
    void CloseUnended(int heir);
    void CloseChain();
    void HandOver(int index, int heir);
    void RecordFault();

    CXmlDocument& m_document;
    XmlScanner& m_scanner;
    const WCHAR* const m_pText;
    const int m_length;
    CTagEndFinder m_tagEnds;
    Place m_at;
    int m_nameLength = 0;    ///< of the name that was looked for last, with the < in front of it
    uint64_t m_nameBits = 0; ///< as many ones
    bool m_isFull = false;   ///< an element found no free record
    int m_openRoom = 256;
    std::vector<int> m_open; ///< the open elements, outermost first, behind record 0; the rest is room
    COpenNames m_openNames;
};

void CTreeBuilder::Build()
{
    for (;;)
    {
        ReadCommonTags();
        if (m_pText[m_at.next] == TEXT('<'))
        {
            ReadOtherNode();
            continue;
        }
        // Text leaves no trace in the table.
        m_at.next = FindUnit(m_pText, m_at.next, m_length, TEXT('<'));
        if (m_pText[m_at.next] == 0)
            break;
    }
    EndText();
    m_document.m_usedPositions = m_at.used;
}

/// Start tags and end tags as they nearly always are, as long as they follow each other. The inner loop calls nothing:
/// what has to be called for ends it, so that the walk keeps its numbers in registers.
VELTRANO_NO_INLINE void CTreeBuilder::ReadCommonTags()
{
    Place at = m_at;
    do
    {
        if (m_isFull)
            at = WithMoreRecords(at);
        while (ReadStartTag(at) || ReadEndTag(at))
        {
        }
    } while (m_isFull || m_tagEnds.ReadOn());
    m_at = at;
}

/// False: none, or none that is plain to see, or something is missing that the loop around gets.
inline bool CTreeBuilder::ReadStartTag(Place& at)
{
    const WCHAR* const pTag = m_pText + at.next;
    if (pTag[0] != TEXT('<') || !StartsName(pTag[1]))
        return false;
    // The shortest tags are not worth a search.
    if (pTag[2] == TEXT('>'))
        return StartElement(at, 3, false);
    if (pTag[2] == TEXT('/') && pTag[3] == TEXT('>'))
        return StartElement(at, 4, true);
    const auto [end, inside] = m_tagEnds.Find(at.next + 2);
    if (end == CTagEndFinder::NotFound)
        return false;
    const int nameEnd = FindTagNameEnd(at.next, end, inside);
    if (IsXmlQuote(m_pText[nameEnd])) // there it protects nothing
        return false;
    return StartElement(at, end + 1 - at.next, EndsInSlash(nameEnd, end));
}

/// Where the name of that tag ends, which goes up to that end. Or the offset of a space behind it with no quote up to
/// there, which tells as much: tags that follow each other mostly have names of the same length.
/// inside: what Find gave.
inline int CTreeBuilder::FindTagNameEnd(int tag, int end, uint64_t inside)
{
    if (m_nameLength < end - tag && m_pText[tag + m_nameLength] == TEXT(' ') && (inside & m_nameBits) == 0)
        return tag + m_nameLength;
    const int nameEnd = FindNameEnd(m_pText, tag + 2, m_length);
    m_nameLength = std::min(nameEnd - tag, CTagEndFinder::InsideBits);
    m_nameBits = (uint64_t{1} << m_nameLength) - 1;
    return nameEnd;
}

/// A / before the > counts directly behind the name, white space or a quote only, so that the unquoted value of
/// "<a href=x/>" keeps its slash.
inline bool CTreeBuilder::EndsInSlash(int nameEnd, int end) const
{
    const int slash = end - 1;
    if (m_pText[slash] != TEXT('/'))
        return false;
    const WCHAR before = m_pText[slash - 1];
    return slash == nameEnd || IsXmlSpace(before) || IsXmlQuote(before);
}

/// An end tag without blanks that ends the innermost open element. False: none such.
inline bool CTreeBuilder::ReadEndTag(Place& at)
{
    const WCHAR* const pTag = m_pText + at.next;
    if (pTag[0] != TEXT('<') || pTag[1] != TEXT('/') || at.depth == 0)
        return false;
    const WCHAR* const pTagName = pTag + 2;
    const WCHAR* const pName = m_pText + at.pParent->start + 1;
    int length = 0;
    while (pTagName[length] == pName[length] && pName[length] != TEXT('>'))
        ++length;
    if (pTagName[length] != TEXT('>') || !EndsTagName(pName[length]))
        return false;
    EndElement(at, length + 3);
    return true;
}

/// Of the start tag of that length. length and tagLengths of the record are at first those of an element that ends with
/// its start tag. That is what an empty and an unended one keep. False: no record is free.
inline bool CTreeBuilder::StartElement(Place& at, int length, bool isEmpty)
{
    if (at.pFree == at.pEndOfFree) [[unlikely]]
    {
        m_isFull = true;
        return false;
    }
    FetchRecords(at.pFree);
    const int index = at.used++;
    XmlElementPosition& element = *at.pFree++;
    const bool isFirst = at.lastChild == 0;
    element = {.start = at.next,
               .length = length,
               .tagLengths = static_cast<unsigned>(length) & StartTagLengthMask,
               .levelAndFlags = (static_cast<unsigned>(at.depth) & LevelMask) | (isFirst ? FirstChildFlag : 0),
               .parent = Innermost(at),
               .firstChild = 0,
               .nextSibling = 0,
               .prevSibling = isFirst ? index : at.lastChild};
    if (isFirst)
        at.pParent->firstChild = index;
    else
        at.pLastChild->nextSibling = index;
    at.next += length;
    at.lastChild = index;
    at.pLastChild = &element;
    if (isEmpty)
        return true;
    at.pParent = &element;
    at.lastChild = 0;
    ++at.depth;
    m_open[static_cast<size_t>(at.depth)] = index;
    return true;
}

/// The innermost open element, with its end tag of that length.
inline void CTreeBuilder::EndElement(Place& at, int length)
{
    XmlElementPosition& element = *at.pParent;
    element.length = at.next - element.start + length;
    element.tagLengths |= static_cast<unsigned>(length) << StartTagLengthBits; // bits beyond the ten fall off
    if (element.firstChild != at.lastChild)
        At(element.firstChild).prevSibling = at.lastChild;
    at.next += length;
    GoUp(at);
}

/// From the children of the innermost open element to those of the one around it.
inline void CTreeBuilder::GoUp(Place& at)
{
    at.lastChild = Innermost(at);
    at.pLastChild = at.pParent;
    --at.depth;
    at.pParent = &At(Innermost(at));
}

CTreeBuilder::Place CTreeBuilder::WithMoreRecords(Place at)
{
    m_isFull = false;
    if (at.used == m_document.m_capacity)
    {
        m_document.m_usedPositions = at.used;
        m_document.ReserveRecords(0);
    }
    return WithRecords(at);
}

CTreeBuilder::Place CTreeBuilder::WithRecords(Place at)
{
    if (at.depth + 1 == m_openRoom)
        m_open.resize(static_cast<size_t>(m_openRoom *= 2));
    const auto free = m_document.FreeRecords(at.used);
    at.pFree = free.data();
    at.pEndOfFree = free.data() + std::min(free.size(), static_cast<size_t>(m_openRoom - at.depth - 1));
    at.pParent = &At(Innermost(at));
    at.pLastChild = &At(at.lastChild);
    return at;
}

void CTreeBuilder::ReadOtherNode()
{
    XmlNodeEntry node;
    m_scanner.next = m_at.next;
    switch (ReadNode(m_scanner, node))
    {
    case NodeElement:
        while (!StartElement(m_at, node.length, (node.flags & EmptyElementFlag) != 0))
            m_at = WithMoreRecords(m_at);
        break;
    case NodeEndTag:
        EndElementByName(node.length);
        break;
    case NodeError:
        RecordFault();
        if (Result().IsEmpty())
            Result() = node.name;
        break;
    default:
        break; // leaves no trace in the table
    }
    m_at.next = m_scanner.next;
}

/// The end tag of that length whose name is the scanner's token: of the innermost open element of that name.
void CTreeBuilder::EndElementByName(int length)
{
    const WCHAR* const pName = m_pText + m_scanner.first;
    const int nameLength = m_scanner.last - m_scanner.first + 1;
    const int depth = FindOpen(pName, nameLength);
    if (depth == 0)
    {
        RecordFault();
        if (Result().IsEmpty())
            Result().Format(TEXT("No start tag for end tag '%s' at offset %d"), GetTokenText(m_scanner).GetString(),
                            m_at.next);
        return;
    }
    if (depth != m_at.depth && Result().IsEmpty())
        Result().Format(TEXT("End tag '%s' at offset %d does not match start tag '%s' at offset %d"),
                        GetTokenText(m_scanner).GetString(), m_scanner.first - 1, TextOf(Innermost(m_at)).GetString(),
                        At(Innermost(m_at)).start);
    CloseUnended(m_open[static_cast<size_t>(depth)]);
    EndElement(m_at, length);
}

/// The place in m_open of the innermost open element of that name; 0: none.
int CTreeBuilder::FindOpen(const WCHAR* pName, int length)
{
    constexpr int triedFirst = 16; // where nearly every search ends
    int depth = m_at.depth;
    const int outermostTried = std::max(depth - triedFirst, 0);
    while (depth > outermostTried && !IsNamed(m_open[static_cast<size_t>(depth)], pName, length))
        --depth;
    if (depth != outermostTried || depth == 0)
        return depth;
    const std::span<const int> open(m_open.data() + 1, static_cast<size_t>(m_at.depth));
    m_openNames.Follow(open, [this](int index) { return NameOf(index); });
    return m_openNames.FindInnermost({pName, static_cast<size_t>(length)});
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

COpenNames::Name CTreeBuilder::NameOf(int index)
{
    const WCHAR* const pName = NameAt(index);
    int length = 0;
    while (!EndsTagName(pName[length]))
        ++length;
    return {pName, static_cast<size_t>(length)};
}

void CTreeBuilder::EndText()
{
    if (m_at.depth != 0 && Result().IsEmpty())
        Result().Format(TEXT("Element '%s' at offset %d not ended"), TextOf(Innermost(m_at)).GetString(),
                        At(Innermost(m_at)).start);
    CloseUnended(0);
    CloseChain();
}

/// Closes, from the innermost out, the open elements inside heir, which takes over all their children.
void CTreeBuilder::CloseUnended(int heir)
{
    if (Innermost(m_at) != heir)
        At(0).levelAndFlags |= DocumentIllFormedFlag;
    while (Innermost(m_at) != heir)
    {
        CloseChain();
        HandOver(Innermost(m_at), heir);
        GoUp(m_at);
    }
}

/// The parent's first child learns who is the last.
void CTreeBuilder::CloseChain()
{
    if (const int firstChild = At(Innermost(m_at)).firstChild)
        At(firstChild).prevSibling = m_at.lastChild;
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
    At(Innermost(m_at)).levelAndFlags |= IllFormedFlag;
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
