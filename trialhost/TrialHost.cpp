#include "trialhost/TrialHost.h"

#include "commands/CommandManager.h"

const WCHAR* const CTrialHost::s_pCommandId = TEXT("CMD_DEFINE_PROJ_ENTITIES");

bool CTrialHost::IsCommandAvailable() const
{
    return VLT::CCommandManager::Instance()->IsNativeCommandAvailable(s_pCommandId) != 0;
}

bool CTrialHost::IsCommandActive() const
{
    return VLT::CCommandManager::Instance()->IsNativeCommandActive() != 0;
}

bool CTrialHost::RunCommand()
{
    return VLT::CCommandManager::Instance()->RunCommand(s_pCommandId, &m_input) != 0;
}

void CTrialHost::CompleteCommand()
{
    VLT::CCommandManager::Instance()->CompleteCommand(&m_input);
}

void CTrialHost::SendMouseMessage(int message, double x, double y)
{
    auto* pManager = VLT::CCommandManager::Instance();
    if (!IsCommandActive() || pManager->RequiresProcessMouseMsg(s_pCommandId) == 0)
        return;
    const CStdPoint2D point{x, y};
    strAddMsgInfo info{};
    pManager->ProcessMouseMsg(message, point, &info, &m_input);
}

HWND CTrialHost::FindDialog() const
{
    // The class of all dialogs, and the caption of this one.
    return ::FindWindowW(TEXT("#32770"), TEXT("Define projection/intersection"));
}

void CTrialHost::PressButton(int id)
{
    ::SendMessageW(::GetDlgItem(FindDialog(), id), BM_CLICK, 0, 0);
}

std::vector<CString> CTrialHost::GetComboItems(int id) const
{
    const HWND combo = ::GetDlgItem(FindDialog(), id);
    const LRESULT count = ::SendMessageW(combo, CB_GETCOUNT, 0, 0);
    std::vector<CString> items;
    for (LRESULT i = 0; i < count; ++i)
    {
        const auto length = static_cast<int>(::SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0));
        CString item;
        ::SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(i),
                       reinterpret_cast<LPARAM>(item.GetBuffer(length + 1)));
        item.ReleaseBuffer();
        items.push_back(item);
    }
    return items;
}
