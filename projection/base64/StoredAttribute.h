#pragma once
/// The two kinds of attributes in the module's own XML. The results are those of CXmlDocument::GetAttribute and the
/// conversion, but a value without references is converted straight from the text.
#include <afxstr.h>

#include <string_view>

class CXmlAttributeReader;

/// Returns the text of an attribute in base64, as DecodeTextValue.
CString ReadTextAttribute(CXmlAttributeReader& attributes, std::basic_string_view<WCHAR> name);

/// Returns the number of an attribute in decimal, as DecimalToInt.
int ReadNumberAttribute(CXmlAttributeReader& attributes, std::basic_string_view<WCHAR> name);
