#include "trialhost/windows/Settings.h"

#include "platform/win32/win32.h"
#include "trialhost/model/RecentFiles.h"

#include <filesystem>

namespace
{
constexpr WCHAR s_section[] = TEXT("Window");
constexpr WCHAR s_recentSection[] = TEXT("Recent files");

WString DefaultPath()
{
    WCHAR folder[MAX_PATH] = {};
    if (::GetEnvironmentVariableW(TEXT("APPDATA"), folder, MAX_PATH) == 0)
        return WString(); // nothing is kept then
    return (std::filesystem::path(folder) / "trialhost.ini").wstring();
}
} // namespace

CSettings::CSettings(const WString& path)
    : m_path(path.empty() ? DefaultPath() : std::filesystem::absolute(path).wstring())
{
}

int CSettings::GetNumber(const WCHAR* pKey, int standard) const
{
    return static_cast<int>(::GetPrivateProfileIntW(s_section, pKey, standard, m_path.c_str()));
}

void CSettings::SetNumber(const WCHAR* pKey, int number) const
{
    ::WritePrivateProfileStringW(s_section, pKey, std::to_wstring(number).c_str(), m_path.c_str());
}

std::vector<WString> CSettings::GetRecentFiles() const
{
    std::vector<WString> paths;
    for (size_t i = 1; i <= CRecentFiles::s_maximum; ++i)
    {
        WCHAR path[4096] = {};
        ::GetPrivateProfileStringW(s_recentSection, std::to_wstring(i).c_str(), TEXT(""), path, 4096, m_path.c_str());
        if (path[0] != 0)
            paths.emplace_back(path);
    }
    return paths;
}

void CSettings::SetRecentFiles(const std::vector<WString>& paths) const
{
    for (size_t i = 0; i < paths.size(); ++i)
        ::WritePrivateProfileStringW(s_recentSection, std::to_wstring(i + 1).c_str(), paths[i].c_str(), m_path.c_str());
}
