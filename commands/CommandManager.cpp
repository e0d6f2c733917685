#include "commands/CommandManager.h"

#include <memory>

namespace VLT
{
CCommandManager* CCommandManager::m_pInstance = nullptr;

CCommandManager* CCommandManager::Instance()
{
    if (m_pInstance != nullptr)
        return m_pInstance;
    const auto destroy = [](CCommandManager* pManager) { delete pManager; }; // the destructor is private
    std::unique_ptr<CCommandManager, decltype(destroy)> pManager(new CCommandManager, destroy);
    pManager->RegisterCommands();
    m_pInstance = pManager.release();
    return m_pInstance;
}

CCommandManager::CCommandManager() = default;
CCommandManager::CCommandManager(const CCommandManager& other) = default;
CCommandManager& CCommandManager::operator=(const CCommandManager& other) = default;
CCommandManager::~CCommandManager() = default;

void CCommandManager::RegisterCommand(boost::shared_ptr<ICommand> pCommand)
{
    if (pCommand)
        m_commands.emplace(pCommand->GetId(), pCommand);
}

boost::shared_ptr<ICommand> CCommandManager::GetCommandById(const WCHAR* pId) const
{
    const auto found = m_commands.find(pId == nullptr ? WString() : WString(pId));
    return found == m_commands.end() ? boost::shared_ptr<ICommand>() : found->second;
}

int CCommandManager::RunCommand(const WCHAR* pId, CCoordinateInput* pInput)
{
    const auto pCommand = GetCommandById(pId);
    if (!pCommand)
        return 0;
    m_pActiveCommand = pCommand; // before Run: the command is active inside it
    pCommand->Run(pInput);
    return 1;
}

void CCommandManager::ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                                      CCoordinateInput* pInput)
{
    if (m_pActiveCommand)
        m_pActiveCommand->ProcessMouseMsg(message, point, pInfo, pInput);
}

void CCommandManager::CompleteCommand(CCoordinateInput* pInput)
{
    if (!m_pActiveCommand)
        return;
    m_pActiveCommand->Complete(pInput);
    m_pActiveCommand.reset();
}

int CCommandManager::IsNativeCommandActive() const
{
    return m_pActiveCommand ? 1 : 0;
}

int CCommandManager::IsNativeCommandAvailable(const WCHAR* pId) const
{
    return GetCommandById(pId) ? 1 : 0;
}

int CCommandManager::RequiresProcessMouseMsg(const WCHAR* pId) const
{
    const auto pCommand = GetCommandById(pId);
    return pCommand ? pCommand->RequiresProcessMouseMsg() : 0;
}
} // namespace VLT
