#include "uistrings/TextFile.h"

#include "platform/win32/errortext.h"
#include "resources/resource.h"
#include <afxwin.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace
{
constexpr int ReadFailure = -2;
constexpr int BufferSize = 4096;     // bytes
constexpr size_t MessageSize = 8192; // units, the terminator included

struct FreeText
{
    void operator()(WCHAR* pText) const { std::free(pText); }
};
using HeapText = std::unique_ptr<WCHAR, FreeText>;

thread_local HeapText s_lastErrorText;

struct CMark
{
    eEncoding encoding;
    std::string_view bytes;
};
constexpr CMark s_marks[] = {
    {eEncodingUTF16LE, "\xFF\xFE"}, {eEncodingUTF16BE, "\xFE\xFF"}, {eEncodingUTF8, "\xEF\xBB\xBF"}};

/// Reads the bytes after the first byte of a mark, up to the first that differs. Returns the mark's encoding,
/// eEncodingANSI or ReadFailure.
int ReadRestOfMark(const CMark& mark, const WCHAR* pFileName, HANDLE fileHandle)
{
    for (const char expected : mark.bytes.substr(1))
    {
        const int byte = ReadMarkByte(pFileName, fileHandle);
        if (byte == ReadFailure)
            return ReadFailure;
        if (byte != static_cast<BYTE>(expected))
            return eEncodingANSI;
    }
    return mark.encoding;
}

/// Returns one of eEncoding (Auto for a file without bytes) or ReadFailure. The marks differ in their first byte, so
/// only one mark is ever tried.
int DetectEncoding(const WCHAR* pFileName, HANDLE fileHandle)
{
    const int first = ReadMarkByte(pFileName, fileHandle);
    if (first == ReadFailure)
        return ReadFailure;
    if (first < 0)
        return eEncodingAuto;
    for (const CMark& mark : s_marks)
        if (first == static_cast<BYTE>(mark.bytes[0]))
            return ReadRestOfMark(mark, pFileName, fileHandle);
    return eEncodingANSI;
}
} // namespace

int TextFile::Open(const WCHAR* pPath)
{
    // First, so that nothing can fail once the file is open. Also, pPath may be this record's fileName.
    HeapText pName(DuplicateText(pPath));
    const HANDLE handle =
        ::CreateFileW(pPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
    {
        const DWORD code = ::GetLastError();
        const HeapText pSystemText(GetSystemErrorText(code));
        ::SetLastError(code); // the lookup may have changed it
        ReportError(IDS_OPEN_ERROR, pPath, static_cast<int>(code), pSystemText.get());
        return ReadFailure;
    }
    if (fileHandle != INVALID_HANDLE_VALUE)
        Close();
    fileName = pName.release();
    encoding = eEncodingAuto;
    fileHandle = handle;
    return CreateReader();
}

int TextFile::CreateReader()
{
    delete std::exchange(reader, nullptr);
    const int detected = DetectEncoding(fileName, fileHandle);
    if (detected == ReadFailure)
        return ReadFailure;
    encoding = static_cast<eEncoding>(detected);
    switch (encoding)
    {
    case eEncodingAuto:
        reader = new TextFileReader(fileName, fileHandle, 0);
        break;
    case eEncodingANSI:
        ::SetFilePointer(fileHandle, 0, nullptr, FILE_BEGIN);
        reader = new ANSI_TextFileReader(fileName, fileHandle, BufferSize);
        break;
    case eEncodingUTF16LE:
        reader = new UTF16LE_TextFileReader(fileName, fileHandle, BufferSize);
        break;
    case eEncodingUTF16BE:
        reader = new UTF16BE_TextFileReader(fileName, fileHandle, BufferSize);
        break;
    case eEncodingUTF8:
        reader = new UTF8_TextFileReader(fileName, fileHandle, BufferSize);
        break;
    }
    return 0;
}

void TextFile::Close()
{
    delete reader;
    if (fileHandle != INVALID_HANDLE_VALUE)
        ::CloseHandle(fileHandle);
    std::free(fileName);
    *this = TextFile();
}

int ReadMarkByte(const WCHAR* pFileName, HANDLE fileHandle)
{
    BYTE byte = 0;
    DWORD count = 0;
    if (!::ReadFile(fileHandle, &byte, 1, &count, nullptr))
        return ReportReadError(pFileName);
    return count == 0 ? -1 : byte;
}

WCHAR* GetSystemErrorText(DWORD code)
{
    return DuplicateText(SystemErrorText(code).c_str());
}

WCHAR* FormatErrorText(UINT id, va_list arguments)
{
    WCHAR format[MessageSize] = {};
    ::LoadStringW(AfxGetResourceHandle(), id, format, MessageSize);
    WCHAR message[MessageSize] = {};
    ::_vsnwprintf_s(message, MessageSize, _TRUNCATE, format, arguments);
    return DuplicateText(message);
}

void ReportError(UINT id, ...)
{
    const DWORD code = ::GetLastError();
    va_list arguments;
    va_start(arguments, id);
    const HeapText pMessage(FormatErrorText(id, arguments));
    va_end(arguments);
    SetLastErrorText(pMessage.get());
    ::SetLastError(code);
}

int ReportReadError(const WCHAR* pFileName)
{
    const DWORD code = ::GetLastError();
    const HeapText pSystemText(GetSystemErrorText(code));
    ::SetLastError(code);
    ReportError(IDS_READ_ERROR, static_cast<int>(code), pFileName, pSystemText.get());
    return ReadFailure;
}

void SetLastErrorText(const WCHAR* pText)
{
    s_lastErrorText.reset(DuplicateText(pText));
}

const WCHAR* GetLastErrorText()
{
    return s_lastErrorText.get();
}

WCHAR* DuplicateText(const WCHAR* pText)
{
    const size_t units = pText == nullptr ? 0 : wcslen(pText);
    auto* pCopy = static_cast<WCHAR*>(std::malloc((units + 1) * sizeof(WCHAR)));
    if (pCopy == nullptr)
        throw std::bad_alloc();
    if (units != 0)
        std::memcpy(pCopy, pText, units * sizeof(WCHAR));
    pCopy[units] = 0;
    return pCopy;
}
