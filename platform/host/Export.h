#pragma once
/// HOST_API marks what the host's library exports; the library's own sources define PLATFORM_HOST_BUILD.
#include <afxver_.h>

#ifdef PLATFORM_HOST_BUILD
#define HOST_API AFX_CLASS_EXPORT
#else
#define HOST_API AFX_CLASS_IMPORT
#endif
