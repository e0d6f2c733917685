#pragma once
/// Converts between Windows paths and paths of this system. Internal to the stand-in.
#include "platform/win32/native/types.h"

#include <string>

/// Returns UTF-8 with '/' for '\\'. A lone surrogate becomes U+FFFD, so a name with one is not found.
std::string NativePath(const WCHAR* pPath);
/// Returns UTF-16 with '\\' for '/'.
WString WindowsPath(const std::string& path);
/// Returns the Windows error code for an errno value.
DWORD WindowsError(int error);
/// Returns the file descriptor of a handle from CreateFileW.
int DescriptorOf(HANDLE file);
