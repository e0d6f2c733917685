#pragma once
#include "configuration/Export.h"
#include "configuration/IConfigurationHandler.h"

#include <boost/shared_ptr.hpp>

namespace VLT
{
/// Gives the module its configuration texts: passes every call on to the registered handler, unchanged, and returns
/// defined results while no handler is registered. Keeps no open or closed state. Host's user-interface thread only.
class VLT_API CConfigurationStorage : public IConfigurationHandler
{
public:
    /// Returns the object of the process. The first call creates it; it is never freed.
    static CConfigurationStorage* Instance();

    /// Replaces the handler and shares its ownership until the next registration. An empty pointer removes the handler.
    void RegisterHandler(boost::shared_ptr<IConfigurationHandler> pHandler);

    /// Returns the handler's result, 0 without a handler.
    int OpenStorage() override;
    /// Does nothing without a handler.
    void CloseStorage() override;
    /// Returns the handler's result, the empty text without a handler.
    CString LoadConfigurationById(const WCHAR* pId) override;
    /// Returns the handler's result, 0 without a handler.
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override;

    /// Shares the handler of other. Later registrations with one of the two do not affect the other.
    CConfigurationStorage(const CConfigurationStorage& other);
    /// Replaces the handler by that of other, which is then shared.
    CConfigurationStorage& operator=(const CConfigurationStorage& other);

private:
    CConfigurationStorage();
    ~CConfigurationStorage() override;

    static CConfigurationStorage* m_pInstance;

    boost::shared_ptr<IConfigurationHandler> m_pHandler;
};
} // namespace VLT
