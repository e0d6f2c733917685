#pragma once
/// Base64 between 16-bit texts for what nearly all values are: ASCII, whose units are the same bytes in every locale.
/// Whatever else a text holds is left to the plain form in Base64.cpp.
#include "platform/mfc/atlstr.h"

/// Sets value to the base64 text of length units. False if one of them is not ASCII or NUL; value is then unchanged.
bool EncodeAsciiText(const WCHAR* pText, size_t length, CString& value);

/// Sets text to what the base64 run at the start of pValue decodes to. False if a decoded byte is not ASCII or NUL,
/// which may begin a tail; text is then unchanged.
bool DecodeAsciiText(const WCHAR* pValue, size_t length, CString& text);
