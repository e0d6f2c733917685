#pragma once
/// How a class is marked that a shared library exports, for the exporting and for the importing side; and the Windows
/// headers.
/// Different from MFC's: only these two macros, of the many that it defines.
#ifdef _WINDOWS_
#define AFX_AFTER_WINDOWS // <afx.h> and the headers that include it refuse this order
#endif
#include "platform/compiler.h"
#include "platform/win32/win32.h"

#define AFX_CLASS_EXPORT VELTRANO_EXPORT
#define AFX_CLASS_IMPORT VELTRANO_IMPORT
