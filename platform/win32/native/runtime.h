#pragma once
/// The wide functions of the Windows C runtime that the module calls, as overloads on WCHAR. They behave as on Windows
/// in the locale in which a process starts; this system's locale has no influence.
#include "platform/win32/native/types.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>

constexpr size_t _TRUNCATE = static_cast<size_t>(-1);

size_t wcslen(const WCHAR* pText);
int wcscmp(const WCHAR* pLeft, const WCHAR* pRight);
int wcsncmp(const WCHAR* pLeft, const WCHAR* pRight, size_t count);
const WCHAR* wcschr(const WCHAR* pText, WCHAR unit);

/// Limited to 32 bits, the width of long on Windows. Base 10 or 16. White space is blank, \t, \n, \v, \f and \r.
/// Only 0 to 9 and the letters are digits; Windows also accepts digits and blanks of other scripts.
long wcstol(const WCHAR* pText, WCHAR** ppEnd, int base);
/// As wcstol in base 10: a number out of range becomes the nearest int.
int _wtoi(const WCHAR* pText);

/// Units 0x01 to 0xFF become the byte of that value; any other unit makes the call fail with (size_t)-1.
/// Examines only the units that fit. pBytes null: only counts. count: size in bytes; the result is terminated if there
/// is room for the NUL.
size_t wcstombs(char* pBytes, const WCHAR* pText, size_t count);
/// Every byte becomes the unit of that value; never fails. count: size in units.
size_t mbstowcs(WCHAR* pText, const char* pBytes, size_t count);

/// Formats %s (a const WCHAR*), %d, %u, %x, %c and %% without widths or flags. count: _TRUNCATE cuts a longer text to
/// size - 1 units and returns -1; otherwise the text must fit. Returns the units written, without the NUL.
int _vsnwprintf_s(WCHAR* pBuffer, size_t size, size_t count, const WCHAR* pFormat, va_list arguments);
/// Returns the length of such a text in units, without the NUL; -1 for more than 2^31 - 1.
int _vscwprintf(const WCHAR* pFormat, va_list arguments);

/// fopen by a wide path, in which '\\' separates folders as '/' does. Fails with EACCES for a folder, as on Windows.
FILE* _wfopen(const WCHAR* pPath, const WCHAR* pMode);
/// The position in a file as 64 bits: ftell has 32 on Windows.
long long _ftelli64(FILE* pFile);
