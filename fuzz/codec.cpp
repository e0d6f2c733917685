// Input: bytes, taken as bytes, as UTF-16LE text and as a stored value. Decoding gives back what was encoded, and the
// text decoded from any value can be stored again.
#include "fuzz/Fuzz.h"
#include "projection/base64/Base64.h"

#include <algorithm>

namespace
{
/// Characters of the alphabet and as much padding as fills the last four.
void RequireBase64(const WString& value)
{
    Require(value.size() % 4 == 0, "a value has whole groups");
    const size_t padding = value.size() - std::min(value.find(TEXT('=')), value.size());
    Require(padding <= 2, "at most two = pad a value");
    for (const WCHAR unit : value.substr(0, value.size() - padding))
        Require(unit < 0x80 && s_base64Alphabet.find(static_cast<char>(unit)) != std::string::npos,
                "a value holds base64 characters only");
}

void RequireRoundTrip(const WCHAR* pText)
{
    const CString value = EncodeTextValue(pText);
    RequireBase64(Units(value));
    Require(DecodeTextValue(value) == pText, "a text comes back");
    const bool isNarrow = std::all_of(pText, pText + wcslen(pText), [](WCHAR unit) { return unit < 0x100; });
    Require(!isNarrow || Base64DecodeBytes(std::string(value.GetString(), value.GetString() + value.GetLength())) ==
                             std::string(pText, pText + wcslen(pText)),
            "a text of one-byte characters is stored as its bytes");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(pData), size);
    const std::string encoded = Base64EncodeBytes(bytes.data(), static_cast<uint32_t>(size));
    RequireBase64(WString(encoded.begin(), encoded.end()));
    Require(Base64DecodeBytes(encoded) == bytes, "bytes come back");
    const std::string decoded = Base64DecodeBytes(bytes);
    Require(Base64DecodeBytes(Base64EncodeBytes(decoded.data(), static_cast<uint32_t>(decoded.size()))) == decoded,
            "what was decoded comes back");

    const CExactText text(pData, size);
    RequireRoundTrip(text.Get());
    RequireRoundTrip(DecodeTextValue(text.Get()));
    const WString value(encoded.begin(), encoded.end());
    RequireRoundTrip(DecodeTextValue(value.c_str())); // any bytes as a value: damaged tails among them
    return 0;
}
