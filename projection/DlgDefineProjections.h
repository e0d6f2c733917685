#pragma once
#include "platform/mfc/afxwin.h"
class CDlgDefineProjections : public CDialog
{
};
