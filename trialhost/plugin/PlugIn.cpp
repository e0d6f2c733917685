#include "trialhost/plugin/PlugIn.h"

#include "trialhost/Exceptions.h"
#include "trialhost/Format.h"

#include <filesystem>

CPlugIn::CPlugIn(CCallLog& log, CRecordingManager& manager, Reporter reporter, const WString& path)
    : m_log(log), m_manager(manager), m_reporter(std::move(reporter)), m_path(path)
{
}

WString CPlugIn::Load()
{
    if (!std::filesystem::is_regular_file(m_path))
        return m_path + TEXT(": no such file; build the plug-in first, or correct the path");
    const WString reason = m_library.Load(m_path);
    if (!reason.empty())
        return m_path + TEXT(": cannot be loaded: ") + reason;
    VLT::PlugInFunction* const pEntry = m_library.FindEntry();
    const WString fault = pEntry == nullptr
                              ? TEXT("exports no VeltranoPlugIn; is VELTRANO_PLUG_IN(...) in one of its sources?")
                              : CallEntry(pEntry);
    if (fault.empty())
        return fault;
    m_commands.clear(); // the library stays until the manager has released the commands
    return m_path + TEXT(": ") + fault;
}

// Exceptions are gone before this returns: their code may be in the library, which is then unloaded.
WString CPlugIn::CallEntry(VLT::PlugInFunction* pEntry)
{
    const CCallScope call(m_log, TEXT("VeltranoPlugIn(host) of ") + m_path);
    try
    {
        const unsigned int version = pEntry(nullptr);
        if (version != VLT::PlugInVersion)
            return TEXT("built for plug-in version ") + Number(version) + TEXT(", this host has version ") +
                   Number(VLT::PlugInVersion) + TEXT("; build it anew against this host's package");
        pEntry(this);
        return WString();
    }
    catch (...)
    {
        return TEXT("its entry threw ") + DescribeCurrentException();
    }
}

void CPlugIn::Unload()
{
    m_commands.clear();
    m_recorded.clear();
    m_library.Unload();
}

void CPlugIn::RegisterAgain()
{
    for (const auto& pCommand : m_recorded)
        m_manager.RegisterCommand(pCommand);
}

int CPlugIn::RegisterCommand(boost::shared_ptr<VLT::ICommand> pCommand, const WCHAR* pCaption)
{
    if (!pCommand)
        return 0;
    const boost::shared_ptr<CRecordingCommand> pRecorded(new CRecordingCommand(m_log, pCommand));
    const WString id = pRecorded->GetId();
    if (id.empty() || m_manager.IsNativeCommandAvailable(id) != 0)
        return 0;
    m_manager.RegisterCommand(pRecorded);
    m_recorded.push_back(pRecorded);
    m_commands.push_back({id, pCaption == nullptr || *pCaption == 0 ? id : WString(pCaption)});
    return 1;
}

void CPlugIn::Report(const WCHAR* pText)
{
    const WString text = pText == nullptr ? WString() : WString(pText);
    m_log.AddRemark(TEXT("IPlugInHost::Report(") + Quoted(text) + TEXT(")"));
    m_reporter(text);
}
