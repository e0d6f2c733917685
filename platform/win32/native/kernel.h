#pragma once
/// Files, modules, errors and conversions, under their Windows names. Paths may use '\\' or '/'; paths that the calls
/// give out use '\\'. Error codes are the Windows ones, mapped from errno.
#include "platform/win32/native/types.h"

#include <cstdarg>

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_INVALID_DATA = 13;
constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
constexpr DWORD ERROR_NO_MORE_FILES = 18;
constexpr DWORD ERROR_WRITE_PROTECT = 19;
constexpr DWORD ERROR_READ_FAULT = 30;
constexpr DWORD ERROR_GEN_FAILURE = 31; ///< for an errno value without a code of its own
constexpr DWORD ERROR_SHARING_VIOLATION = 32;
constexpr DWORD ERROR_LOCK_VIOLATION = 33;
constexpr DWORD ERROR_SHARING_BUFFER_EXCEEDED = 36; ///< no lock is available
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_FILE_EXISTS = 80;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_DISK_FULL = 112;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_INVALID_NAME = 123;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
constexpr DWORD ERROR_OPERATION_ABORTED = 995;
constexpr DWORD ERROR_INVALID_FLAGS = 1004;
constexpr DWORD ERROR_DISK_QUOTA_EXCEEDED = 1295;
constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
constexpr DWORD ERROR_CANNOT_FIND_WND_CLASS = 1407;
constexpr DWORD ERROR_INVALID_INDEX = 1413;
constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
constexpr DWORD ERROR_RESOURCE_LANG_NOT_FOUND = 1815;
constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921; ///< too many links, or a link where none may be followed

DWORD GetLastError();
void SetLastError(DWORD code);

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
/// Accepts only both flags above. Gives the system's text for the errno that the code stands for, followed by CR LF.
/// pBuffer is a LPWSTR*; the caller frees the text with LocalFree. Returns its units, 0 for a code that has none.
DWORD FormatMessageW(DWORD flags, const void* pSource, DWORD code, DWORD language, LPWSTR pBuffer, DWORD size,
                     va_list* pArguments);
HLOCAL LocalFree(HLOCAL block);

const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_REPARSE_POINT = 0x400; ///< a symbolic link
constexpr DWORD FILE_FLAG_OPEN_REPARSE_POINT = 0x00200000;
constexpr DWORD FILE_FLAG_BACKUP_SEMANTICS = 0x02000000;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;

struct SECURITY_ATTRIBUTES
{
    DWORD nLength;
    LPVOID lpSecurityDescriptor; ///< from GetFileSecurityW
    BOOL bInheritHandle;
};

/// Opens a file for reading, or for reading and writing; share modes have no counterpart here and are not enforced.
/// pSecurity: for CREATE_NEW alone; the file never has wider access rights, not even for a moment.
/// flags: with FILE_FLAG_OPEN_REPARSE_POINT a symbolic link is refused; without FILE_FLAG_BACKUP_SEMANTICS a folder is,
/// and with it the handle is good for FlushFileBuffers.
HANDLE CreateFileW(LPCWSTR pPath, DWORD access, DWORD shareMode, SECURITY_ATTRIBUTES* pSecurity, DWORD disposition,
                   DWORD flags, HANDLE templateFile);
BOOL ReadFile(HANDLE file, LPVOID pBuffer, DWORD size, DWORD* pRead, void* pOverlapped);
/// Writes all of the bytes or fails.
BOOL WriteFile(HANDLE file, const void* pBuffer, DWORD size, DWORD* pWritten, void* pOverlapped);

constexpr DWORD FILE_TYPE_UNKNOWN = 0;
constexpr DWORD FILE_TYPE_DISK = 1; ///< a regular file
constexpr DWORD FILE_TYPE_CHAR = 2; ///< a terminal or another device
constexpr DWORD FILE_TYPE_PIPE = 3; ///< a pipe or a socket
DWORD GetFileType(HANDLE file);
DWORD SetFilePointer(HANDLE file, LONG distance, LONG* pDistanceHigh, DWORD method);
BOOL CloseHandle(HANDLE file);

struct WIN32_FIND_DATAW
{
    DWORD dwFileAttributes;
    WCHAR cFileName[MAX_PATH];
};
/// A wildcard pattern (* and ?) in the last part of the path; case is ignored. Matches come sorted by name without
/// regard to case, after "." and ".." where these match.
HANDLE FindFirstFileW(LPCWSTR pPattern, WIN32_FIND_DATAW* pData);
BOOL FindNextFileW(HANDLE find, WIN32_FIND_DATAW* pData);
BOOL FindClose(HANDLE find);

/// From the current folder, without . and .. parts. Returns the units without the NUL; if size does not do, what it
/// must be, with the NUL; 0 on failure. ppName: only null.
DWORD GetFullPathNameW(LPCWSTR pPath, DWORD size, LPWSTR pBuffer, LPWSTR* ppName);

/// Only for null, the process's executable.
HMODULE GetModuleHandleW(LPCWSTR pName);
/// Only for the executable, which null names too. Returns the units copied; a longer path is cut to size - 1 units and
/// the result is size.
DWORD GetModuleFileNameW(HMODULE module, LPWSTR pBuffer, DWORD size);

constexpr UINT CP_ACP = 0; ///< Windows-1252 here
constexpr UINT CP_UTF8 = 65001;
/// CP_ACP, CP_UTF8 or the number of a Windows code page, without flags. length -1: up to and with the NUL.
/// Ill-formed UTF-8 gives one U+FFFD for each maximal ill-formed part. size 0: only counts. 0 on failure.
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* pBytes, int length, LPWSTR pText, int size);
/// Only CP_UTF8, without flags and default character. A lone surrogate becomes EF BF BD.
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR pText, int length, char* pBytes, int size,
                        const char* pDefaultChar, BOOL* pUsedDefaultChar);

/// Lower case by the rules of Unicode, in place, unit by unit, independent of the user's locale.
LPWSTR CharLowerW(LPWSTR pText);
