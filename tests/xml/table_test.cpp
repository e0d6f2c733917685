#include "tests/xml/Readable.h"

namespace
{
/// The text whose units are count times pPart, between pBefore and behind.
CString Repeat(const char* pBefore, int count, const char* pPart, const std::string& behind)
{
    std::string text = pBefore;
    for (int i = 0; i < count; ++i)
        text += pPart;
    return Wide(text + behind);
}
} // namespace

TEST(ElementTable, ANewDocumentIsAnEmptyOne)
{
    CXmlDocument document;
    EXPECT_EQ(Readable(document.m_result), "Empty document");
    EXPECT_EQ(Readable(document.At(0)), "0+0 0/0 L0 p0 c0 n0 v0 ");
    EXPECT_EQ(document.m_capacity, 8);
    EXPECT_EQ(document.m_segmentSlots, 4);
    EXPECT_EQ(document.m_usedPositions, 1);
}

// 4,007 units each. The second text in the same document must neither see the first one's records nor give memory back.
TEST(ElementTable, GrowsByHalfAndIsReused)
{
    for (const auto& [elements, capacity] : {std::pair(69, 70), {70, 105}, {156, 157}, {157, 235}, {1001, 1188}})
    {
        CXmlDocument document;
        const std::string blanks(4 * (1001 - elements), ' ');
        EXPECT_TRUE(document.SetText(Repeat("<r>", elements - 1, "<a/>", blanks + "</r>")));
        EXPECT_EQ(document.m_usedPositions, elements + 1);
        EXPECT_EQ(document.m_capacity, capacity) << elements;
        EXPECT_TRUE(document.SetText(TEXT("<a/>")));
        EXPECT_EQ(document.m_capacity, capacity);
        EXPECT_EQ(Readable(document.At(1)), "0+4 4/0 L0 p0 c0 n0 v1 F");
    }
}

// One further segment at most for a call, behind the last one made full; a full one stays where it is.
TEST(ElementTable, GrowsBySegments)
{
    CXmlDocument document;
    const XmlElementPosition* pFull = nullptr;
    const struct
    {
        int used, count, capacity, slots;
    } rows[] = {{1, 60000, 60000, 4},    {60000, 0, 90000, 4},    {1, 90, 90000, 4},
                {1, 2000000, 196608, 4}, {1, 2000000, 262144, 4}, {1, 2000000, 327680, 12}};
    for (const auto& row : rows)
    {
        const int last = document.m_capacity - 1;
        document.At(last).start = row.count;
        document.m_usedPositions = row.used;
        EXPECT_TRUE(document.ReserveRecords(row.count));
        EXPECT_EQ(document.m_capacity, row.capacity);
        EXPECT_EQ(document.m_segmentSlots, row.slots);
        EXPECT_EQ(document.At(last).start, row.count);
        document.At(document.m_capacity - 1) = {}; // is there
        EXPECT_TRUE(pFull == nullptr || pFull == &document.At(0));
        if (document.m_capacity > 65536)
            pFull = &document.At(0);
    }
}

TEST(ElementTable, ParsesAcrossSegments)
{
    CXmlDocument document;
    EXPECT_TRUE(document.SetText(Repeat("<r>", 200000, "<a></a>", "</r>")));
    ASSERT_EQ(document.m_usedPositions, 200002);
    for (int i = 2; i < 200002; ++i)
        ASSERT_EQ(document.At(i).start, 3 + 7 * (i - 2));
    EXPECT_EQ(Readable(document.At(200001)), "1399996+7 3/4 L1 p1 c0 n0 v200000 ");
    EXPECT_EQ(document.At(2).prevSibling, 200001);
}

// 65,537 levels, a start tag of 2^22 + 9 units and an end tag of 1024 + 6: only the low bits, and nothing beside them.
TEST(ElementTable, WhatIsTooLongForAFieldTouchesNoOther)
{
    CXmlDocument document;
    EXPECT_FALSE(document.SetText(Repeat("", 65537, "<a>", "")));
    EXPECT_EQ(Readable(document.At(65537)), "196608+3 3/0 L0 p0 c0 n0 v65536 FU");

    const std::string startTag = "<a b='" + std::string(1 << 22, '"') + "'/>",
                      endTag = "</r" + std::string(1026, ' ') + ">";
    EXPECT_TRUE(document.SetText(Wide("<r>" + startTag + endTag)));
    EXPECT_EQ(Readable(document.At(1)), "0+4195346 3/6 L0 p0 c2 n0 v1 F");
    EXPECT_EQ(Readable(document.At(2)), "3+4194313 9/0 L1 p1 c0 n0 v2 F");
}
