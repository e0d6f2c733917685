#pragma once
#include "platform/text.h"

#include <vector>

/// What the trial host keeps between runs, in a text file of sections and keys.
class CSettings
{
public:
    /// path: empty for trialhost.ini in the user's folder for application data.
    explicit CSettings(const WString& path);

    int GetNumber(const WCHAR* pKey, int standard) const;
    void SetNumber(const WCHAR* pKey, int number) const;
    std::vector<WString> GetRecentFiles() const;
    void SetRecentFiles(const std::vector<WString>& paths) const;

private:
    WString m_path;
};
