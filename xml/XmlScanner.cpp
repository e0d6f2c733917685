#include "xml/XmlScanner.h"

namespace
{
/// How a piece of markup ended.
enum class Ending
{
    Closed,   ///< as it should; the scanner stands behind it
    AtLess,   ///< a broken one, at the < of the next
    EndOfText ///< not at all
};

/// Reads one node. A node of a well-formed text is as XML has it; broken ones end early enough for the walk to go on.
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
    bool EndsInSlash(int nameEnd) const;
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

// A > ends a text too, unless it is the first unit behind the white space; the text behind it is a node of its own.
int CNodeReader::ReadText()
{
    while (IsXmlSpace(Unit()))
        ++m_next;
    if (Unit() == 0 || Unit() == TEXT('<'))
        return NodeWhitespace;
    ++m_next;
    while (Unit() != 0 && Unit() != TEXT('<'))
        if (m_pText[m_next++] == TEXT('>'))
            break;
    return NodeText;
}

/// From behind the <.
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

/// From behind the first unit of the name.
Ending CNodeReader::ReadElement()
{
    m_type = NodeElement;
    const int nameStart = m_next - 1;
    SkipName();
    const int nameEnd = m_next;
    m_entry.name.SetString(m_pText + nameStart, nameEnd - nameStart);
    const Ending ending = SkipQuotable();
    if (ending == Ending::Closed && EndsInSlash(nameEnd))
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

/// From behind "<!". A doctype holds no further doctype and no CDATA section.
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

/// From behind "<!-".
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

/// From behind "<![". The word that follows is not looked at beyond its first letter.
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

/// From behind "<!D". Markup inside is skipped as markup, so that a > in it does not end the doctype. ReadMarkup comes
/// back here at most once: inside a doctype no further one opens.
Ending CNodeReader::ReadDoctype()
{
    m_inDoctype = true;
    for (; Unit() != TEXT('>');)
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

/// From behind the unit that cannot stand there. What follows is skipped up to a > outside quotes or to the next <.
Ending CNodeReader::ReadBroken(const WCHAR* pWhat)
{
    m_type = NodeError;
    m_entry.name.Format(TEXT("Incorrect %s at offset %d"), pWhat, m_entry.start);
    return SkipQuotable();
}

void CNodeReader::SkipName()
{
    while (Unit() != 0 && !EndsTagName(Unit()))
        ++m_next;
}

/// Behind the next > outside quotes. Only a broken node ends at a <, and there quotes do not protect it.
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
        else if (unit == TEXT('"') || unit == TEXT('\''))
            quote = unit;
        else if (unit == TEXT('>'))
        {
            ++m_next;
            return Ending::Closed;
        }
    }
    return Ending::EndOfText;
}

/// Behind the next > before which the terminator's other units stand. They may be units of the opening: "<!-->" is a
/// comment. At the very start of the text, though, where the terminator just fits in front, a > does not count: "<?>"
/// there is no processing instruction.
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

/// Behind a closed start tag: a / before the > counts directly behind the name, white space or a quote only, so that
/// the unquoted value of "<a href=x/>" keeps its slash.
bool CNodeReader::EndsInSlash(int nameEnd) const
{
    const int slash = m_next - 2;
    if (slash < nameEnd || m_pText[slash] != TEXT('/'))
        return false;
    const WCHAR before = m_pText[slash - 1];
    return slash == nameEnd || IsXmlSpace(before) || before == TEXT('"') || before == TEXT('\'');
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
