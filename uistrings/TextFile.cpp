#include "uistrings/TextFile.h"

#include "platform/mfc/afxwin.h"
#include "resources/resource.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

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
} // namespace

int TextFile::Open(const WCHAR* pPath)
{
    const HANDLE handle =
        ::CreateFileW(pPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
    {
        const DWORD code = ::GetLastError();
        const HeapText pSystemText(GetSystemErrorText(code));
        ReportError(IDS_OPEN_ERROR, pPath, static_cast<int>(code), pSystemText.get());
        return ReadFailure;
    }
    Close();
    fileHandle = handle;
    fileName = DuplicateText(pPath);
    encoding = eEncodingAuto;
    return CreateReader();
}

int TextFile::CreateReader()
{
    if (const int result = DetectEncoding(encoding); result < 0)
        return result;
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

/// Looks at the mark's bytes alone, and at no more of them than decide.
int TextFile::DetectEncoding(eEncoding& detected) const
{
    static constexpr struct
    {
        eEncoding encoding;
        int bytes[3];
        int length;
    } s_marks[] = {{eEncodingUTF16LE, {0xFF, 0xFE}, 2},
                   {eEncodingUTF16BE, {0xFE, 0xFF}, 2},
                   {eEncodingUTF8, {0xEF, 0xBB, 0xBF}, 3}};
    const int first = ReadMarkByte(fileName, fileHandle);
    if (first == ReadFailure)
        return first;
    detected = first < 0 ? eEncodingAuto : eEncodingANSI;
    for (const auto& mark : s_marks)
    {
        if (first != mark.bytes[0])
            continue;
        for (int i = 1; i < mark.length; ++i)
        {
            const int byte = ReadMarkByte(fileName, fileHandle);
            if (byte == ReadFailure)
            {
                detected = eEncodingAuto;
                return byte;
            }
            if (byte != mark.bytes[i])
                return 0;
        }
        detected = mark.encoding;
    }
    return 0;
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
    LPWSTR pSystemText = nullptr;
    DWORD length = ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0,
                                    reinterpret_cast<LPWSTR>(&pSystemText), 1, nullptr);
    if (length == 0)
        return DuplicateText(nullptr);
    const std::unique_ptr<WCHAR, decltype(&::LocalFree)> pRelease(pSystemText, ::LocalFree);
    if (length >= 2)
        pSystemText[length - 2] = 0; // the line end that the system appends
    return DuplicateText(pSystemText);
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
