#pragma once
/// The module's localised texts: numbered, one table for a language, read from UIStrings_*.dat beside the host.
#include "platform/text.h"
#include <afxstr.h>

#include <boost/shared_ptr.hpp>
#include <map>
#include <utility>

using UIStringEntry = std::pair<unsigned int, WString>;
using UIStringEntryPtr = boost::shared_ptr<UIStringEntry>;
using UIStringMap = std::map<unsigned int, UIStringEntryPtr>;
using UIStringMapPtr = boost::shared_ptr<UIStringMap>;

/// All data stands at class level; the one object holds nothing. User-interface thread only. docs/formats.md tells the
/// files. A text that is missing, for whatever reason, is the empty text.
class CUIStrings
{
public:
    /// The one object, never freed. The first call takes the host's language and reads every string file.
    static CUIStrings* Instance();

    /// The text of that number in the current language, as it stands in the file.
    CString GetString(unsigned int id);
    WString Lookup(unsigned int id);

    /// "Plugins" beside the process's executable, with a backslash behind it; empty if the system does not tell.
    static WString GetPluginsFolder();
    /// Reads every UIStrings_*.dat of the folder, whose name ends in a backslash. The language is what stands between
    /// the last underscore and the last dot, in lower case. Always 1.
    static int LoadFolder(const WCHAR* pFolder);
    /// Adds the strings of one file to a language, which then exists even if the file cannot be read. Numbers that the
    /// language has stay.
    static void LoadFile(const WCHAR* pLanguage, const WCHAR* pPath);

    static WString m_currentLanguage; ///< of every lookup; compared exactly

private:
    CUIStrings() = default;

    static std::map<WString, UIStringMapPtr> m_languages;
    static CUIStrings* m_pInstance;
};
