#pragma once
/// The common controls: the list view. The module attaches it and asks nothing of it.
#include <afxwin.h>

class CListCtrl : public CWnd
{
    DECLARE_DYNAMIC(CListCtrl)
};
