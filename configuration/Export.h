#pragma once
/// VLT_API marks the exported classes. The build of the module defines VELTRANO_MODULE_BUILD.
#include <afxver_.h>

#ifdef VELTRANO_MODULE_BUILD
#define VLT_API AFX_CLASS_EXPORT
#else
#define VLT_API AFX_CLASS_IMPORT
#endif
