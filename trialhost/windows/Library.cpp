#include "trialhost/plugin/Library.h"

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
    LPWSTR pText = nullptr;
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                         nullptr, error, 0, reinterpret_cast<LPWSTR>(&pText), 1, nullptr);
    const WString text = length == 0 ? L"error " + std::to_wstring(error) : WString(pText, length);
    ::LocalFree(pText);
    return text.substr(0, text.find_last_not_of(TEXT(" ")) + 1);
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
