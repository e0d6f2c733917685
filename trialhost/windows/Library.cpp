#include "trialhost/plugin/Library.h"

#include "platform/win32/errortext.h"

#include <filesystem>
#include <system_error>

WString CLibrary::Load(const WString& path)
{
    // With the absolute path the system also looks for the plug-in's own libraries in the plug-in's folder.
    const std::filesystem::path file = std::filesystem::absolute(path);
    const UINT previous = ::SetErrorMode(SEM_FAILCRITICALERRORS); // a missing library is reported, not shown in a box
    m_pHandle = ::LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    const DWORD error = ::GetLastError();
    ::SetErrorMode(previous);
    if (m_pHandle != nullptr)
        return WString();
    const WString text = SystemErrorText(error);
    return text.empty() ? L"error " + std::to_wstring(error) : text;
}

void CLibrary::Unload()
{
    if (m_pHandle != nullptr)
        ::FreeLibrary(static_cast<HMODULE>(m_pHandle));
    m_pHandle = nullptr;
}

VLT::PlugInFunction* CLibrary::FindEntry() const
{
    const FARPROC pFunction = ::GetProcAddress(static_cast<HMODULE>(m_pHandle), "VeltranoPlugIn");
    return reinterpret_cast<VLT::PlugInFunction*>(reinterpret_cast<void*>(pFunction));
}
