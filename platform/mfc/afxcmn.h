#pragma once
/// The common controls: the list view. The module attaches it and asks nothing of it.
#include "platform/mfc/afxwin.h"

class CListCtrl : public CWnd
{
    DECLARE_DYNAMIC(CListCtrl)
};
