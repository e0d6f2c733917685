#include "projection/base64/StoredAttribute.h"

#include "platform/mfc/decimal.h"
#include "projection/base64/Base64.h"
#include "projection/base64/Base64Ascii.h"
#include "xml/XmlDocument.h"

#include <algorithm>

CString GetTextAttribute(const CXmlDocument& document, const WCHAR* pName)
{
    const auto [units, isOpen] = document.GetRawAttribute(pName);
    CString text;
    const std::optional<size_t> asciiRun = DecodeAsciiText(units.data(), units.size(), text);
    const size_t run = asciiRun ? *asciiRun : LengthOfBase64Run(units.data(), units.size());
    // Base64 ends at the first unit outside its alphabet, as the closing quote is. Only a & can stand for another unit.
    if (run == units.size() ? isOpen : units[run] == TEXT('&'))
        return DecodeTextValue(document.GetAttribute(pName));
    if (!asciiRun)
        return DecodeTextValue(CString(units.data(), static_cast<int>(run)));
    if (run < units.size() / 2) // other attributes follow
        text.FreeExtra();
    return text;
}

int GetNumberAttribute(const CXmlDocument& document, const WCHAR* pName)
{
    const auto [units, isOpen] = document.GetRawAttribute(pName);
    const auto end =
        std::find_if(units.begin(), units.end(),
                     [](WCHAR unit) { return unit > TEXT('9') || unit == TEXT('"') || unit == TEXT('&'); });
    if (end == units.end() ? !isOpen : *end != TEXT('&'))
        return DecimalToInt({units.begin(), end});
    const CString decoded = document.GetAttribute(pName);
    return DecimalToInt({decoded.GetString(), static_cast<size_t>(decoded.GetLength())});
}
