#include "tests/xml/Readable.h"

namespace
{
/// The text whose units are count times pPart, between pBefore and pBehind.
CString Repeat(const char* pBefore, int count, const char* pPart, const char* pBehind)
{
    std::string text = pBefore;
    for (int i = 0; i < count; ++i)
        text += pPart;
    return Wide(text + pBehind);
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

// Two documents meet in one object: the second text must neither see the first one's records nor give memory back.
TEST(ElementTable, GrowsByHalfAndIsReused)
{
    const CString text = Repeat("<r>", 1000, "<a/>", "</r>");
    for (const auto& [elements, capacity] : {std::pair(69, 70), {70, 105}, {156, 157}, {157, 235}, {1001, 1188}})
    {
        CXmlDocument document;
        document.m_text = text;
        std::copy_n("</r>", 4, document.m_text.GetBuffer(0) + 3 + 4 * (elements - 1)); // the rest is damage
        document.m_text.ReleaseBufferSetLength(text.GetLength());
        std::fill_n(document.m_text.GetBuffer(0) + 7 + 4 * (elements - 1), 4 * (1001 - elements), TEXT(' '));
        EXPECT_TRUE(document.Parse());
        EXPECT_EQ(document.m_usedPositions, elements + 1);
        EXPECT_EQ(document.m_capacity, capacity) << elements;
        EXPECT_TRUE(document.SetText(TEXT("<a/>")));
        EXPECT_EQ(document.m_capacity, capacity);
        EXPECT_EQ(Readable(document.At(1)), "0+4 4/0 L0 p0 c0 n0 v1 F");
    }
}

TEST(ElementTable, FullSegmentsStayWhereTheyAre)
{
    CXmlDocument document;
    document.ReserveRecords(65536);
    const XmlElementPosition* pFull = &document.At(0);
    document.m_usedPositions = 65536;
    EXPECT_TRUE(document.ReserveRecords(0));
    EXPECT_EQ(document.m_capacity, 98304);
    EXPECT_EQ(&document.At(0), pFull);
    document.At(98303) = document.At(65536) = {};

    // One further segment at most for a call, with the partly filled one made full first.
    const struct
    {
        int count, capacity, slots;
    } rows[] = {{98304, 98304, 4}, {90, 98304, 4}, {2000000, 196608, 4}, {2000000, 262144, 4}, {2000000, 327680, 12}};
    for (const auto& row : rows)
    {
        document.At(document.m_capacity - 1).start = row.count;
        const int last = document.m_capacity - 1;
        EXPECT_TRUE(document.ReserveRecords(row.count));
        EXPECT_EQ(document.m_capacity, row.capacity);
        EXPECT_EQ(document.m_segmentSlots, row.slots);
        EXPECT_EQ(document.At(last).start, row.count);
        document.At(document.m_capacity - 1) = {};
    }
    EXPECT_EQ(&document.At(0), pFull);

    CXmlDocument partly;
    partly.ReserveRecords(60000);
    partly.m_usedPositions = 60000;
    partly.At(59999).start = 7;
    partly.ReserveRecords(0);
    EXPECT_EQ(partly.m_capacity, 90000);
    EXPECT_EQ(partly.At(59999).start, 7);
    partly.At(65535) = partly.At(89999) = {};
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
