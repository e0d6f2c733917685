/// The entry of a regular DLL. The module's state knows its handles by construction, so nothing else is to be set up.
/// A shared library of another system has no entry that is called behind the constructors, and its application object
/// gets no InitInstance.
#ifdef _WIN32
#include "platform/mfc/afxwin.h"

// The runtime calls it after the module-level objects have been made, and before they are destroyed. A load that is
// refused is followed by a detach, so ExitInstance comes then, too.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    CWinApp* pApp = AfxGetApp();
    if (pApp == nullptr)
        return TRUE;
    if (reason == DLL_PROCESS_ATTACH)
        return pApp->InitInstance();
    if (reason == DLL_PROCESS_DETACH)
        pApp->ExitInstance();
    return TRUE;
}
#endif
