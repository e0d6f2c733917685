#include <afxwin.h>

#ifdef _WIN32
extern "C" IMAGE_DOS_HEADER __ImageBase; // defined by the linker: the start of the binary that this code is linked into
#endif

namespace
{
thread_local AFX_MODULE_STATE* s_pCurrentModuleState = nullptr;
} // namespace

AFX_MODULE_STATE::AFX_MODULE_STATE() : m_hCurrentResourceHandle(reinterpret_cast<HINSTANCE>(&__ImageBase))
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
    return s_pCurrentModuleState != nullptr ? s_pCurrentModuleState : AfxGetStaticModuleState();
}

AFX_MAINTAIN_STATE2::AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* pModuleState) noexcept
    : m_pPrevModuleState(s_pCurrentModuleState)
{
    s_pCurrentModuleState = pModuleState;
}

AFX_MAINTAIN_STATE2::~AFX_MAINTAIN_STATE2()
{
    s_pCurrentModuleState = m_pPrevModuleState;
}

CWinApp* AfxGetApp()
{
    return AfxGetModuleState()->m_pCurrentWinApp;
}

HINSTANCE AfxGetResourceHandle()
{
    return AfxGetModuleState()->m_hCurrentResourceHandle;
}

IMPLEMENT_DYNAMIC(CWinApp, CCmdTarget)

BEGIN_MESSAGE_MAP(CWinApp, CCmdTarget)
END_MESSAGE_MAP()

CWinApp::CWinApp(LPCTSTR)
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
