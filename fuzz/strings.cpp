// Input: a byte that chooses the encoding, a byte that chooses the buffer's size, and the bytes of a file. The file is
// read through a small buffer, through one of that size, and by TextFile with its detection of marks. Each time each
// line must be what an independent reading of the bytes gives, with a true header in its block.
#include "fuzz/Fuzz.h"
#include "uistrings/TextFile.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace
{
constexpr unsigned s_codePage = 1252;
constexpr size_t s_textFileFill = 4096; // bytes that TextFile reads at a time

/// What a line should read as.
struct ExpectedLine
{
    WString text;
    size_t unitsInBlock; ///< without the terminator; more than the text's if a zero unit ends that early
};

/// The bytes of each fill as units of the encoding's size, first byte low; odd bytes at the end of a fill drop out.
std::vector<WString> FillsOf(std::string_view bytes, size_t fill, size_t unitSize)
{
    std::vector<WString> fills;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(fill, bytes.size())))
    {
        const std::string_view piece = bytes.substr(0, fill);
        WString units;
        for (size_t i = 0; i + unitSize <= piece.size(); i += unitSize)
            units += static_cast<WCHAR>(static_cast<BYTE>(piece[i]) |
                                        (unitSize == 2 ? static_cast<BYTE>(piece[i + 1]) << 8 : 0));
        fills.push_back(units);
    }
    return fills;
}

WCHAR Swapped(WCHAR unit)
{
    return static_cast<WCHAR>(unit << 8 | unit >> 8);
}

/// Lines of units: each ends at LF, and each piece of it, which ends with its fill too, loses one CR at its end.
std::vector<WString> CutIntoLines(const std::vector<WString>& fills, WCHAR lineFeed, WCHAR carriageReturn)
{
    std::vector<WString> lines;
    bool isOpen = false;
    for (const WString& fill : fills)
        for (size_t start = 0; start < fill.size();)
        {
            if (!isOpen)
                lines.emplace_back();
            const size_t end = std::min(fill.find(lineFeed, start), fill.size());
            WString piece = fill.substr(start, end - start);
            if (!piece.empty() && piece.back() == carriageReturn)
                piece.pop_back();
            lines.back() += piece;
            isOpen = end == fill.size();
            start = end + 1;
        }
    return lines;
}

/// UTF-8 as the reader takes it: any byte but NUL counts as a continuation byte, and a number that is too large becomes
/// U+10FFFF.
WString DecodeTolerantly(const WString& bytes)
{
    WString text;
    for (size_t i = 0; i < bytes.size();)
    {
        const unsigned lead = bytes[i++];
        const size_t further = lead < 0x80 || lead >= 0xF8 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        static constexpr unsigned s_leadBits[] = {0x7F, 0x1F, 0x0F, 0x07};
        unsigned point = lead >= 0xF8 ? 0xFFFD : lead & s_leadBits[further];
        if (bytes.size() - i < further)
        {
            text += WCHAR{0xFFFD};
            break;
        }
        for (const WCHAR byte : bytes.substr(i, further))
            point = point << 6 | (byte & 0x3Fu);
        i += further;
        if (point <= 0xFFFF)
        {
            text += static_cast<WCHAR>(point);
            continue;
        }
        point = std::min(point, 0x10FFFFu) - 0x10000;
        text += static_cast<WCHAR>(0xD800 + (point >> 10));
        text += static_cast<WCHAR>(0xDC00 + (point & 0x3FF));
    }
    return text;
}

WString UpToNul(const WString& text)
{
    return text.substr(0, text.find(WCHAR{0}));
}

std::vector<ExpectedLine> ExpectedLines(std::string_view bytes, size_t fill, eEncoding encoding)
{
    const bool isWide = encoding == eEncodingUTF16LE || encoding == eEncodingUTF16BE;
    const bool isSwapped = encoding == eEncodingUTF16BE;
    const auto order = [isSwapped](WCHAR unit) { return isSwapped ? Swapped(unit) : unit; };
    std::vector<ExpectedLine> expected;
    for (WString line : CutIntoLines(FillsOf(bytes, fill, isWide ? 2 : 1), order(TEXT('\n')), order(TEXT('\r'))))
    {
        if (!isWide)
            line = UpToNul(line);
        if (encoding == eEncodingUTF8)
            line = DecodeTolerantly(line);
        const size_t unitsInBlock = line.size();
        std::transform(line.begin(), line.end(), line.begin(), order);
        expected.push_back({UpToNul(line), unitsInBlock});
    }
    return expected;
}

/// Beyond ASCII the unit of a byte depends on the code page and is not compared.
bool IsSameText(const WString& expected, const WCHAR* pLine, eEncoding encoding)
{
    if (encoding != eEncodingANSI)
        return expected == pLine;
    return expected.size() == wcslen(pLine) &&
           std::equal(expected.begin(), expected.end(), pLine,
                      [](WCHAR left, WCHAR right) { return left == right || (left >= 0x80 && right >= 0x80); });
}

void RequireTrueHeader(WCHAR* pLine, size_t units, int previousCapacity)
{
    const LineHeader& header = *HeaderOfLine(pLine);
    Require(std::memcmp(header.magic, "BDSG", 4) == 0, "a line's block has its mark");
    Require(header.capacity % 1024 == 0 && header.capacity >= previousCapacity, "a block grows in steps of 1024");
    Require(header.length <= header.capacity, "a line fits its block");
    Require(header.length == static_cast<int>((units + 1) * sizeof(WCHAR)), "the header counts the line's bytes");
    Require(pLine[units] == 0, "a line ends in a NUL");
}

void CheckLines(TextFileReader& reader, const std::vector<ExpectedLine>& lines, eEncoding encoding)
{
    struct FreesLine
    {
        ~FreesLine() { FreeLine(pText); }
        WCHAR* pText = nullptr;
    } line;
    int capacity = 0;
    for (const ExpectedLine& expected : lines)
    {
        Require(reader.ReadLine(&line.pText, s_codePage) == 0, "there are as many lines as the bytes hold");
        Require(IsSameText(expected.text, line.pText, encoding), "a line is what its bytes say");
        RequireTrueHeader(line.pText, expected.unitsInBlock, capacity);
        capacity = HeaderOfLine(line.pText)->capacity;
    }
    Require(reader.ReadLine(&line.pText, s_codePage) == -1, "after the last line comes the end");
    Require(reader.ReadLine(&line.pText, s_codePage) == -1, "the end is final");
}

void CheckCharacters(TextFileReader& reader, size_t size)
{
    size_t count = 0;
    for (int character; (character = reader.ReadChar()) >= 0; ++count)
        Require(count < size && character <= 0x1FFFFF, "no byte gives more than one character");
}

std::unique_ptr<TextFileReader> MakeReader(const TextFile& file, eEncoding encoding, int fill)
{
    switch (encoding)
    {
    case eEncodingUTF16LE:
        return std::make_unique<UTF16LE_TextFileReader>(file.fileName, file.fileHandle, fill);
    case eEncodingUTF16BE:
        return std::make_unique<UTF16BE_TextFileReader>(file.fileName, file.fileHandle, fill);
    case eEncodingUTF8:
        return std::make_unique<UTF8_TextFileReader>(file.fileName, file.fileHandle, fill);
    default:
        return std::make_unique<ANSI_TextFileReader>(file.fileName, file.fileHandle, fill);
    }
}

size_t MarkLength(eEncoding encoding)
{
    return encoding == eEncodingUTF8 ? 3 : encoding == eEncodingUTF16LE || encoding == eEncodingUTF16BE ? 2 : 0;
}

eEncoding EncodingOf(std::string_view bytes)
{
    if (bytes.empty())
        return eEncodingAuto;
    return bytes.starts_with("\xFF\xFE")       ? eEncodingUTF16LE
           : bytes.starts_with("\xFE\xFF")     ? eEncodingUTF16BE
           : bytes.starts_with("\xEF\xBB\xBF") ? eEncodingUTF8
                                               : eEncodingANSI;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    if (size < 2)
        return 0;
    const auto chosen = static_cast<eEncoding>(eEncodingANSI + pData[0] % 4);
    const std::string_view bytes(reinterpret_cast<const char*>(pData) + 2, size - 2);
    static const CInputFile s_input;
    s_input.Write(pData + 2, size - 2);

    struct ClosesFile : TextFile
    {
        ~ClosesFile() { Close(); }
    } file;
    Require(file.Open(s_input.GetPath().c_str()) == 0, "the file opens");
    Require(file.encoding == EncodingOf(bytes), "the mark gives the encoding");
    const std::string_view afterMark = bytes.substr(MarkLength(file.encoding));
    CheckLines(*file.reader, ExpectedLines(afterMark, s_textFileFill, file.encoding), file.encoding);

    for (const int fill : {1 + pData[1] % 7, 8 + pData[1] * 5})
    {
        ::SetFilePointer(file.fileHandle, 0, nullptr, FILE_BEGIN);
        const auto pLines = MakeReader(file, chosen, fill);
        CheckLines(*pLines, ExpectedLines(bytes, static_cast<size_t>(fill), chosen), chosen);

        ::SetFilePointer(file.fileHandle, 0, nullptr, FILE_BEGIN);
        const auto pCharacters = MakeReader(file, chosen, fill);
        CheckCharacters(*pCharacters, bytes.size());
    }
    return 0;
}
