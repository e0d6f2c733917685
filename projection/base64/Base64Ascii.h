#pragma once
/// Base64 between 16-bit texts for what nearly all values are: ASCII, whose units are the same bytes in every locale.
/// Whatever else a text holds is left to the plain form in Base64.cpp.
#include <afxstr.h>

#include <optional>

/// Appends the base64 text of length units, which are none of target's. False if one of them is not ASCII or NUL;
/// target is then unchanged.
bool AppendAsciiValue(const WCHAR* pText, size_t length, CString& target);

/// Returns how many units at the start are in the base64 alphabet.
size_t LengthOfBase64Run(const WCHAR* pValue, size_t length);

/// Sets text to what the base64 run at the start of length units decodes to, and returns where the run ends. None if a
/// decoded byte is not ASCII or NUL, which may begin a tail; text is then unchanged.
std::optional<size_t> DecodeAsciiText(const WCHAR* pValue, size_t length, CString& text);
