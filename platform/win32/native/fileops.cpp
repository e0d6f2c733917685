#include "platform/win32/native/fileops.h"

#include "platform/win32/native/paths.h"
#include "platform/win32/native/posixfile.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
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

BOOL Rename(LPCWSTR pFrom, const std::string& to)
{
    return Result(RetryInterrupted([&] { return std::rename(NativePath(pFrom).c_str(), to.c_str()); }) == 0);
}
} // namespace

DWORD GetFileAttributesW(LPCWSTR pPath)
{
    const std::string path = NativePath(pPath);
    struct stat status;
    if (RetryInterrupted([&] { return lstat(path.c_str(), &status); }) != 0)
    {
        SetLastError(WindowsError(errno));
        return INVALID_FILE_ATTRIBUTES;
    }
    const bool isLink = S_ISLNK(status.st_mode);
    const bool isFolder =
        S_ISDIR(status.st_mode) || (isLink && stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
    const DWORD attributes = (isLink ? FILE_ATTRIBUTE_REPARSE_POINT : 0) | (isFolder ? FILE_ATTRIBUTE_DIRECTORY : 0);
    return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
}

BOOL DeleteFileW(LPCWSTR pPath)
{
    return Result(RetryInterrupted([&] { return unlink(NativePath(pPath).c_str()); }) == 0);
}

DWORD GetFinalPathNameByHandleW(HANDLE file, LPWSTR pBuffer, DWORD size, DWORD)
{
    char resolved[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(DescriptorOf(file));
    if (realpath(link.c_str(), resolved) == nullptr)
    {
        Result(false);
        return 0;
    }
    const WString path = WindowsPath(resolved);
    if (path.size() >= size)
        return static_cast<DWORD>(path.size() + 1);
    std::copy_n(path.c_str(), path.size() + 1, pBuffer);
    return static_cast<DWORD>(path.size());
}

BOOL GetFileSecurityW(LPCWSTR pPath, SECURITY_INFORMATION, LPVOID pDescriptor, DWORD size, DWORD* pNeeded)
{
    *pNeeded = sizeof(CFileSecurity);
    struct stat status;
    if (RetryInterrupted([&] { return stat(NativePath(pPath).c_str(), &status); }) != 0)
        return Result(false);
    if (size < sizeof(CFileSecurity))
    {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    const CFileSecurity security{status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO), status.st_uid, status.st_gid};
    std::memcpy(pDescriptor, &security, sizeof security);
    return TRUE;
}

bool ApplySecurity(int descriptor, const CFileSecurity& security)
{
    struct stat own;
    if (fstat(descriptor, &own) != 0)
        return false;
    mode_t mode = security.mode;
    const bool isOther = own.st_uid != security.owner || own.st_gid != security.group;
    if (isOther && fchown(descriptor, security.owner, security.group) != 0 && own.st_gid != security.group &&
        fchown(descriptor, static_cast<uid_t>(-1), security.group) != 0)
        mode &= ~static_cast<mode_t>(S_IRWXG) | (mode & S_IRWXO) << 3; // a group of others gets what everybody has
    return RetryInterrupted([&] { return fchmod(descriptor, mode); }) == 0;
}

BOOL MoveFileExW(LPCWSTR pFrom, LPCWSTR pTo, DWORD flags)
{
    const std::string to = NativePath(pTo);
    struct stat status;
    if ((flags & MOVEFILE_REPLACE_EXISTING) == 0 && lstat(to.c_str(), &status) == 0)
    {
        SetLastError(ERROR_ALREADY_EXISTS);
        return FALSE;
    }
    return Rename(pFrom, to);
}

BOOL ReplaceFileW(LPCWSTR pReplaced, LPCWSTR pReplacement, LPCWSTR, DWORD, LPVOID, LPVOID)
{
    const std::string replaced = NativePath(pReplaced);
    struct stat status;
    return Result(lstat(replaced.c_str(), &status) == 0) && Rename(pReplacement, replaced);
}

BOOL FlushFileBuffers(HANDLE file)
{
    return Result(RetryInterrupted([&] { return fsync(DescriptorOf(file)); }) == 0);
}

BOOL LockFileEx(HANDLE file, DWORD flags, DWORD, DWORD, DWORD, OVERLAPPED*)
{
    const int operation = ((flags & LOCKFILE_EXCLUSIVE_LOCK) != 0 ? LOCK_EX : LOCK_SH) |
                          ((flags & LOCKFILE_FAIL_IMMEDIATELY) != 0 ? LOCK_NB : 0);
    return Result(RetryInterrupted([&] { return flock(DescriptorOf(file), operation); }) == 0);
}

void Sleep(DWORD milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
