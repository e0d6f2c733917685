#pragma once
#include "trialhost/log/RecordingCommand.h"
#include "trialhost/log/RecordingManager.h"
#include "trialhost/plugin/Library.h"

#include <functional>
#include <vector>

/// A command as the user sees it.
struct CTrialCommand
{
    WString id;
    WString caption; ///< with & before the letter of its key
};

/// A plug-in that the trial host has loaded, or tried to.
class CPlugIn final : public VLT::IPlugInHost
{
public:
    using Reporter = std::function<void(const WString&)>;

    CPlugIn(CCallLog& log, CRecordingManager& manager, Reporter reporter, const WString& path);

    /// Loads the library and lets it register its commands. Returns why that failed, with the remedy; empty when done.
    /// After a failure the plug-in has no commands in its list; the manager may hold some until RestoreCommands.
    WString Load();
    /// Releases the commands and unloads the library. The manager must not hold them any more.
    void Unload();
    /// Registers the commands again, after the manager has forgotten them.
    void RegisterAgain();

    int RegisterCommand(boost::shared_ptr<VLT::ICommand> pCommand, const WCHAR* pCaption) override;
    void Report(const WCHAR* pText) override;

    const WString& GetPath() const { return m_path; }
    const std::vector<CTrialCommand>& GetCommands() const { return m_commands; }

private:
    WString CallEntry(VLT::PlugInFunction* pEntry);

    CCallLog& m_log;
    CRecordingManager& m_manager;
    const Reporter m_reporter;
    const WString m_path;
    CLibrary m_library; // before the commands, which are destroyed first: their code is in it
    std::vector<boost::shared_ptr<CRecordingCommand>> m_recorded;
    std::vector<CTrialCommand> m_commands;
};
