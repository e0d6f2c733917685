#include "uistrings/UIStrings.h"

#include "platform/decimal.h"
#include "uistrings/TextFile.h"
#include <NOI_Service_AllplanLocalisation.h>
#include <afx.h>

#include <boost/make_shared.hpp>
#include <deque>
#include <memory>

// The other static members are in ModuleObjects.cpp, which defines the order of construction.
CUIStrings* CUIStrings::m_pInstance = nullptr;

namespace
{
/// A file and the line block for its reader; the destructor closes the one and frees the other.
struct COpenFile
{
    TextFile file;
    WCHAR* pLine = nullptr;

    COpenFile() = default;
    COpenFile(const COpenFile&) = delete;
    COpenFile& operator=(const COpenFile&) = delete;
    ~COpenFile()
    {
        FreeLine(pLine);
        file.Close();
    }
};

/// The entries of one file. They share one reference count and a few large allocations, which makes loading a quarter
/// faster.
using EntryBlock = boost::shared_ptr<std::deque<UIStringEntry>>;

/// Adds the string of a line "NUMBER TEXT". A line without a blank, or with one at its start, has no string. A number
/// that the language has already keeps its text.
void AddLine(UIStringMap& strings, const EntryBlock& pEntries, const WCHAR* pLine)
{
    const WCHAR* pBlank = wcschr(pLine, TEXT(' '));
    if (pBlank == nullptr || pBlank == pLine)
        return;
    const auto id = static_cast<unsigned int>(DecimalToInt({pLine, pBlank}));
    // Most files are sorted by number: then the end is the right position, and no search is needed.
    const bool isLast = strings.empty() || strings.rbegin()->first < id;
    const auto position = isLast ? strings.end() : strings.lower_bound(id);
    if (!isLast && position->first == id)
        return;
    pEntries->emplace_back(id, pBlank + 1);
    strings.emplace_hint(position, id, UIStringEntryPtr(pEntries, &pEntries->back()));
}

/// The map of a language; created empty if there is none yet.
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
    COpenFile open;
    if (open.file.Open(pPath) != 0)
        return;
    const EntryBlock pEntries = boost::make_shared<std::deque<UIStringEntry>>();
    while (open.file.reader->ReadLine(&open.pLine, open.file.codePage) >= 0)
        AddLine(strings, pEntries, open.pLine);
}
