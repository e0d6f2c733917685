#include <afx.h>

#include <algorithm>

namespace
{
/// Returns the path itself if the system cannot make a full path of it.
CString FullPathOf(LPCTSTR pstrName)
{
    const DWORD size = ::GetFullPathNameW(pstrName, 0, nullptr, nullptr);
    if (size == 0)
        return pstrName;
    CString path;
    ::GetFullPathNameW(pstrName, size, path.GetBuffer(static_cast<int>(size)), nullptr);
    path.ReleaseBuffer();
    return path;
}
} // namespace

BOOL CFileFind::FindFile(LPCTSTR pstrName)
{
    Close();
    const CString name = FullPathOf(pstrName);
    m_strRoot = name.Left(std::max(name.ReverseFind(TEXT('\\')), name.ReverseFind(TEXT('/'))) + 1);
    m_hContext = ::FindFirstFileW(name, &m_next);
    return m_hContext != INVALID_HANDLE_VALUE;
}

BOOL CFileFind::FindNextFileW()
{
    if (m_hContext == INVALID_HANDLE_VALUE)
        return FALSE;
    m_current = m_next;
    return ::FindNextFileW(m_hContext, &m_next);
}

void CFileFind::Close()
{
    if (m_hContext != INVALID_HANDLE_VALUE)
        ::FindClose(m_hContext);
    m_hContext = INVALID_HANDLE_VALUE;
}
