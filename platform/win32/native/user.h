#pragma once
#include "platform/win32/native/types.h"
