#pragma once
#include "platform/text.h"

/// What the exception that is being handled says, in words. Call it in a catch block. An exception that was thrown by
/// pointer is deleted.
WString DescribeCurrentException();
