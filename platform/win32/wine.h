#pragma once
/// Whether the Windows calls are Wine's: for tests, which mark where those differ from Windows.
#include "platform/win32/win32.h"

inline bool IsWine()
{
#ifdef _WIN32
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
#else
    return false;
#endif
}
