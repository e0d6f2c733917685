#include "platform/win32/native/fileops.h"

#include "platform/win32/native/paths.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace
{
BOOL Result(bool done)
{
    if (!done)
        SetLastError(WindowsError(errno));
    return done ? TRUE : FALSE;
}

BOOL Result(const std::error_code& error)
{
    if (error)
        SetLastError(WindowsError(error.value()));
    return error ? FALSE : TRUE;
}

bool FlushFolderOf(const std::string& path)
{
    const auto folder = std::filesystem::path(path).parent_path();
    const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool done = fsync(descriptor) == 0;
    close(descriptor);
    return done;
}
} // namespace

DWORD GetFileAttributesW(LPCWSTR pPath)
{
    std::error_code error;
    const auto status = std::filesystem::status(NativePath(pPath), error);
    if (status.type() == std::filesystem::file_type::directory)
        return FILE_ATTRIBUTE_DIRECTORY;
    if (std::filesystem::exists(status))
        return FILE_ATTRIBUTE_NORMAL;
    SetLastError(error ? WindowsError(error.value()) : ERROR_FILE_NOT_FOUND);
    return INVALID_FILE_ATTRIBUTES;
}

BOOL DeleteFileW(LPCWSTR pPath)
{
    return Result(unlink(NativePath(pPath).c_str()) == 0);
}

BOOL CopyFileW(LPCWSTR pFrom, LPCWSTR pTo, BOOL failIfExists)
{
    const auto options =
        failIfExists ? std::filesystem::copy_options::none : std::filesystem::copy_options::overwrite_existing;
    std::error_code error;
    std::filesystem::copy_file(NativePath(pFrom), NativePath(pTo), options, error);
    return Result(error);
}

BOOL MoveFileExW(LPCWSTR pFrom, LPCWSTR pTo, DWORD flags)
{
    const std::string to = NativePath(pTo);
    if ((flags & MOVEFILE_REPLACE_EXISTING) == 0 && access(to.c_str(), F_OK) == 0)
    {
        errno = EEXIST;
        return Result(false);
    }
    if (std::rename(NativePath(pFrom).c_str(), to.c_str()) != 0)
        return Result(false);
    return Result((flags & MOVEFILE_WRITE_THROUGH) == 0 || FlushFolderOf(to));
}

BOOL FlushFileBuffers(HANDLE file)
{
    return Result(fsync(DescriptorOf(file)) == 0);
}

BOOL LockFileEx(HANDLE file, DWORD flags, DWORD, DWORD, DWORD, OVERLAPPED*)
{
    const int operation = ((flags & LOCKFILE_EXCLUSIVE_LOCK) != 0 ? LOCK_EX : LOCK_SH) |
                          ((flags & LOCKFILE_FAIL_IMMEDIATELY) != 0 ? LOCK_NB : 0);
    if (flock(DescriptorOf(file), operation) == 0)
        return TRUE;
    SetLastError(errno == EWOULDBLOCK ? ERROR_LOCK_VIOLATION : WindowsError(errno));
    return FALSE;
}

void Sleep(DWORD milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
