#pragma once
#include "trialhost/log/RecordingHandler.h"
#include "trialhost/plugin/PlugIn.h"
#include <CoordinateInput.h>

#include <memory>
#include <vector>

/// What CAD host and plug-in are to the module: runs its commands, forwards mouse messages, works its dialog, and loads
/// plug-ins with commands of their own. Every call of the module is recorded in the log.
class CTrialHost
{
public:
    static const WCHAR* const s_pCommandId; ///< the built-in command

    /// reporter gets what plug-ins report.
    CTrialHost(CCallLog& log, CPlugIn::Reporter reporter);
    /// Unloads the plug-ins and takes the handler from the module.
    ~CTrialHost();
    CTrialHost(const CTrialHost&) = delete;
    CTrialHost& operator=(const CTrialHost&) = delete;

    /// Registers the handler with the module; empty: the module has none from now on.
    void UseHandler(const boost::shared_ptr<CRecordingHandler>& pHandler);
    const boost::shared_ptr<CRecordingHandler>& GetHandler() const { return m_pHandler; }

    /// The built-in command and those of the plug-ins, in the order of their arrival.
    std::vector<CTrialCommand> GetCommands() const;
    bool IsCommandAvailable(const WString& id) const;
    bool IsCommandActive() const;
    /// Completes a running command first. False if the module does not know the identifier. What the command throws
    /// comes out; it is then active.
    bool RunCommand(const WString& id);
    void CompleteCommand();
    /// Hands the message to the active command, if it asks for mouse messages. Position in database units.
    void SendMouseMessage(int message, double x, double y);

    /// Loads a plug-in. Returns why that failed, empty when done; a plug-in that failed is not kept.
    WString LoadPlugIn(const WString& path);
    /// Completes a running command, takes the plug-in's commands from the manager and unloads its library.
    void UnloadPlugIn(const WString& path);
    std::vector<WString> GetPlugIns() const;

    /// The dialog of the built-in command, null when there is none.
    HWND FindDialog() const;
    /// Presses a push button of the dialog, as a click does. The dialog must be there.
    void PressButton(int id);
    /// The entries of a combo box of the dialog, first to last.
    std::vector<CString> GetComboItems(int id) const;

private:
    void Unload(std::unique_ptr<CPlugIn> pPlugIn);

    CCallLog& m_log;
    CRecordingManager m_manager;
    const CPlugIn::Reporter m_reporter;
    boost::shared_ptr<CRecordingHandler> m_pHandler;
    std::vector<std::unique_ptr<CPlugIn>> m_plugIns;
    bool m_wantsMouse = false; ///< the command that was run last, until it is completed
    CCoordinateInput m_input;
};
