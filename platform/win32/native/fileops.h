#pragma once
/// Calls on whole files: attributes, copy, rename, removal, locks, flushing to disk.
#include "platform/win32/native/kernel.h"

constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
/// FILE_ATTRIBUTE_DIRECTORY or FILE_ATTRIBUTE_NORMAL.
DWORD GetFileAttributesW(LPCWSTR pPath);
BOOL DeleteFileW(LPCWSTR pPath);
BOOL CopyFileW(LPCWSTR pFrom, LPCWSTR pTo, BOOL failIfExists);

constexpr DWORD MOVEFILE_REPLACE_EXISTING = 1;
constexpr DWORD MOVEFILE_WRITE_THROUGH = 8;
/// An atomic rename. With MOVEFILE_WRITE_THROUGH the folder's entry is on the disk when the call returns.
BOOL MoveFileExW(LPCWSTR pFrom, LPCWSTR pTo, DWORD flags);

/// Waits until the file's content is on the disk.
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
