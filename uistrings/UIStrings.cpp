#include "uistrings/UIStrings.h"

#include "platform/host/NOI_Service_AllplanLocalisation.h"
#include "platform/mfc/decimal.h"
#include "uistrings/TextFile.h"
#include <afx.h>

#include <boost/make_shared.hpp>
#include <memory>

// The class's other data is made with the module-level objects.
CUIStrings* CUIStrings::m_pInstance = nullptr;

namespace
{
/// Closes the file and releases the line, however the reading ends.
struct CFileInUse
{
    TextFile file;
    WCHAR* pLine = nullptr;

    CFileInUse() = default;
    CFileInUse(const CFileInUse&) = delete;
    CFileInUse& operator=(const CFileInUse&) = delete;
    ~CFileInUse()
    {
        FreeLine(pLine);
        file.Close();
    }
};

/// "NUMBER TEXT"; a line with no blank, or with one at its start, holds no string.
void AddLine(UIStringMap& strings, const WCHAR* pLine)
{
    const WCHAR* pBlank = wcschr(pLine, TEXT(' '));
    if (pBlank == nullptr || pBlank == pLine)
        return;
    const auto id = static_cast<unsigned int>(DecimalToInt({pLine, pBlank}));
    const auto place = strings.lower_bound(id);
    if (place == strings.end() || place->first != id)
        strings.emplace_hint(place, id, boost::make_shared<UIStringEntry>(id, pBlank + 1));
}

/// The strings of a language; made if it has none yet.
UIStringMap& StringsOf(std::map<WString, UIStringMapPtr>& languages, const WCHAR* pLanguage)
{
    auto language = languages.find(pLanguage);
    if (language == languages.end())
        language = languages.emplace(pLanguage, boost::make_shared<UIStringMap>()).first;
    return *language->second;
}

CString LanguageOf(const CString& path)
{
    const int underscore = path.ReverseFind(TEXT('_'));
    const int dot = path.ReverseFind(TEXT('.'));
    return path.Mid(underscore + 1, dot - underscore - 1).MakeLower();
}
} // namespace

CUIStrings* CUIStrings::Instance()
{
    if (m_pInstance != nullptr)
        return m_pInstance;
    std::unique_ptr<CUIStrings> pInstance(new CUIStrings);
    m_currentLanguage = CNOI_Service_AllplanLocalisation::GetLanguage();
    LoadFolder(GetPluginsFolder().c_str());
    m_pInstance = pInstance.release();
    return m_pInstance;
}

CString CUIStrings::GetString(unsigned int id)
{
    return Lookup(id).c_str();
}

WString CUIStrings::Lookup(unsigned int id)
{
    const auto language = m_languages.find(m_currentLanguage);
    if (language == m_languages.end())
        return WString();
    const auto string = language->second->find(id);
    return string == language->second->end() ? WString() : string->second->second;
}

WString CUIStrings::GetPluginsFolder()
{
    const HMODULE executable = ::GetModuleHandleW(nullptr);
    if (executable == nullptr)
        return WString();
    WCHAR name[MAX_PATH] = {};
    ::GetModuleFileNameW(executable, name, MAX_PATH);
    const CString path(name);
    return WString(path.Left(path.ReverseFind(TEXT('\\')))) + TEXT("\\Plugins\\");
}

int CUIStrings::LoadFolder(const WCHAR* pFolder)
{
    CString pattern;
    pattern.Format(TEXT("%sUIStrings_*.dat"), pFolder);
    CFileFind find;
    BOOL more = find.FindFile(pattern);
    while (more)
    {
        more = find.FindNextFileW();
        const CString path = find.GetFilePath();
        LoadFile(LanguageOf(path), path);
    }
    return 1;
}

void CUIStrings::LoadFile(const WCHAR* pLanguage, const WCHAR* pPath)
{
    UIStringMap& strings = StringsOf(m_languages, pLanguage);
    CFileInUse use;
    if (use.file.Open(pPath) != 0)
        return;
    while (use.file.reader->ReadLine(&use.pLine, use.file.codePage) >= 0)
        AddLine(strings, use.pLine);
}
