#include "tools/vltconfig/StorageReader.h"

#include "platform/win32/errortext.h"
#include "platform/win32/utf8.h"
#include "projection/base64/Base64.h"
#include "sdk/FileAccess.h"
#include "tools/vltconfig/Progress.h"

#include <algorithm>
#include <climits>

bool CStorageReader::Open(const WString& path)
{
    const CProgress progress("reading the file");
    if (!ReadText(path))
        return false;
    m_isFaultless = m_document.Parse();
    if (!m_isFaultless)
        FindFault();
    return true;
}

/// False, with a message, if the file cannot be read.
bool CStorageReader::ReadText(const WString& path)
{
    const auto fail = [&](const WString& message)
    {
        m_fault.message = message.c_str();
        return false;
    };
    if (path.empty())
        return fail(TEXT("the file name is empty"));
    if (VLT::IsFolder(path.c_str()))
        return fail(TEXT("is a folder, not a file"));
    const VLT::CFileHandle file(path.c_str(), GENERIC_READ, OPEN_EXISTING);
    if (file.GetError() != ERROR_SUCCESS)
        return fail(SystemErrorText(file.GetError()));
    std::string bytes;
    if (const DWORD error = VLT::ReadAll(file, bytes))
        return fail(SystemErrorText(error));
    if (bytes.size() > INT_MAX)
        return fail(TEXT("holds 2147483648 bytes or more"));
    const int size = static_cast<int>(bytes.size());
    int units = 0;
    if (size != 0) // no unit takes less than a byte
        units = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, m_document.m_text.GetBuffer(size), size);
    m_document.m_text.ReleaseBufferSetLength(units);
    m_document.m_result.Empty();
    return true;
}

int CStorageReader::ReadRecords(const RecordHandler& handler)
{
    if (!m_document.FindElement(TEXT("storage")))
    {
        if (m_isFaultless)
            m_fault.message = TEXT("The root element is not a storage");
        m_isFaultless = false;
        return 0;
    }
    m_document.EnterElement();
    CProgress progress("reading records");
    int count = 0;
    for (; m_document.FindElement(TEXT("configuration")); ++count)
    {
        handler(DecodeTextValue(m_document.GetAttribute(TEXT("id"))),
                DecodeTextValue(m_document.GetAttribute(TEXT("cfg"))));
        progress.Show(m_document.At(m_document.m_currentPos).start, m_document.m_text.GetLength());
    }
    return count;
}

void FindPlace(const CString& text, int offset, int& line, int& column)
{
    const WCHAR* pText = text;
    const WCHAR* pPlace = pText + offset;
    line = 1 + static_cast<int>(std::count(pText, pPlace, TEXT('\n')));
    const WCHAR* pLine = pPlace;
    while (pLine > pText && pLine[-1] != TEXT('\n'))
        --pLine;
    column = 1 + static_cast<int>(pPlace - pLine);
}

void CStorageReader::FindFault()
{
    m_fault.message = m_document.m_result;
    m_fault.offset = m_document.m_faultOffset;
    FindPlace(m_document.m_text, m_fault.offset, m_fault.line, m_fault.column);
}
