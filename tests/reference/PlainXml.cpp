#include "tests/reference/PlainXml.h"

#include <cstdlib>
#include <string_view>

namespace
{
using View = std::basic_string_view<WCHAR>;
constexpr View White = TEXT(" \t\n\r");
constexpr uint32_t FirstChildFlag = 0x80000;
constexpr uint32_t UnendedFlag = 0x100000;
constexpr uint32_t IllFormedFlag = 0x200000;
constexpr uint32_t DocumentIllFormedFlag = 0x800000;
constexpr uint32_t StartTagMask = 0x3FFFFF;

bool IsOneOf(WCHAR c, View set)
{
    return set.find(c) != View::npos;
}

// First offset, at or behind `from`, of a unit of the set or of the end of the text.
int32_t Find(const WCHAR* p, int32_t from, View set)
{
    while (p[from] != 0 && !IsOneOf(p[from], set))
        ++from;
    return from;
}

int32_t Skip(const WCHAR* p, int32_t from, View set)
{
    while (IsOneOf(p[from], set))
        ++from;
    return from;
}

// The `>` at or behind `from` whose units before it complete the terminator. Close to the text's start none counts.
int32_t FindTerminator(const WCHAR* p, int32_t from, View terminator)
{
    const auto n = static_cast<int32_t>(terminator.size());
    int32_t i = Find(p, from, TEXT(">"));
    while (p[i] != 0 && (i <= n || View(p + i - n + 1, n) != terminator))
        i = Find(p, i + 1, TEXT(">"));
    return i;
}

// The `>` outside quotes at or behind `from`, or a unit of the second set, inside quotes too.
int32_t FindUnquoted(const WCHAR* p, int32_t from, View set)
{
    WCHAR quote = 0;
    for (; p[from] != 0 && !IsOneOf(p[from], set) && (p[from] != TEXT('>') || quote != 0); ++from)
        if (IsOneOf(p[from], TEXT("\"'")) && (quote == 0 || quote == p[from]))
            quote = quote == 0 ? p[from] : 0;
    return from;
}

WString Number(int32_t value)
{
    const std::string digits = std::to_string(value);
    return WString(digits.begin(), digits.end());
}

bool NameMatches(const WString& token, const WString& name)
{
    return name.compare(0, token.size(), token) == 0 &&
           (name.size() == token.size() || IsOneOf(name[token.size()], TEXT(" =/[]")));
}

// As wcstol does with ASCII: no other unit counts as white space or digit. At most seven units, so nothing overflows.
int32_t ReadNumber(const WCHAR* p, int32_t length, int32_t base)
{
    std::string narrow;
    for (const WCHAR c : View(p, length))
        narrow += c < 0x80 ? static_cast<char>(c) : '?';
    return static_cast<int32_t>(std::strtol(narrow.c_str(), nullptr, base));
}
} // namespace

void CPlainXml::ReserveRecords(int32_t count)
{
    const auto used = static_cast<int32_t>(m_records.size());
    if (count == 0)
        count = used + used / 2;
    if (m_capacity >= count)
        return;
    const int32_t lastSegment = m_capacity == 0 ? 0 : (m_capacity - 1) / 65536;
    if ((count - 1) / 65536 > lastSegment + 1)
        count = (lastSegment + 2) * 65536;
    if (m_segmentSlots <= (count - 1) / 65536)
        m_segmentSlots = (count - 1) / 65536 * 2 + 4;
    m_capacity = count;
}

bool CPlainXml::SetText(const WCHAR* pText)
{
    m_text = pText == nullptr ? WString() : WString(pText);
    m_result.clear();
    return Parse();
}

bool CPlainXml::Parse()
{
    const WString previous = m_result;
    m_parentPos = m_currentPos = m_nodeType = 0;
    m_records.assign(1, CPlainRecord());
    ReserveRecords(static_cast<int32_t>(m_text.size()) / 64 + 8);
    ParseElements();
    m_records[0].length = static_cast<int32_t>(m_text.size());

    const int32_t root = m_records[0].firstChild;
    const bool isAlone = root != 0 && m_records[root].nextSibling == 0;
    if (m_text.empty())
        m_result = TEXT("Empty document");
    else if (root == 0)
        m_result = TEXT("No root element");
    else if (!isAlone)
        m_result = TEXT("Root element has sibling");
    if (!previous.empty())
        m_result = m_result.empty() ? previous : previous + TEXT(", ") + m_result;
    return isAlone && (m_records[0].levelAndFlags & DocumentIllFormedFlag) == 0;
}

void CPlainXml::RecordFault(const WString& message)
{
    m_records[0].levelAndFlags |= DocumentIllFormedFlag;
    if (m_result.empty())
        m_result = message;
}

void CPlainXml::ParseElements()
{
    const WString at = TEXT("' at offset ");
    std::vector<WString> names; // of the open elements, outermost first
    int32_t parent = 0;
    m_result.clear();
    CPlainNode node = ReadNode(0);
    for (; node.kind != CPlainNode::EndOfText; node = ReadNode(node.start + node.length))
    {
        if (node.kind == CPlainNode::Error)
        {
            RecordFault(node.name);
            m_records[parent].levelAndFlags |= IllFormedFlag;
        }
        else if (node.kind == CPlainNode::Element || node.kind == CPlainNode::EmptyElement)
        {
            AddElement(node, parent, static_cast<uint32_t>(names.size()));
            if (node.kind == CPlainNode::EmptyElement)
                continue;
            names.push_back(node.name);
            parent = static_cast<int32_t>(m_records.size()) - 1;
        }
        else if (node.kind == CPlainNode::EndTag)
        {
            int32_t match = parent;
            for (size_t depth = names.size(); depth > 0 && !NameMatches(node.name, names[depth - 1]); --depth)
                match = m_records[match].parent;
            if (match == 0)
            {
                RecordFault(TEXT("No start tag for end tag '") + node.name + at + Number(node.start));
                m_records[parent].levelAndFlags |= IllFormedFlag;
                continue;
            }
            m_records[match].length = node.start + node.length - m_records[match].start;
            m_records[match].tagLengths |= static_cast<uint32_t>(node.length) << 22;
            for (; parent != match; parent = m_records[parent].parent, names.pop_back())
            {
                CloseUnended(parent);
                RecordFault(TEXT("End tag '") + node.name + at + Number(node.start + 1) +
                            TEXT(" does not match start tag '") + names.back() + at + Number(m_records[parent].start));
            }
            parent = m_records[match].parent;
            names.pop_back();
        }
    }
    for (; parent != 0; parent = m_records[parent].parent, names.pop_back())
    {
        CloseUnended(parent);
        RecordFault(TEXT("Element '") + names.back() + at + Number(m_records[parent].start) + TEXT(" not ended"));
    }
}

void CPlainXml::AddElement(const CPlainNode& node, int32_t parent, uint32_t level)
{
    const auto index = static_cast<int32_t>(m_records.size());
    if (index == m_capacity)
        ReserveRecords(0);
    const uint32_t startTag = static_cast<uint32_t>(node.length) & StartTagMask;
    CPlainRecord record = {node.start, node.length, startTag, level & 0xFFFF, parent, 0, 0, index};
    if (const int32_t eldest = m_records[parent].firstChild; eldest != 0)
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
void CPlainXml::CloseUnended(int32_t element)
{
    CPlainRecord& unended = m_records[element];
    m_records[unended.parent].levelAndFlags |= unended.levelAndFlags & IllFormedFlag;
    unended.levelAndFlags = (unended.levelAndFlags & ~IllFormedFlag) | UnendedFlag;
    int32_t before = element;
    for (int32_t child = unended.firstChild; child != 0; child = m_records[child].nextSibling)
    {
        m_records[child].parent = unended.parent;
        m_records[child].prevSibling = before;
        m_records[before].nextSibling = child;
        before = child;
    }
    unended.firstChild = 0;
}

CPlainNode CPlainXml::ReadNode(int32_t start) const
{
    const WCHAR* p = m_text.c_str();
    CPlainNode node = {CPlainNode::Passed, start, 0, WString()};
    if (p[start] == 0)
        node.kind = CPlainNode::EndOfText;
    else if (p[start] != TEXT('<'))
        node.length = Find(p, start, TEXT("<")) - start;
    else
    {
        const int32_t end = ReadMarkup(start, false, node);
        node.length = end - start + (p[end] == TEXT('>') ? 1 : 0);
        if (p[end] == 0)
        {
            node.kind = CPlainNode::Error;
            node.name += TEXT(" at offset ") + Number(start) + TEXT(" unterminated");
        }
    }
    return node;
}

// Returns the offset of the markup's `>`, else of the `<` at which broken markup ends, else of the end of the text;
// then the node's name is what the unterminated thing is called.
int32_t CPlainXml::ReadMarkup(int32_t start, bool inDoctype, CPlainNode& node) const
{
    const WCHAR* p = m_text.c_str();
    const auto startsWith = [&](View text) { return View(m_text).substr(start, text.size()) == text; };
    const auto label = [&](const WCHAR* pLabel, int32_t end)
    {
        if (p[end] == 0)
            node.name = pLabel;
        return end;
    };
    const auto fail = [&](const WCHAR* pWhat, int32_t culprit)
    {
        node.kind = CPlainNode::Error;
        node.name = WString(TEXT("Incorrect ")) + pWhat + TEXT(" at offset ") + Number(node.start);
        return label(TEXT("tag"), p[culprit] == 0 ? culprit : FindUnquoted(p, culprit + 1, TEXT("<")));
    };
    node.kind = CPlainNode::Passed;

    if (startsWith(TEXT("<!--")))
        return label(TEXT("Comment"), FindTerminator(p, start + 4, TEXT("-->")));
    if (startsWith(TEXT("<!-")))
        return fail(TEXT("comment tag"), start + 3);
    if (startsWith(TEXT("<![C")) && !inDoctype)
        return label(TEXT("CDATA Section"), FindTerminator(p, start + 4, TEXT("]]>")));
    if (startsWith(TEXT("<![")) && !inDoctype)
        return fail(TEXT("tag"), start + 3);
    if (startsWith(TEXT("<!D")) && !inDoctype)
    {
        int32_t i = Find(p, start + 3, TEXT("<>"));
        while (p[i] == TEXT('<'))
        {
            i = ReadMarkup(i, true, node);
            if (p[i] == TEXT('<')) // broken markup at which the doctype breaks off
                return i;
            i = p[i] == 0 ? i : Find(p, i + 1, TEXT("<>"));
        }
        node.kind = CPlainNode::Passed;
        return label(TEXT("Doctype"), i);
    }
    if (startsWith(TEXT("<!E")) || startsWith(TEXT("<!A")) || startsWith(TEXT("<!N")))
        return label(TEXT("Doctype"), FindUnquoted(p, start + 3, View()));
    if (startsWith(TEXT("<!")))
        return fail(TEXT("! tag"), start + 2);
    if (startsWith(TEXT("<?")))
        return label(TEXT("Processing instruction"), FindTerminator(p, start + 2, TEXT("?>")));

    const bool isEndTag = startsWith(TEXT("</"));
    const int32_t nameStart = isEndTag ? start + 2 : start + 1;
    if (!isEndTag && (p[nameStart] <= TEXT('9') || IsOneOf(p[nameStart], TEXT(";<=>?@[\\]^`"))))
        return fail(TEXT("tag name character"), nameStart);
    const int32_t nameEnd = Find(p, nameStart, TEXT(" \t\n\r/>"));
    node.name = WString(p + nameStart, p + nameEnd);
    node.kind = isEndTag ? CPlainNode::EndTag : CPlainNode::Element;
    if (isEndTag)
        return label(TEXT("Element end tag"), Find(p, nameEnd, TEXT(">")));
    const int32_t end = FindUnquoted(p, nameEnd, View());
    const bool hasSlash = end > nameEnd && p[end - 1] == TEXT('/');
    if (hasSlash && (end - 1 == nameEnd || IsOneOf(p[end - 2], TEXT(" \t\n\r'\""))))
        node.kind = CPlainNode::EmptyElement;
    return label(TEXT("Element tag"), end);
}

bool CPlainXml::FindElement(const WCHAR* pName)
{
    const WCHAR* p = m_text.c_str();
    const WString name = pName == nullptr ? WString() : WString(pName);
    int32_t found = m_currentPos != 0 ? m_records[m_currentPos].nextSibling : m_records[m_parentPos].firstChild;
    for (; found != 0 && !name.empty(); found = m_records[found].nextSibling)
    {
        const int32_t begin = Skip(p, m_records[found].start + 1, White);
        if (NameMatches(WString(p + begin, p + Find(p, begin, TEXT(" \t\n\r<>=\\/?!"))), name))
            break;
    }
    if (found == 0)
        return false;
    m_parentPos = m_records[found].parent;
    m_currentPos = found;
    m_nodeType = 1;
    return true;
}

void CPlainXml::EnterElement()
{
    if (m_currentPos == 0 || m_nodeType != 1)
        return;
    m_parentPos = m_currentPos;
    m_currentPos = m_nodeType = 0;
}

WString CPlainXml::GetAttributeAt(int32_t position, const WCHAR* pName) const
{
    if (position == 0 || m_nodeType != 1 || pName == nullptr)
        return WString();
    int32_t first = 0;
    int32_t last = -1;
    const WCHAR* p = m_text.c_str();
    int32_t matchStart = 0;
    int32_t matchLast = 0; // 0 while no name has matched
    bool tagNameSeen = false;
    bool afterEqual = false;
    int32_t next = Skip(p, m_records[position].start + 1, White);
    for (; p[next] != 0; next = Skip(p, next, White))
    {
        const WCHAR c = p[next];
        const bool isQuoted = IsOneOf(c, TEXT("\"'"));
        first = isQuoted ? next + 1 : next;
        const View delimiters = isQuoted ? View(&c, 1) : View(afterEqual ? TEXT(" \t\n\r>") : TEXT("= \t\n\r>/?"));
        next = Find(p, first, delimiters);
        if (!isQuoted && next == first)
            ++next;
        last = next - 1;
        if (isQuoted && p[next] != 0)
            ++next;

        if (afterEqual && matchLast != 0)
            break;
        const bool isPassedOver = afterEqual || (isQuoted && matchLast == 0);
        afterEqual = !isPassedOver && c == TEXT('=');
        if (isPassedOver || afterEqual)
            continue;
        if (matchLast != 0 || IsOneOf(c, TEXT(">/?"))) // the matched name has no value, or the tag ends
            break;
        if (tagNameSeen && NameMatches(WString(p + first, p + next), pName))
        {
            matchStart = first;
            matchLast = last;
        }
        tagNameSeen = true;
    }
    if (matchLast == 0)
        return WString();
    if (!afterEqual) // without a value the name is the value
    {
        first = matchStart;
        last = matchLast;
    }
    return DecodeEntities(p + first, last - first + 1);
}

WString CPlainXml::DecodeEntities(const WCHAR* pSource, int32_t length)
{
    const View entities[] = {TEXT("<lt;"), TEXT("&amp;"), TEXT(">gt;"), TEXT("'apos;"), TEXT("\"quot;")};
    WString decoded;
    int32_t next = 0;
    for (int32_t i = 0; i < length; i = next)
    {
        const WCHAR* p = pSource + i;
        WCHAR output = *p;
        next = i + 1;
        if (*p == TEXT('&') && p[1] == TEXT('#'))
        {
            const int32_t base = p[2] == TEXT('x') ? 16 : 10;
            const int32_t begin = base == 16 ? 3 : 2;
            const int32_t end = Find(p, begin, TEXT(";")); // not held back by the length
            const int32_t value = p[end] != 0 && end - begin <= 7 ? ReadNumber(p + begin, end - begin, base) : 0;
            output = value != 0 ? static_cast<WCHAR>(value) : *p;
            next = value != 0 ? i + end + 1 : next;
        }
        else if (*p == TEXT('&'))
            for (const View entity : entities) // the character, then its name
                if (const auto size = static_cast<int32_t>(entity.size()) - 1;
                    i + size < length && View(p + 1, size) == entity.substr(1))
                {
                    output = entity[0];
                    next = i + 1 + size;
                }
        decoded += output;
    }
    return decoded;
}
