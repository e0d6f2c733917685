#include "sdk/FileAccess.h"

#include "platform/win32/win32.h"

#include <algorithm>

namespace VLT
{
namespace
{
constexpr int s_attempts = 100;
constexpr DWORD s_pause = 50; // milliseconds: five seconds in all

DWORD ErrorOf(BOOL done)
{
    return done ? ERROR_SUCCESS : ::GetLastError();
}

/// Repeats an attempt that fails because somebody else uses the file, for five seconds.
template <typename Attempt>
DWORD WaitFor(Attempt attempt, bool (*mayPass)(DWORD) = IsFileInUse)
{
    DWORD error = attempt();
    for (int i = 1; mayPass(error) && i < s_attempts; ++i)
    {
        ::Sleep(s_pause);
        error = attempt();
    }
    return error;
}

/// Windows refuses with these to replace a file that somebody has open.
bool MayBeOpenElsewhere(DWORD error)
{
    constexpr DWORD unableToRemoveReplaced = 1175;
    return IsFileInUse(error) || error == ERROR_ACCESS_DENIED || error == unableToRemoveReplaced;
}

/// The path from the root. Nothing in it is simplified: a name before ".." may be a link.
CString FullPath(const CString& path)
{
    const bool isFull = path.IsEmpty() || path.GetAt(0) == TEXT('\\') || path.GetAt(0) == TEXT('/') ||
                        (path.GetLength() > 1 && path.GetAt(1) == TEXT(':'));
    const DWORD size = isFull ? 0 : ::GetFullPathNameW(TEXT("."), 0, nullptr, nullptr);
    if (size == 0)
        return path;
    CString folder;
    const DWORD length = ::GetFullPathNameW(TEXT("."), size, folder.GetBuffer(static_cast<int>(size)), nullptr);
    folder.ReleaseBufferSetLength(static_cast<int>(length < size ? length : 0));
    return length < size ? folder + TEXT("\\") + path : path;
}

/// Fills a new file by a function and flushes it to disk.
template <typename Fill>
DWORD MakeNewFile(const CString& path, CFileSecurity& security, Fill fill)
{
    CFileHandle file(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT, security.Get());
    if (file.GetError() != ERROR_SUCCESS)
        return file.GetError();
    DWORD error = fill(file);
    if (error == ERROR_SUCCESS)
        error = ErrorOf(::FlushFileBuffers(file.Get()));
    file.Close();
    if (error != ERROR_SUCCESS)
        RemoveFile(path);
    return error;
}

DWORD Write(const CFileHandle& file, std::string_view bytes)
{
    DWORD written = 0;
    return ErrorOf(::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
}

/// Hands the file's bytes out in pieces, up to the end or the first error.
template <typename TakePiece>
DWORD ReadPieces(const CFileHandle& file, TakePiece takePiece)
{
    std::vector<char> piece(1 << 16);
    for (;;)
    {
        DWORD count = 0;
        DWORD error = ErrorOf(::ReadFile(file.Get(), piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr));
        if (error != ERROR_SUCCESS || count == 0)
            return error;
        error = takePiece(std::string_view(piece.data(), count));
        if (error != ERROR_SUCCESS)
            return error;
    }
}
} // namespace

bool IsFileInUse(DWORD error)
{
    return error == ERROR_LOCK_VIOLATION || error == ERROR_SHARING_VIOLATION;
}

DWORD CFileSecurity::Read(const CString& path)
{
    m_descriptor.clear();
    DWORD size = 0;
    for (;;)
    {
        const DWORD error = ErrorOf(::GetFileSecurityW(path, DACL_SECURITY_INFORMATION, m_descriptor.data(),
                                                       static_cast<DWORD>(m_descriptor.size()), &size));
        if (error == ERROR_SUCCESS)
            return ERROR_SUCCESS;
        if (error != ERROR_INSUFFICIENT_BUFFER || size <= m_descriptor.size())
        {
            m_descriptor.clear();
            const bool hasNone = error == ERROR_FILE_NOT_FOUND || error == ERROR_NOT_SUPPORTED;
            return hasNone ? ERROR_SUCCESS : error;
        }
        m_descriptor.resize(size);
    }
}

SECURITY_ATTRIBUTES* CFileSecurity::Get()
{
    if (m_descriptor.empty())
        return nullptr;
    m_attributes = {sizeof m_attributes, m_descriptor.data(), FALSE};
    return &m_attributes;
}

CFileHandle::CFileHandle(const CString& path, DWORD access, DWORD disposition, DWORD flags,
                         SECURITY_ATTRIBUTES* pSecurity)
    : m_handle(INVALID_HANDLE_VALUE)
{
    m_error = WaitFor(
        [&]
        {
            m_handle = ::CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, pSecurity, disposition,
                                     FILE_ATTRIBUTE_NORMAL | flags, nullptr);
            return ErrorOf(m_handle != INVALID_HANDLE_VALUE);
        });
}

void CFileHandle::Close()
{
    if (m_handle != INVALID_HANDLE_VALUE)
        ::CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
}

DWORD ResolveLink(const CString& path, CString& target)
{
    target = path;
    const DWORD attributes = ::GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return ERROR_SUCCESS; // whatever else is wrong with the path shows when it is opened
    const CFileHandle file(path, GENERIC_READ, OPEN_EXISTING);
    if (file.GetError() != ERROR_SUCCESS)
        return file.GetError();
    const DWORD size = ::GetFinalPathNameByHandleW(file.Get(), nullptr, 0, 0);
    const DWORD length = ::GetFinalPathNameByHandleW(file.Get(), target.GetBuffer(static_cast<int>(size)), size, 0);
    if (length == 0 || length >= size)
        return length == 0 ? ::GetLastError() : ERROR_INSUFFICIENT_BUFFER;
    target.ReleaseBufferSetLength(static_cast<int>(length));
    return ERROR_SUCCESS;
}

CFileHandle OpenLock(const CString& path, CFileSecurity& security)
{
    constexpr DWORD flags = FILE_FLAG_OPEN_REPARSE_POINT;
    // Some network file systems lock only what is open for writing.
    CFileHandle file(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING, flags);
    if (file.GetError() == ERROR_ACCESS_DENIED)
        return CFileHandle(path, GENERIC_READ, OPEN_EXISTING, flags);
    if (file.GetError() != ERROR_FILE_NOT_FOUND)
        return file;
    CFileHandle made(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW, flags, security.Get());
    if (made.GetError() != ERROR_FILE_EXISTS) // by another program, in between
        return made;
    return CFileHandle(path, GENERIC_READ, OPEN_EXISTING, flags);
}

DWORD Lock(const CFileHandle& file)
{
    return WaitFor(
        [&]
        {
            OVERLAPPED range{};
            return ErrorOf(
                ::LockFileEx(file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &range));
        });
}

DWORD ReadAll(const CFileHandle& file, std::string& bytes)
{
    return ReadPieces(file,
                      [&](std::string_view piece)
                      {
                          bytes += piece;
                          return DWORD{ERROR_SUCCESS};
                      });
}

DWORD WriteNewFile(const CString& path, std::string_view bytes, CFileSecurity& security)
{
    return MakeNewFile(path, security, [&](const CFileHandle& file) { return Write(file, bytes); });
}

DWORD CopyToNewFile(const CString& from, const CString& to, CFileSecurity& security)
{
    const CFileHandle source(from, GENERIC_READ, OPEN_EXISTING);
    if (source.GetError() != ERROR_SUCCESS)
        return source.GetError();
    const auto copyTo = [&](const CFileHandle& file)
    { return ReadPieces(source, [&](std::string_view piece) { return Write(file, piece); }); };
    return MakeNewFile(to, security, copyTo);
}

DWORD RemoveFile(const CString& path)
{
    const DWORD error = WaitFor([&] { return ErrorOf(::DeleteFileW(path)); });
    return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
}

bool Exists(const CString& path)
{
    if (::GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES)
        return true;
    const DWORD error = ::GetLastError();
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

bool IsFolder(const CString& path)
{
    const DWORD attributes = ::GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

DWORD MoveOnto(const CString& from, const CString& to)
{
    const auto move = [&] { return ErrorOf(::MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING)); };
    return IsFolder(to) ? move() : WaitFor(move, MayBeOpenElsewhere);
}

DWORD MoveToNewName(const CString& from, const CString& to)
{
    return WaitFor([&] { return ErrorOf(::MoveFileExW(from, to, 0)); });
}

DWORD ReplaceContent(const CString& from, const CString& to)
{
    const CString fullFrom = FullPath(from); // Wine does not replace files by relative paths
    const CString fullTo = FullPath(to);
    const auto replace = [&]
    { return ErrorOf(::ReplaceFileW(fullTo, fullFrom, nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)); };
    const DWORD error = WaitFor(replace, MayBeOpenElsewhere);
    // Windows may have taken the old file away and then failed to rename the new one.
    return error == ERROR_SUCCESS || Exists(to) ? error : MoveToNewName(from, to);
}

DWORD FlushFolderOf(const CString& path)
{
    const int end = std::max(path.ReverseFind(TEXT('\\')), path.ReverseFind(TEXT('/')));
    const CString folder = end < 0 ? CString(TEXT(".")) : path.Left(end + 1);
    const CFileHandle handle(folder, GENERIC_WRITE, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    const DWORD error =
        handle.GetError() != ERROR_SUCCESS ? handle.GetError() : ErrorOf(::FlushFileBuffers(handle.Get()));
    constexpr DWORD invalidFunction = 1; // Windows, where a file system does not know the call
    const bool hasNone = error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_PARAMETER || error == invalidFunction;
    return hasNone ? ERROR_SUCCESS : error;
}
} // namespace VLT
