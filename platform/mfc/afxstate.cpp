#include <afxwin.h>

#ifdef _WIN32
extern "C" IMAGE_DOS_HEADER __ImageBase; // the linker's: the start of the binary that this code is linked into
#endif

namespace
{
thread_local AFX_MODULE_STATE* s_pModuleStateInForce = nullptr;
} // namespace

AFX_MODULE_STATE::AFX_MODULE_STATE()
    : m_hCurrentInstanceHandle(reinterpret_cast<HINSTANCE>(&__ImageBase)),
      m_hCurrentResourceHandle(m_hCurrentInstanceHandle)
{
}

AFX_MODULE_STATE::~AFX_MODULE_STATE()
{
    for (const auto& [hWnd, pWnd] : m_mapHWND)
        if (pWnd->IsKindOf(RUNTIME_CLASS(CDialog)))
            ::SetWindowLongPtrW(hWnd, DWLP_DLGPROC, 0);
}

AFX_MODULE_STATE* AfxGetStaticModuleState()
{
    static AFX_MODULE_STATE s_moduleState;
    return &s_moduleState;
}

AFX_MODULE_STATE* AfxGetModuleState()
{
    return s_pModuleStateInForce != nullptr ? s_pModuleStateInForce : AfxGetStaticModuleState();
}

AFX_MAINTAIN_STATE2::AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* pModuleState) noexcept
    : m_pPrevModuleState(s_pModuleStateInForce)
{
    s_pModuleStateInForce = pModuleState;
}

AFX_MAINTAIN_STATE2::~AFX_MAINTAIN_STATE2()
{
    s_pModuleStateInForce = m_pPrevModuleState;
}

CWinApp* AfxGetApp()
{
    return AfxGetModuleState()->m_pCurrentWinApp;
}

HINSTANCE AfxGetInstanceHandle()
{
    return AfxGetModuleState()->m_hCurrentInstanceHandle;
}

HINSTANCE AfxGetResourceHandle()
{
    return AfxGetModuleState()->m_hCurrentResourceHandle;
}

IMPLEMENT_DYNAMIC(CWinApp, CCmdTarget)

BEGIN_MESSAGE_MAP(CWinApp, CCmdTarget)
END_MESSAGE_MAP()

CWinApp::CWinApp(LPCTSTR lpszAppName) : m_pszAppName(lpszAppName)
{
    AfxGetStaticModuleState()->m_pCurrentWinApp = this;
}

CWinApp::~CWinApp()
{
    AfxGetStaticModuleState()->m_pCurrentWinApp = nullptr;
}

BOOL CWinApp::InitInstance()
{
    return TRUE;
}

int CWinApp::ExitInstance()
{
    return 0;
}
