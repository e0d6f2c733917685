#pragma once
/// The Windows base types, with their widths on 64-bit Windows.
#include "platform/text.h"

#include <cstdint>

#define __int64 long long
#define CALLBACK
#define WINAPI
#define FALSE 0
#define TRUE 1

using BOOL = int;
using BYTE = unsigned char;
using WORD = unsigned short;
using UINT = unsigned int;
using LONG = int32_t;
using DWORD = uint32_t;
using HRESULT = int32_t;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using LONG_PTR = intptr_t;
using ULONG_PTR = uintptr_t;
using DWORD_PTR = uintptr_t;
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using LPVOID = void*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPCTSTR = const WCHAR*;

using HANDLE = void*;
using HLOCAL = void*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using HWND = struct HWND__*;
using HMENU = struct HMENU__*;

constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);

constexpr DWORD MAX_PATH = 260; // WCHARs, the terminator included

#define LOWORD(value) (static_cast<WORD>(static_cast<DWORD_PTR>(value) & 0xFFFF))
#define HIWORD(value) (static_cast<WORD>((static_cast<DWORD_PTR>(value) >> 16) & 0xFFFF))
#define MAKELONG(low, high)                                                                                            \
    (static_cast<LONG>(static_cast<DWORD>(static_cast<WORD>(low)) | static_cast<DWORD>(static_cast<WORD>(high)) << 16))
#define MAKEWPARAM(low, high) (static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(low, high))))
/// Converts a resource's number to a resource name.
#define MAKEINTRESOURCEW(number) (reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(static_cast<WORD>(number))))
