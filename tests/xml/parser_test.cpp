#include "tests/xml/Readable.h"

#include <cstdlib>
#include <cstring>
#include <sstream>

namespace
{
/// Each node as "type@start+length", with / for an empty element, and behind it the name or message.
std::string Nodes(const std::string& ascii)
{
    const CString text = Wide(ascii);
    XmlScanner scanner{.text = text.GetString()};
    XmlNodeEntry node;
    std::ostringstream nodes;
    while (ReadNode(scanner, node) != NodeEndOfText)
    {
        const bool isEmpty = (node.flags & EmptyElementFlag) != 0 && node.nodeType == NodeElement;
        nodes << node.nodeType << "@" << node.start << "+" << node.length << (isEmpty ? "/" : "");
        if (node.nodeType == NodeEndTag)
            nodes << "[" << Readable(GetTokenText(scanner)) << "]";
        else if (std::abs(node.nodeType) == NodeElement || node.nodeType == NodeProcessingInstruction)
            nodes << "[" << Readable(node.name) << "]"; // of an error, too
        nodes << " ";
    }
    return nodes.str();
}
} // namespace

TEST(NodeReader, CutsTheTextIntoNodes)
{
    const struct
    {
        const char* pText;
        const char* pNodes;
    } rows[] = {
        {"", ""},
        {"a>b<c/>", "2@0+2 2@2+1 1@3+4/[c] "},
        {" >x<a/b>\t", "2@0+3 1@3+5[a] 4@8+1 "},
        {"<a b=\"'>\" c='\">'></a x='>", "1@0+17[a] 0@17+8[a] "},
        {"<a<b></a<b></>", "1@0+5[a<b] 0@5+6[a<b] 0@11+3[] "},
        // a / makes an empty element only behind the name, white space or a quote
        {"<a/><a /><a b='c'/><a b=\"c\"/>", "1@0+4/[a] 1@4+5/[a] 1@9+10/[a] 1@19+10/[a] "},
        {"<a//><a/ ><a b=c/><a/b/>", "1@0+5[a] 1@5+5[a] 1@10+8[a] 1@18+6[a] "},
        // terminators that overlap the opening
        {"<!--><!---> <!-- > -> --><![C]]><![Cfoo ]]]>", "32@0+5 32@5+6 4@11+1 32@12+13 8@25+7 8@32+12 "},
        {"<?a ?> <?><?b?>", "16@0+6[a] 4@6+1 16@7+3[] 16@10+5[b?] "},
        {"<?>", "-1@0+3[Processing instruction at offset 0 unterminated] "},
        {"<?\?>", "16@0+4[?] "},
        // doctypes and declarations
        {"<!DOCTYPE a [<!ENTITY x \">\"><!-- > --><?p > ?><b c='>'>]><!E \">\"><!Dfoo>", "64@0+57 64@57+8 64@65+7 "},
        {"<!D '><!D <1 > >", "64@0+6 64@6+10 "},
        {"<!D <1 '<a/>", "-1@0+8[Incorrect tag name character at offset 0] 1@8+4/[a] "},
        {"<!D <!D> <![C> ><!D <!D> <a>", "64@0+16 -1@16+12[Doctype at offset 16 unterminated] "},
        // the unit that cannot stand there is used up; behind it a > outside quotes or a < ends the node
        {"<<a/>", "-1@0+5[Incorrect tag name character at offset 0] "},
        {"<>x<b/>", "-1@0+3[Incorrect tag name character at offset 0] 1@3+4/[b] "},
        {"<\">x<1 '><b/>",
         "-1@0+3[Incorrect tag name character at offset 0] 2@3+1 -1@4+5[Incorrect tag name character at offset 4] "
         "1@9+4/[b] "},
        {"<!x><!-x><![x>", "-1@0+4[Incorrect ! tag at offset 0] -1@4+5[Incorrect comment tag at offset 4] "
                           "-1@9+5[Incorrect tag at offset 9] "},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Nodes(row.pText), row.pNodes) << row.pText;
}

TEST(NodeReader, NamesWhatTheTextEndsIn)
{
    const std::pair<const char*, Strings> rows[] = {{"tag", {"<", "<!", "<!-", "<![", "<1", "<!x'>"}},
                                                    {"Element tag", {"<a", "<a '>"}},
                                                    {"Element end tag", {"</", "</a "}},
                                                    {"CDATA Section", {"<![C]>"}},
                                                    {"Processing instruction", {"<?a>"}},
                                                    {"Comment", {"<!-- ->"}},
                                                    {"Doctype", {"<!A \">", "<!D", "<!D <!-->", "<!D <", "<!D <1"}}};
    for (const auto& [pLabel, texts] : rows)
        for (const std::string& text : texts)
        {
            std::ostringstream expected;
            expected << "-1@0+" << text.size() << "[" << pLabel << " at offset 0 unterminated] ";
            EXPECT_EQ(Nodes(text), expected.str());
        }
}

TEST(NodeReader, KnowsWhatStartsAName)
{
    for (int unit = 1; unit <= 0xFFFF; ++unit)
    {
        const WCHAR text[] = {TEXT('<'), static_cast<WCHAR>(unit), TEXT('>'), 0};
        const bool starts = unit > '9' && (unit > '`' || std::strchr(";<=>?@[\\]^`", unit) == nullptr);
        XmlScanner scanner{.text = text};
        XmlNodeEntry node;
        ASSERT_EQ(ReadNode(scanner, node) == NodeElement, starts) << unit;
    }
}

TEST(Parser, SaysWhatIsWrongFirst)
{
    const struct
    {
        const char* pText;
        const char* pResult; ///< empty: nothing
    } rows[] = {
        {"", "Empty document"},
        {" <!-- x --> ", "No root element"},
        {"<a", "No root element"},
        {"<a \"> <b/>", "No root element"},
        {"<a/><b/>", "Root element has sibling"},
        {"<a><b/>", "Root element has sibling"},
        {"<a>", "Element 'a' at offset 0 not ended"},
        {"<1><a/>", "Incorrect tag name character at offset 0"},
        {"<a></b></a>", "No start tag for end tag 'b' at offset 3"},
        {"<a></></a>", "No start tag for end tag '' at offset 3"},
        {"</a><a/>", "No start tag for end tag 'a' at offset 0"},
        {"<aa></a></aa>", "No start tag for end tag 'a' at offset 4"},
        {"<a><b></a>", "End tag 'a' at offset 7 does not match start tag 'b' at offset 3"},
        {"<a><b><c></a>", "End tag 'a' at offset 10 does not match start tag 'c' at offset 6"},
        {"<a>< ></a></b>", "Incorrect tag name character at offset 3"},
        {"<a/><!--", "Comment at offset 4 unterminated"},
        {"<a><!D <1 </a>", "Incorrect tag name character at offset 3"},
        {"abc<a/>def", ""},
        {"<a/b></a>", ""},
        {"<a=b></a>", ""},
        {"<a[1]></a x='>", ""},
        {"<x>&bad; a > b<y z='<'/><![CDATA[</x>]]><!-- </x> --></x>", ""},
        {"<x><!DOCTYPE a [<a>]></x>", ""},
    };
    CXmlDocument document;
    for (const auto& row : rows)
    {
        EXPECT_EQ(document.SetText(Wide(row.pText)), *row.pResult == 0) << row.pText;
        EXPECT_EQ(Readable(document.m_result), row.pResult) << row.pText;
    }

    // A NUL ends the text for the parser alone. What stood in the result, as after reading a file, stays in front.
    document.m_text = Wide(std::string("<a/>\0<b>", 8));
    document.m_result = TEXT("8 bytes");
    EXPECT_TRUE(document.Parse());
    EXPECT_EQ(document.At(0).length, 8);
    EXPECT_EQ(Readable(document.m_result), "8 bytes");
    document.m_text = TEXT("<a>");
    document.Parse();
    document.Parse();
    EXPECT_EQ(Readable(document.m_result),
              "8 bytes, Element 'a' at offset 0 not ended, Element 'a' at offset 0 not ended");
    EXPECT_FALSE(document.SetText(nullptr));
    EXPECT_EQ(Readable(document.m_result), "Empty document");
}

TEST(Parser, LeavesATreeOfDamagedTextsToo)
{
    const struct
    {
        const char* pText;
        Strings records;
    } rows[] = {
        {"<a><b/><c></c><d/></a>",
         {"0+22 0/0 L0 p0 c1 n0 v0 ", "0+22 3/4 L0 p0 c2 n0 v1 F", "3+4 4/0 L1 p1 c0 n3 v4 F",
          "7+7 3/4 L1 p1 c0 n4 v2 ", "14+4 4/0 L1 p1 c0 n0 v3 "}},
        {"<a></b></a>", {"0+11 0/0 L0 p0 c1 n0 v0 D", "0+11 3/4 L0 p0 c0 n0 v1 FI"}},
        {"<1><a/>", {"0+7 0/0 L0 p0 c1 n0 v0 ID", "3+4 4/0 L0 p0 c0 n0 v1 F"}},
        {"<a><b><c/></a>",
         {"0+14 0/0 L0 p0 c1 n0 v0 D", "0+14 3/4 L0 p0 c2 n0 v1 F", "3+3 3/0 L1 p1 c0 n3 v2 FU",
          "6+4 4/0 L2 p1 c0 n0 v2 F"}},
        // two unended elements, a fault in the inner one: all children and the fault end up with the element that ends
        {"<r><a><b/><c><d/>< ></r>",
         {"0+24 0/0 L0 p0 c1 n0 v0 D", "0+24 3/4 L0 p0 c2 n0 v1 FI", "3+3 3/0 L1 p1 c0 n3 v2 FU",
          "6+4 4/0 L2 p1 c0 n4 v2 F", "10+3 3/0 L2 p1 c0 n5 v3 U", "13+4 4/0 L3 p1 c0 n0 v4 F"}},
        {"<r><x/><a><b/><c/></r>",
         {"0+22 0/0 L0 p0 c1 n0 v0 D", "0+22 3/4 L0 p0 c2 n0 v1 F", "3+4 4/0 L1 p1 c0 n3 v3 F",
          "7+3 3/0 L1 p1 c0 n4 v2 U", "10+4 4/0 L2 p1 c0 n5 v3 F", "14+4 4/0 L2 p1 c0 n0 v4 "}},
        // at the end of the text the document itself takes them over
        {"<a><b><c/>< >",
         {"0+13 0/0 L0 p0 c1 n0 v0 ID", "0+3 3/0 L0 p0 c0 n2 v1 FU", "3+3 3/0 L1 p0 c0 n3 v1 FU",
          "6+4 4/0 L2 p0 c0 n0 v2 F"}},
    };
    for (const auto& row : rows)
    {
        CXmlDocument document;
        document.SetText(Wide(row.pText));
        Strings records;
        for (int i = 0; i < document.m_usedPositions; ++i)
            records.push_back(Readable(document.At(i)));
        EXPECT_EQ(records, row.records) << row.pText;
    }
}
