/// The entry point of a regular DLL. Calls the application object; the module's state needs no other set-up. A shared
/// library outside Windows has no entry point that is called after the constructors, so InitInstance does not run
/// there.
#ifdef _WIN32
#include <afxwin.h>

namespace
{
/// Keeps the library of the list view loaded: a dialog may still be open when the module is unloaded, and the library
/// would be unloaded with the module.
void KeepCommonControls()
{
    HMODULE library = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<LPCWSTR>(&InitCommonControlsEx), &library);
}
} // namespace

// The runtime calls it after the constructors of the module-level objects and before their destructors. A load that
// fails is followed by a detach, so ExitInstance is called then, too.
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
