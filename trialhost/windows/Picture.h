#pragma once
#include "platform/win32/win32.h"

/// Writes what the screen shows inside the window's frame as a PNG file, windows in front of it included.
bool SaveWindowPicture(HWND window, const WCHAR* pPath);
