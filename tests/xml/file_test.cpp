#include "tests/support/Readable.h"
#include "tests/support/TestFolder.h"
#include "xml/XmlFile.h"

#include <tuple>

namespace
{
const char* s_name = "xml_file_test.tmp"; // in the folder that the test runs in
const WCHAR* s_pPath = TEXT("xml_file_test.tmp");

class XmlFile : public testing::Test
{
protected:
    void TearDown() override { std::filesystem::remove(s_name); }
    CString m_text = TEXT("before");
    CString m_result;
};
} // namespace

TEST_F(XmlFile, ReadsUtf8)
{
    const std::tuple<std::string, const char*, const char*> rows[] = {
        // bytes, text, result
        {"", "", "0 bytes to 0 wide chars"},
        {std::string("\xEF\xBB\xBF\r\n\0", 6), "<U+FEFF><U+000D><U+000A><U+0000>", "6 bytes to 4 wide chars"},
        {"\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", "<U+00FC><U+20AC><U+D83D><U+DE00>", "9 bytes to 4 wide chars"},
        // one U+FFFD for each maximal ill-formed part
        {"\xFCx\xE2\x82x\xF0\x9F\x98y", "<U+FFFD>x<U+FFFD>x<U+FFFD>y", "9 bytes to 6 wide chars"},
        {"\xC0\x80x\xF0\x9F\xE2\x82", "<U+FFFD><U+FFFD>x<U+FFFD><U+FFFD>", "7 bytes to 5 wide chars"},
        {"\x80z\xC3z\xE2\x82\xE2\x82\xACz\xFF\xFEz\xC3", "<U+FFFD>z<U+FFFD>z<U+FFFD><U+20AC>z<U+FFFD><U+FFFD>z<U+FFFD>",
         "14 bytes to 11 wide chars"},
        // Wine differs: a lead byte takes the next byte into its part even if that byte cannot follow, and at the end
        // of the file the rest of the text. What Windows does is unknown.
        {"\xED\xA0\x80_\xE0\x80\xAF_\xF4\x90\x80\x80___",
         OnWindows ? "<U+FFFD><U+FFFD>_<U+FFFD><U+FFFD>_<U+FFFD><U+FFFD><U+FFFD>___"
                   : "<U+FFFD><U+FFFD><U+FFFD>_<U+FFFD><U+FFFD><U+FFFD>_<U+FFFD><U+FFFD><U+FFFD><U+FFFD>___",
         OnWindows ? "15 bytes to 12 wide chars" : "15 bytes to 15 wide chars"},
        {"\xF0\x8F_\xE9>", OnWindows ? "<U+FFFD>_<U+FFFD>" : "<U+FFFD><U+FFFD>_<U+FFFD>>",
         OnWindows ? "5 bytes to 3 wide chars" : "5 bytes to 5 wide chars"},
    };
    for (const auto& [bytes, pText, pResult] : rows)
    {
        std::ofstream(s_name, std::ios::binary) << bytes;
        EXPECT_TRUE(ReadTextFile(s_pPath, m_text, &m_result));
        EXPECT_EQ(Readable(m_text), pText);
        EXPECT_EQ(Readable(m_result), pResult);
    }
}

TEST_F(XmlFile, WritesUtf8)
{
    const WCHAR units[] = {'a', 0, '\n', 0xFC, 0x20AC, 0xD83D, 0xDE00, 0xD83D, 'x', 0xDE00, 0xD800};
    const std::tuple<CString, std::string, const char*> rows[] = {
        {CString(units, 7), std::string("a\0\n\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", 12), "7 wide chars to 12 bytes"},
        {CString(units + 7, 4), "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD", "4 wide chars to 10 bytes"},
        {CString(), "", "0 wide chars to 0 bytes"},
    };
    for (const auto& [text, bytes, pResult] : rows)
    {
        EXPECT_TRUE(WriteTextFile(s_pPath, text, &m_result));
        EXPECT_EQ(BytesOf(s_name), bytes);
        EXPECT_EQ(Readable(m_result), pResult);
    }
}

TEST_F(XmlFile, SaysWhatFailed)
{
    for (const WCHAR* pPath : {TEXT("no such folder/file"), TEXT(".")})
    {
        EXPECT_FALSE(ReadTextFile(pPath, m_text, nullptr));
        EXPECT_FALSE(WriteTextFile(pPath, m_text, &m_result));
        EXPECT_EQ(Readable(m_result), *pPath == TEXT('.') ? "Permission denied" : "No such file or directory");
        EXPECT_FALSE(ReadTextFile(pPath, m_text, &m_result));
        EXPECT_EQ(Readable(m_text), "before");
    }
    // Two files of the Linux kernel, which Wine passes through: a full disk, and one that is shorter than it claims to
    // be.
    EXPECT_FALSE(WriteTextFile(TEXT("/dev/full"), m_text, &m_result));
    EXPECT_EQ(Readable(m_result), "No space left on device");
    EXPECT_FALSE(ReadTextFile(TEXT("/sys/devices/system/cpu/online"), m_text, &m_result));
    EXPECT_EQ(Readable(m_result), "File ended before its size was read");
    EXPECT_TRUE(m_text.IsEmpty());

    std::ofstream(s_name).close();
    for (const auto size : {1ULL << 31, (1ULL << 32) + 10})
    {
        std::filesystem::resize_file(s_name, size); // sparse: costs no disk
        m_text = TEXT("before");
        EXPECT_FALSE(ReadTextFile(s_pPath, m_text, &m_result));
        EXPECT_EQ(Readable(m_result), "File of 2147483648 bytes or more");
        EXPECT_TRUE(m_text.IsEmpty());
    }
}
