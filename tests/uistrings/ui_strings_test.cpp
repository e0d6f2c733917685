#include "uistrings/UIStrings.h"

#include "platform/host/HostControl.h"

#include <gtest/gtest.h>

#include "tests/uistrings/test_files.h"

#include <climits>

// The table of languages is the process's: every test has languages of its own.
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

// The first in the program that asks for the object. Files that come later are not seen.
TEST(UIStrings, TheFirstInstanceReadsThePluginsFolder)
{
    const WString folder = CUIStrings::GetPluginsFolder();
    const auto nativeFolder = NativePathOf(folder);
    ASSERT_EQ(folder.substr(folder.size() - 9), TEXT("\\Plugins\\"));
    ASSERT_TRUE(std::filesystem::exists(nativeFolder.parent_path().parent_path())) << nativeFolder;
    const bool made = std::filesystem::create_directory(nativeFolder.parent_path());
    {
        const CTestFile strings("7 seven\n", folder + TEXT("UIStrings_t0.dat"));
        HostControl::SetLanguage(TEXT("t0"));
        CUIStrings* pInstance = CUIStrings::Instance();
        EXPECT_TRUE(pInstance->GetString(7) == TEXT("seven"));
        EXPECT_TRUE(CUIStrings::m_currentLanguage == TEXT("t0"));

        const CTestFile later("8 eight\n", folder + TEXT("UIStrings_t00.dat"));
        HostControl::SetLanguage(TEXT("t00"));
        EXPECT_EQ(CUIStrings::Instance(), pInstance);
        EXPECT_TRUE(CUIStrings::m_currentLanguage == TEXT("t0"));
        EXPECT_EQ(TextOf(TEXT("t00"), 8), WString());
    }
    if (made)
        std::filesystem::remove(nativeFolder.parent_path());
}

TEST(UIStrings, TakesTheStringsOfALine)
{
    LoadBytes(TEXT("t1"), "2 First text\n"
                          "3 Second text  with two blanks \n"
                          "3 Later text\n"
                          "NoBlankHere\n"
                          " 5 Begins with a blank\n"
                          "x7 Text behind a bad number\n"
                          "; note\n\n"
                          "8 \n"
                          "9\ttab\n"
                          "10\tx y\r\n"
                          "\t\v\f11 tabbed\n"
                          "+12 plus\n"
                          "-1 minus\n"
                          "99999999999 many\n"
                          "-99999999999 few\n"
                          "\t 13 blank at one\n"
                          "14x text\\n\"\n"
                          "15 last");
    const struct
    {
        unsigned int id;
        const WCHAR* pText;
    } rows[] = {{2, TEXT("First text")},
                {3, TEXT("Second text  with two blanks ")},
                {5, TEXT("")},
                {0, TEXT("Text behind a bad number")},
                {8, TEXT("")},
                {9, TEXT("")},
                {10, TEXT("y")},
                {11, TEXT("tabbed")},
                {12, TEXT("plus")},
                {13, TEXT("")},
                {UINT_MAX, TEXT("minus")},
                {INT_MAX, TEXT("many")},
                {0x80000000, TEXT("few")},
                {14, TEXT("text\\n\"")},
                {15, TEXT("last")}};
    for (const auto& row : rows)
        EXPECT_EQ(TextOf(TEXT("t1"), row.id), row.pText) << row.id;
    EXPECT_EQ(TextOf(TEXT("T1"), 2), WString()) << "languages are compared exactly";
}

// Whatever goes wrong with a file, the others and what was read so far stay.
TEST(UIStrings, KeepsWhatItHas)
{
    CUIStrings::LoadFile(TEXT("t2"), TEXT("no_such_file.dat"));
    EXPECT_EQ(TextOf(TEXT("t2"), 1), WString());
    LoadBytes(TEXT("t2"), "");
    LoadBytes(TEXT("t2"), "\xEF\xBB\xBF"
                          "1 \xC3\xA4\n2 a\n1 c\n");
    LoadBytes(TEXT("t2"), std::string("\xFF\xFE"
                                      "1\0 \0x\0\n\0"
                                      "2\0\0\0 \0y\0\n\0"
                                      "3\0 \0z\0\0\0u\0",
                                      28));
    EXPECT_EQ(TextOf(TEXT("t2"), 1), TEXT("\u00E4"));
    EXPECT_EQ(TextOf(TEXT("t2"), 2), TEXT("a"));
    EXPECT_EQ(TextOf(TEXT("t2"), 3), TEXT("z")) << "a line ends at its first zero unit";
}

TEST(UIStrings, FindsLanguagesInTheNamesOfAFolder)
{
    std::filesystem::create_directories("ui_strings_folder/UIStrings_t3dir.dat");
    const WString folder = TEXT("ui_strings_folder\\");
    {
        const CTestFile files[] = {CTestFile("1 upper\n", folder + TEXT("UIStrings_T3.dat")),
                                   CTestFile("1 more\n", folder + TEXT("uistrings_a_t3more.DAT")),
                                   CTestFile("2 more\n", folder + TEXT("UIStrings_t3more.dat")),
                                   CTestFile("1 dot\n", folder + TEXT("UIStrings_t3.x.dat")),
                                   CTestFile("1 none\n", folder + TEXT("UIStrings_.dat")),
                                   CTestFile("1 no\n", folder + TEXT("UIStrings_t3no.txt")),
                                   CTestFile("1 no\n", folder + TEXT("UIString_t3no.dat"))};
        EXPECT_EQ(CUIStrings::LoadFolder(folder.c_str()), 1);
    }
    EXPECT_EQ(TextOf(TEXT("t3"), 1), TEXT("upper"));
    EXPECT_EQ(TextOf(TEXT("t3more"), 1), TEXT("more"));
    EXPECT_EQ(TextOf(TEXT("t3more"), 2), TEXT("more"));
    EXPECT_EQ(TextOf(TEXT("t3.x"), 1), TEXT("dot"));
    EXPECT_EQ(TextOf(TEXT(""), 1), TEXT("none"));
    EXPECT_EQ(TextOf(TEXT("t3no"), 1), WString());
    EXPECT_EQ(TextOf(TEXT("t3dir"), 1), WString());
    std::filesystem::remove_all("ui_strings_folder");
    EXPECT_EQ(CUIStrings::LoadFolder(folder.c_str()), 1) << "without the folder";
}
