#include "projection/base64/StoredAttribute.h"

#include "platform/mfc/decimal.h"
#include "projection/base64/Base64.h"
#include "projection/base64/Base64Ascii.h"
#include "xml/XmlDocument.h"

CString GetTextAttribute(const CXmlDocument& document, const WCHAR* pName)
{
    const auto [units, isOpen] = document.FindAttribute(pName);
    CString text;
    // Base64 ends at the first unit that is none of its own, as the closing quote is; only if that one is an &
    // something else may stand there.
    const std::optional<size_t> end = DecodeAsciiText(units.data(), units.size(), text);
    if (end && (*end == units.size() ? !isOpen : units[*end] != TEXT('&')))
    {
        if (*end < units.size() / 2) // other attributes follow
            text.FreeExtra();
        return text;
    }
    return DecodeTextValue(document.GetAttribute(pName));
}

int GetNumberAttribute(const CXmlDocument& document, const WCHAR* pName)
{
    const std::basic_string_view<WCHAR> raw = document.GetRawAttribute(pName);
    if (raw.find(TEXT('&')) == raw.npos)
        return DecimalToInt(raw);
    const CString decoded = document.GetAttribute(pName);
    return DecimalToInt({decoded.GetString(), static_cast<size_t>(decoded.GetLength())});
}
