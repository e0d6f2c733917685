#include "uistrings/TextFileReader.h"

#include "uistrings/TextFile.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace
{
constexpr int EndOfData = -1;
constexpr WCHAR CarriageReturn = 0x000D;
constexpr WCHAR LineFeed = 0x000A;
constexpr unsigned ReplacementCharacter = 0xFFFD;
constexpr size_t CapacityStep = 1024; // bytes

WCHAR SwapBytes(WCHAR unit)
{
    return static_cast<WCHAR>(unit << 8 | unit >> 8);
}

/// Makes room for that many bytes of text. Keeps the text.
template <typename Unit>
void MakeRoom(Unit*& pText, size_t bytes)
{
    const size_t capacity = (bytes + CapacityStep - 1) / CapacityStep * CapacityStep;
    if (pText != nullptr && static_cast<size_t>(HeaderOfLine(pText)->capacity) >= capacity)
        return;
    if (capacity > INT_MAX)
        throw std::bad_alloc();
    void* pOld = pText == nullptr ? nullptr : HeaderOfLine(pText);
    auto* pHeader = static_cast<LineHeader*>(std::realloc(pOld, capacity + sizeof(LineHeader)));
    if (pHeader == nullptr)
        throw std::bad_alloc();
    std::memcpy(pHeader->magic, "BDSG", sizeof(pHeader->magic));
    pHeader->capacity = static_cast<int>(capacity);
    pText = reinterpret_cast<Unit*>(pHeader + 1);
}

/// Makes room for that many units and a terminator, and sets the length of the line to them.
template <typename Unit>
void SetLength(Unit*& pText, size_t units)
{
    const size_t bytes = (units + 1) * sizeof(Unit);
    MakeRoom(pText, bytes);
    HeaderOfLine(pText)->length = static_cast<int>(bytes);
}

/// The number of continuation bytes after a lead byte. Every byte from 0x80 on counts as a lead byte here.
int CountContinuationBytes(unsigned lead)
{
    return lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF8 ? 3 : 0;
}

unsigned BitsOfLead(unsigned lead)
{
    if (lead >= 0xF8)
        return ReplacementCharacter;
    return lead < 0x80 ? lead : lead < 0xE0 ? lead & 0x1F : lead < 0xF0 ? lead & 0x0F : lead & 0x07;
}

/// Decodes one code point and advances pBytes, which must not stand at the terminator. A NUL inside a sequence ends it.
unsigned TakeCodePoint(const BYTE*& pBytes)
{
    const unsigned lead = *pBytes++;
    unsigned point = BitsOfLead(lead);
    for (int i = CountContinuationBytes(lead); i > 0; --i)
    {
        if (*pBytes == 0)
            return ReplacementCharacter;
        point = point << 6 | (*pBytes++ & 0x3Fu);
    }
    return point;
}

WCHAR* PutCodePoint(WCHAR* pText, unsigned point)
{
    if (point <= 0xFFFF)
    {
        *pText++ = static_cast<WCHAR>(point);
        return pText;
    }
    const unsigned offset = std::min(point, 0x10FFFFu) - 0x10000;
    *pText++ = static_cast<WCHAR>(0xD800 + (offset >> 10));
    *pText++ = static_cast<WCHAR>(0xDC00 + (offset & 0x3FF));
    return pText;
}

/// The number of UTF-16 units of a NUL-terminated UTF-8 text.
size_t CountUnits(const BYTE* pBytes)
{
    size_t count = 0;
    while (*pBytes != 0)
        count += TakeCodePoint(pBytes) <= 0xFFFF ? 1 : 2;
    return count;
}

void DecodeLine(const BYTE* pBytes, size_t byteCount, WCHAR*& pText)
{
    // A byte gives at most one unit. Without room for that many, the units are counted first, so that a block never
    // grows more than its text needs.
    if (pText == nullptr || static_cast<size_t>(HeaderOfLine(pText)->capacity) < (byteCount + 1) * sizeof(WCHAR))
        SetLength(pText, CountUnits(pBytes));
    WCHAR* pEnd = pText;
    while (*pBytes != 0)
        if (*pBytes < 0x80)
            *pEnd++ = *pBytes++;
        else
            pEnd = PutCodePoint(pEnd, TakeCodePoint(pBytes));
    *pEnd = 0;
    SetLength(pText, static_cast<size_t>(pEnd - pText));
}
} // namespace

LineHeader* HeaderOfLine(void* pText)
{
    return static_cast<LineHeader*>(pText) - 1;
}

void FreeLine(void* pText)
{
    if (pText != nullptr)
        std::free(HeaderOfLine(pText));
}

TextFileReader::TextFileReader(const WCHAR* pFileName, HANDLE fileHandle, int bufferSize)
    : m_fileName(pFileName),
      m_fileHandle(fileHandle),
      m_bufferSize(bufferSize),
      m_buffer(bufferSize == 0 ? nullptr : static_cast<BYTE*>(std::malloc(static_cast<size_t>(bufferSize))))
{
    if (bufferSize != 0 && m_buffer == nullptr)
        throw std::bad_alloc();
}

TextFileReader::~TextFileReader()
{
    std::free(m_buffer);
}

int TextFileReader::ReadChar()
{
    return EndOfData;
}

int TextFileReader::ReadLine(WCHAR**, unsigned int)
{
    return EndOfData;
}

int TextFileReader::FillBuffer()
{
    if (m_position < m_available)
        return 0;
    if (m_endOfFile)
        return EndOfData;
    DWORD count = 0;
    if (!::ReadFile(m_fileHandle, m_buffer, static_cast<DWORD>(m_bufferSize), &count, nullptr))
        return ReportReadError(m_fileName);
    m_endOfFile = count == 0;
    m_available = static_cast<int>(count);
    m_position = 0;
    return m_endOfFile ? EndOfData : 0;
}

/// FillBuffer for units of unitSize bytes. Drops the bytes at the end of the data that are less than a unit.
int TextFileReader::FillBufferForUnit(int unitSize)
{
    while (m_available - m_position < unitSize)
    {
        m_position = m_available;
        if (const int result = FillBuffer(); result < 0)
            return result;
    }
    return 0;
}

template <typename Unit>
int TextFileReader::ReadUnits(Unit** ppLine, Unit lineFeed, Unit carriageReturn)
{
    SetLength(*ppLine, 0);
    (*ppLine)[0] = 0;
    constexpr int unitSize = sizeof(Unit);
    size_t total = 0;
    bool hasLine = false;
    while (FillBufferForUnit(unitSize) == 0)
    {
        hasLine = true;
        const auto* pPiece = reinterpret_cast<const Unit*>(m_buffer + m_position);
        const auto room = static_cast<size_t>((m_available - m_position) / unitSize);
        const Unit* pLineFeed = std::char_traits<Unit>::find(pPiece, room, lineFeed);
        const size_t count = pLineFeed == nullptr ? room : static_cast<size_t>(pLineFeed - pPiece);
        // Also without an LF after it: the LF may be the first unit of the next fill.
        const size_t copied = count > 0 && pPiece[count - 1] == carriageReturn ? count - 1 : count;

        SetLength(*ppLine, total + copied);
        std::copy_n(pPiece, copied, *ppLine + total);
        total += copied;
        (*ppLine)[total] = 0;
        m_position += static_cast<int>(count) * unitSize;
        if (pLineFeed == nullptr)
            continue;
        m_position += unitSize;
        break;
    }
    return hasLine ? 0 : EndOfData;
}

int TextFileReader::ReadByteLine(char** ppLine)
{
    return ReadUnits<char>(ppLine, '\n', '\r');
}

int TextFileReader::ReadWideLine(WCHAR** ppLine, bool swapped)
{
    return swapped ? ReadUnits<WCHAR>(ppLine, SwapBytes(LineFeed), SwapBytes(CarriageReturn))
                   : ReadUnits<WCHAR>(ppLine, LineFeed, CarriageReturn);
}

void TextFileReader::ConvertLine(const char* pBytes, WCHAR** ppLine, unsigned int codePage)
{
    const size_t count = std::strlen(pBytes);
    SetLength(*ppLine, count);
    const auto room = static_cast<int>(count);
    const int units = room == 0 ? 0 : ::MultiByteToWideChar(codePage, 0, pBytes, room, *ppLine, room);
    (*ppLine)[units] = 0;
}

int TextFileReader::ReadByte()
{
    const int result = FillBuffer();
    return result < 0 ? result : m_buffer[m_position++];
}

int TextFileReader::ReadByteExceptCr()
{
    int byte = ReadByte();
    while (byte == CarriageReturn)
        byte = ReadByte();
    return byte;
}

int TextFileReader::ReadUnit()
{
    if (const int result = FillBufferForUnit(sizeof(WCHAR)); result < 0)
        return result;
    const int unit = m_buffer[m_position] | m_buffer[m_position + 1] << 8;
    m_position += 2;
    return unit;
}

ANSI_TextFileReader::~ANSI_TextFileReader()
{
    FreeLine(m_byteLine);
}

int ANSI_TextFileReader::ReadChar()
{
    return ReadByteExceptCr();
}

int ANSI_TextFileReader::ReadLine(WCHAR** ppLine, unsigned int codePage)
{
    const int result = ReadByteLine(&m_byteLine);
    if (result == 0)
        ConvertLine(m_byteLine, ppLine, codePage);
    return result;
}

UTF8_TextFileReader::~UTF8_TextFileReader()
{
    FreeLine(m_byteLine);
}

int UTF8_TextFileReader::ReadChar()
{
    const int lead = ReadByteExceptCr();
    if (lead < 0)
        return lead;
    unsigned point = BitsOfLead(static_cast<unsigned>(lead));
    for (int i = CountContinuationBytes(static_cast<unsigned>(lead)); i > 0; --i)
    {
        const int next = ReadByteExceptCr();
        if (next < 0)
            return next;
        point = point << 6 | (static_cast<unsigned>(next) & 0x3F);
    }
    return static_cast<int>(point);
}

int UTF8_TextFileReader::ReadLine(WCHAR** ppLine, unsigned int)
{
    if (const int result = ReadByteLine(&m_byteLine); result < 0)
        return result;
    DecodeLine(reinterpret_cast<const BYTE*>(m_byteLine), std::strlen(m_byteLine), *ppLine);
    return 0;
}

int UTF16LE_TextFileReader::ReadChar()
{
    int unit = ReadUnit();
    while (unit == CarriageReturn)
        unit = ReadUnit();
    return unit;
}

int UTF16LE_TextFileReader::ReadLine(WCHAR** ppLine, unsigned int)
{
    return ReadWideLine(ppLine, false);
}

int UTF16BE_TextFileReader::ReadChar()
{
    int unit = ReadUnit();
    while (unit == SwapBytes(CarriageReturn))
        unit = ReadUnit();
    return unit < 0 ? unit : SwapBytes(static_cast<WCHAR>(unit));
}

int UTF16BE_TextFileReader::ReadLine(WCHAR** ppLine, unsigned int)
{
    const int result = ReadWideLine(ppLine, true);
    if (result >= 0)
        for (WCHAR* pUnit = *ppLine; *pUnit != 0; ++pUnit)
            *pUnit = SwapBytes(*pUnit);
    return result;
}
