#pragma once
/// Tells whether the Windows calls are those of Wine. For tests that differ there.
#include "platform/win32/win32.h"

inline bool IsWine()
{
#ifdef _WIN32
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
#else
    return false;
#endif
}
