#pragma once
/// VLT_API marks the classes that the module exports; its own sources define VELTRANO_MODULE_BUILD.
#include <afxver_.h>

#ifdef VELTRANO_MODULE_BUILD
#define VLT_API AFX_CLASS_EXPORT
#else
#define VLT_API AFX_CLASS_IMPORT
#endif
