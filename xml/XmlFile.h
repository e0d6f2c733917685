#pragma once
/// Whole text files in UTF-8. A byte order mark is neither written nor removed; line ends stay as they are.
#include <afxstr.h>

/// Reads a file into text. Each maximal ill-formed part of the file becomes one U+FFFD.
/// pPath: NUL-terminated. pResult: may be null; gets the numbers of bytes and units read, or what went wrong.
/// False: the file could not be opened, and text is unchanged; or the file could not be read whole or has 2^31 bytes or
/// more, and text is empty.
bool ReadTextFile(const WCHAR* pPath, CString& text, CString* pResult);

/// Writes text to a file, creating or replacing it; a lone surrogate becomes U+FFFD.
/// pPath: NUL-terminated. pResult: may be null; gets the numbers of units and bytes written, or what went wrong.
/// False: the file could not be opened, or the text needs 2^31 bytes or more, and nothing has changed; or the file
/// could not be written whole, and holds what was written so far.
bool WriteTextFile(const WCHAR* pPath, const CString& text, CString* pResult);
