#include "tests/xml/Readable.h"
#include "xml/XmlFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
/// A file of a test, with its path in both forms; gone when the test is over.
struct CTestFile
{
    ~CTestFile() { std::filesystem::remove(m_name); }
    void Fill(const std::string& bytes) const { std::ofstream(m_name, std::ios::binary) << bytes; }
    std::string Content() const
    {
        std::ifstream file(m_name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    const char* m_name = "xml_file_test.tmp";
    const WCHAR* m_pPath = TEXT("xml_file_test.tmp");
};
} // namespace

TEST(XmlFile, ReadsUtf8)
{
    const struct
    {
        std::string bytes;
        const char* pText;
        const char* pResult;
    } rows[] = {
        {"", "", "0 bytes to 0 wide chars"},
        {"a\r\n\n", "a<U+000D><U+000A><U+000A>", "4 bytes to 4 wide chars"},
        {std::string("a\0b", 3), "a<U+0000>b", "3 bytes to 3 wide chars"},
        {"\xEF\xBB\xBFx", "<U+FEFF>x", "4 bytes to 2 wide chars"},
        {"\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", "<U+00FC><U+20AC><U+D83D><U+DE00>", "9 bytes to 4 wide chars"},
        // one U+FFFD for each maximal ill-formed part
        {"\xFCx", "<U+FFFD>x", "2 bytes to 2 wide chars"},
        {"\xE2\x82x\xF0\x9F\x98y", "<U+FFFD>x<U+FFFD>y", "7 bytes to 4 wide chars"},
        {"\xE2\x82", "<U+FFFD>", "2 bytes to 1 wide chars"},
        {"\xC0\x80x\xF0\x9F\xE2\x82\xAC", "<U+FFFD><U+FFFD>x<U+FFFD><U+20AC>", "8 bytes to 5 wide chars"},
        // Wine differs: a lead byte takes a second one with it that cannot follow it, and at the end of the file
        // all that is left. Whether Windows does is not known here.
        {"\xED\xA0\x80___", OnWindows ? "<U+FFFD><U+FFFD>___" : "<U+FFFD><U+FFFD><U+FFFD>___",
         OnWindows ? "6 bytes to 5 wide chars" : "6 bytes to 6 wide chars"},
        {"\xF0\x8F_\xE9>", OnWindows ? "<U+FFFD>_<U+FFFD>" : "<U+FFFD><U+FFFD>_<U+FFFD>>",
         OnWindows ? "5 bytes to 3 wide chars" : "5 bytes to 5 wide chars"},
    };
    const CTestFile file;
    for (const auto& row : rows)
    {
        file.Fill(row.bytes);
        CString text = TEXT("before"), result;
        EXPECT_TRUE(ReadTextFile(file.m_pPath, text, &result));
        EXPECT_EQ(Readable(text), row.pText);
        EXPECT_EQ(Readable(result), row.pResult);
        EXPECT_TRUE(ReadTextFile(file.m_pPath, text, nullptr));
    }
}

TEST(XmlFile, WritesUtf8)
{
    const WCHAR units[] = {'a', 0, '\n', 0xFC, 0x20AC, 0xD83D, 0xDE00, 0xD83D, 'x', 0xDE00, 0xD800};
    const struct
    {
        CString text;
        std::string bytes;
        const char* pResult;
    } rows[] = {
        {CString(units, 7), std::string("a\0\n\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", 12), "7 wide chars to 12 bytes"},
        {CString(units + 7, 4), "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD", "4 wide chars to 10 bytes"},
        {CString(), "", "0 wide chars to 0 bytes"},
    };
    const CTestFile file;
    for (const auto& row : rows)
    {
        CString result;
        EXPECT_TRUE(WriteTextFile(file.m_pPath, row.text, &result));
        EXPECT_EQ(file.Content(), row.bytes);
        EXPECT_EQ(Readable(result), row.pResult);
        EXPECT_TRUE(WriteTextFile(file.m_pPath, row.text, nullptr));
    }
}

TEST(XmlFile, SaysWhyAFileCannotBeOpened)
{
    CString text = TEXT("before"), result;
    EXPECT_FALSE(ReadTextFile(TEXT("no such folder/file"), text, &result));
    EXPECT_EQ(Readable(text), "before");
    EXPECT_EQ(Readable(result), "No such file or directory");
    EXPECT_FALSE(WriteTextFile(TEXT("no such folder/file"), text, &result));
    EXPECT_FALSE(WriteTextFile(TEXT("."), text, &result));
    EXPECT_EQ(Readable(result), "Permission denied");
    EXPECT_FALSE(ReadTextFile(TEXT("."), text, nullptr));
}

// A sparse file costs no disk.
TEST(XmlFile, RefusesFilesThatAreTooLarge)
{
    const CTestFile file;
    for (const auto size : {1ULL << 31, (1ULL << 32) + 10})
    {
        file.Fill("");
        std::filesystem::resize_file(file.m_name, size);
        CString text = TEXT("before"), result;
        EXPECT_FALSE(ReadTextFile(file.m_pPath, text, &result));
        EXPECT_EQ(Readable(result), "File of 2147483648 bytes or more");
        EXPECT_TRUE(text.IsEmpty());
    }
}

// Both files are the Linux kernel's; Wine hands them on.
TEST(XmlFile, SaysWhenItDidNotGetAllThrough)
{
    const WCHAR* pFull = TEXT("/dev/full");
    const WCHAR* pShort = TEXT("/sys/devices/system/cpu/online"); // claims the size of a page
    CString text = TEXT("before"), result;
    EXPECT_FALSE(WriteTextFile(pFull, text, &result));
    EXPECT_EQ(Readable(result), "No space left on device");
    EXPECT_FALSE(ReadTextFile(pShort, text, &result));
    EXPECT_EQ(Readable(result), "File ended before its size was read");
    EXPECT_TRUE(text.IsEmpty());
}
