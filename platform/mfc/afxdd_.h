#pragma once
/// Data exchange between a dialog's controls and its members.
#include <afxwin.h>

/// Thrown by pointer: a dialog does not have what it is asked for.
class CNotSupportedException : public CException
{
    DECLARE_DYNAMIC(CNotSupportedException)
};

/// One run of DoDataExchange.
class CDataExchange
{
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate) : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd) {}

    /// The control's window. Throws CNotSupportedException* if the dialog has none of that identifier.
    HWND PrepareCtrl(int nIDC);

    BOOL m_bSaveAndValidate; ///< TRUE: from the controls to the members
    CWnd* m_pDlgWnd;
};

/// In both directions: gives the object its window, if it has none.
void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);
/// The whole text of an edit field.
void DDX_Text(CDataExchange* pDX, int nIDC, CString& value);
/// 0 unticked, 1 ticked, 2 neither (a box of three states); another value unticks the box.
void DDX_Check(CDataExchange* pDX, int nIDC, int& value);
