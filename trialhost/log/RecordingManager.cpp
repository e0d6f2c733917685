#include "trialhost/log/RecordingManager.h"

#include "commands/CommandManager.h"
#include "trialhost/Format.h"
#include <CoordinateInput.h>

namespace
{
VLT::CCommandManager& Manager()
{
    return *VLT::CCommandManager::Instance();
}

// The manager cannot remove a command, but it takes over the commands of a copy. A copy is never freed.
const VLT::CCommandManager* GetInitialCommands()
{
    static const auto* const s_pInitial = new VLT::CCommandManager(Manager());
    return s_pInitial;
}

WString MessageName(int message)
{
    switch (message)
    {
    case 0x200:
        return TEXT("WM_MOUSEMOVE");
    case 0x201:
        return TEXT("WM_LBUTTONDOWN");
    case 0x202:
        return TEXT("WM_LBUTTONUP");
    case 0x204:
        return TEXT("WM_RBUTTONDOWN");
    default:
        return Number(message);
    }
}
} // namespace

CRecordingManager::CRecordingManager(CCallLog& log) : m_log(log), m_pInitial(GetInitialCommands())
{
}

void CRecordingManager::RegisterCommand(boost::shared_ptr<VLT::ICommand> pCommand)
{
    const CCallScope call(m_log, TEXT("CCommandManager::RegisterCommand(") + Quoted(pCommand->GetId()) + TEXT(")"));
    Manager().RegisterCommand(pCommand);
}

int CRecordingManager::RunCommand(const WString& id, CCoordinateInput* pInput)
{
    CCallScope call(m_log, TEXT("CCommandManager::RunCommand(") + Quoted(id) + TEXT(")"));
    const int started = Manager().RunCommand(id.c_str(), pInput);
    call.Return(Number(started));
    return started;
}

void CRecordingManager::ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                                        CCoordinateInput* pInput)
{
    const CCallScope call(m_log, TEXT("CCommandManager::ProcessMouseMsg(") + MessageName(message) + TEXT(", ") +
                                     Point(point.x, point.y) + TEXT(")"));
    Manager().ProcessMouseMsg(message, point, pInfo, pInput);
}

void CRecordingManager::CompleteCommand(CCoordinateInput* pInput)
{
    const CCallScope call(m_log, TEXT("CCommandManager::CompleteCommand()"));
    Manager().CompleteCommand(pInput);
}

int CRecordingManager::IsNativeCommandActive() const
{
    CCallScope call(m_log, TEXT("CCommandManager::IsNativeCommandActive()"));
    const int active = Manager().IsNativeCommandActive();
    call.Return(Number(active));
    return active;
}

int CRecordingManager::IsNativeCommandAvailable(const WString& id) const
{
    CCallScope call(m_log, TEXT("CCommandManager::IsNativeCommandAvailable(") + Quoted(id) + TEXT(")"));
    const int available = Manager().IsNativeCommandAvailable(id.c_str());
    call.Return(Number(available));
    return available;
}

int CRecordingManager::RequiresProcessMouseMsg(const WString& id) const
{
    CCallScope call(m_log, TEXT("CCommandManager::RequiresProcessMouseMsg(") + Quoted(id) + TEXT(")"));
    const int required = Manager().RequiresProcessMouseMsg(id.c_str());
    call.Return(Number(required));
    return required;
}

void CRecordingManager::RestoreCommands()
{
    const CCallScope call(m_log, TEXT("CCommandManager::operator=(commands without plug-ins)"));
    Manager() = *m_pInitial;
}
