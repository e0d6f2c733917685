#include <afxdd_.h>

HWND CDataExchange::PrepareCtrl(int nIDC)
{
    const HWND hWndCtrl = ::GetDlgItem(m_pDlgWnd->m_hWnd, nIDC);
    if (hWndCtrl == nullptr)
        throw new CNotSupportedException;
    return hWndCtrl;
}

void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl)
{
    if (rControl.m_hWnd == nullptr)
        rControl.Attach(pDX->PrepareCtrl(nIDC));
}

void DDX_Text(CDataExchange* pDX, int nIDC, CString& value)
{
    const HWND hWndCtrl = pDX->PrepareCtrl(nIDC);
    if (!pDX->m_bSaveAndValidate)
    {
        ::SetWindowTextW(hWndCtrl, value);
        return;
    }
    const int length = ::GetWindowTextLengthW(hWndCtrl);
    CString text;
    text.ReleaseBufferSetLength(::GetWindowTextW(hWndCtrl, text.GetBuffer(length), length + 1));
    value = text;
}

void DDX_Check(CDataExchange* pDX, int nIDC, int& value)
{
    const HWND hWndCtrl = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate)
    {
        value = static_cast<int>(::SendMessageW(hWndCtrl, BM_GETCHECK, 0, 0));
        return;
    }
    if (value < BST_UNCHECKED || value > BST_INDETERMINATE)
        value = BST_UNCHECKED;
    ::SendMessageW(hWndCtrl, BM_SETCHECK, static_cast<WPARAM>(value), 0);
}
