#pragma once
/// Data exchange between a dialog's controls and its members. Part of <afxwin.h>.
/// Different from MFC's: three kinds of exchange, and no validation.
#include <afxwin.h>

/// One run of DoDataExchange.
class CDataExchange
{
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate) : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd) {}

    /// Returns the control's window. Throws CNotSupportedException* if the dialog has no control nIDC.
    HWND PrepareCtrl(int nIDC);

    BOOL m_bSaveAndValidate; ///< TRUE: from the controls to the members
    CWnd* m_pDlgWnd;
};

/// Attaches the object to the control's window, in either direction. Does nothing if the object has a window.
void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);
/// Exchanges the whole text of an edit field.
void DDX_Text(CDataExchange* pDX, int nIDC, CString& value);
/// Exchanges the state of a check box: 0 cleared, 1 checked, 2 indeterminate. Any other value clears the box.
void DDX_Check(CDataExchange* pDX, int nIDC, int& value);
