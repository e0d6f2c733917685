#pragma once
/// How a class is marked that a shared library gives out, on the giving and on the taking side.
#ifdef _WIN32
#define AFX_CLASS_EXPORT __declspec(dllexport)
#define AFX_CLASS_IMPORT __declspec(dllimport)
#else
#define AFX_CLASS_EXPORT __attribute__((visibility("default")))
#define AFX_CLASS_IMPORT __attribute__((visibility("default")))
#endif
