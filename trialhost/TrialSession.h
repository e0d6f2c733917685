#pragma once
#include "trialhost/TrialHost.h"
#include "trialhost/model/Faults.h"

/// A session of the trial host: the storage file that is open, the plug-ins that were named, the fault that is chosen,
/// and commands that are run with all of that. Nothing that a command throws comes out: it is reported.
class CTrialSession
{
public:
    /// reporter gets what goes wrong in a run and what the file handler reports.
    CTrialSession(CCallLog& log, CTrialHost& host, CPlugIn::Reporter reporter);

    void SetReporter(CPlugIn::Reporter reporter) { m_reporter = std::move(reporter); }

    /// Lets the module work on that file. Returns why it cannot be used; the one before stays open then.
    WString Open(const WString& path);
    /// The handler over the open file; empty before the first Open.
    const boost::shared_ptr<CRecordingHandler>& GetHandler() const { return m_pHandler; }

    void SetFault(eFault fault) { m_fault = fault; }
    eFault GetFault() const { return m_fault; }

    /// False if the command is unknown or was left by an exception.
    bool Run(const WString& id);
    /// Runs the command that was run last, at first the built-in one.
    bool RunAgain() { return Run(m_lastId); }
    void Complete();
    void SendMouse(int message, const CStdPoint2D& point);

    CTrialHost& GetHost() const { return m_host; }

private:
    template <typename Operation>
    bool Guard(const WCHAR* pName, Operation operation);

    CCallLog& m_log;
    CTrialHost& m_host;
    CPlugIn::Reporter m_reporter;
    boost::shared_ptr<CRecordingHandler> m_pHandler;
    eFault m_fault = eFault::None;
    WString m_lastId = CTrialHost::s_pCommandId;
};
