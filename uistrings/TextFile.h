#pragma once
/// A text file opened for reading: its encoding found by its byte-order mark, a reader for it, and what went wrong.
#include "uistrings/TextFileReader.h"

enum eEncoding : int
{
    eEncodingAuto = 0,    ///< not settled: no file, or a file without bytes
    eEncodingANSI = 1,    ///< no mark
    eEncodingUTF16LE = 2, ///< FF FE
    eEncodingUTF16BE = 3, ///< FE FF
    eEncodingUTF8 = 4     ///< EF BB BF
};

/// A plain record without destructor: Close releases what it holds. A failed allocation, here and in the functions
/// below, ends in std::bad_alloc; a record stays one that Close may be called on.
struct TextFile
{
    WCHAR* fileName = nullptr; ///< on the runtime heap; the reader points at it too
    eEncoding encoding = eEncodingAuto;
    HANDLE fileHandle = INVALID_HANDLE_VALUE;
    TextFileReader* reader = nullptr;
    unsigned int codePage = CP_ACP; ///< for the reader's ReadLine

    /// Opens a file, which others may read but not write meanwhile, and creates its reader. 0, or -2 with a message as
    /// the thread's last error text; if it cannot be opened, the record stays as it was. A file that the record still
    /// holds is closed when the new one is open.
    int Open(const WCHAR* pPath);
    /// Settles the encoding and makes the reader, which stands behind the mark. 0, or -2 after a failed read, with no
    /// reader made and the file still open.
    int CreateReader();
    /// Destroys the reader, closes the file, and leaves a new record. Allowed at any time.
    void Close();
};

/// The next byte of the file as 0 to 255; -1 at its end; -2 after a failed read, with a message.
int ReadMarkByte(const WCHAR* pFileName, HANDLE fileHandle);

/// The system's words for an error code, without the line end; empty if it has none. The caller frees the text.
WCHAR* GetSystemErrorText(DWORD code);
/// The string of that number, with the arguments in their places, at most 8191 units. The caller frees the text.
WCHAR* FormatErrorText(UINT id, va_list arguments);
/// Makes a message the thread's last error text. GetLastError gives afterwards what it gave before.
void ReportError(UINT id, ...);
/// Reports a failed read of that file with the code of GetLastError. Always -2.
int ReportReadError(const WCHAR* pFileName);
/// Keeps a copy for this thread in place of the last text; null counts as empty.
void SetLastErrorText(const WCHAR* pText);
/// This thread's last text, null if there was none yet. Good until the next one.
const WCHAR* GetLastErrorText();
/// A copy on the runtime heap, which the caller frees; of null an empty text.
WCHAR* DuplicateText(const WCHAR* pText);
