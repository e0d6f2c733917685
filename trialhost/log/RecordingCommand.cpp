#include "trialhost/log/RecordingCommand.h"

#include "trialhost/Format.h"
#include <CoordinateInput.h>

CRecordingCommand::CRecordingCommand(CCallLog& log, boost::shared_ptr<VLT::ICommand> pCommand)
    : m_log(log), m_pCommand(std::move(pCommand)), m_id(m_pCommand->GetId())
{
}

void CRecordingCommand::Run(CCoordinateInput* pInput)
{
    const CCallScope call(m_log, m_id + TEXT("::Run()"));
    m_pCommand->Run(pInput);
}

void CRecordingCommand::ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                                        CCoordinateInput* pInput)
{
    const CCallScope call(m_log, m_id + TEXT("::ProcessMouseMsg()"));
    m_pCommand->ProcessMouseMsg(message, point, pInfo, pInput);
}

void CRecordingCommand::Complete(CCoordinateInput* pInput)
{
    const CCallScope call(m_log, m_id + TEXT("::Complete()"));
    m_pCommand->Complete(pInput);
}

int CRecordingCommand::RequiresProcessMouseMsg()
{
    CCallScope call(m_log, m_id + TEXT("::RequiresProcessMouseMsg()"));
    const int required = m_pCommand->RequiresProcessMouseMsg();
    call.Return(Number(required));
    return required;
}
