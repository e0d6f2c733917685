#include "platform/win32/native/kernel.h"

#include "platform/win32/native/paths.h"
#include "platform/win32/native/runtime.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fnmatch.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

namespace
{
thread_local DWORD s_lastError = ERROR_SUCCESS;

/// Both ways: the first row of a code is the one whose text stands for it.
constexpr struct
{
    int error;
    DWORD code;
} s_errorCodes[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EIO, ERROR_READ_FAULT},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
};

HANDLE FailedHandle(DWORD code)
{
    SetLastError(code);
    return INVALID_HANDLE_VALUE;
}

BOOL Failed(DWORD code)
{
    SetLastError(code);
    return FALSE;
}

// A handle is the descriptor plus one, so that descriptor 0 is not the null handle.
HANDLE HandleOf(int descriptor)
{
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(descriptor) + 1);
}
} // namespace

int DescriptorOf(HANDLE file)
{
    return static_cast<int>(reinterpret_cast<LONG_PTR>(file) - 1);
}

std::string NativePath(const WCHAR* pPath)
{
    const int length = static_cast<int>(wcslen(pPath));
    std::string path(3 * static_cast<size_t>(length), '\0');
    if (length > 0)
        path.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, pPath, length, path.data(),
                                                            static_cast<int>(path.size()), nullptr, nullptr)));
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

WString WindowsPath(const std::string& path)
{
    WString result(path.size(), u'\0');
    if (!path.empty())
        result.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, path.data(), static_cast<int>(path.size()),
                                                              result.data(), static_cast<int>(result.size()))));
    std::replace(result.begin(), result.end(), u'/', u'\\');
    return result;
}

DWORD WindowsError(int error)
{
    for (const auto& row : s_errorCodes)
        if (row.error == error)
            return row.code;
    return ERROR_INVALID_PARAMETER;
}

DWORD GetLastError()
{
    return s_lastError;
}

void SetLastError(DWORD code)
{
    s_lastError = code;
}

DWORD FormatMessageW(DWORD flags, const void*, DWORD code, DWORD, LPWSTR pBuffer, DWORD, va_list*)
{
    const auto* pRow = std::find_if(std::begin(s_errorCodes), std::end(s_errorCodes),
                                    [code](const auto& row) { return row.code == code; });
    if (flags != (FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM) || pRow == std::end(s_errorCodes))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const std::string narrow = std::string(std::strerror(pRow->error)) + ".\r\n";
    auto* pText = static_cast<WCHAR*>(std::calloc(narrow.size() + 1, sizeof(WCHAR)));
    if (pText == nullptr)
    {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    const int units = MultiByteToWideChar(CP_UTF8, 0, narrow.data(), static_cast<int>(narrow.size()), pText,
                                          static_cast<int>(narrow.size()));
    *reinterpret_cast<LPWSTR*>(pBuffer) = pText;
    return static_cast<DWORD>(units);
}

HLOCAL LocalFree(HLOCAL block)
{
    std::free(block);
    return nullptr;
}

HANDLE CreateFileW(LPCWSTR pPath, DWORD access, DWORD, void*, DWORD disposition, DWORD, HANDLE)
{
    if (disposition != OPEN_EXISTING && disposition != OPEN_ALWAYS)
        return FailedHandle(ERROR_INVALID_PARAMETER);
    const int flags = ((access & GENERIC_WRITE) != 0 ? O_RDWR : O_RDONLY) | (disposition == OPEN_ALWAYS ? O_CREAT : 0);
    const int descriptor = open(NativePath(pPath).c_str(), flags | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return FailedHandle(WindowsError(errno));
    struct stat status;
    if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode))
    {
        close(descriptor);
        return FailedHandle(ERROR_ACCESS_DENIED); // a folder opens here, but not on Windows
    }
    return HandleOf(descriptor);
}

BOOL ReadFile(HANDLE file, LPVOID pBuffer, DWORD size, DWORD* pRead, void*)
{
    *pRead = 0;
    ssize_t count = -1;
    do
        count = read(DescriptorOf(file), pBuffer, size);
    while (count < 0 && errno == EINTR);
    if (count < 0)
        return Failed(WindowsError(errno));
    *pRead = static_cast<DWORD>(count);
    return TRUE;
}

DWORD SetFilePointer(HANDLE file, LONG distance, LONG*, DWORD method)
{
    if (method != FILE_BEGIN)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_SET_FILE_POINTER;
    }
    const off_t position = lseek(DescriptorOf(file), distance, SEEK_SET);
    if (position >= 0)
        return static_cast<DWORD>(position);
    SetLastError(WindowsError(errno));
    return INVALID_SET_FILE_POINTER;
}

BOOL CloseHandle(HANDLE file)
{
    return close(DescriptorOf(file)) == 0 ? TRUE : Failed(WindowsError(errno));
}

namespace
{
/// The matches of one search, listed when it starts.
struct CFindState
{
    std::vector<std::filesystem::directory_entry> matches;
    size_t next = 0;
};

BOOL TakeMatch(CFindState& state, WIN32_FIND_DATAW* pData)
{
    while (state.next < state.matches.size())
    {
        const auto& entry = state.matches[state.next++];
        const WString name = WindowsPath(entry.path().filename().string());
        if (name.size() >= MAX_PATH)
            continue; // does not fit the record; no Windows file system has such a name
        std::error_code error;
        pData->dwFileAttributes = entry.is_directory(error) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
        std::copy_n(name.c_str(), name.size() + 1, pData->cFileName);
        return TRUE;
    }
    return Failed(ERROR_NO_MORE_FILES);
}
} // namespace

HANDLE FindFirstFileW(LPCWSTR pPattern, WIN32_FIND_DATAW* pData)
{
    const std::filesystem::path pattern = NativePath(pPattern);
    const auto folder = pattern.has_parent_path() ? pattern.parent_path() : std::filesystem::path(".");
    auto pState = std::make_unique<CFindState>();
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (fnmatch(pattern.filename().c_str(), entry->path().filename().c_str(), FNM_CASEFOLD | FNM_NOESCAPE) == 0)
            pState->matches.push_back(*entry);
    if (error)
        return FailedHandle(ERROR_PATH_NOT_FOUND);
    std::sort(pState->matches.begin(), pState->matches.end());
    if (!TakeMatch(*pState, pData))
        return FailedHandle(ERROR_FILE_NOT_FOUND);
    return pState.release();
}

BOOL FindNextFileW(HANDLE find, WIN32_FIND_DATAW* pData)
{
    return TakeMatch(*static_cast<CFindState*>(find), pData);
}

BOOL FindClose(HANDLE find)
{
    delete static_cast<CFindState*>(find);
    return TRUE;
}

DWORD GetFullPathNameW(LPCWSTR pPath, DWORD size, LPWSTR pBuffer, LPWSTR*)
{
    std::error_code error;
    const auto absolute = std::filesystem::absolute(NativePath(pPath), error);
    if (error)
    {
        SetLastError(ERROR_INVALID_NAME);
        return 0;
    }
    const WString path = WindowsPath(absolute.lexically_normal().string());
    if (path.size() >= size)
        return static_cast<DWORD>(path.size() + 1);
    std::copy_n(path.c_str(), path.size() + 1, pBuffer);
    return static_cast<DWORD>(path.size());
}

HMODULE GetModuleHandleW(LPCWSTR pName)
{
    static char s_executable;
    if (pName == nullptr)
        return reinterpret_cast<HMODULE>(&s_executable);
    SetLastError(ERROR_FILE_NOT_FOUND);
    return nullptr;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR pBuffer, DWORD size)
{
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (module != GetModuleHandleW(nullptr) || error || size == 0)
    {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return 0;
    }
    const WString path = WindowsPath(executable.string());
    const size_t copied = std::min<size_t>(path.size(), size - 1);
    std::copy_n(path.c_str(), copied, pBuffer);
    pBuffer[copied] = 0;
    if (copied == path.size())
        return static_cast<DWORD>(copied);
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
}

namespace
{
struct CConverterCloser
{
    void operator()(UConverter* pConverter) const { ucnv_close(pConverter); }
};
using CConverter = std::unique_ptr<UConverter, CConverterCloser>;

CConverter OpenCodePage(UINT codePage)
{
    const UINT number = codePage == CP_ACP ? 1252 : codePage;
    UErrorCode status = U_ZERO_ERROR;
    return CConverter(ucnv_open(("windows-" + std::to_string(number)).c_str(), &status));
}

/// The result rules that both conversions share: the count, or 0 with an error code.
int ConversionResult(UErrorCode status, int needed, int size)
{
    if (size != 0 && (status == U_BUFFER_OVERFLOW_ERROR || needed > size))
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
    else if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR)
        SetLastError(ERROR_INVALID_PARAMETER);
    else
        return needed;
    return 0;
}

/// Windows gives C1 controls for the five bytes that Windows-1252 leaves free, as ICU does; for other code pages
/// ICU's substitute stands.
int FromCodePage(UINT codePage, const char* pBytes, int length, LPWSTR pText, int size)
{
    const CConverter pConverter = OpenCodePage(codePage);
    if (!pConverter)
        return ConversionResult(U_ILLEGAL_ARGUMENT_ERROR, 0, size);
    UErrorCode status = U_ZERO_ERROR;
    const int needed = ucnv_toUChars(pConverter.get(), pText, size, pBytes, length, &status);
    return ConversionResult(status, needed, size);
}

int ToCodePage(UINT codePage, LPCWSTR pText, int length, char* pBytes, int size)
{
    const CConverter pConverter = OpenCodePage(codePage);
    if (!pConverter)
        return ConversionResult(U_ILLEGAL_ARGUMENT_ERROR, 0, size);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setSubstChars(pConverter.get(), "?", 1, &status);
    const int needed = ucnv_fromUChars(pConverter.get(), pBytes, size, pText, length, &status);
    return ConversionResult(status, needed, size);
}
} // namespace

int MultiByteToWideChar(UINT codePage, DWORD, const char* pBytes, int length, LPWSTR pText, int size)
{
    if (length == -1)
        length = static_cast<int>(std::strlen(pBytes)) + 1;
    if (length <= 0)
        return Failed(ERROR_INVALID_PARAMETER);
    if (codePage != CP_UTF8)
        return FromCodePage(codePage, pBytes, length, pText, size);
    UErrorCode status = U_ZERO_ERROR;
    int32_t needed = 0;
    u_strFromUTF8WithSub(pText, size, &needed, pBytes, length, 0xFFFD, nullptr, &status);
    return ConversionResult(status, needed, size);
}

int WideCharToMultiByte(UINT codePage, DWORD, LPCWSTR pText, int length, char* pBytes, int size, const char*, BOOL*)
{
    if (length == -1)
        length = static_cast<int>(wcslen(pText)) + 1;
    if (length <= 0)
        return Failed(ERROR_INVALID_PARAMETER);
    if (codePage != CP_UTF8)
        return ToCodePage(codePage, pText, length, pBytes, size);
    UErrorCode status = U_ZERO_ERROR;
    int32_t needed = 0;
    u_strToUTF8WithSub(pBytes, size, &needed, pText, length, 0xFFFD, nullptr, &status);
    return ConversionResult(status, needed, size);
}

LPWSTR CharLowerW(LPWSTR pText)
{
    for (WCHAR* p = pText; *p != 0; ++p)
    {
        const UChar32 lower = u_tolower(*p);
        if (lower <= 0xFFFF)
            *p = static_cast<WCHAR>(lower);
    }
    return pText;
}
