#pragma once
/// Calls on whole files: attributes, access rights, rename, removal, locks, flushing to disk.
#include "platform/win32/native/kernel.h"

constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
/// FILE_ATTRIBUTE_DIRECTORY or FILE_ATTRIBUTE_NORMAL. A symbolic link has FILE_ATTRIBUTE_REPARSE_POINT, whether its
/// target exists or not, and FILE_ATTRIBUTE_DIRECTORY if that is a folder.
DWORD GetFileAttributesW(LPCWSTR pPath);
/// Removes a file or a symbolic link itself.
BOOL DeleteFileW(LPCWSTR pPath);

/// The path of an open file with all links resolved, without Windows' prefix \\?\. flags: only 0. Returns the units
/// without the NUL; if size is too small, what it must be, with the NUL; 0 on failure.
DWORD GetFinalPathNameByHandleW(HANDLE file, LPWSTR pBuffer, DWORD size, DWORD flags);

using SECURITY_INFORMATION = DWORD;
constexpr SECURITY_INFORMATION OWNER_SECURITY_INFORMATION = 1;
constexpr SECURITY_INFORMATION GROUP_SECURITY_INFORMATION = 2;
constexpr SECURITY_INFORMATION DACL_SECURITY_INFORMATION = 4;
/// Access rights, owner and group of the file, whatever is asked for, as a block to be handed to CreateFileW.
/// Fails with ERROR_INSUFFICIENT_BUFFER, and the size in *pNeeded, if the block does not fit.
BOOL GetFileSecurityW(LPCWSTR pPath, SECURITY_INFORMATION asked, LPVOID pDescriptor, DWORD size, DWORD* pNeeded);

constexpr DWORD MOVEFILE_REPLACE_EXISTING = 1;
/// An atomic rename.
BOOL MoveFileExW(LPCWSTR pFrom, LPCWSTR pTo, DWORD flags);

constexpr DWORD REPLACEFILE_IGNORE_MERGE_ERRORS = 2;
/// An atomic rename of the replacement onto the replaced file, which must exist. Windows gives the replacement the
/// access rights of the replaced file; here it must have them already. pBackup: only null.
BOOL ReplaceFileW(LPCWSTR pReplaced, LPCWSTR pReplacement, LPCWSTR pBackup, DWORD flags, LPVOID, LPVOID);

/// Waits until the file's content, or the folder's entries, are on the disk.
BOOL FlushFileBuffers(HANDLE file);

struct OVERLAPPED
{
    DWORD Offset;
    DWORD OffsetHigh;
};
constexpr DWORD LOCKFILE_FAIL_IMMEDIATELY = 1;
constexpr DWORD LOCKFILE_EXCLUSIVE_LOCK = 2;
/// Locks the whole file, whatever range is named; against other processes and other handles of this one.
/// Ends with the handle, and so with the process.
BOOL LockFileEx(HANDLE file, DWORD flags, DWORD reserved, DWORD low, DWORD high, OVERLAPPED* pOverlapped);

void Sleep(DWORD milliseconds);
