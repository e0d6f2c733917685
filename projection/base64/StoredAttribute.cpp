#include "projection/base64/StoredAttribute.h"

#include "platform/decimal.h"
#include "projection/base64/Base64.h"
#include "projection/base64/Base64Ascii.h"
#include "xml/XmlAttributeReader.h"

#include <algorithm>

CString ReadTextAttribute(CXmlAttributeReader& attributes, std::basic_string_view<WCHAR> name)
{
    const auto [units, isOpen] = attributes.Read(name);
    CString text;
    const std::optional<size_t> asciiRun = DecodeAsciiText(units.data(), units.size(), text);
    const size_t run = asciiRun ? *asciiRun : LengthOfBase64Run(units.data(), units.size());
    // Base64 ends at the first unit outside its alphabet, as the closing quote is. Only a & can stand for another unit.
    if (run == units.size() ? isOpen : units[run] == TEXT('&'))
        return DecodeTextValue(attributes.ReadDecoded(name));
    if (!asciiRun)
        return DecodeTextValue(CString(units.data(), static_cast<int>(run)));
    if (run < units.size() / 2) // other attributes follow
        text.FreeExtra();
    return text;
}

int ReadNumberAttribute(CXmlAttributeReader& attributes, std::basic_string_view<WCHAR> name)
{
    const auto [units, isOpen] = attributes.Read(name);
    const auto end =
        std::find_if(units.begin(), units.end(),
                     [](WCHAR unit) { return unit > TEXT('9') || unit == TEXT('"') || unit == TEXT('&'); });
    if (end == units.end() ? !isOpen : *end != TEXT('&'))
        return DecimalToInt({units.begin(), end});
    const CString decoded = attributes.ReadDecoded(name);
    return DecimalToInt({decoded.GetString(), static_cast<size_t>(decoded.GetLength())});
}
