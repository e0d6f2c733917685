#pragma once
/// The module's localised texts: a table of numbered texts per language, read from the files UIStrings_*.dat.
#include "platform/text.h"
#include <afxstr.h>

#include <boost/shared_ptr.hpp>
#include <map>
#include <utility>

using UIStringEntry = std::pair<unsigned int, WString>;
using UIStringEntryPtr = boost::shared_ptr<UIStringEntry>;
using UIStringMap = std::map<unsigned int, UIStringEntryPtr>;
using UIStringMapPtr = boost::shared_ptr<UIStringMap>;

/// The table of localised texts. All data is static; the singleton has no state. Host's user-interface thread only.
/// A missing text reads as the empty text. File format: docs/formats.md.
class CUIStrings
{
public:
    /// Returns the singleton, which is never freed. The first call sets m_currentLanguage to the host's language and
    /// reads every string file in GetPluginsFolder.
    static CUIStrings* Instance();

    /// Returns the text with that number in the current language, unchanged, or the empty text.
    CString GetString(unsigned int id);
    /// The same as a WString.
    WString Lookup(unsigned int id);

    /// Returns the folder "Plugins" next to the process's executable, with a backslash at the end. Empty if the system
    /// has no handle for the executable.
    static WString GetPluginsFolder();
    /// Reads every UIStrings_*.dat in the folder. pFolder ends with a backslash. The language code is the part of the
    /// path between the last underscore and the last dot, in lower case. Always 1.
    static int LoadFolder(const WCHAR* pFolder);
    /// Adds the strings of one file to a language. The language exists afterwards even if the file cannot be read. A
    /// number that the language has already keeps its text.
    static void LoadFile(const WCHAR* pLanguage, const WCHAR* pPath);

    static WString m_currentLanguage; ///< used by every lookup; compared exactly

private:
    CUIStrings() = default;

    static std::map<WString, UIStringMapPtr> m_languages;
    static CUIStrings* m_pInstance;
};
