#include "trialhost/TrialHost.h"

#include "configuration/ConfigurationStorage.h"

#include <algorithm>

const WCHAR* const CTrialHost::s_pCommandId = TEXT("CMD_DEFINE_PROJ_ENTITIES");

CTrialHost::CTrialHost(CCallLog& log, CPlugIn::Reporter reporter)
    : m_log(log), m_manager(log), m_reporter(std::move(reporter))
{
}

CTrialHost::~CTrialHost()
{
    while (!m_plugIns.empty())
        UnloadPlugIn(m_plugIns.back()->GetPath());
    UseHandler({}); // it records in the log, which need not live as long as the module
}

void CTrialHost::UseHandler(const boost::shared_ptr<CRecordingHandler>& pHandler)
{
    const CCallScope call(m_log, pHandler ? TEXT("CConfigurationStorage::RegisterHandler(handler)")
                                          : TEXT("CConfigurationStorage::RegisterHandler(none)"));
    m_pHandler = pHandler;
    VLT::CConfigurationStorage::Instance()->RegisterHandler(pHandler);
}

std::vector<CTrialCommand> CTrialHost::GetCommands() const
{
    std::vector<CTrialCommand> commands{{s_pCommandId, TEXT("&Define projection/intersection")}};
    for (const auto& pPlugIn : m_plugIns)
        commands.insert(commands.end(), pPlugIn->GetCommands().begin(), pPlugIn->GetCommands().end());
    return commands;
}

bool CTrialHost::IsCommandAvailable(const WString& id) const
{
    return m_manager.IsNativeCommandAvailable(id) != 0;
}

bool CTrialHost::IsCommandActive() const
{
    return m_manager.IsNativeCommandActive() != 0;
}

bool CTrialHost::RunCommand(const WString& id)
{
    if (IsCommandActive())
        CompleteCommand(); // the manager does not end a running command by itself
    m_wantsMouse = m_manager.RequiresProcessMouseMsg(id) != 0;
    return m_manager.RunCommand(id, &m_input) != 0;
}

void CTrialHost::CompleteCommand()
{
    m_manager.CompleteCommand(&m_input);
    m_wantsMouse = false;
}

void CTrialHost::SendMouseMessage(int message, double x, double y)
{
    if (!m_wantsMouse)
        return;
    const CStdPoint2D point{x, y};
    strAddMsgInfo info{};
    m_manager.ProcessMouseMsg(message, point, &info, &m_input);
}

WString CTrialHost::LoadPlugIn(const WString& path)
{
    const auto isLoaded = [&path](const auto& pPlugIn) { return pPlugIn->GetPath() == path; };
    if (std::any_of(m_plugIns.begin(), m_plugIns.end(), isLoaded))
        return path + TEXT(": is loaded already; unload it first");
    auto pPlugIn = std::make_unique<CPlugIn>(m_log, m_manager, m_reporter, path);
    const WString fault = pPlugIn->Load();
    if (fault.empty())
        m_plugIns.push_back(std::move(pPlugIn));
    else
        Unload(std::move(pPlugIn));
    return fault;
}

void CTrialHost::UnloadPlugIn(const WString& path)
{
    const auto found = std::find_if(m_plugIns.begin(), m_plugIns.end(),
                                    [&path](const auto& pPlugIn) { return pPlugIn->GetPath() == path; });
    if (found == m_plugIns.end())
        return;
    std::unique_ptr<CPlugIn> pPlugIn = std::move(*found);
    m_plugIns.erase(found);
    if (IsCommandActive())
        CompleteCommand();
    Unload(std::move(pPlugIn));
}

// Nobody may hold an object whose code is in the library: the manager forgets its commands, and the module a handler
// that the plug-in may have registered.
void CTrialHost::Unload(std::unique_ptr<CPlugIn> pPlugIn)
{
    m_manager.RestoreCommands();
    for (const auto& pOther : m_plugIns)
        pOther->RegisterAgain();
    UseHandler(m_pHandler);
    pPlugIn->Unload();
}

std::vector<WString> CTrialHost::GetPlugIns() const
{
    std::vector<WString> paths;
    for (const auto& pPlugIn : m_plugIns)
        paths.push_back(pPlugIn->GetPath());
    return paths;
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
