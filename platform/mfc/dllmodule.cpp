/// The entry of a regular DLL. The module's state knows its handles by construction, so nothing else is to be set up.
/// A shared library of another system has no entry that is called behind the constructors, and its application object
/// gets no InitInstance.
#ifdef _WIN32
#include "platform/mfc/afxwin.h"

namespace
{
BOOL InitModule()
{
    CWinApp* pApp = AfxGetApp();
    if (pApp == nullptr || pApp->InitInstance())
        return TRUE;
    pApp->ExitInstance();
    return FALSE;
}

void TermModule()
{
    if (CWinApp* pApp = AfxGetApp())
        pApp->ExitInstance();
}
} // namespace

// The runtime calls it after the module-level objects have been made, and before they are destroyed.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
        return InitModule();
    if (reason == DLL_PROCESS_DETACH)
        TermModule();
    return TRUE;
}
#endif
