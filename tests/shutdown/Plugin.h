#pragma once
#include "configuration/ConfigurationStorage.h"

/// What the host can do with the module through the plug-in of these tests, which is linked with the module.
class IPlugin
{
public:
    virtual void RegisterHandler(boost::shared_ptr<VLT::IConfigurationHandler> pHandler) = 0;
    virtual void Run() = 0;
    virtual void StartSelection() = 0; ///< while the command runs
    virtual void Complete() = 0;
    virtual CString GetText() = 0; ///< made by the module

protected:
    ~IPlugin() = default;
};

using GetPluginFunction = IPlugin*();

/// The plug-in's library, in the folder of this program.
class CPluginLibrary
{
public:
    CPluginLibrary(); ///< Throws std::runtime_error.
    /// Throws std::runtime_error if the module is still loaded afterwards: then the order was not tested.
    void Unload();

    IPlugin* m_pPlugin;

private:
    void* m_pHandle;
};
