#pragma once
#include "configuration/ConfigurationStorage.h"

/// What the plug-in of these tests lets its host do with the module that it is linked with.
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

/// The plug-in's library, loaded from the folder of this program.
class CPluginLibrary
{
public:
    CPluginLibrary(); ///< Throws std::runtime_error.
    /// Throws std::runtime_error if the module is there afterwards: nothing would have been tried then.
    void Unload();

    IPlugin* m_pPlugin;

private:
    void* m_pHandle;
};
