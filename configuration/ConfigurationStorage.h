#pragma once
#include "configuration/Export.h"
#include "configuration/IConfigurationHandler.h"

#include <boost/shared_ptr.hpp>

namespace VLT
{
/// The module's way to configuration texts: passes every call on to the registered handler, at once and unchanged, and
/// gives defined results while there is none. Holds no open or closed state. Host's user-interface thread only.
class VLT_API CConfigurationStorage : public IConfigurationHandler
{
public:
    /// The one object, made at the first call and never freed.
    static CConfigurationStorage* Instance();

    /// Replaces the handler; shares its ownership until the next registration. Empty: as before any registration.
    void RegisterHandler(boost::shared_ptr<IConfigurationHandler> pHandler);

    /// 0 without a handler.
    int OpenStorage() override;
    void CloseStorage() override;
    /// The empty text without a handler.
    CString LoadConfigurationById(const WCHAR* pId) override;
    /// 0 without a handler.
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override;

    /// A copy shares the handler; later registrations with one do not reach the other.
    CConfigurationStorage(const CConfigurationStorage& other);
    CConfigurationStorage& operator=(const CConfigurationStorage& other);

private:
    CConfigurationStorage();
    ~CConfigurationStorage() override;

    static CConfigurationStorage* m_pInstance;

    boost::shared_ptr<IConfigurationHandler> m_pHandler;
};
} // namespace VLT
