#include "configuration/ConfigurationStorage.h"

#include <utility>

namespace VLT
{
CConfigurationStorage* CConfigurationStorage::m_pInstance = nullptr;

CConfigurationStorage::CConfigurationStorage() = default;
CConfigurationStorage::CConfigurationStorage(const CConfigurationStorage& other) = default;
CConfigurationStorage& CConfigurationStorage::operator=(const CConfigurationStorage& other) = default;
CConfigurationStorage::~CConfigurationStorage() = default;

CConfigurationStorage* CConfigurationStorage::Instance()
{
    if (m_pInstance == nullptr)
        m_pInstance = new CConfigurationStorage;
    return m_pInstance;
}

void CConfigurationStorage::RegisterHandler(boost::shared_ptr<IConfigurationHandler> pHandler)
{
    m_pHandler = std::move(pHandler);
}

// Each call holds a reference to the handler: the handler may register another one during the call.

int CConfigurationStorage::OpenStorage()
{
    const boost::shared_ptr<IConfigurationHandler> pHandler = m_pHandler;
    return pHandler ? pHandler->OpenStorage() : 0;
}

void CConfigurationStorage::CloseStorage()
{
    const boost::shared_ptr<IConfigurationHandler> pHandler = m_pHandler;
    if (pHandler)
        pHandler->CloseStorage();
}

CString CConfigurationStorage::LoadConfigurationById(const WCHAR* pId)
{
    const boost::shared_ptr<IConfigurationHandler> pHandler = m_pHandler;
    return pHandler ? pHandler->LoadConfigurationById(pId) : CString();
}

int CConfigurationStorage::SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg)
{
    const boost::shared_ptr<IConfigurationHandler> pHandler = m_pHandler;
    return pHandler ? pHandler->SaveConfiguration(pId, pCfg) : 0;
}
} // namespace VLT
