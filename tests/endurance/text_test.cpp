// String tables and documents, read over and over: the memory must stay at its level.
#include "tests/endurance/Endurance.h"
#include "tests/support/TestFiles.h"
#include "uistrings/UIStrings.h"
#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
std::string StringFile(const char* pMark)
{
    std::string text = pMark;
    for (int id = 1; id <= 500; ++id)
        text += std::to_string(id) + " Text n\xC3\xBAmero " + std::to_string(id) + "\r\n";
    return text;
}

/// A document of about that many characters, which the seed decides, and the number of its elements.
struct CDocument
{
    CDocument(unsigned seed, size_t characters) : random(seed)
    {
        text.reserve(characters + 1000);
        text = TEXT("<d>");
        while (text.size() < characters)
            AddElement(0);
        text += TEXT("</d>");
    }
    void AddElement(int level)
    {
        ++elements;
        text += TEXT("<e a=\"");
        text.append(random() % 40, static_cast<WCHAR>('A' + random() % 26));
        text += TEXT("\" b='&lt;&#233;'>");
        for (unsigned children = level < 8 ? random() % 3 : 0; children > 0; --children)
            AddElement(level + 1);
        text.append(random() % 60, static_cast<WCHAR>(0x4E00 + random() % 100));
        text += random() % 8 == 0 ? TEXT("<!-- <e> --></e>") : TEXT("</e>");
    }

    std::minstd_rand random;
    WString text;
    int elements = 1;
};
} // namespace

TEST(Endurance, TenThousandStringTables)
{
    constexpr int Loads = 10'000;
    const CTestFile narrow(StringFile(""), TEXT("endurance_narrow.dat"));
    const CTestFile utf8(StringFile("\xEF\xBB\xBF"), TEXT("endurance_utf8.dat"));
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
    CUIStrings::m_currentLanguage = TEXT("en");
    EXPECT_FALSE(CUIStrings::Instance()->GetString(500).IsEmpty());
}

TEST(Endurance, AThousandMillionCharactersParsed)
{
    constexpr int Documents = 1000;
    constexpr size_t Characters = 1'000'000;
    CXmlDocument used;
    size_t heap = 0;
    size_t resident = 0;
    size_t parsed = 0;
    for (int i = 1; i <= Documents; ++i)
    {
        {
            const CDocument document(static_cast<unsigned>(i), Characters);
            CXmlDocument fresh;
            CXmlDocument& reader = i % 2 == 0 ? used : fresh;
            ASSERT_TRUE(reader.SetText(document.text.c_str())) << i;
            ASSERT_EQ(reader.m_usedPositions, document.elements + 1) << i; // the document's own record
            parsed += document.text.size();
            used.SetText(TEXT("<d/>"));
        }
        ShowProgress(i, Documents, "documents");
        if (i == Documents / 10)
        {
            heap = HeapBytesInUse();
            resident = ResidentBytes();
        }
    }
    EXPECT_GE(parsed, Documents * Characters);
    EXPECT_LE(HeapBytesInUse(), heap + Characters / 10);
    EXPECT_LE(ResidentBytes(), resident + 8 * Characters); // a document and its copy, which may just have gone or not
}
