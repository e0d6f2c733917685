#include "tests/support/Readable.h"

#include <sstream>

namespace
{
/// A line for each record: "start+length startTag/endTag level parent firstChild nextSibling prevSibling flags". A flag
/// is shown by its first letter, an unknown one by ?.
std::string Records(const CXmlDocument& document, int from = 0)
{
    std::ostringstream records;
    for (int i = from; i < document.m_usedPositions; ++i)
    {
        const XmlElementPosition& record = document.At(i);
        records << record.start << "+" << record.length << " " << (record.tagLengths & 0x3FFFFF) << "/"
                << (record.tagLengths >> 22) << " L" << (record.levelAndFlags & 0xFFFF) << " p" << record.parent << " c"
                << record.firstChild << " n" << record.nextSibling << " v" << record.prevSibling << " ";
        for (const auto& [flag, letter] :
             {std::pair(0x80000U, 'F'), {0x100000U, 'U'}, {0x200000U, 'I'}, {0x800000U, 'D'}, {0xFF470000U, '?'}})
            if ((record.levelAndFlags & flag) != 0)
                records << letter;
        records << "\n";
    }
    return records.str();
}
} // namespace

TEST(XmlDocument, BuildsATreeOfDamagedTexts)
{
    const std::pair<const char*, const char*> rows[] = {
        {"<a><b/><c></c><d/></a>", "0+22 0/0 L0 p0 c1 n0 v0 \n0+22 3/4 L0 p0 c2 n0 v1 F\n3+4 4/0 L1 p1 c0 n3 v4 F\n"
                                   "7+7 3/4 L1 p1 c0 n4 v2 \n14+4 4/0 L1 p1 c0 n0 v3 \n"},
        {"<1><a></b></a>", "0+14 0/0 L0 p0 c1 n0 v0 ID\n3+11 3/4 L0 p0 c0 n0 v1 FI\n"},
        // two unended elements, a fault in the inner one: all children and the fault go to the element that ends
        {"<r><x/><a><b/><c><d/>< ></r>",
         "0+28 0/0 L0 p0 c1 n0 v0 D\n0+28 3/4 L0 p0 c2 n0 v1 FI\n3+4 4/0 L1 p1 c0 n3 v3 F\n7+3 3/0 L1 p1 c0 n4 v2 U\n"
         "10+4 4/0 L2 p1 c0 n5 v3 F\n14+3 3/0 L2 p1 c0 n6 v4 U\n17+4 4/0 L3 p1 c0 n0 v5 F\n"},
        // at the end of the text they go to the document itself
        {"<a><b><c/>< >", "0+13 0/0 L0 p0 c1 n0 v0 ID\n0+3 3/0 L0 p0 c0 n2 v1 FU\n3+3 3/0 L1 p0 c0 n3 v1 FU\n"
                          "6+4 4/0 L2 p0 c0 n0 v2 F\n"}};
    CXmlDocument document;
    EXPECT_EQ(Records(document), "0+0 0/0 L0 p0 c0 n0 v0 \n");
    EXPECT_EQ(document.m_capacity, 8);
    for (const auto& [pText, pRecords] : rows)
    {
        document.SetText(Wide(pText));
        EXPECT_EQ(Records(document), pRecords) << pText;
    }
}

TEST(XmlDocument, SaysWhatIsWrongFirst)
{
    const std::pair<const char*, const char*> rows[] = {
        {"", "Empty document"},
        {" <!-- x --> ", "No root element"},
        {"<a", "No root element"},
        {"<a/><b/>", "Root element has sibling"},
        {"<a><b/>", "Root element has sibling"},
        {"<a>", "Element 'a' at offset 0 not ended"},
        {"<a></></a>", "No start tag for end tag '' at offset 3"},
        {"<aa></a></aa>", "No start tag for end tag 'a' at offset 4"},
        {"<a><b><c></a></b>", "End tag 'a' at offset 10 does not match start tag 'c' at offset 6"},
        {"<a>< ></a></b>", "Incorrect tag name character at offset 3"},
        {"<a><!D <1 </a>", "Incorrect tag name character at offset 3"},
        {"abc<a[1]>&bad; a > b<y z='<'/><![CDATA[</a>]]><!DOCTYPE a [<a>]><b/x></b><?p </a>?></a x='>", ""}};
    CXmlDocument document;
    for (const auto& [pText, pResult] : rows)
    {
        EXPECT_EQ(document.SetText(Wide(pText)), *pResult == 0) << pText;
        EXPECT_EQ(Readable(document.m_result), pResult) << pText;
    }

    const std::pair<const char*, std::vector<const char*>> ends[] = {
        {"tag", {"<", "<!", "<!-", "<![", "<1", "<!x'>"}},
        {"Element tag", {"<a", "<a '>"}},
        {"Element end tag", {"</", "</a "}},
        {"CDATA Section", {"<![C]>"}},
        {"Processing instruction", {"<?a>"}},
        {"Comment", {"<!-- ->"}},
        {"Doctype", {"<!A \">", "<!D", "<!D <!-->", "<!D <", "<!D <1"}}};
    for (const auto& [pLabel, texts] : ends)
        for (const char* pText : texts)
        {
            EXPECT_FALSE(document.SetText(Wide(std::string("<a/>").append(pText))));
            EXPECT_EQ(Readable(document.m_result), std::string(pLabel).append(" at offset 4 unterminated")) << pText;
        }

    // The parser stops at a NUL. What the result held before, as after reading a file, stays in front.
    document.m_text = Wide(std::string("<a/>\0<b>", 8));
    document.m_result = TEXT("8 bytes");
    EXPECT_TRUE(document.Parse());
    EXPECT_EQ(document.At(0).length, 8);
    EXPECT_EQ(Readable(document.m_result), "8 bytes");
    document.m_text = TEXT("<1/>");
    EXPECT_FALSE(document.Parse());
    EXPECT_EQ(Readable(document.m_result), "8 bytes, No root element");
    EXPECT_TRUE(document.ParseInPlace(TEXT("<b/>"))); // drops text and result
    EXPECT_TRUE(document.m_text.IsEmpty() && document.m_result.IsEmpty() && document.FindElement(TEXT("b")));
}

// 4,007 units each. A second text in the same document does not see the first one's records, and keeps the memory.
TEST(XmlDocument, GrowsByHalfAndIsReused)
{
    for (const auto& [elements, capacity] : {std::pair(69, 70), {70, 105}, {156, 157}, {157, 235}, {1001, 1188}})
    {
        CXmlDocument document;
        const WString children = Repeated(TEXT("<a/>"), elements - 1) + WString(4 * (1001 - elements), ' ');
        EXPECT_TRUE(document.SetText((TEXT("<r>") + children + TEXT("</r>")).c_str()));
        EXPECT_EQ(document.m_capacity, capacity) << elements;
        EXPECT_TRUE(document.SetText(TEXT("<a/>")));
        EXPECT_EQ(document.m_capacity, capacity);
        EXPECT_EQ(Records(document, 1), "0+4 4/0 L0 p0 c0 n0 v1 F\n");
    }
    CXmlDocument document;
    EXPECT_TRUE(document.SetText((TEXT("<r>") + WString(10'000'000, ' ') + TEXT("</r>")).c_str()));
    EXPECT_EQ(document.m_capacity, 2 * 65536) << "a call adds at most one segment";
    EXPECT_TRUE(document.SetText((TEXT("<r>") + Repeated(TEXT("<a></a>"), 140000) + TEXT("</r>")).c_str()));
    EXPECT_EQ(Records(document, 140001), "979996+7 3/4 L1 p1 c0 n0 v140000 \n");
}

// 65,537 levels, a start tag of 2^22 + 9 units and an end tag of 1024 + 6: only the low bits are kept, and no other
// field changes.
TEST(XmlDocument, WhatIsTooLongForAFieldTouchesNoOther)
{
    CXmlDocument document;
    EXPECT_FALSE(document.SetText(Repeated(TEXT("<a>"), 65537).c_str()));
    EXPECT_EQ(Records(document, 65537), "196608+3 3/0 L0 p0 c0 n0 v65536 FU\n");
    const WString longTags =
        TEXT("<r><a b='") + WString(1 << 22, '"') + TEXT("'/></r") + WString(1026, ' ') + TEXT(">");
    EXPECT_TRUE(document.SetText(longTags.c_str()));
    EXPECT_EQ(Records(document, 1), "0+4195346 3/6 L0 p0 c2 n0 v1 F\n3+4194313 9/0 L1 p1 c0 n0 v2 F\n");
    EXPECT_TRUE(document.SetText((TEXT("<a b=\"") + WString(1 << 22, 'v') + TEXT("\"/>")).c_str()));
    EXPECT_TRUE(document.FindElement(nullptr));
    EXPECT_EQ(document.GetAttribute(TEXT("b")).GetLength(), 1 << 22);
}
