/// The entry of a regular DLL. The module's state knows its handles by construction, so nothing else is to be set up.
/// A shared library of another system has no entry that is called behind the constructors, and its application object
/// gets no InitInstance.
#ifdef _WIN32
#include <afxwin.h>

namespace
{
/// A dialog may be open when the module is unloaded, and its list is a window of this library, which would go with the
/// module if nobody else used it.
void KeepCommonControls()
{
    HMODULE library = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<LPCWSTR>(&InitCommonControlsEx), &library);
}
} // namespace

// The runtime calls it after the module-level objects have been made, and before they are destroyed. A load that is
// refused is followed by a detach, so ExitInstance comes then, too.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    if (reason != DLL_PROCESS_ATTACH && reason != DLL_PROCESS_DETACH)
        return TRUE; // threads do not concern the application object
    CWinApp* pApp = AfxGetApp();
    if (pApp == nullptr)
        return TRUE;
    if (reason == DLL_PROCESS_ATTACH)
    {
        KeepCommonControls();
        return pApp->InitInstance();
    }
    pApp->ExitInstance();
    return TRUE;
}
#endif
