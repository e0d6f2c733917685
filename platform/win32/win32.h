#pragma once
/// Windows and runtime calls: the real headers on Windows, the stand-in elsewhere. Only wide functions are used.
/// A source that includes a header of the framework includes that one first.
#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <comdef.h>
#include <commctrl.h>

#include <cwchar>

#include "platform/text.h" // as the stand-in does
#else
#define _WINDOWS_ // as <windows.h> does: the framework checks the order of includes by it
#include "platform/win32/native/comdef.h"
#include "platform/win32/native/fileops.h"
#include "platform/win32/native/kernel.h"
#include "platform/win32/native/resources.h"
#include "platform/win32/native/runtime.h"
#include "platform/win32/native/types.h"
#include "platform/win32/native/user.h"
#endif
