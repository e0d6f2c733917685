#include "trialhost/log/RecordingHandler.h"

#include "trialhost/Format.h"

#include <stdexcept>

namespace
{
constexpr size_t s_shownUnits = 60; // of a text in the log

WString Text(const WCHAR* pText)
{
    return Quoted(pText == nullptr ? WString() : WString(pText), s_shownUnits);
}
} // namespace

CRecordingHandler::CRecordingHandler(CCallLog& log, const WString& path, VLT::CFileConfigurationHandler::Report report)
    : m_log(log), m_path(path), m_file(path.c_str(), std::move(report))
{
}

int CRecordingHandler::OpenStorage()
{
    CCallScope call(m_log, TEXT("IConfigurationHandler::OpenStorage()"));
    if (m_fault == eFault::ThrowsAtOpen)
        throw std::runtime_error("the configuration handler fails, as the menu Faults asks");
    const int opened = m_fault == eFault::RefusesToOpen ? 0 : m_file.OpenStorage();
    call.Return(Number(opened));
    return opened;
}

void CRecordingHandler::CloseStorage()
{
    const CCallScope call(m_log, TEXT("IConfigurationHandler::CloseStorage()"));
    m_file.CloseStorage();
}

CString CRecordingHandler::LoadConfigurationById(const WCHAR* pId)
{
    CCallScope call(m_log, TEXT("IConfigurationHandler::LoadConfigurationById(") + Text(pId) + TEXT(")"));
    const CString text = m_file.LoadConfigurationById(pId);
    m_loadedText = text;
    m_hasLoaded = true;
    call.Return(Text(text));
    return text;
}

int CRecordingHandler::SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg)
{
    CCallScope call(m_log, TEXT("IConfigurationHandler::SaveConfiguration(") + Text(pId) + TEXT(", ") + Text(pCfg) +
                               TEXT(")"));
    const int saved = m_file.SaveConfiguration(pId, pCfg);
    m_hasSaved = saved != 0;
    m_savedText = pCfg;
    call.Return(Number(saved));
    return saved;
}
