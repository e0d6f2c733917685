#pragma once
/// Readers of text files: they read bytes of one encoding through a buffer and return lines as UTF-16.
#include <afx.h>

/// The header of a line block: it lies directly before the text of the line, and all functions take the pointer to the
/// text. A block only grows, in steps of 1024 bytes, and may move then. It comes from realloc; FreeLine releases it.
struct LineHeader
{
    char magic[4]; ///< "BDSG", which marks a line block in a memory dump
    int capacity;  ///< size of the text area in bytes
    int length;    ///< used bytes of the text area, with the terminator
};
static_assert(sizeof(LineHeader) == 12);

/// Returns the header of a line's text. pText must not be null.
LineHeader* HeaderOfLine(void* pText);
/// Releases a line block. pText may be null.
void FreeLine(void* pText);

/// The base class, and the reader of a file without bytes. Borrows file name and handle.
/// A line of more than 2^31 - 1 bytes or a failed allocation throws std::bad_alloc; line blocks stay valid.
class TextFileReader
{
public:
    /// bufferSize: size of the read buffer in bytes; 0 for none.
    TextFileReader(const WCHAR* pFileName, HANDLE fileHandle, int bufferSize);
    TextFileReader(const TextFileReader&) = delete;
    TextFileReader& operator=(const TextFileReader&) = delete;
    virtual ~TextFileReader();

    /// Returns the next character, skipping carriage returns; -1 at the end of the file, -2 after a failed read.
    virtual int ReadChar();
    /// Reads the next line into the line block *ppLine. Lines end with LF or CR LF, which is dropped. *ppLine is null
    /// in the first call and passed on unchanged to the next ones; the caller owns it and releases it with FreeLine.
    /// codePage matters only for 8-bit text. Returns 0, or a negative value if there is no further line; a failed read
    /// looks like the end of the file.
    virtual int ReadLine(WCHAR** ppLine, unsigned int codePage);

    /// Reads the next bytes if the buffer has no unread ones. Returns 0 if there are unread bytes now, -1 at the end of
    /// the file, -2 after a failed read, with a message in the thread's last error text. The next call tries again.
    int FillBuffer();

protected:
    int ReadByteLine(char** ppLine);
    /// swapped: the file is big-endian. The bytes of the units are not exchanged here.
    int ReadWideLine(WCHAR** ppLine, bool swapped);
    /// Converts the bytes before the first zero byte with the code page.
    static void ConvertLine(const char* pBytes, WCHAR** ppLine, unsigned int codePage);

    /// Returns the next byte, or the negative result of FillBuffer.
    int ReadByte();
    /// The same, skipping carriage returns.
    int ReadByteExceptCr();
    /// Returns the next two bytes as a little-endian unit, or a negative result. A lone last byte is dropped.
    int ReadUnit();

private:
    template <typename Unit>
    int ReadUnits(Unit** ppLine, Unit lineFeed, Unit carriageReturn);
    int FillBufferForUnit(int unitSize);

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

/// UTF-8, decoded leniently: any byte is accepted as a continuation byte; overlong and surrogate forms are decoded as
/// they are.
class UTF8_TextFileReader : public TextFileReader
{
public:
    using TextFileReader::TextFileReader;
    ~UTF8_TextFileReader() override;
    /// Returns the whole code point, which may lie beyond U+10FFFF.
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
