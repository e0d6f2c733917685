#include "trialhost/plugin/Library.h"

#include <dlfcn.h>
#include <filesystem>

WString CLibrary::Load(const WString& path)
{
    const std::filesystem::path file = std::filesystem::absolute(path); // a bare name would be looked for in the system
    m_pHandle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    return m_pHandle != nullptr ? WString() : std::filesystem::path(dlerror()).u16string();
}

void CLibrary::Unload()
{
    if (m_pHandle != nullptr)
        dlclose(m_pHandle);
    m_pHandle = nullptr;
}

VLT::PlugInFunction* CLibrary::FindEntry() const
{
    return reinterpret_cast<VLT::PlugInFunction*>(dlsym(m_pHandle, "VeltranoPlugIn"));
}
