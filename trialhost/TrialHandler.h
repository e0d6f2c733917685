#pragma once
#include "sdk/FileConfigurationHandler.h"

/// The file handler, with a record of what the dialog asked of it.
class CTrialHandler : public VLT::CFileConfigurationHandler
{
public:
    using CFileConfigurationHandler::CFileConfigurationHandler;

    CString LoadConfigurationById(const WCHAR* pId) override
    {
        m_loadedText = CFileConfigurationHandler::LoadConfigurationById(pId);
        m_hasLoaded = true;
        return m_loadedText;
    }
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override
    {
        const int saved = CFileConfigurationHandler::SaveConfiguration(pId, pCfg);
        m_hasSaved = saved != 0;
        m_savedText = pCfg;
        return saved;
    }

    bool HasLoaded() const { return m_hasLoaded; }
    bool HasSaved() const { return m_hasSaved; }
    const CString& GetLoadedText() const { return m_loadedText; }
    const CString& GetSavedText() const { return m_savedText; }

private:
    bool m_hasLoaded = false;
    bool m_hasSaved = false;
    CString m_loadedText;
    CString m_savedText;
};
