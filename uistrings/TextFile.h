#pragma once
/// Opens text files for reading: detects the encoding by the byte-order mark, creates the reader, and keeps the message
/// of the last failure.
#include "uistrings/TextFileReader.h"

enum eEncoding : int
{
    eEncodingAuto = 0,    ///< unknown: no file, or a file without bytes
    eEncodingANSI = 1,    ///< no mark
    eEncodingUTF16LE = 2, ///< FF FE
    eEncodingUTF16BE = 3, ///< FE FF
    eEncodingUTF8 = 4     ///< EF BB BF
};

/// An open text file. A plain record without a destructor: call Close to release it. A failed allocation, here and in
/// the functions below, throws std::bad_alloc; Close still works afterwards.
struct TextFile
{
    WCHAR* fileName = nullptr; ///< on the runtime heap, owned; the reader points to the same text
    eEncoding encoding = eEncodingAuto;
    HANDLE fileHandle = INVALID_HANDLE_VALUE;
    TextFileReader* reader = nullptr;
    unsigned int codePage = CP_ACP; ///< for the reader's ReadLine

    /// Opens a file and creates its reader. Others may read the file meanwhile, but not write it. Returns 0, or -2 with
    /// a message in the thread's last error text. If the file cannot be opened, the record does not change. A file that
    /// the record still holds is closed once the new one is open.
    int Open(const WCHAR* pPath);
    /// Detects the encoding and creates a reader that starts after the mark. Returns 0, or -2 after a failed read; then
    /// there is no reader and the file stays open.
    int CreateReader();
    /// Destroys the reader, closes the file and resets the record. Allowed at any time.
    void Close();
};

/// Returns the next byte of the file as 0 to 255, -1 at its end, or -2 after a failed read, with a message.
int ReadMarkByte(const WCHAR* pFileName, HANDLE fileHandle);

/// Returns the system's message for an error code without its line end, or an empty text. The caller frees it.
WCHAR* GetSystemErrorText(DWORD code);
/// Formats the arguments with the string resource of that number. The result is cut at 8191 units; the caller frees it.
WCHAR* FormatErrorText(UINT id, va_list arguments);
/// Formats a message and keeps it as the thread's last error text. Does not change GetLastError.
void ReportError(UINT id, ...);
/// Reports a failed read of that file with the code of GetLastError. Returns -2.
int ReportReadError(const WCHAR* pFileName);
/// Replaces the thread's last error text with a copy of pText; null counts as empty.
void SetLastErrorText(const WCHAR* pText);
/// Returns the thread's last error text, or null if there was no error yet. Valid until the next error.
const WCHAR* GetLastErrorText();
/// Returns a copy on the runtime heap, which the caller frees. Null counts as empty.
WCHAR* DuplicateText(const WCHAR* pText);
