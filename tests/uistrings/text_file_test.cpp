#include "uistrings/TextFile.h"

#include <gtest/gtest.h>

#include "tests/uistrings/test_files.h"

#include <cstdlib>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

using namespace std::string_literals;
using testing::PrintToString;

namespace
{
constexpr int s_fill = 4096; // bytes that a reader takes at a time, behind the mark

/// Closes what a failed check leaves open.
struct CTestRecord : TextFile
{
    ~CTestRecord() { Close(); }
};

/// What the caller of ReadLine owns.
struct CTestLine
{
    WCHAR* pText = nullptr;
    ~CTestLine() { FreeLine(pText); }
};

/// Every line of the file with a '|' behind it.
WString LinesOf(const std::string& bytes, eEncoding& encoding)
{
    const CTestFile onDisk(bytes);
    CTestRecord file;
    file.codePage = 1252;
    EXPECT_EQ(file.Open(onDisk.GetPath()), 0);
    encoding = file.encoding;
    CTestLine line;
    WString lines;
    while (file.reader->ReadLine(&line.pText, file.codePage) == 0)
        lines += WString(line.pText) + TEXT("|");
    EXPECT_EQ(file.reader->ReadLine(&line.pText, file.codePage), -1) << "the end is final";
    return lines;
}

WString LinesOf(const std::string& bytes)
{
    eEncoding encoding;
    return LinesOf(bytes, encoding);
}

std::string Encode(eEncoding encoding, std::string_view ascii)
{
    std::string bytes = encoding == eEncodingUTF8      ? "\xEF\xBB\xBF"
                        : encoding == eEncodingUTF16LE ? "\xFF\xFE"
                        : encoding == eEncodingUTF16BE ? "\xFE\xFF"
                                                       : "";
    for (const char byte : ascii)
        bytes += encoding == eEncodingUTF16LE   ? std::string{byte, '\0'}
                 : encoding == eEncodingUTF16BE ? std::string{'\0', byte}
                                                : std::string{byte};
    return bytes;
}

std::vector<int> CharsOf(const std::string& bytes)
{
    const CTestFile onDisk(bytes);
    CTestRecord file;
    EXPECT_EQ(file.Open(onDisk.GetPath()), 0);
    std::vector<int> chars;
    for (int character = 0; (character = file.reader->ReadChar()) >= 0;)
        chars.push_back(character);
    return chars;
}

WString SystemText(DWORD code)
{
    const std::unique_ptr<WCHAR, decltype(&std::free)> pText(GetSystemErrorText(code), std::free);
    return pText.get();
}

WString LastErrorText()
{
    return GetLastErrorText() == nullptr ? TEXT("none") : GetLastErrorText();
}
} // namespace

// A slip in the arithmetic of pieces shows where a line end meets the end of a fill; F stands for as many units as make
// one fill a unit short.
TEST(TextFile, EndsLinesAlikeInEveryEncoding)
{
    const struct
    {
        const char* pText;
        const WCHAR* pLines;
    } rows[] = {{"", TEXT("")},
                {"\n", TEXT("|")},
                {"\r", TEXT("|")},
                {"a", TEXT("a|")},
                {"a\r\nb\n\n\r\nc\r", TEXT("a|b|||c|")},
                {"a\rb\r\r\n\rc\n", TEXT("a\rb\r|\rc|")},
                {"Fa", TEXT("Fa|")},
                {"Fa\nb", TEXT("Fa|b|")},
                {"F\nb", TEXT("F|b|")},
                {"F\r\nb", TEXT("F|b|")},
                {"F\r\r\nb", TEXT("F|b|")},
                {"F\rb", TEXT("Fb|")},
                {"Fa\r\nb", TEXT("Fa|b|")},
                {"FaFaFb\nFF", TEXT("FaFaFb|FF|")}};
    for (const eEncoding encoding : {eEncodingANSI, eEncodingUTF16LE, eEncodingUTF16BE, eEncodingUTF8})
        for (const auto& row : rows)
        {
            const int unitSize = encoding == eEncodingUTF16LE || encoding == eEncodingUTF16BE ? 2 : 1;
            std::string text;
            for (const char* p = row.pText; *p != 0; ++p)
                text += *p == 'F' ? std::string(s_fill / unitSize - 1, 'x') : std::string{*p};
            WString expected;
            for (const WCHAR* p = row.pLines; *p != 0; ++p)
                expected += *p == 'F' ? WString(s_fill / unitSize - 1, TEXT('x')) : WString{*p};
            EXPECT_EQ(LinesOf(Encode(encoding, text)), expected) << "encoding " << encoding << " " << row.pText;
        }
}

TEST(TextFile, KnowsTheEncodingByItsMarkAndReadsWhatItSays)
{
    const std::string utf8 = "\xEF\xBB\xBF";
    const struct
    {
        std::string bytes;
        eEncoding encoding;
        WString lines;
    } rows[] = {{"", eEncodingAuto, TEXT("")},
                {"\xFF", eEncodingANSI, TEXT("\u00FF|")},
                {"\xFE\x41", eEncodingANSI, TEXT("\u00FEA|")},
                {"\xEF\xBB", eEncodingANSI, TEXT("\u00EF\u00BB|")},
                {"\xEF\xBB\x41\nb", eEncodingANSI, TEXT("\u00EF\u00BBA|b|")},
                {"\x80\x00z\nb"s, eEncodingANSI, TEXT("\u20AC|b|")},
                {"\xC3\xA4", eEncodingANSI, TEXT("\u00C3\u00A4|")}, // UTF-8 without a mark
                {"A\0\n\0B\0"s, eEncodingANSI, TEXT("A||")},        // UTF-16 without a mark
                {"\xFF\xFE\0\0A\0"s, eEncodingUTF16LE, TEXT("|")},  // not UTF-32
                {"\xFF\xFE\x00\x0A\x0A\x0D\x0A\x00"s, eEncodingUTF16LE, TEXT("\u0A00\u0D0A|")},
                {"\xFE\xFF\x0A\x00\x0D\x0A\x00\x0A"s, eEncodingUTF16BE, TEXT("\u0A00\u0D0A|")},
                {"\xFF\xFE\x3D\xD8\x00\xDE\x00\xDC"s, eEncodingUTF16LE, TEXT("\xD83D\xDE00\xDC00|")},
                {"\xFE\xFF\xD8\x3D\xDE\x00\x20\xAC"s, eEncodingUTF16BE, TEXT("\xD83D\xDE00\u20AC|")},
                // A lone last byte is as if it were not there.
                {"\xFF\xFE\x41"s, eEncodingUTF16LE, TEXT("")},
                {"\xFE\xFF\x00\x41\x00"s, eEncodingUTF16BE, TEXT("A|")},
                {"\xFF\xFE\x41\x00\x0A\x00\x0A"s, eEncodingUTF16LE, TEXT("A|")},
                // UTF-8, well-formed and not
                {utf8 + "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", eEncodingUTF8,
                 TEXT("\u007F\u0080\u07FF\u0800\uFFFF\xD800\xDC00\xDBFF\xDFFF|")},
                {utf8 + "\xF4\x90\x80\x80\xF7\xBF\xBF\xBF", eEncodingUTF8, TEXT("\xDBFF\xDFFF\xDBFF\xDFFF|")},
                {utf8 + "\xED\xA0\x80" + "\xC1\x81\x80\x81\xBF\x41", eEncodingUTF8, TEXT("\xD800\x41\x01\u07C1|")},
                {utf8 + "\xC3" + "Az\xE2" + "AAz", eEncodingUTF8, TEXT("\u00C1z\u2041z|")}, // any byte follows
                {utf8 + "a\xC0\x80" + "b\nc", eEncodingUTF8, TEXT("a|c|")},
                {utf8 + "\xF8\xFFz", eEncodingUTF8, TEXT("\uFFFD\uFFFDz|")},
                {utf8 + "a\xC3\nb\xE2\x82\nc\xF0\x9F\x98\nd", eEncodingUTF8, TEXT("a\uFFFD|b\uFFFD|c\uFFFD|d|")},
                {utf8 + "\xE2\x82\0z\nb"s, eEncodingUTF8, TEXT("\uFFFD|b|")},
                {utf8 + std::string(s_fill - 1, 'x') + "\xE2\x82\xAC", eEncodingUTF8,
                 WString(s_fill - 1, TEXT('x')) + TEXT("\u20AC|")}};
    for (const auto& row : rows)
    {
        eEncoding encoding;
        EXPECT_EQ(LinesOf(row.bytes, encoding), row.lines) << PrintToString(row.bytes);
        EXPECT_EQ(encoding, row.encoding) << PrintToString(row.bytes);
    }
}

TEST(TextFile, ReadsSingleCharacters)
{
    const struct
    {
        std::string bytes;
        std::vector<int> chars;
    } rows[] = {
        {"", {}},
        {"a\r\r\n\xFF", {'a', '\n', 0xFF}},
        {"\xFF\xFE\r\0\n\0\0\r\xAC"s, {'\n', 0x0D00}},
        {"\xFE\xFF\0\r\r\0\x20\xAC\0"s, {0x0D00, 0x20AC}},
        {"\xEF\xBB\xBF\r\xE2\r\x82\r\xAC\xF7\xBF\xBF\xBF\xF8\xC0\x80z\xC3"s, {0x20AC, 0x1FFFFF, 0xFFFD, 0, 'z'}}};
    for (const auto& row : rows)
        EXPECT_EQ(CharsOf(row.bytes), row.chars) << PrintToString(row.bytes);
}

// The block's capacity is known to its readers; a line that would do with less leaves it as it is.
TEST(TextFile, LineBlocksGrowInStepsAndStay)
{
    class CByteLines : public ANSI_TextFileReader
    {
    public:
        using ANSI_TextFileReader::ANSI_TextFileReader;
        using TextFileReader::ReadByteLine;
    };
    const CTestFile onDisk(std::string(1023, 'x') + "\n" + std::string(1024, 'y') + "\nz\n" + std::string(5000, 'w'));
    CTestRecord file;
    ASSERT_EQ(file.Open(onDisk.GetPath()), 0);
    CByteLines reader(file.fileName, file.fileHandle, s_fill);
    const struct
    {
        int result, capacity, length;
    } rows[] = {{0, 1024, 1024}, {0, 2048, 1025}, {0, 2048, 2}, {0, 5120, 5001}, {-1, 5120, 1}};
    char* pLine = nullptr;
    for (const auto& row : rows)
    {
        EXPECT_EQ(reader.ReadByteLine(&pLine), row.result);
        EXPECT_EQ(std::string_view(HeaderOfLine(pLine)->magic, 4), "BDSG");
        EXPECT_EQ(HeaderOfLine(pLine)->capacity, row.capacity);
        EXPECT_EQ(HeaderOfLine(pLine)->length, row.length);
        EXPECT_EQ(std::string_view(pLine).size(), static_cast<size_t>(row.length - 1));
    }
    FreeLine(pLine);
}

TEST(TextFile, WideBlocksTakeWhatTheTextNeeds)
{
    std::string euros;
    for (int i = 0; i < 600; ++i)
        euros += "\xE2\x82\xAC";
    const struct
    {
        std::string bytes;
        int capacity, length;
    } rows[] = {{Encode(eEncodingUTF16LE, std::string(511, 'x')), 1024, 1024},
                {Encode(eEncodingUTF16BE, std::string(512, 'x')), 2048, 1026},
                {Encode(eEncodingUTF8, euros), 2048, 1202},
                {Encode(eEncodingUTF8, "a"), 1024, 4},
                {Encode(eEncodingUTF8, "\n"), 1024, 2},
                {"\x80" + std::string(511, 'x'), 2048, 1026}};
    for (const auto& row : rows)
    {
        const CTestFile onDisk(row.bytes);
        CTestRecord file;
        ASSERT_EQ(file.Open(onDisk.GetPath()), 0);
        CTestLine line;
        ASSERT_EQ(file.reader->ReadLine(&line.pText, 1252), 0);
        EXPECT_EQ(HeaderOfLine(line.pText)->capacity, row.capacity) << row.length;
        EXPECT_EQ(HeaderOfLine(line.pText)->length, row.length);
    }
}

// The handle is closed behind the reader's back, and then leads to a file again.
TEST(TextFile, HandsOutWhatItHasWhenAReadFails)
{
    for (const eEncoding encoding : {eEncodingANSI, eEncodingUTF16LE, eEncodingUTF8})
    {
        const CTestFile onDisk(Encode(encoding, "a\n" + std::string(s_fill, 'x')));
        CTestRecord file;
        ASSERT_EQ(file.Open(onDisk.GetPath()), 0);
        CTestLine line;
        ASSERT_EQ(file.reader->ReadLine(&line.pText, CP_ACP), 0);
        const WCHAR* pBlock = line.pText;
        ::CloseHandle(file.fileHandle);

        EXPECT_EQ(file.reader->ReadLine(&line.pText, CP_ACP), 0) << "the part so far";
        EXPECT_EQ(WString(line.pText), WString(s_fill / (encoding == eEncodingUTF16LE ? 2 : 1) - 2, TEXT('x')));
        SetLastErrorText(TEXT("an older one"));
        ::SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(file.reader->ReadLine(&line.pText, CP_ACP), -1);
        EXPECT_EQ(::GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(LastErrorText(), WString(TEXT("Error 6 reading file:\n\n")) + onDisk.GetPath() + TEXT("\n\n(") +
                                       SystemText(ERROR_INVALID_HANDLE) + TEXT(")"));
        EXPECT_EQ(file.reader->ReadChar(), -2);
        EXPECT_EQ(ReadMarkByte(file.fileName, file.fileHandle), -2);
        EXPECT_NE(pBlock, nullptr);

        ASSERT_EQ(::CreateFileW(onDisk.GetPath(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr),
                  file.fileHandle)
            << "the lowest free handle is given out";
        ::SetFilePointer(file.fileHandle, static_cast<LONG>(Encode(encoding, "").size()), nullptr, FILE_BEGIN);
        EXPECT_EQ(file.reader->ReadLine(&line.pText, CP_ACP), 0) << "a later read goes on";
        EXPECT_EQ(WString(line.pText), TEXT("a"));
    }
}

TEST(TextFile, SaysWhyAFileDoesNotOpen)
{
    std::filesystem::create_directory("text_file_folder");
    const struct
    {
        const WCHAR* pPath;
        DWORD code;
    } rows[] = {{TEXT("no_such_file.txt"), ERROR_FILE_NOT_FOUND}, {TEXT("text_file_folder"), ERROR_ACCESS_DENIED}};
    for (const auto& row : rows)
    {
        TextFile file;
        EXPECT_EQ(file.Open(row.pPath), -2);
        EXPECT_EQ(::GetLastError(), row.code);
        EXPECT_TRUE(file.fileName == nullptr && file.fileHandle == INVALID_HANDLE_VALUE && file.reader == nullptr);
        EXPECT_EQ(LastErrorText(), TEXT("Cannot open file:\n\n") + WString(row.pPath) + TEXT("\n\nerror ") +
                                       (row.code == 2 ? TEXT("2") : TEXT("5")) + TEXT(" (") + SystemText(row.code) +
                                       TEXT(")"));
    }
    std::filesystem::remove("text_file_folder");

    TextFile file;
    EXPECT_EQ(file.Open(WString(9000, TEXT('x')).c_str()), -2);
    EXPECT_EQ(LastErrorText(), TEXT("Cannot open file:\n\n") + WString(8191 - 19, TEXT('x'))) << "cut";
}

TEST(TextFile, SystemTextsHaveNoLineEnd)
{
    EXPECT_FALSE(SystemText(ERROR_FILE_NOT_FOUND).empty());
    EXPECT_EQ(SystemText(ERROR_FILE_NOT_FOUND).find_first_of(TEXT("\r\n")), WString::npos);
    EXPECT_EQ(SystemText(0xE0001234), WString()) << "a code without a text";
}

TEST(TextFile, EveryThreadHasItsLastErrorText)
{
    SetLastErrorText(TEXT("mine"));
    std::thread(
        []
        {
            EXPECT_EQ(GetLastErrorText(), nullptr);
            EXPECT_EQ(TextFile().Open(TEXT("no_such_file.txt")), -2);
            EXPECT_EQ(LastErrorText().substr(0, 16), TEXT("Cannot open file"));
        })
        .join();
    EXPECT_EQ(LastErrorText(), TEXT("mine"));
    SetLastErrorText(GetLastErrorText() + 1);
    EXPECT_EQ(LastErrorText(), TEXT("ine"));
    SetLastErrorText(nullptr);
    EXPECT_EQ(LastErrorText(), WString());
}

TEST(TextFile, ARecordCanBeUsedAgain)
{
    const CTestFile onDisk("\xEF\xBB\xBF"
                           "a\nb");
    CTestRecord file;
    file.codePage = 1251;
    CTestLine line;
    for (int i = 0; i < 2; ++i)
    {
        ASSERT_EQ(file.Open(i == 0 ? onDisk.GetPath() : file.fileName), 0);
        EXPECT_EQ(file.codePage, i == 0 ? 1251u : CP_ACP);
        EXPECT_EQ(file.reader->ReadLine(&line.pText, file.codePage), 0);
        EXPECT_EQ(WString(line.pText), TEXT("a"));
    }
    EXPECT_EQ(file.Open(TEXT("no_such_file.txt")), -2);
    EXPECT_EQ(file.reader->ReadLine(&line.pText, file.codePage), 0) << "a failed Open takes nothing away";
    file.Close();
    file.Close();
    EXPECT_TRUE(file.fileName == nullptr && file.fileHandle == INVALID_HANDLE_VALUE && file.reader == nullptr);
    EXPECT_EQ(file.encoding, eEncodingAuto);
}
