#include "tests/shutdown/Plugin.h"

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>

namespace
{
void* Open(const char* pName, int flags)
{
    return dlopen((std::filesystem::read_symlink("/proc/self/exe").parent_path() / pName).c_str(), RTLD_NOW | flags);
}
} // namespace

CPluginLibrary::CPluginLibrary() : m_pHandle(Open("libshutdown_plugin.so", 0))
{
    if (m_pHandle == nullptr)
        throw std::runtime_error(dlerror());
    m_pPlugin = reinterpret_cast<GetPluginFunction*>(dlsym(m_pHandle, "GetPlugin"))();
}

void CPluginLibrary::Unload()
{
    dlclose(m_pHandle);
    if (Open("libVeltranoCommands.so", RTLD_NOLOAD) != nullptr)
        throw std::runtime_error("the module is still loaded");
}
