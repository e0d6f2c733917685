#include "xml/XmlFile.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>

namespace
{
struct CFileCloser
{
    void operator()(FILE* pFile) const { std::fclose(pFile); }
};
using CFilePointer = std::unique_ptr<FILE, CFileCloser>;

/// Text: narrow or wide.
template <typename Text>
void Report(CString* pResult, Text pText)
{
    if (pResult != nullptr)
        *pResult = pText;
}

/// False, with errno set: the file cannot be measured.
bool MeasureFile(FILE* pFile, long long& size)
{
    if (std::fseek(pFile, 0, SEEK_END) != 0)
        return false;
    size = ::_ftelli64(pFile);
    return size >= 0 && std::fseek(pFile, 0, SEEK_SET) == 0;
}

/// False: the file could not be read whole.
bool ReadBytes(FILE* pFile, char* pBytes, int size, CString* pResult)
{
    if (std::fread(pBytes, static_cast<size_t>(size), 1, pFile) == 1)
        return true;
    if (std::ferror(pFile) != 0)
        Report(pResult, std::strerror(errno));
    else
        Report(pResult, TEXT("File ended before its size was read"));
    return false;
}

/// The text in UTF-8; null for the empty text and, with size 0 too, for one that needs 2^31 bytes or more.
std::unique_ptr<char[]> ConvertToUtf8(const CString& text, int& size)
{
    const int length = text.GetLength();
    const auto convert = [&](char* pBytes, int room)
    { return ::WideCharToMultiByte(CP_UTF8, 0, text, length, pBytes, room, nullptr, nullptr); };
    if (length == 0)
        return nullptr;
    // Nearly all texts are ASCII, with one byte for each unit; these are not counted in advance.
    auto pBytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(length));
    size = convert(pBytes.get(), length);
    if (size == length)
        return pBytes;
    size = convert(nullptr, 0);
    if (size < length) // the count overflowed 31 bits
    {
        size = 0;
        return nullptr;
    }
    pBytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(size));
    convert(pBytes.get(), size);
    return pBytes;
}
} // namespace

bool ReadTextFile(const WCHAR* pPath, CString& text, CString* pResult)
{
    const CFilePointer pFile(::_wfopen(pPath, TEXT("rb")));
    if (!pFile)
    {
        Report(pResult, std::strerror(errno));
        return false;
    }
    text.Empty();
    long long fileSize = 0;
    if (!MeasureFile(pFile.get(), fileSize))
    {
        Report(pResult, std::strerror(errno));
        return false;
    }
    if (fileSize > INT_MAX)
    {
        Report(pResult, TEXT("File of 2147483648 bytes or more"));
        return false;
    }

    const int size = static_cast<int>(fileSize);
    int units = 0;
    if (size != 0)
    {
        const auto pBytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(size));
        if (!ReadBytes(pFile.get(), pBytes.get(), size, pResult))
            return false;
        // A byte makes at most one unit, so the units need not be counted in advance.
        units = ::MultiByteToWideChar(CP_UTF8, 0, pBytes.get(), size, text.GetBuffer(size), size);
        text.ReleaseBufferSetLength(units);
    }
    if (units < size / 4 * 3) // hardly ASCII
        text.FreeExtra();
    if (pResult != nullptr)
        pResult->Format(TEXT("%s%d bytes to %d wide chars"), TEXT(""), size, units);
    return true;
}

bool WriteTextFile(const WCHAR* pPath, const CString& text, CString* pResult)
{
    const int length = text.GetLength();
    int size = 0;
    const std::unique_ptr<char[]> pBytes = ConvertToUtf8(text, size);
    if (length != 0 && !pBytes)
    {
        Report(pResult, TEXT("Text of 2147483648 bytes or more"));
        return false;
    }

    const CFilePointer pFile(::_wfopen(pPath, TEXT("wb")));
    if (!pFile)
    {
        Report(pResult, std::strerror(errno));
        return false;
    }
    // Unbuffered, so that a full disk shows in fwrite and not only when the file closes.
    std::setvbuf(pFile.get(), nullptr, _IONBF, 0);
    if (size != 0 && std::fwrite(pBytes.get(), static_cast<size_t>(size), 1, pFile.get()) != 1)
    {
        Report(pResult, std::strerror(errno));
        return false;
    }
    if (pResult != nullptr)
        pResult->Format(TEXT("%d wide chars to %s%d bytes"), length, TEXT(""), size);
    return true;
}
