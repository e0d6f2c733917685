#include <afxwin.h>

#include <exception>

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)
IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)
IMPLEMENT_DYNAMIC(CDialog, CWnd)
IMPLEMENT_DYNAMIC(CComboBox, CWnd)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_COMMAND(IDOK, &CDialog::OnOK)
ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap()
{
    static const AFX_MSGMAP_ENTRY s_noEntries[] = {{0, 0, 0, 0, AfxSig_end, AFX_PMSG()}};
    static const AFX_MSGMAP s_messageMap = {nullptr, s_noEntries};
    return &s_messageMap;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const
{
    return GetThisMessageMap();
}

namespace
{
const AFX_MSGMAP_ENTRY* FindEntry(const AFX_MSGMAP* pMap, UINT message, UINT code, UINT id)
{
    for (; pMap != nullptr; pMap = pMap->pfnGetBaseMap != nullptr ? pMap->pfnGetBaseMap() : nullptr)
        for (const AFX_MSGMAP_ENTRY* pEntry = pMap->lpEntries; pEntry->nSig != AfxSig_end; ++pEntry)
            if (pEntry->nMessage == message && pEntry->nCode == code && pEntry->nID <= id && id <= pEntry->nLastID)
                return pEntry;
    return nullptr;
}
} // namespace

BOOL CCmdTarget::DispatchControlMessage(UINT message, UINT code, UINT id, NMHDR* pNotify, LRESULT* pResult)
{
    const AFX_MSGMAP_ENTRY* pEntry = FindEntry(GetMessageMap(), message, code, id);
    if (pEntry == nullptr)
        return FALSE;
    if (pEntry->nSig == AfxSigNotify_v)
        (this->*pEntry->handler.pfnNotify)(pNotify, pResult);
    else
        (this->*pEntry->handler.pfn)();
    return TRUE;
}

CWnd::~CWnd()
{
    Detach();
}

BOOL CWnd::Attach(HWND hWndNew)
{
    if (hWndNew == nullptr || m_hWnd != nullptr)
        return FALSE;
    // The system may reuse a handle while an object still holds it for a window that was destroyed without notice.
    if (CWnd* pEarlier = FromHandlePermanent(hWndNew))
        pEarlier->Detach();
    AfxGetStaticModuleState()->m_mapHWND[hWndNew] = this;
    m_hWnd = hWndNew;
    return TRUE;
}

HWND CWnd::Detach()
{
    const HWND hWnd = m_hWnd;
    if (hWnd != nullptr)
        AfxGetStaticModuleState()->m_mapHWND.erase(hWnd);
    m_hWnd = nullptr;
    return hWnd;
}

CWnd* CWnd::FromHandlePermanent(HWND hWnd)
{
    const auto& windows = AfxGetStaticModuleState()->m_mapHWND;
    const auto found = windows.find(hWnd);
    return found == windows.end() ? nullptr : found->second;
}

BOOL CWnd::ShowWindow(int nCmdShow)
{
    return m_hWnd == nullptr ? FALSE : ::ShowWindow(m_hWnd, nCmdShow);
}

BOOL CWnd::DestroyWindow()
{
    if (m_hWnd == nullptr || !::DestroyWindow(m_hWnd))
        return FALSE;
    Detach(); // a dialog was told by its last message, a control was not
    return TRUE;
}

BOOL CWnd::UpdateData(BOOL bSaveAndValidate)
{
    if (m_hWnd == nullptr)
        return FALSE;
    CDataExchange exchange(this, bSaveAndValidate);
    try
    {
        DoDataExchange(&exchange);
        return TRUE;
    }
    catch (CException* pException)
    {
        pException->Delete();
        return FALSE;
    }
}

void CWnd::DoDataExchange(CDataExchange*)
{
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM)
{
    return DispatchControlMessage(WM_COMMAND, HIWORD(wParam), LOWORD(wParam), nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM lParam, LRESULT* pResult)
{
    auto* pNotify = reinterpret_cast<NMHDR*>(lParam);
    return DispatchControlMessage(WM_NOTIFY, pNotify->code, static_cast<UINT>(pNotify->idFrom), pNotify, pResult);
}

CDialog::CDialog(UINT, CWnd*)
{
}

CDialog::~CDialog()
{
    // The derived part is already destroyed. DestroyWindow sends messages before it returns, and they must not reach an
    // object whose handlers no longer exist, so object and window are separated first.
    if (const HWND hWnd = Detach())
        ::DestroyWindow(hWnd);
}

/// Connects a call of Create with its OnInitDialog, across the system's stack frames. Outlives a dialog that
/// OnInitDialog deletes.
struct CDialog::CCreation
{
    CDialog* pDialog;
    std::exception_ptr pFailure; ///< the exception of OnInitDialog
};

BOOL CDialog::Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd)
{
    if (m_hWnd != nullptr)
        return FALSE;
    const INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_LISTVIEW_CLASSES};
    ::InitCommonControlsEx(&classes);
    CCreation creation{this, nullptr};
    const HWND hWnd = ::CreateDialogParamW(AfxGetResourceHandle(), lpszTemplateName,
                                           pParentWnd == nullptr ? nullptr : pParentWnd->m_hWnd, DialogProc,
                                           reinterpret_cast<LPARAM>(&creation));
    if (creation.pFailure)
        std::rethrow_exception(creation.pFailure);
    return hWnd != nullptr;
}

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParentWnd)
{
    return Create(MAKEINTRESOURCEW(nIDTemplate), pParentWnd);
}

void CDialog::EndDialog(int nResult)
{
    if (m_hWnd != nullptr)
        ::EndDialog(m_hWnd, nResult);
}

BOOL CDialog::OnInitDialog()
{
    if (UpdateData(FALSE))
        return TRUE;
    EndDialog(-1);
    return FALSE;
}

void CDialog::OnOK()
{
    if (UpdateData(TRUE))
        EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

INT_PTR CALLBACK CDialog::DialogProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG)
        return InitDialog(hWnd, *reinterpret_cast<CCreation*>(lParam));
    // Null before WM_INITDIALOG and after Detach.
    auto* pDialog = static_cast<CDialog*>(FromHandlePermanent(hWnd));
    return pDialog == nullptr ? FALSE : pDialog->HandleMessage(message, wParam, lParam);
}

INT_PTR CDialog::InitDialog(HWND hWnd, CCreation& creation)
{
    creation.pDialog->Attach(hWnd);
    try
    {
        return creation.pDialog->OnInitDialog();
    }
    catch (...)
    {
        creation.pFailure = std::current_exception(); // must not cross the system's stack frames: Create rethrows it
        return FALSE;
    }
}

INT_PTR CDialog::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND hWnd = m_hWnd; // a handler may delete the object
    try
    {
        switch (message)
        {
        case WM_COMMAND:
            return OnCommand(wParam, lParam);
        case WM_NOTIFY:
        {
            LRESULT result = 0;
            if (!OnNotify(wParam, lParam, &result))
                return FALSE;
            ::SetWindowLongPtrW(hWnd, DWLP_MSGRESULT, result);
            return TRUE;
        }
        case WM_NCDESTROY:
            ForgetWindows();
            return FALSE;
        default:
            return FALSE;
        }
    }
    // An exception must not cross the system's stack frames. It ends the handler; the dialog stays as the handler left
    // it and can still be used.
    catch (CException* pException)
    {
        pException->Delete();
    }
    catch (...)
    {
    }
    return TRUE;
}

void CDialog::ForgetWindows()
{
    Detach();
    // The controls are destroyed before their dialog's last message. Their objects may be attached again.
    std::erase_if(AfxGetStaticModuleState()->m_mapHWND,
                  [](const auto& entry)
                  {
                      const bool gone = !::IsWindow(entry.first);
                      if (gone)
                          entry.second->m_hWnd = nullptr;
                      return gone;
                  });
}
