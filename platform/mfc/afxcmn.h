#pragma once
/// The common controls.
/// Different from MFC's: only the list view, and that without operations of its own; the module only attaches it.
#include <afxwin.h>

class CListCtrl : public CWnd
{
    DECLARE_DYNAMIC(CListCtrl)
};
