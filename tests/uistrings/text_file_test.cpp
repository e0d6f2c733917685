#include "tests/support/TestFiles.h"
#include "uistrings/TextFile.h"

#include <cstdlib>
#include <memory>
#include <thread>
#include <tuple>
#include <vector>

using namespace std::string_literals;
using testing::PrintToString;

namespace
{
constexpr size_t s_fill = 4096; // bytes per read, after the mark

/// An open TextFile with these bytes, and the line block for its reader.
struct CTestRecord
{
    explicit CTestRecord(const std::string& bytes) : onDisk(bytes, TEXT("text_file_test.dat"))
    {
        file.codePage = 1252;
        EXPECT_EQ(file.Open(onDisk.GetPath()), 0);
    }
    ~CTestRecord()
    {
        FreeLine(pLine);
        file.Close();
    }
    int ReadLine() { return file.reader->ReadLine(&pLine, file.codePage); }

    CTestFile onDisk;
    TextFile file;
    WCHAR* pLine = nullptr;
};

/// Every line, each followed by '|'.
WString LinesOf(CTestRecord& record)
{
    WString lines;
    while (record.ReadLine() == 0)
        (lines += record.pLine) += TEXT('|');
    EXPECT_EQ(record.ReadLine(), -1) << "the end is final";
    return lines;
}

std::string Encode(eEncoding encoding, const std::string& ascii)
{
    const std::string marks[] = {"", "", "\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"};
    std::string bytes = marks[encoding];
    for (const char byte : ascii)
    {
        bytes.append(encoding == eEncodingUTF16BE ? 1 : 0, '\0') += byte;
        bytes.append(encoding == eEncodingUTF16LE ? 1 : 0, '\0');
    }
    return bytes;
}

/// The expected result of LinesOf. A line ends at LF; a read buffer's end splits it into pieces, and each piece loses
/// one CR at its end.
WString PlainLines(const std::string& text, size_t fillUnits)
{
    WString lines;
    for (size_t i = 0; i < text.size(); ++i)
    {
        const bool endsPiece = i + 1 == text.size() || text[i + 1] == '\n' || (i + 1) % fillUnits == 0;
        if (text[i] != '\r' || !endsPiece)
            lines += text[i] == '\n' ? TEXT('|') : static_cast<WCHAR>(text[i]);
    }
    return text.empty() || text.back() == '\n' ? lines : lines + TEXT('|');
}

WString SystemText(DWORD code)
{
    const std::unique_ptr<WCHAR, decltype(&std::free)> pText(GetSystemErrorText(code), std::free);
    return pText.get();
}
} // namespace

// Every short text of letters, CR and LF, at the start of a read buffer and across its end.
TEST(TextFile, EndsLinesTheSameWayInEveryEncoding)
{
    const std::pair<eEncoding, size_t> fills[] = {{eEncodingANSI, s_fill},
                                                  {eEncodingUTF16LE, s_fill / 2},
                                                  {eEncodingUTF16BE, s_fill / 2},
                                                  {eEncodingUTF8, s_fill}};
    std::vector<std::string> texts{""};
    for (size_t i = 0; texts[i].size() < 3; ++i)
        for (const char unit : {'a', '\r', '\n'})
            texts.push_back(texts[i] + unit);
    for (const auto& [encoding, units] : fills)
        for (const std::string& start : {std::string(), std::string(units - 2, 'x')})
            for (const std::string& text : texts)
            {
                CTestRecord record(Encode(encoding, start + text));
                ASSERT_EQ(LinesOf(record), PlainLines(start + text, units)) << encoding << PrintToString(text);
            }
}

TEST(TextFile, DetectsTheEncodingByItsMarkAndDecodesIt)
{
    const std::tuple<std::string, eEncoding, WString> rows[] = {
        {"", eEncodingAuto, TEXT("")},
        {"\xFF", eEncodingANSI, TEXT("\u00FF|")},
        {"\xFE\x41", eEncodingANSI, TEXT("\u00FEA|")},
        {"\xEF\xBB", eEncodingANSI, TEXT("\u00EF\u00BB|")},
        {"\xEF\xBB\x41\n\x80\0z\nb"s, eEncodingANSI, TEXT("\u00EF\u00BBA|\u20AC|b|")},
        {"A\0\n\0B\0"s, eEncodingANSI, TEXT("A||")},       // UTF-16 without a mark
        {"\xFF\xFE\0\0A\0"s, eEncodingUTF16LE, TEXT("|")}, // not UTF-32
        {"\xFF\xFE\x00\x0A\x0A\x0D\x0A\x00\x3D\xD8\x00\xDE"s, eEncodingUTF16LE, TEXT("\u0A00\u0D0A|\xD83D\xDE00|")},
        {"\xFE\xFF\x0A\x00\x0D\x0A\x00\x0A\xD8\x3D\x20\xAC"s, eEncodingUTF16BE, TEXT("\u0A00\u0D0A|\xD83D\u20AC|")},
        {"\xFF\xFE\x41", eEncodingUTF16LE, TEXT("")}, // a lone last byte is dropped
        {"\xFE\xFF\x00\x41\x00"s, eEncodingUTF16BE, TEXT("A|")},
        {"\xFF\xFE\x41\x00\x0A\x00\x0A"s, eEncodingUTF16LE, TEXT("A|")},
        {"\xEF\xBB\xBF\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", eEncodingUTF8,
         TEXT("\u007F\u0080\u07FF\u0800\uFFFF\xD800\xDC00\xDBFF\xDFFF|")},
        {"\xEF\xBB\xBF\xF4\x90\x80\x80\xF7\xBF\xBF\xBF\xED\xA0\x80\xC1\x81\x80\x81\xBF\x41\xF8\xFF", eEncodingUTF8,
         TEXT("\xDBFF\xDFFF\xDBFF\xDFFF\xD800\x41\x01\u07C1\uFFFD\uFFFD|")},
        {"\xEF\xBB\xBF\xC3\x41z\xE2\x41\x41z\n\x61\xC0\x80\x62", eEncodingUTF8, TEXT("\u00C1z\u2041z|a|")},
        {"\xEF\xBB\xBF\xC3\nb\xE2\x82\nc\xF0\x9F\x98\n\xE2\x82\0z\nd"s, eEncodingUTF8,
         TEXT("\uFFFD|b\uFFFD|c\uFFFD|\uFFFD|d|")},
        {"\xEF\xBB\xBF" + std::string(s_fill - 1, 'x') + "\xE2\x82\xAC", eEncodingUTF8,
         WString(s_fill - 1, TEXT('x')) + TEXT("\u20AC|")}};
    for (const auto& [bytes, encoding, lines] : rows)
    {
        CTestRecord record(bytes);
        EXPECT_EQ(record.file.encoding, encoding) << PrintToString(bytes);
        EXPECT_EQ(LinesOf(record), lines) << PrintToString(bytes);
    }
}

TEST(TextFile, ReadsSingleCharacters)
{
    const std::pair<std::string, std::vector<int>> rows[] = {
        {"", {}},
        {"a\r\r\n\xFF", {'a', '\n', 0xFF}},
        {"\xFF\xFE\r\0\n\0\0\r\xAC"s, {'\n', 0x0D00}},
        {"\xFE\xFF\0\r\r\0\x20\xAC\0"s, {0x0D00, 0x20AC}},
        {"\xEF\xBB\xBF\r\xE2\r\x82\r\xAC\xF7\xBF\xBF\xBF\xF8\xC0\x80z\xC3", {0x20AC, 0x1FFFFF, 0xFFFD, 0, 'z'}}};
    for (const auto& [bytes, expected] : rows)
    {
        CTestRecord record(bytes);
        std::vector<int> characters;
        for (int character = 0; (character = record.file.reader->ReadChar()) >= 0;)
            characters.push_back(character);
        EXPECT_EQ(characters, expected) << PrintToString(bytes);
    }
}

TEST(TextFile, LineBlocksGrowInStepsAndStay)
{
    const std::pair<size_t, int> rows[] = {{511, 1024}, {512, 2048}, {1, 2048}, {3000, 6144}, {0, 6144}};
    std::string text;
    for (const auto& [units, capacity] : rows)
        text += std::string(units, 'x') + '\n';
    for (const eEncoding encoding : {eEncodingANSI, eEncodingUTF16BE, eEncodingUTF8})
    {
        CTestRecord record(Encode(encoding, text));
        for (const auto& [units, capacity] : rows)
        {
            ASSERT_EQ(record.ReadLine(), 0);
            EXPECT_EQ(HeaderOfLine(record.pLine)->capacity, capacity) << "encoding " << encoding << " " << units;
            EXPECT_EQ(HeaderOfLine(record.pLine)->length, static_cast<int>(2 * units + 2));
        }
    }
}

// The test closes the reader's handle, then opens the file again under the same handle.
TEST(TextFile, ReturnsThePartialLineWhenAReadFails)
{
    CTestRecord record(Encode(eEncodingUTF16LE, "a\n" + std::string(s_fill, 'x')));
    const TextFile& file = record.file;
    ASSERT_EQ(record.ReadLine(), 0);
    ::CloseHandle(file.fileHandle);
    EXPECT_EQ(record.ReadLine(), 0);
    EXPECT_EQ(record.pLine, WString(s_fill / 2 - 2, TEXT('x'))) << "the part so far";

    EXPECT_EQ(record.ReadLine(), -1);
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    EXPECT_EQ(GetLastErrorText(), TEXT("Error 6 reading file:\n\n") + WString(file.fileName) + TEXT("\n\n(") +
                                      SystemText(ERROR_INVALID_HANDLE) + TEXT(")"));
    EXPECT_EQ(file.reader->ReadChar(), -2);
    EXPECT_EQ(ReadMarkByte(file.fileName, file.fileHandle), -2);

    // The system gives out the lowest free handle.
    ASSERT_EQ(::CreateFileW(file.fileName, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr),
              file.fileHandle);
    EXPECT_EQ(record.ReadLine(), 0) << "a later read goes on";
}

TEST(TextFile, SaysWhyAFileDoesNotOpen)
{
    std::filesystem::create_directory("text_file_folder");
    const std::tuple<WString, DWORD, WString> rows[] = {
        {TEXT("no_such_file"), ERROR_FILE_NOT_FOUND, TEXT("Cannot open file:\n\nno_such_file\n\nerror 2 (")},
        {TEXT("text_file_folder"), ERROR_ACCESS_DENIED, TEXT("Cannot open file:\n\ntext_file_folder\n\nerror 5 (")}};
    TextFile file;
    for (const auto& [path, code, message] : rows)
    {
        EXPECT_EQ(file.Open(path.c_str()), -2);
        EXPECT_EQ(::GetLastError(), code);
        EXPECT_TRUE(file.fileName == nullptr && file.fileHandle == INVALID_HANDLE_VALUE && file.reader == nullptr);
        const WString systemText = SystemText(code);
        EXPECT_EQ(GetLastErrorText(), message + systemText + TEXT(")"));
        EXPECT_FALSE(systemText.empty() || systemText.back() < TEXT(' ')) << "no line end";
    }
    std::filesystem::remove("text_file_folder");
    EXPECT_EQ(SystemText(0xE0001234), WString()) << "a code without a text";

    EXPECT_EQ(file.Open(WString(9000, TEXT('x')).c_str()), -2);
    EXPECT_EQ(GetLastErrorText(), TEXT("Cannot open file:\n\n") + WString(8191 - 19, TEXT('x'))) << "cut";
}

TEST(TextFile, EveryThreadHasItsLastErrorText)
{
    SetLastErrorText(TEXT("mine"));
    std::thread(
        []
        {
            EXPECT_EQ(GetLastErrorText(), nullptr);
            EXPECT_EQ(TextFile().Open(TEXT("no_such_file")), -2);
            EXPECT_NE(GetLastErrorText(), nullptr);
        })
        .join();
    SetLastErrorText(GetLastErrorText() + 1);
    EXPECT_EQ(GetLastErrorText(), WString(TEXT("ine")));
    SetLastErrorText(nullptr);
    EXPECT_EQ(GetLastErrorText(), WString());
}

TEST(TextFile, ARecordCanBeUsedAgain)
{
    CTestRecord record("a\nb\nc");
    TextFile& file = record.file;
    EXPECT_EQ(record.ReadLine(), 0);
    EXPECT_EQ(file.Open(TEXT("no_such_file")), -2);
    EXPECT_EQ(LinesOf(record), TEXT("b|c|")) << "a failed Open takes nothing away";
    ASSERT_EQ(file.Open(file.fileName), 0);
    EXPECT_EQ(LinesOf(record), TEXT("a|b|c|"));
    file.Close();
    EXPECT_TRUE(file.fileName == nullptr && file.fileHandle == INVALID_HANDLE_VALUE && file.reader == nullptr);
}
