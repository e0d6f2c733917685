#include "tests/shutdown/Plugin.h"

#include <stdexcept>

CPluginLibrary::CPluginLibrary() : m_pHandle(::LoadLibraryW(TEXT("shutdown_plugin.dll")))
{
    if (m_pHandle == nullptr)
        throw std::runtime_error("the plug-in does not load");
    const FARPROC pFunction = ::GetProcAddress(static_cast<HMODULE>(m_pHandle), "GetPlugin");
    m_pPlugin = reinterpret_cast<GetPluginFunction*>(reinterpret_cast<void*>(pFunction))();
}

void CPluginLibrary::Unload()
{
    ::FreeLibrary(static_cast<HMODULE>(m_pHandle));
    if (::GetModuleHandleW(TEXT("VeltranoCommands.dll")) != nullptr)
        throw std::runtime_error("the module is still loaded");
}
