#pragma once
#include "sdk/FileConfigurationHandler.h"
#include "trialhost/log/CallLog.h"

#include <vector>

/// The configuration handler of the trial host: passes every call on to a file handler, records it in the log, and can
/// be made to fail as a bad handler does.
class CRecordingHandler : public VLT::IConfigurationHandler
{
public:
    /// What OpenStorage does instead of its work.
    enum class eFault
    {
        None,
        RefusesToOpen,
        ThrowsAtOpen
    };

    CRecordingHandler(CCallLog& log, const WString& path, VLT::CFileConfigurationHandler::Report report);

    int OpenStorage() override;
    void CloseStorage() override;
    CString LoadConfigurationById(const WCHAR* pId) override;
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override;

    void SetFault(eFault fault) { m_fault = fault; }
    const WString& GetPath() const { return m_path; }

    bool IsOpen() const { return m_file.IsOpen(); }
    bool HasLoaded() const { return m_hasLoaded; }
    bool HasSaved() const { return m_hasSaved; }
    const CString& GetLoadedText() const { return m_loadedText; }
    const CString& GetSavedText() const { return m_savedText; }

private:
    CCallLog& m_log;
    const WString m_path;
    VLT::CFileConfigurationHandler m_file;
    eFault m_fault = eFault::None;
    bool m_hasLoaded = false;
    bool m_hasSaved = false;
    CString m_loadedText;
    CString m_savedText;
};
