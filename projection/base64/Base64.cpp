#include "projection/base64/Base64.h"

#include "platform/text.h"
#include "projection/base64/Base64Ascii.h"

#include <climits>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace
{
// Stands between the narrow form and the UTF-8 form of a text that has units without a one-byte form.
constexpr std::string_view TailMark("\0\xEF\xBB\xBF", 4);

// More bytes have no base64 text that a CString can hold.
constexpr size_t MaxEncodableBytes = INT_MAX / 4 * 3;

constexpr WCHAR ReplacementUnit = 0xFFFD;

/// The byte that stands for the unit in the current locale, if one byte does and leads back to the unit.
std::optional<char> OneByteForm(WCHAR unit)
{
    const WCHAR text[] = {unit, 0};
    char bytes[MB_LEN_MAX + 1];
    if (wcstombs(bytes, text, sizeof(bytes)) != 1)
        return std::nullopt;
    // Some code pages map units of private use to bytes that they do not take back.
    WCHAR back[] = {0, 0};
    if (mbstowcs(back, bytes, 2) != 1 || back[0] != unit)
        return std::nullopt;
    return bytes[0];
}

/// One byte for each unit; '?' for a unit that has no one-byte form.
std::string NarrowForm(const WString& text)
{
    std::string narrow;
    narrow.reserve(text.size());
    for (const WCHAR unit : text)
        narrow += unit < 0x80 ? static_cast<char>(unit) : OneByteForm(unit).value_or('?'); // ASCII in every locale
    return narrow;
}

WCHAR UnitOfByte(char byte)
{
    const char bytes[] = {byte, 0};
    WCHAR text[] = {0, 0};
    return mbstowcs(text, bytes, 2) == 1 ? text[0] : ReplacementUnit;
}

/// The text that the bytes stand for in the current locale. They hold no NUL.
WString WideForm(const std::string& bytes)
{
    WString text(bytes.size() + 1, 0); // no locale makes more units than bytes
    const size_t length = mbstowcs(text.data(), bytes.c_str(), text.size());
    if (length != static_cast<size_t>(-1))
    {
        text.resize(length);
        return text;
    }
    text.clear();
    for (const char byte : bytes)
        text += UnitOfByte(byte);
    return text;
}

bool IsHighSurrogate(char32_t point)
{
    return point >= 0xD800 && point <= 0xDBFF;
}

bool IsLowSurrogate(char32_t point)
{
    return point >= 0xDC00 && point <= 0xDFFF;
}

void AppendUtf8(std::string& bytes, char32_t point)
{
    static constexpr char32_t LeadMarks[] = {0x00, 0xC0, 0xE0, 0xF0};
    const int continuations = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    bytes += static_cast<char>(LeadMarks[continuations] | point >> 6 * continuations);
    for (int i = continuations - 1; i >= 0; --i)
        bytes += static_cast<char>(0x80 | (point >> 6 * i & 0x3F));
}

void AppendUnits(WString& text, char32_t point)
{
    if (point < 0x10000)
    {
        text += static_cast<WCHAR>(point);
        return;
    }
    text += static_cast<WCHAR>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<WCHAR>(0xDC00 + (point & 0x3FF));
}

std::string Utf8Form(const WString& text)
{
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i)
    {
        char32_t point = text[i];
        if (IsHighSurrogate(point) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]))
            point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00);
        AppendUtf8(bytes, point);
    }
    return bytes;
}

/// Takes the first code point off the bytes, a surrogate too. None for ill-formed bytes and for NUL, which no text has.
std::optional<char32_t> TakeCodePoint(std::string_view& bytes)
{
    static constexpr char32_t LeastOfLength[] = {0, 0x01, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(bytes.front());
    const size_t length = lead < 0x80 ? 1 : lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
    if (length == 0 || length > bytes.size())
        return std::nullopt;
    char32_t point = length == 1 ? lead : lead & (0x7F >> length);
    for (const char byte : bytes.substr(1, length - 1))
    {
        if ((byte & 0xC0) != 0x80)
            return std::nullopt;
        point = point << 6 | (byte & 0x3F);
    }
    if (point < LeastOfLength[length] || point > 0x10FFFF)
        return std::nullopt;
    bytes.remove_prefix(length);
    return point;
}

/// The way back from Utf8Form; none for bytes that it never makes.
std::optional<WString> TextOfUtf8(std::string_view bytes)
{
    WString text;
    while (!bytes.empty())
    {
        const std::optional<char32_t> point = TakeCodePoint(bytes);
        if (!point)
            return std::nullopt;
        // A last unit that is a high surrogate came in three bytes; a whole pair has only the four-byte form.
        if (IsLowSurrogate(*point) && !text.empty() && IsHighSurrogate(text.back()))
            return std::nullopt;
        AppendUnits(text, *point);
    }
    return text;
}

} // namespace

std::string Base64EncodeBytes(const char* pBytes, uint32_t count)
{
    std::string text;
    text.reserve((static_cast<size_t>(count) + 2) / 3 * 4);
    for (size_t i = 0; i < count; i += 3)
    {
        const auto byteAt = [&](size_t index) -> unsigned
        { return index < count ? static_cast<unsigned char>(pBytes[index]) : 0; };
        const unsigned group = byteAt(i) << 16 | byteAt(i + 1) << 8 | byteAt(i + 2);
        text += s_base64Alphabet[group >> 18];
        text += s_base64Alphabet[group >> 12 & 63];
        text += i + 1 < count ? s_base64Alphabet[group >> 6 & 63] : '=';
        text += i + 2 < count ? s_base64Alphabet[group & 63] : '=';
    }
    return text;
}

std::string Base64DecodeBytes(const std::string& text)
{
    std::string bytes;
    unsigned pending = 0; // the bits read last, of which the lowest pendingBits have not become a byte yet
    int pendingBits = 0;
    for (const char character : text)
    {
        const size_t value = s_base64Alphabet.find(character);
        if (value == std::string::npos)
            break;
        pending = pending << 6 | static_cast<unsigned>(value);
        pendingBits += 6;
        if (pendingBits < 8)
            continue;
        pendingBits -= 8;
        bytes += static_cast<char>(pending >> pendingBits & 0xFF);
    }
    return bytes;
}

namespace
{
/// The value of any text, ASCII or not.
CString PlainValueOf(const WString& text)
{
    std::string bytes = NarrowForm(text);
    if (WideForm(bytes) != text)
        bytes.append(TailMark).append(Utf8Form(text));
    if (bytes.size() > MaxEncodableBytes)
        throw std::bad_alloc();
    return WideForm(Base64EncodeBytes(bytes.data(), static_cast<uint32_t>(bytes.size()))).c_str();
}

/// The text of any value.
CString PlainTextOf(const WString& value)
{
    const std::string bytes = Base64DecodeBytes(NarrowForm(value));
    const std::string head = bytes.substr(0, bytes.find('\0'));
    const std::string_view rest = std::string_view(bytes).substr(head.size());
    if (rest.starts_with(TailMark))
    {
        const std::optional<WString> text = TextOfUtf8(rest.substr(TailMark.size()));
        if (text && NarrowForm(*text) == head)
            return text->c_str();
    }
    return WideForm(head).c_str();
}
} // namespace

CString EncodeTextValue(const WCHAR* pText)
{
    CString value;
    if (pText != nullptr && !AppendAsciiValue(pText, wcslen(pText), value))
        value = PlainValueOf(pText);
    return value;
}

void AppendTextValue(const CString& text, CString& target)
{
    if (!AppendAsciiValue(text, static_cast<size_t>(text.GetLength()), target))
        target += PlainValueOf(text.GetString());
}

CString DecodeTextValue(const WCHAR* pValue)
{
    CString text;
    if (pValue != nullptr && !DecodeAsciiText(pValue, wcslen(pValue), text))
        text = PlainTextOf(pValue);
    return text;
}

CString DecodeTextValue(const CString& value)
{
    CString text;
    if (!DecodeAsciiText(value, static_cast<size_t>(value.GetLength()), text))
        text = PlainTextOf(value.GetString());
    return text;
}
