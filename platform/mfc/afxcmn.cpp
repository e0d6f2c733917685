#include <afxcmn.h>

IMPLEMENT_DYNAMIC(CListCtrl, CWnd)
