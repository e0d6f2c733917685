#include "platform/win32/native/kernel.h"

#include "platform/win32/native/paths.h"
#include "platform/win32/native/posixfile.h"
#include "platform/win32/native/runtime.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
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
    {0, ERROR_SUCCESS},
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {EROFS, ERROR_WRITE_PROTECT},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EIO, ERROR_READ_FAULT},
    {EWOULDBLOCK, ERROR_LOCK_VIOLATION},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {ENOLCK, ERROR_SHARING_BUFFER_EXCEEDED},
    {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    {ENOSYS, ERROR_NOT_SUPPORTED},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_QUOTA_EXCEEDED},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {EINTR, ERROR_OPERATION_ABORTED},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {-1, ERROR_GEN_FAILURE}, // "Unknown error"
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
    return ERROR_GEN_FAILURE;
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
    if (flags != (FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM))
        return Failed(ERROR_INVALID_PARAMETER);
    if (pRow == std::end(s_errorCodes))
        return Failed(ERROR_MR_MID_NOT_FOUND);
    const std::string narrow = std::string(std::strerror(pRow->error)) + ".\r\n";
    auto* pText = static_cast<WCHAR*>(std::calloc(narrow.size() + 1, sizeof(WCHAR)));
    if (pText == nullptr)
        return Failed(ERROR_NOT_ENOUGH_MEMORY);
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

namespace
{
/// Windows has different codes for a missing file and a missing folder in its path, and one for a new file that exists.
DWORD OpenError(const std::string& path, int error)
{
    const auto folder = std::filesystem::path(path).parent_path();
    const bool folderMissing = !folder.empty() && access(folder.c_str(), F_OK) != 0;
    if (error == ENOENT && (path.empty() || folderMissing))
        return ERROR_PATH_NOT_FOUND;
    return error == EEXIST ? ERROR_FILE_EXISTS : WindowsError(error);
}
} // namespace

/// A new file that nobody but its owner can open until it has its access rights.
static int CreateWithSecurity(const std::string& path, int flags, const CFileSecurity& security)
{
    const int descriptor = RetryInterrupted([&] { return open(path.c_str(), flags, S_IRUSR | S_IWUSR); });
    if (descriptor < 0 || ApplySecurity(descriptor, security))
        return descriptor;
    const int error = errno;
    unlink(path.c_str());
    close(descriptor);
    errno = error;
    return -1;
}

HANDLE CreateFileW(LPCWSTR pPath, DWORD access, DWORD, SECURITY_ATTRIBUTES* pSecurity, DWORD disposition, DWORD flags,
                   HANDLE)
{
    if (disposition != OPEN_EXISTING && disposition != OPEN_ALWAYS && disposition != CREATE_NEW)
        return FailedHandle(ERROR_INVALID_PARAMETER);
    if (pSecurity != nullptr && disposition != CREATE_NEW)
        return FailedHandle(ERROR_INVALID_PARAMETER);
    const bool opensFolder = (flags & FILE_FLAG_BACKUP_SEMANTICS) != 0;
    const int openFlags = ((access & GENERIC_WRITE) != 0 && !opensFolder ? O_RDWR : O_RDONLY) | O_CLOEXEC |
                          (disposition != OPEN_EXISTING ? O_CREAT : 0) | (disposition == CREATE_NEW ? O_EXCL : 0) |
                          ((flags & FILE_FLAG_OPEN_REPARSE_POINT) != 0 ? O_NOFOLLOW : 0);
    const std::string path = NativePath(pPath);
    const int descriptor =
        pSecurity != nullptr
            ? CreateWithSecurity(path, openFlags, *static_cast<CFileSecurity*>(pSecurity->lpSecurityDescriptor))
            : RetryInterrupted([&] { return open(path.c_str(), openFlags, 0666); });
    if (descriptor < 0)
        return FailedHandle(OpenError(path, errno));
    struct stat status;
    if (!opensFolder && fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode))
    {
        close(descriptor);
        return FailedHandle(ERROR_ACCESS_DENIED); // a folder opens here, but not on Windows
    }
    return HandleOf(descriptor);
}

BOOL ReadFile(HANDLE file, LPVOID pBuffer, DWORD size, DWORD* pRead, void*)
{
    *pRead = 0;
    const ssize_t count = RetryInterrupted([&] { return read(DescriptorOf(file), pBuffer, size); });
    if (count < 0)
        return Failed(WindowsError(errno));
    *pRead = static_cast<DWORD>(count);
    return TRUE;
}

BOOL WriteFile(HANDLE file, const void* pBuffer, DWORD size, DWORD* pWritten, void*)
{
    *pWritten = 0;
    while (*pWritten < size)
    {
        const char* pRest = static_cast<const char*>(pBuffer) + *pWritten;
        const ssize_t count = RetryInterrupted([&] { return write(DescriptorOf(file), pRest, size - *pWritten); });
        if (count <= 0)
            return Failed(count < 0 ? WindowsError(errno) : ERROR_DISK_FULL);
        *pWritten += static_cast<DWORD>(count);
    }
    return TRUE;
}

DWORD GetFileType(HANDLE file)
{
    struct stat status;
    if (fstat(DescriptorOf(file), &status) != 0)
        return Failed(WindowsError(errno));
    if (S_ISREG(status.st_mode))
        return FILE_TYPE_DISK;
    return S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) ? FILE_TYPE_PIPE : FILE_TYPE_CHAR;
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
struct CFindEntry
{
    WString name;
    DWORD attributes;
};

/// The matches of one search, listed when it starts.
struct CFindState
{
    std::vector<CFindEntry> matches;
    size_t next = 0;
};

WString UpperCase(WString text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](WCHAR unit) { return static_cast<WCHAR>(u_toupper(unit)); });
    return text;
}

/// * stands for any units, ? for one; both texts in upper case.
bool MatchesPattern(const WString& name, const WString& pattern)
{
    size_t atName = 0;
    size_t atPattern = 0;
    size_t star = WString::npos; // the last * passed, which takes one unit more whenever the rest does not fit
    size_t starEnd = 0;
    while (atName < name.size())
    {
        const WCHAR wanted = atPattern < pattern.size() ? pattern[atPattern] : 0;
        if (wanted == '*')
        {
            star = atPattern++;
            starEnd = atName;
        }
        else if (wanted == '?' || wanted == name[atName])
        {
            ++atName;
            ++atPattern;
        }
        else if (star != WString::npos)
        {
            atPattern = star + 1;
            atName = ++starEnd;
        }
        else
        {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', atPattern) == WString::npos;
}

/// The folder itself and its parent first, then what is in it, in the order of the names without regard to case.
std::vector<CFindEntry> ListFolder(const std::filesystem::path& folder, std::error_code& error)
{
    std::vector<CFindEntry> entries = {{u".", FILE_ATTRIBUTE_DIRECTORY}, {u"..", FILE_ATTRIBUTE_DIRECTORY}};
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    {
        std::error_code ignored;
        const DWORD attributes = entry->is_directory(ignored) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
        entries.push_back({WindowsPath(entry->path().filename().string()), attributes});
    }
    std::sort(entries.begin() + 2, entries.end(),
              [](const CFindEntry& left, const CFindEntry& right)
              { return std::pair(UpperCase(left.name), left.name) < std::pair(UpperCase(right.name), right.name); });
    return entries;
}

BOOL TakeMatch(CFindState& state, WIN32_FIND_DATAW* pData)
{
    if (state.next == state.matches.size())
        return Failed(ERROR_NO_MORE_FILES);
    const CFindEntry& entry = state.matches[state.next++];
    pData->dwFileAttributes = entry.attributes;
    std::copy_n(entry.name.c_str(), entry.name.size() + 1, pData->cFileName);
    return TRUE;
}
} // namespace

HANDLE FindFirstFileW(LPCWSTR pPattern, WIN32_FIND_DATAW* pData)
{
    const std::filesystem::path path = NativePath(pPattern);
    const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    const WString pattern = UpperCase(WindowsPath(path.filename().string()));
    const bool takesAll = pattern == u"*.*"; // an old promise: also the names without a dot
    auto pState = std::make_unique<CFindState>();
    std::error_code error;
    pState->matches = ListFolder(folder, error);
    if (error)
        return FailedHandle(error.value() == ENOENT ? ERROR_PATH_NOT_FOUND : WindowsError(error.value()));
    std::erase_if(pState->matches,
                  [&](const CFindEntry& entry)
                  {
                      // A name that does not fit the record is one that no Windows file system has.
                      const bool matches = takesAll || MatchesPattern(UpperCase(entry.name), pattern);
                      return entry.name.size() >= MAX_PATH || !matches;
                  });
    if (pState->matches.empty())
        return FailedHandle(ERROR_FILE_NOT_FOUND);
    TakeMatch(*pState, pData);
    return pState.release();
}

BOOL FindNextFileW(HANDLE find, WIN32_FIND_DATAW* pData)
{
    if (find == INVALID_HANDLE_VALUE)
        return Failed(ERROR_INVALID_HANDLE);
    return TakeMatch(*static_cast<CFindState*>(find), pData);
}

BOOL FindClose(HANDLE find)
{
    if (find == INVALID_HANDLE_VALUE)
        return Failed(ERROR_INVALID_HANDLE);
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
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR pBuffer, DWORD size)
{
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if ((module != nullptr && module != GetModuleHandleW(nullptr)) || error)
        return Failed(ERROR_MOD_NOT_FOUND);
    if (size == 0)
        return Failed(ERROR_INSUFFICIENT_BUFFER);
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
int ConversionResult(UErrorCode status, int64_t needed, int size)
{
    if (size != 0 && (status == U_BUFFER_OVERFLOW_ERROR || needed > size))
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
    else if ((U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR) || needed > std::numeric_limits<int>::max())
        SetLastError(ERROR_INVALID_PARAMETER);
    else
        return static_cast<int>(needed);
    return 0;
}

/// Takes the units that are ASCII from the start on, and returns how many. Most texts are as a whole, and then need no
/// converter. pTo: null to count alone.
template <typename To, typename From>
int TakeAscii(const From* pFrom, int length, To* pTo)
{
    constexpr int block = 32; // units taken together, so that the compiler can do it in one go
    int count = 0;
    for (; count + block <= length; count += block)
    {
        std::make_unsigned_t<From> bits = 0;
        for (int i = 0; i < block; ++i)
            bits |= static_cast<std::make_unsigned_t<From>>(pFrom[count + i]);
        if (bits > 0x7F)
            break;
        for (int i = 0; pTo != nullptr && i < block; ++i)
            pTo[count + i] = static_cast<To>(pFrom[count + i]);
    }
    for (; count < length && static_cast<std::make_unsigned_t<From>>(pFrom[count]) <= 0x7F; ++count)
        if (pTo != nullptr)
            pTo[count] = static_cast<To>(pFrom[count]);
    return count;
}

/// Windows gives C1 controls for the five bytes that Windows-1252 leaves free, as ICU does; for other code pages
/// ICU's substitute stands.
int FromCodePage(UINT codePage, const char* pBytes, int length, LPWSTR pText, int size)
{
    // Opening a converter costs more than a line of text.
    if (codePage == CP_ACP && TakeAscii<WCHAR>(pBytes, length, nullptr) == length)
    {
        if (size != 0)
            TakeAscii(pBytes, std::min(length, size), pText);
        return ConversionResult(U_ZERO_ERROR, length, size);
    }
    const CConverter pConverter = OpenCodePage(codePage);
    if (!pConverter)
        return ConversionResult(U_ILLEGAL_ARGUMENT_ERROR, 0, size);
    UErrorCode status = U_ZERO_ERROR;
    const int needed = ucnv_toUChars(pConverter.get(), pText, size, pBytes, length, &status);
    return ConversionResult(status, needed, size);
}

/// Converts with UTF-8 on one side. convert: ICU's call for the text after the ASCII at the start.
template <typename To, typename From, typename Convert>
int ConvertUtf8(const From* pFrom, int length, To* pTo, int size, Convert convert)
{
    const bool counts = size == 0;
    const int ascii = TakeAscii(pFrom, counts ? length : std::min(length, size), counts ? nullptr : pTo);
    if (ascii == length)
        return ascii;
    UErrorCode status = U_ZERO_ERROR;
    int32_t needed = 0;
    convert(counts ? nullptr : pTo + ascii, counts ? 0 : size - ascii, &needed, pFrom + ascii, length - ascii, 0xFFFD,
            nullptr, &status);
    return ConversionResult(status, static_cast<int64_t>(ascii) + needed, size);
}
} // namespace

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* pBytes, int length, LPWSTR pText, int size)
{
    if (flags != 0)
        return Failed(ERROR_INVALID_FLAGS);
    if (pBytes == nullptr || length == 0 || length < -1)
        return Failed(ERROR_INVALID_PARAMETER);
    if (length == -1)
        length = static_cast<int>(std::strlen(pBytes)) + 1;
    if (codePage != CP_UTF8)
        return FromCodePage(codePage, pBytes, length, pText, size);
    return ConvertUtf8(pBytes, length, pText, size, u_strFromUTF8WithSub);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR pText, int length, char* pBytes, int size,
                        const char* pDefaultChar, BOOL* pUsedDefaultChar)
{
    if (flags != 0)
        return Failed(ERROR_INVALID_FLAGS);
    if (codePage != CP_UTF8 || pDefaultChar != nullptr || pUsedDefaultChar != nullptr)
        return Failed(ERROR_INVALID_PARAMETER);
    if (pText == nullptr || length == 0 || length < -1)
        return Failed(ERROR_INVALID_PARAMETER);
    if (length == -1)
        length = static_cast<int>(wcslen(pText)) + 1;
    return ConvertUtf8(pText, length, pBytes, size, u_strToUTF8WithSub);
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
