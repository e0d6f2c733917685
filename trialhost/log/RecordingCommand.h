#pragma once
#include "commands/ICommand.h"
#include "trialhost/log/CallLog.h"

#include <boost/shared_ptr.hpp>

/// A plug-in's command as the trial host registers it: passes every call on and records it in the log.
class CRecordingCommand final : public VLT::ICommand
{
public:
    /// Asks the command for its identifier, this once. pCommand must not be empty.
    CRecordingCommand(CCallLog& log, boost::shared_ptr<VLT::ICommand> pCommand);

    WString GetId() override { return m_id; }
    void Run(CCoordinateInput* pInput) override;
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                         CCoordinateInput* pInput) override;
    void Complete(CCoordinateInput* pInput) override;
    int RequiresProcessMouseMsg() override;

private:
    CCallLog& m_log;
    const boost::shared_ptr<VLT::ICommand> m_pCommand;
    const WString m_id;
};
