#include "tools/vltconfig/StorageReader.h"

#include "projection/base64/Base64.h"
#include "tools/vltconfig/Progress.h"
#include "xml/XmlFile.h"

#include <algorithm>
#include <cstdio>

bool CStorageReader::Open(const WString& path)
{
    if (!ReadTextFile(path.c_str(), m_document.m_text, &m_document.m_result))
    {
        m_fault.message = m_document.m_result;
        return false;
    }
    if (m_document.m_text.GetLength() > 16'000'000)
        std::fprintf(stderr, "vltconfig: parsing %d million characters ...\n",
                     m_document.m_text.GetLength() / 1'000'000);
    m_document.m_result.Empty(); // the count of bytes is no fault
    m_isFaultless = m_document.Parse();
    if (!m_isFaultless)
        FindFault();
    return true;
}

int CStorageReader::ReadRecords(const RecordHandler& handler)
{
    if (!m_document.FindElement(TEXT("storage")))
    {
        if (m_isFaultless)
            m_fault.message = TEXT("The root element is no storage");
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

void CStorageReader::FindFault()
{
    m_fault.message = m_document.m_result;
    m_fault.offset = FaultOffset();
    const WCHAR* pText = m_document.m_text;
    const WCHAR* pFault = pText + m_fault.offset;
    m_fault.line = 1 + static_cast<int>(std::count(pText, pFault, TEXT('\n')));
    const WCHAR* pLine = pFault;
    while (pLine > pText && pLine[-1] != TEXT('\n'))
        --pLine;
    m_fault.column = 1 + static_cast<int>(pFault - pLine);
}

/// The parser names the place in its message, but for what concerns the document as a whole.
int CStorageReader::FaultOffset() const
{
    const WString message = m_document.m_result.GetString();
    const WString mark = TEXT(" at offset ");
    // The name of a tag stands in the message too, before the offset, and could hold the mark itself.
    const size_t at = message.rfind(mark, message.find(TEXT(" does not match start tag ")));
    if (at != WString::npos)
        return std::min(_wtoi(message.c_str() + at + mark.size()), m_document.m_text.GetLength());
    const int root = m_document.At(0).firstChild;
    const int second = root == 0 ? 0 : m_document.At(root).nextSibling;
    return second == 0 ? 0 : m_document.At(second).start;
}
