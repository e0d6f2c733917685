#pragma once
/// How a class is marked that a shared library gives out, on the giving and on the taking side.
#include "platform/compiler.h"

#define AFX_CLASS_EXPORT VELTRANO_EXPORT
#define AFX_CLASS_IMPORT VELTRANO_IMPORT
