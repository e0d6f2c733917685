#pragma once
/// The two kinds of attributes that the module's own XML has, read from a document's current element. What they give is
/// what GetAttribute and the conversion would, but a value that holds no reference is converted where it stands.
#include <afxstr.h>

class CXmlDocument;

/// The text of an attribute in base64, as DecodeTextValue has it.
CString GetTextAttribute(const CXmlDocument& document, const WCHAR* pName);

/// A decimal number, as DecimalToInt has it.
int GetNumberAttribute(const CXmlDocument& document, const WCHAR* pName);
