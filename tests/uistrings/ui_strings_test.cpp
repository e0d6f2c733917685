#include "uistrings/UIStrings.h"

#include "platform/host/HostControl.h"
#include "tests/support/TestFiles.h"

#include <climits>
#include <tuple>

// The process has one table of languages: every test uses its own languages.
namespace
{
WString TextOf(const WCHAR* pLanguage, unsigned int id)
{
    CUIStrings::m_currentLanguage = pLanguage;
    return CUIStrings::Instance()->GetString(id).GetString();
}

void LoadBytes(const WCHAR* pLanguage, const std::string& bytes)
{
    const CTestFile onDisk(bytes, TEXT("ui_strings_test.dat"));
    CUIStrings::LoadFile(pLanguage, onDisk.GetPath());
}
} // namespace

// The first test of the program that asks for the instance. The file has the same name in every run, so that one left
// by a crash does no harm.
TEST(UIStrings, OnlyTheFirstInstanceReadsThePluginsFolder)
{
    const WString folder = CUIStrings::GetPluginsFolder();
    ASSERT_EQ(folder.substr(folder.size() - 9), TEXT("\\Plugins\\"));
    std::filesystem::create_directory(NativePathOf(folder).parent_path());
    const WString path = folder + TEXT("UIStrings_t0.dat");
    HostControl::SetLanguage(TEXT("t0"));
    const auto pInstance = [&]
    {
        const CTestFile strings("7 seven\n", path);
        return CUIStrings::Instance();
    }();
    EXPECT_TRUE(pInstance->GetString(7) == TEXT("seven"));

    const CTestFile later("8 eight\n", path);
    HostControl::SetLanguage(TEXT("other"));
    EXPECT_EQ(CUIStrings::Instance(), pInstance);
    EXPECT_EQ(CUIStrings::m_currentLanguage, TEXT("t0"));
    EXPECT_EQ(TextOf(TEXT("t0"), 8), WString());
}

TEST(UIStrings, ReadsNumberAndTextOfALine)
{
    LoadBytes(TEXT("t1"), "2 First text\n3 Second text  with two blanks \n3 Later text\nNoBlankHere\n"
                          " 5 Begins with a blank\nx7 Text after a bad number\n; note\n\n8 \n9\ttab\n10\tx y\r\n"
                          "\t\v\f11 tabbed\n+12 plus\n-1 minus\n99999999999 many\n-99999999999 few\n"
                          "\t 13 blank at one\n14x text\\n\"\n15 last");
    const std::pair<unsigned int, const WCHAR*> rows[] = {{2, TEXT("First text")},
                                                          {3, TEXT("Second text  with two blanks ")},
                                                          {0, TEXT("Text after a bad number")},
                                                          {5, TEXT("")},
                                                          {8, TEXT("")},
                                                          {9, TEXT("")},
                                                          {10, TEXT("y")},
                                                          {11, TEXT("tabbed")},
                                                          {12, TEXT("plus")},
                                                          {UINT_MAX, TEXT("minus")},
                                                          {INT_MAX, TEXT("many")},
                                                          {0x80000000, TEXT("few")},
                                                          {13, TEXT("")},
                                                          {14, TEXT("text\\n\"")},
                                                          {15, TEXT("last")}};
    for (const auto& [id, pText] : rows)
        EXPECT_EQ(TextOf(TEXT("t1"), id), pText) << id;
    EXPECT_EQ(TextOf(TEXT("T1"), 2), WString()) << "languages are compared exactly";
}

// Whatever is wrong with a file, earlier strings stay.
TEST(UIStrings, KeepsEarlierStrings)
{
    CUIStrings::LoadFile(TEXT("t2"), TEXT("no_such_file.dat"));
    EXPECT_EQ(TextOf(TEXT("t2"), 1), WString());
    LoadBytes(TEXT("t2"), "");
    LoadBytes(TEXT("t2"), "\xEF\xBB\xBF"
                          "1 \xC3\xA4\n2 a\n1 c\n");
    LoadBytes(TEXT("t2"), std::string("\xFF\xFE"
                                      "2\0 \0y\0\n\0"
                                      "3\0 \0z\0\0\0u\0",
                                      20));
    EXPECT_EQ(TextOf(TEXT("t2"), 1), TEXT("\u00E4"));
    EXPECT_EQ(TextOf(TEXT("t2"), 2), TEXT("a"));
    EXPECT_EQ(TextOf(TEXT("t2"), 3), TEXT("z")) << "a line ends at its first zero unit";
}

TEST(UIStrings, TakesLanguagesFromFileNames)
{
    const WString folder = TEXT("ui_strings_folder\\");
    std::filesystem::create_directories("ui_strings_folder/UIStrings_t3dir.dat");
    {
        const CTestFile upper("1 upper\n", folder + TEXT("UIStrings_T3.dat"));
        const CTestFile first("1 more\n", folder + TEXT("uistrings_a_t3more.DAT"));
        const CTestFile second("2 more\n", folder + TEXT("UIStrings_t3more.dat"));
        const CTestFile dotted("1 dot\n", folder + TEXT("UIStrings_t3.x.dat"));
        const CTestFile none("1 none\n", folder + TEXT("UIStrings_.dat"));
        const CTestFile other("1 no\n", folder + TEXT("UIStrings_t3no.txt"));
        EXPECT_EQ(CUIStrings::LoadFolder(folder.c_str()), 1);
    }
    std::filesystem::remove_all("ui_strings_folder");
    EXPECT_EQ(CUIStrings::LoadFolder(folder.c_str()), 1) << "without the folder";

    const std::tuple<const WCHAR*, unsigned int, const WCHAR*> rows[] = {
        {TEXT("t3"), 1, TEXT("upper")}, {TEXT("t3more"), 1, TEXT("more")}, {TEXT("t3more"), 2, TEXT("more")},
        {TEXT("t3.x"), 1, TEXT("dot")}, {TEXT(""), 1, TEXT("none")},       {TEXT("t3no"), 1, TEXT("")}};
    for (const auto& [pLanguage, id, pText] : rows)
        EXPECT_EQ(TextOf(pLanguage, id), pText) << testing::PrintToString(WString(pLanguage));
}
