#pragma once
/// Whole text files in UTF-8. No byte order mark is written, looked for or taken away; line ends pass as they are.
#include <afxstr.h>

/// Reads a file into text. Each maximal ill-formed part of the file becomes one U+FFFD.
/// pPath: NUL-terminated. pResult: may be null; takes the numbers of bytes and units read, or what went wrong.
/// False: the file could not be opened, and text is as it was; or it could not be read whole or has 2^31 bytes or more,
/// and text is empty.
bool ReadTextFile(const WCHAR* pPath, CString& text, CString* pResult);

/// Writes text to a file, which is made or replaced; a lone surrogate becomes U+FFFD.
/// pPath: NUL-terminated. pResult: may be null; takes the numbers of units and bytes written, or what went wrong.
/// False: the file could not be opened, or the text needs 2^31 bytes or more, and nothing was touched; or the file
/// could not be written whole, and stays as far as it got.
bool WriteTextFile(const WCHAR* pPath, const CString& text, CString* pResult);
