#include "tests/support/Readable.h"
#include "xml/XmlAttributes.h"

#include <sstream>

namespace
{
/// Each node as "type@start+length", with / for an empty element, then the name or message.
std::string Nodes(const std::string& ascii)
{
    const CString text = Wide(ascii);
    XmlScanner scanner{.text = text.GetString()};
    XmlNodeEntry node;
    std::ostringstream nodes;
    while (ReadNode(scanner, node) != NodeEndOfText)
    {
        const bool isEmpty = (node.flags & EmptyElementFlag) != 0 && node.nodeType == NodeElement;
        const bool hasName = node.nodeType == NodeElement || node.nodeType == NodeProcessingInstruction;
        nodes << node.nodeType << "@" << node.start << "+" << node.length << (isEmpty ? "/" : "");
        nodes << (hasName ? Readable(node.name) : node.nodeType == NodeEndTag ? Readable(GetTokenText(scanner)) : "");
        nodes << " ";
    }
    return nodes.str();
}
} // namespace

TEST(XmlScanner, CutsTheTextIntoNodes)
{
    const std::pair<const char*, const char*> rows[] = {
        {"a>b<c/> >x<a/b>\t", "2@0+2 2@2+1 1@3+4/c 2@7+3 1@10+5a 4@15+1 "},
        {"<a b=\"'>\" c='\">'></a x='><a<b></a<b></>", "1@0+17a 0@17+8a 1@25+5a<b 0@30+6a<b 0@36+3 "},
        // a / makes an empty element only after the name, white space or a quote
        {"<a/><a /><a b='c'/><a b=\"c\"/>", "1@0+4/a 1@4+5/a 1@9+10/a 1@19+10/a "},
        {"<a//><a/ ><a b=c/><a/b/>", "1@0+5a 1@5+5a 1@10+8a 1@18+6a "},
        // terminators that overlap the opening
        {"<!--><!---> <!-- > -> --><![C]]><![Cfoo ]]]>", "32@0+5 32@5+6 4@11+1 32@12+13 8@25+7 8@32+12 "},
        {"<?a ?> <?><?b?>", "16@0+6a 4@6+1 16@7+3 16@10+5b? "},
        {"<?> ?>", "16@0+6 "}, // at the start of the text this > does not count
        // doctypes and declarations
        {"<!DOCTYPE a [<!ENTITY x \">\"><!-- > --><?p > ?><b c='>'>]><!E \">\"><!Dfoo>", "64@0+57 64@57+8 64@65+7 "},
        {"<!D '><!D <1 > ><!D <1 '<a/>", "64@0+6 64@6+10 -1@16+8 1@24+4/a "},
        {"<!D <!D> <![C> ><!D <!D> <a>", "64@0+16 -1@16+12 "},
        // the unit that may not stand there is consumed; after it a > outside quotes or a < ends the node
        {"<<a/><>x<b/>", "-1@0+5 -1@5+3 1@8+4/b "},
        {"<\">x<1 '><!x><!-x><![x>", "-1@0+3 2@3+1 -1@4+5 -1@9+4 -1@13+5 -1@18+5 "}};
    for (const auto& [pText, pNodes] : rows)
        EXPECT_EQ(Nodes(pText), pNodes) << pText;

    std::string starts;
    for (char unit = 1; unit < 127; ++unit)
        if (Nodes({'<', unit, '>'})[0] == '1')
            starts += unit;
    EXPECT_EQ(starts, ":ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz{|}~");
}

// After = a > is a value, and the scan can run on past the tag; it stops at the end of the text.
TEST(XmlScanner, FindsAttributes)
{
    using Texts = std::vector<const char*>;
    const struct
    {
        const char* pTag;
        Texts names;
        Texts values; ///< "-": not found
    } rows[] = {
        {"r a=\"1\" c=3 d e = \"5\" v=x/y/>", {"a", "c", "d", "e", "v", "r"}, {"1", "3", "d", "5", "x/y/", "-"}},
        {"r B='0' b='' b='2'/>", {"b", "bb", "b=1", "b x", "a", ""}, {"", "-", "", "", "-", "-"}},
        {"r a 'x'='1' \n b/>", {"a", "x", "b"}, {"a", "-", "b"}},
        {"r 'x' a=\"'\" b='\"' c'd'='b'\n>", {"a", "b", "c'd'", "x"}, {"'", "\"", "b", "-"}},
        {"r b = a a = b c==1/>", {"a", "b", "c"}, {"b", "a", "=1/"}},
        {"r =b a=1/b=2>", {"a", "b"}, {"1/b=2", "-"}},
        {"r a/b=1>", {"a", "b"}, {"a", "-"}},
        {"r a=><s b='1'/>", {"a", "b"}, {">", "1"}},
        {"r a= ", {"a", "b", "r"}, {"=", "-", "-"}},
        {"r b='a", {"b", "a"}, {"a", "-"}},
        {"r b \"", {"b"}, {"b"}}};
    for (const auto& row : rows)
        for (size_t i = 0; i < row.names.size(); ++i)
        {
            const CString text = Wide(row.pTag);
            XmlScanner scanner{.text = text.GetString()};
            const bool found = ScanAttribute(scanner, Wide(row.names[i]));
            EXPECT_EQ(found ? Readable(GetTokenText(scanner)) : "-", row.values[i]) << row.names[i] << row.pTag;
        }
}

TEST(XmlScanner, DecodesReferences)
{
    const std::pair<const char*, const char*> rows[] = {
        {"x&amp;y\n&lt;&gt;&apos;&quot;&amp;lt;&amp;", "x&y<U+000A><>'\"&lt;&"},
        {"&bad;&&LT;&amp", "&bad;&&LT;&amp"},
        {"&#65;&#x42;z&#99a;&#x0x41;&# +65;&#\t\v65;", "ABzcAAA"},
        {"&#1234567;&#-65;&#65601;&#65536;&#x0000041;", "<U+D687><U+FFBF>A<U+0000>A"}, // the low 16 bits
        {"&#12345678;&#x00000041;&#X41;&#xZ;&#;&#0;&#", "&#12345678;&#x00000041;&#X41;&#xZ;&#;&#0;&#"}};
    for (const auto& [pText, pDecoded] : rows)
        EXPECT_EQ(Readable(DecodeEntities(Wide(pText), Wide(pText).GetLength())), pDecoded) << pText;
    // The Windows runtime knows the digits and blanks of all scripts: an Arabic-Indic 6, a no-break space.
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&#\x666;&#\xA0\x37;"), 9)), "&#<U+0666>;&#<U+00A0>7;");
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&amp;"), 4)), "&amp"); // a name must end inside the length,
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&#65;"), 1)), "A");    // a number need not
}
