#pragma once
/// Between Windows paths and those of this system. For the stand-in's own use.
#include "platform/win32/native/types.h"

#include <string>

/// UTF-8, '\\' turned into '/'. A lone surrogate becomes U+FFFD, so a name with one is not found.
std::string NativePath(const WCHAR* pPath);
/// The way back: UTF-16, '/' turned into '\\'.
WString WindowsPath(const std::string& path);
/// The Windows error code for an errno value.
DWORD WindowsError(int error);
/// The file descriptor behind a handle of CreateFileW.
int DescriptorOf(HANDLE file);
