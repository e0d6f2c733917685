#pragma once
/// The two kinds of attributes in the module's own XML, read from a document's current element. The results are those
/// of GetAttribute and the conversion, but a value without references is converted straight from the text.
#include <afxstr.h>

class CXmlDocument;

/// Returns the text of an attribute in base64, as DecodeTextValue.
CString GetTextAttribute(const CXmlDocument& document, const WCHAR* pName);

/// Returns the number of an attribute in decimal, as DecimalToInt.
int GetNumberAttribute(const CXmlDocument& document, const WCHAR* pName);
