#pragma once
/// Base64 for the free texts of the module's XML: a quote or an angle bracket in a name never reaches the markup.
/// A stored value is the base64 text (RFC 4648, section 4) of the text's narrow form: one byte for each unit, as the
/// runtime library's current locale has it. In the locale in which a process starts that is the units 0x01 to 0xFF.
/// A text with other units is stored as the narrow form with '?' in their place, one NUL byte, the bytes EF BB BF and
/// the text in UTF-8, in which a lone surrogate stands in its three-byte form. A reader that does not know the tail
/// sees the narrow form, since a decoded value ends at its first NUL.
#include <afxstr.h>

#include <cstdint>
#include <string>

/// The 64 characters in the order of their values.
inline constexpr char Base64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
/// The same; made and destroyed with the module-level objects.
extern const std::string s_base64Alphabet;

/// The base64 text of count bytes, padded with '=', without line breaks. pBytes may be null if count is 0.
std::string Base64EncodeBytes(const char* pBytes, uint32_t count);

/// The bytes of a base64 text. It ends at the first character outside the alphabet, whatever follows; padding does not
/// matter. A lone last character gives no byte. Never fails.
std::string Base64DecodeBytes(const std::string& text);

/// The stored value of a text. Every text comes back through DecodeTextValue while the locale stays the same; null
/// counts as the empty text. Throws std::bad_alloc for a text whose value would pass 2^31 - 1 units.
CString EncodeTextValue(const WCHAR* pText);
/// The units of the value, if the text is ASCII; others need more.
inline size_t LengthOfAsciiValue(const CString& text)
{
    return (static_cast<size_t>(text.GetLength()) + 2) / 3 * 4;
}
/// Appends the same to another string.
void AppendTextValue(const CString& text, CString& target);

/// The text of a stored value. Never fails: of a value that is not base64 the valid head is decoded, and a tail that is
/// damaged or does not belong to the narrow form is left out. Bytes that the locale cannot read are taken one by one;
/// those that have no unit of their own become U+FFFD. Null counts as the empty text.
CString DecodeTextValue(const WCHAR* pValue);
CString DecodeTextValue(const CString& value);
