#include "sdk/FileConfigurationHandler.h"

namespace VLT
{
namespace
{
CString TextOf(CStorage& storage, const WCHAR* pId)
{
    const boost::shared_ptr<CConfiguration> pRecord = storage.GetConfigurationById(pId);
    return pRecord ? pRecord->GetCfg() : CString();
}
} // namespace

CFileConfigurationHandler::CFileConfigurationHandler(const WCHAR* pPath, Report report)
    : m_file(pPath), m_report(std::move(report))
{
}

CFileConfigurationHandler::~CFileConfigurationHandler() = default;

int CFileConfigurationHandler::OpenStorage()
{
    m_isOpen = m_file.Read(m_storage);
    if (!m_isOpen)
        Tell(m_file.GetErrorText());
    return m_isOpen ? 1 : 0;
}

void CFileConfigurationHandler::CloseStorage()
{
    m_isOpen = false;
    m_storage.Clear();
}

CString CFileConfigurationHandler::LoadConfigurationById(const WCHAR* pId)
{
    return m_isOpen ? TextOf(m_storage, pId) : CString();
}

int CFileConfigurationHandler::SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg)
{
    if (!m_isOpen)
    {
        m_file.SetErrorText(m_file.GetPath() + TEXT(": the storage is not open; call OpenStorage before saving."));
        return Refuse(pId, pCfg);
    }
    const CString loaded = TextOf(m_storage, pId);
    CStorage saved;
    const bool done = m_file.Update(
        [&](CStorage& storage)
        {
            // Two programs that set the same text do not disagree.
            const CString present = TextOf(storage, pId);
            if (!(present == loaded) && !(present == pCfg))
            {
                m_file.SetErrorText(m_file.GetPath() + TEXT(": another program has changed the record '") + pId +
                                    TEXT("' since it was loaded; its text is kept; open the storage again to see it."));
                return false;
            }
            SetConfigurationText(storage, pId, pCfg);
            saved = storage;
            return true;
        });
    if (!done)
        return Refuse(pId, pCfg);
    m_storage = saved;
    if (!m_file.GetWarningText().IsEmpty())
        Tell(m_file.GetWarningText());
    return 1;
}

int CFileConfigurationHandler::Refuse(const WCHAR* pId, const WCHAR* pCfg)
{
    const CString reason = m_file.GetErrorText();
    const CString unsavedPath = m_file.SaveBeside(pId, pCfg);
    Tell(unsavedPath.IsEmpty()
             ? reason + TEXT(" The text could not be put next to it either, so it is not saved anywhere.")
             : reason + TEXT(" The text that was to be saved is in ") + unsavedPath + TEXT("."));
    return 0;
}

void CFileConfigurationHandler::Tell(const CString& text) const
{
    if (m_report)
        m_report(text);
}
} // namespace VLT
