#include "platform/mfc/afxcmn.h"

IMPLEMENT_DYNAMIC(CListCtrl, CWnd)
