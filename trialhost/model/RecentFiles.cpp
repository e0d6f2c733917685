#include "trialhost/model/RecentFiles.h"

#include <afxstr.h>

CRecentFiles::CRecentFiles(std::vector<WString> paths) : m_paths(std::move(paths))
{
    if (m_paths.size() > s_maximum)
        m_paths.resize(s_maximum);
}

void CRecentFiles::Add(const WString& path)
{
    const CString added = CString(path.c_str()).MakeLower();
    std::erase_if(m_paths, [&added](const WString& other) { return CString(other.c_str()).MakeLower() == added; });
    m_paths.insert(m_paths.begin(), path);
    if (m_paths.size() > s_maximum)
        m_paths.resize(s_maximum);
}
