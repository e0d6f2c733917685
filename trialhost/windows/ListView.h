#pragma once
#include "platform/win32/win32.h"

#include <vector>

/// Makes a report list as a child that takes part in the tab order. Rows are selected whole.
HWND CreateReportList(HWND parent, int id, DWORD furtherStyle);
/// Replaces the columns. Widths are pixels.
void SetColumns(HWND list, const std::vector<WString>& captions, const std::vector<int>& widths);
/// Puts a text on the clipboard. False if another program has it open.
bool CopyToClipboard(HWND owner, const WString& text);
