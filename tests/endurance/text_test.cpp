// String tables and documents, read again and again: memory must stay at its level.
#include "tests/endurance/Endurance.h"
#include "tests/support/TestFiles.h"
#include "uistrings/UIStrings.h"
#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

TEST(Endurance, TenThousandStringTables)
{
    constexpr int Loads = 10'000;
    std::string text;
    for (int id = 1; id <= 500; ++id)
        text += std::to_string(id) + " Text n\xC3\xBAmero " + std::to_string(id) + "\r\n";
    const CTestFile narrow(text, TEXT("endurance_narrow.dat"));
    const CTestFile utf8("\xEF\xBB\xBF" + text, TEXT("endurance_utf8.dat"));
    size_t level = 0;
    for (int load = 1; load <= Loads; ++load)
    {
        CUIStrings::LoadFile(load % 2 == 0 ? TEXT("en") : TEXT("de"),
                             load % 3 == 0 ? utf8.GetPath() : narrow.GetPath());
        ShowProgress(load, Loads, "tables");
        if (load == Loads / 10)
            level = HeapBytesInUse();
    }
    EXPECT_LE(HeapBytesInUse(), level + 1024);
    CUIStrings* const pStrings = CUIStrings::Instance(); // sets the host's language
    CUIStrings::m_currentLanguage = TEXT("en");
    EXPECT_FALSE(pStrings->GetString(500).IsEmpty());
}

// Documents of many sizes, in turn in a new object and in one that is used again.
TEST(Endurance, AThousandMillionCharactersParsed)
{
    constexpr int Documents = 1000;
    const WString element =
        TEXT("<e a=\"") + WString(30, TEXT('x')) + TEXT("\" b='&lt;'><f>\u4E2D\u6587</f><!-- <e> --></e>");
    CXmlDocument used;
    size_t heap = 0;
    size_t parsed = 0;
    for (int i = 1; i <= Documents; ++i)
    {
        const int elements = 7000 + i * 7919 % 14000;
        {
            WString text = TEXT("<d>");
            for (int j = 0; j < elements; ++j)
                text += element;
            text += TEXT("</d>");
            CXmlDocument fresh;
            CXmlDocument& document = i % 2 == 0 ? used : fresh;
            ASSERT_TRUE(document.SetText(text.c_str())) << i;
            ASSERT_EQ(document.m_usedPositions, 2 * elements + 2) << i; // with the records of d and of the document
            parsed += text.size();
            used.SetText(TEXT("<d/>"));
        }
        ShowProgress(i, Documents, "documents");
        if (i == Documents / 10)
            heap = HeapBytesInUse();
    }
    EXPECT_GE(parsed, 1'000'000'000u);
    EXPECT_LE(HeapBytesInUse(), heap + 100'000);
}
