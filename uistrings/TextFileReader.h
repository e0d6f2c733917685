#pragma once
/// Readers of text files: bytes of one encoding through a read buffer, lines out as UTF-16.
#include "platform/win32/win32.h"

/// Stands directly before the text of a line. The text pointer, which is what everything passes around, points behind
/// it. A block only grows, in steps of 1024 bytes, and may move when it does. It comes from realloc; FreeLine releases
/// it.
struct LineHeader
{
    char magic[4]; ///< "BDSG"
    int capacity;  ///< bytes of the text area
    int length;    ///< bytes of it in use, the terminator included
};
static_assert(sizeof(LineHeader) == 12);

/// The header of a line's text, which must not be null.
LineHeader* HeaderOfLine(void* pText);
/// Null is allowed.
void FreeLine(void* pText);

/// The reader of a file without bytes, and the base of the others. Borrows file name and handle.
/// A line that would pass 2^31 - 1 bytes, or an allocation that fails, ends in std::bad_alloc; line blocks stay valid.
class TextFileReader
{
public:
    /// bufferSize: bytes of the read buffer; 0 for no buffer.
    TextFileReader(const WCHAR* pFileName, HANDLE fileHandle, int bufferSize);
    TextFileReader(const TextFileReader&) = delete;
    TextFileReader& operator=(const TextFileReader&) = delete;
    virtual ~TextFileReader();

    /// The next character without carriage returns; -1 at the end of the file, -2 after a failed read.
    virtual int ReadChar();
    /// The next line, ended by LF or CR LF, without its end. *ppLine: null at the first call, then what the last call
    /// left; it stays the caller's, who releases it with FreeLine. codePage counts for 8-bit text alone.
    /// 0: *ppLine holds the line. Negative: there is none; a read that failed looks like the end of the file.
    virtual int ReadLine(WCHAR** ppLine, unsigned int codePage);

    /// 0 when unread bytes stand in the buffer, -1 at the end of the file, -2 after a failed read, which leaves its
    /// message as the thread's last error text. A later call tries again.
    int FillBuffer();

protected:
    int ReadByteLine(char** ppLine);
    /// swapped: the units' bytes stand in the other order, and are left so.
    int ReadWideLine(WCHAR** ppLine, bool swapped);
    /// The bytes up to the first zero byte, as the code page has them.
    static void ConvertLine(const char* pBytes, WCHAR** ppLine, unsigned int codePage);

    /// The next byte or a negative result.
    int ReadByte();
    int ReadByteButCr();
    /// The next two bytes in file order as a little-endian unit. A lone last byte is dropped.
    int ReadUnit();

private:
    template <typename Unit>
    int ReadUnits(Unit** ppLine, Unit lineFeed, Unit carriageReturn);
    int FillBufferWith(int unitSize);

    const WCHAR* m_fileName;
    HANDLE m_fileHandle;
    int m_bufferSize;
    BYTE* m_buffer;
    int m_position = 0;
    int m_available = 0;
    bool m_endOfFile = false;
};

/// 8-bit text in a code page.
class ANSI_TextFileReader : public TextFileReader
{
public:
    using TextFileReader::TextFileReader;
    ~ANSI_TextFileReader() override;
    int ReadChar() override;
    int ReadLine(WCHAR** ppLine, unsigned int codePage) override;

private:
    char* m_byteLine = nullptr;
};

/// UTF-8, read tolerantly: any byte counts as a further byte, overlong and surrogate forms give what they encode.
class UTF8_TextFileReader : public TextFileReader
{
public:
    using TextFileReader::TextFileReader;
    ~UTF8_TextFileReader() override;
    /// The whole code point, not limited to Unicode's range.
    int ReadChar() override;
    int ReadLine(WCHAR** ppLine, unsigned int codePage) override;

private:
    char* m_byteLine = nullptr;
};

class UTF16LE_TextFileReader : public TextFileReader
{
public:
    using TextFileReader::TextFileReader;
    int ReadChar() override;
    int ReadLine(WCHAR** ppLine, unsigned int codePage) override;
};

class UTF16BE_TextFileReader : public TextFileReader
{
public:
    using TextFileReader::TextFileReader;
    int ReadChar() override;
    int ReadLine(WCHAR** ppLine, unsigned int codePage) override;
};
