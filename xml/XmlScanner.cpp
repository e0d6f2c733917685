#include "xml/XmlScanner.h"

#include "xml/XmlNames.h"

namespace
{
/// How a piece of markup ended.
enum class Ending
{
    Closed,   ///< as it should; m_next is after it
    AtLess,   ///< broken, and m_next is at the < of the next node
    EndOfText ///< not at all
};

/// Reads one node: a node of a well-formed text by the rules of XML, a broken one so that reading can go on after it.
class CNodeReader
{
public:
    CNodeReader(XmlScanner& scanner, XmlNodeEntry& entry)
        : m_scanner(scanner), m_entry(entry), m_pText(scanner.text), m_next(scanner.next)
    {
    }

    int Read();
    int GetNext() const { return m_next; }

private:
    WCHAR Unit() const { return m_pText[m_next]; }

    int ReadText();
    Ending ReadMarkup();
    Ending ReadElement();
    Ending ReadEndTag();
    Ending ReadProcessingInstruction();
    Ending ReadDeclaration();
    Ending ReadComment();
    Ending ReadCData();
    Ending ReadDoctype();
    Ending ReadBroken(const WCHAR* pWhat);

    void SkipName();
    Ending SkipQuotable();
    Ending SkipPast(const WCHAR* pTerminator);
    const WCHAR* UnterminatedLabel() const;

    XmlScanner& m_scanner;
    XmlNodeEntry& m_entry;
    const WCHAR* m_pText;
    int m_next;
    int m_type = NodeError;
    bool m_inDoctype = false;
};

int CNodeReader::Read()
{
    if (Unit() == 0)
        return NodeEndOfText;
    if (Unit() != TEXT('<'))
        return ReadText();
    ++m_next;
    if (ReadMarkup() != Ending::EndOfText)
        return m_type;
    m_entry.name.Format(TEXT("%s at offset %d unterminated"), UnterminatedLabel(), m_entry.start);
    return NodeError;
}

// A > ends the text too, unless it is the first unit after the white space; what follows is another node.
int CNodeReader::ReadText()
{
    while (IsIn(Unit(), XmlSpace))
        ++m_next;
    if (Unit() == 0 || Unit() == TEXT('<'))
        return NodeWhitespace;
    ++m_next;
    while (Unit() != 0 && Unit() != TEXT('<'))
        if (m_pText[m_next++] == TEXT('>'))
            break;
    return NodeText;
}

/// Continues after the <.
Ending CNodeReader::ReadMarkup()
{
    const WCHAR unit = Unit();
    if (unit == 0)
        return Ending::EndOfText;
    ++m_next;
    if (StartsName(unit))
        return ReadElement();
    switch (unit)
    {
    case TEXT('/'):
        return ReadEndTag();
    case TEXT('?'):
        return ReadProcessingInstruction();
    case TEXT('!'):
        return ReadDeclaration();
    default:
        return ReadBroken(TEXT("tag name character"));
    }
}

/// Continues after the first unit of the name.
Ending CNodeReader::ReadElement()
{
    m_type = NodeElement;
    const int nameStart = m_next - 1;
    SkipName();
    const int nameEnd = m_next;
    m_entry.name.SetString(m_pText + nameStart, nameEnd - nameStart);
    const Ending ending = SkipQuotable();
    if (ending == Ending::Closed && IsEmptyElementTag(m_pText, nameEnd, m_next - 1))
        m_entry.flags |= EmptyElementFlag;
    return ending;
}

Ending CNodeReader::ReadEndTag()
{
    m_type = NodeEndTag;
    const int nameStart = m_next;
    SkipName();
    if (Unit() == 0)
        return Ending::EndOfText;
    m_scanner.first = nameStart;
    m_scanner.last = m_next - 1;
    return SkipPast(TEXT(">"));
}

Ending CNodeReader::ReadProcessingInstruction()
{
    m_type = NodeProcessingInstruction;
    const int nameStart = m_next;
    SkipName();
    m_entry.name.SetString(m_pText + nameStart, m_next - nameStart);
    return SkipPast(TEXT("?>"));
}

/// Continues after "<!". A doctype holds no further doctype and no CDATA section.
Ending CNodeReader::ReadDeclaration()
{
    const WCHAR unit = Unit();
    if (unit == 0)
        return Ending::EndOfText;
    ++m_next;
    switch (unit)
    {
    case TEXT('-'):
        return ReadComment();
    case TEXT('['):
        return m_inDoctype ? ReadBroken(TEXT("! tag")) : ReadCData();
    case TEXT('D'):
        return m_inDoctype ? ReadBroken(TEXT("! tag")) : ReadDoctype();
    case TEXT('E'):
    case TEXT('A'):
    case TEXT('N'):
        m_type = NodeDoctype;
        return SkipQuotable();
    default:
        return ReadBroken(TEXT("! tag"));
    }
}

/// Continues after "<!-".
Ending CNodeReader::ReadComment()
{
    const WCHAR unit = Unit();
    if (unit == 0)
        return Ending::EndOfText;
    ++m_next;
    if (unit != TEXT('-'))
        return ReadBroken(TEXT("comment tag"));
    m_type = NodeComment;
    return SkipPast(TEXT("-->"));
}

/// Continues after "<![". Of the word that follows only the first letter counts.
Ending CNodeReader::ReadCData()
{
    const WCHAR unit = Unit();
    if (unit == 0)
        return Ending::EndOfText;
    ++m_next;
    if (unit != TEXT('C'))
        return ReadBroken(TEXT("tag"));
    m_type = NodeCData;
    return SkipPast(TEXT("]]>"));
}

/// Continues after "<!D". Skips markup inside as markup, so that a > in it does not end the doctype. ReadMarkup calls
/// this again at most once, as no doctype opens inside a doctype.
Ending CNodeReader::ReadDoctype()
{
    m_inDoctype = true;
    while (Unit() != TEXT('>'))
    {
        if (Unit() == 0)
            return Ending::EndOfText;
        if (m_pText[m_next++] != TEXT('<'))
            continue;
        const Ending inner = ReadMarkup();
        if (inner != Ending::Closed)
            return inner;
    }
    ++m_next;
    m_type = NodeDoctype;
    return Ending::Closed;
}

/// Continues after the unit that is not allowed there. Skips what follows up to a > outside quotes or to the next <.
Ending CNodeReader::ReadBroken(const WCHAR* pWhat)
{
    m_type = NodeError;
    m_entry.name.Format(TEXT("Incorrect %s at offset %d"), pWhat, m_entry.start);
    return SkipQuotable();
}

void CNodeReader::SkipName()
{
    while (!IsIn(Unit(), EndsTagName))
        ++m_next;
}

/// Skips to after the next > outside quotes. A broken node, and only that, also ends at a <, inside quotes or not.
Ending CNodeReader::SkipQuotable()
{
    WCHAR quote = 0;
    for (; Unit() != 0; ++m_next)
    {
        const WCHAR unit = Unit();
        if (unit == TEXT('<') && m_type == NodeError)
            return Ending::AtLess;
        if (quote != 0)
            quote = unit == quote ? WCHAR{0} : quote;
        else if (IsIn(unit, XmlQuote))
            quote = unit;
        else if (unit == TEXT('>'))
        {
            ++m_next;
            return Ending::Closed;
        }
    }
    return Ending::EndOfText;
}

/// Skips to after the next > that completes the terminator. The units in front of the > may belong to the opening:
/// "<!-->" is a comment. But a > so near the start of the text that the terminator has only just room does not count:
/// "<?>" is no processing instruction there.
Ending CNodeReader::SkipPast(const WCHAR* pTerminator)
{
    const int length = static_cast<int>(wcslen(pTerminator));
    for (; Unit() != 0; ++m_next)
    {
        if (Unit() != TEXT('>') || m_next <= length)
            continue;
        if (wcsncmp(m_pText + m_next + 1 - length, pTerminator, static_cast<size_t>(length)) != 0)
            continue;
        ++m_next;
        return Ending::Closed;
    }
    return Ending::EndOfText;
}

const WCHAR* CNodeReader::UnterminatedLabel() const
{
    if (m_inDoctype)
        return TEXT("Doctype");
    switch (m_type)
    {
    case NodeDoctype:
        return TEXT("Doctype");
    case NodeElement:
        return TEXT("Element tag");
    case NodeEndTag:
        return TEXT("Element end tag");
    case NodeCData:
        return TEXT("CDATA Section");
    case NodeProcessingInstruction:
        return TEXT("Processing instruction");
    case NodeComment:
        return TEXT("Comment");
    default:
        return TEXT("tag");
    }
}
} // namespace

int ReadNode(XmlScanner& scanner, XmlNodeEntry& entry)
{
    entry.start = scanner.next;
    entry.flags = 0;
    CNodeReader reader(scanner, entry);
    entry.nodeType = reader.Read();
    scanner.next = reader.GetNext();
    entry.length = scanner.next - entry.start;
    return entry.nodeType;
}

CString GetTokenText(const XmlScanner& scanner)
{
    if (scanner.first > scanner.last)
        return CString();
    return CString(scanner.text + scanner.first, scanner.last - scanner.first + 1);
}
