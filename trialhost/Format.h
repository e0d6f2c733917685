#pragma once
/// Values as the trial host prints them: in steps of the script, in the log and in the window.
#include "platform/text.h"

WString Number(long long number);
/// With that many digits after the point.
WString Fixed(double value, int digits);
/// In quotation marks; control characters as \n, \t or \uXXXX. What exceeds maximum code units is cut and marked.
WString Quoted(const WString& text, size_t maximum = WString::npos);
/// With as many digits after the point as it takes, at most two.
WString Coordinate(double value);
/// "(x, y)", both as coordinates.
WString Point(double x, double y);
