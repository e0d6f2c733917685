// Included before everything else when clang compiles the sources in Microsoft's mode on Debian
// (scripts/check-microsoft-mode.sh), with the Windows headers of mingw-w64 and the C++ library of clang. It only makes
// these two go together; the project's own sources never include it.
#pragma once

// The Windows headers are mingw-w64's. With these names defined, the C++ library takes the C functions as mingw-w64
// declares them; the exported names come from the compiler's target and do not depend on them.
#define __MINGW32__ 1
#define __MINGW64__ 1
#include <_mingw.h>
// Undefined for a compiler that is not GCC, and used by <malloc.h> and its like.
#ifndef __MINGW_IMPORT
#define __MINGW_IMPORT extern __declspec(dllimport)
#endif

// <comdef.h>: of its contents the sources use _com_error. Its smart pointers to COM interfaces need __uuidof over
// types that mingw-w64 declares without a GUID.
#define _INC_COMIP
#define _COM_SMARTPTR_TYPEDEF(Interface, id) class Interface##Ptr
