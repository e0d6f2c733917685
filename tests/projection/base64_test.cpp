#include "projection/base64/Base64.h"

#include "platform/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <random>

using namespace std::string_literals;

namespace
{
const std::string s_mark = "\0\xEF\xBB\xBF"s; // between the narrow form and the UTF-8 form

CString ValueOf(const std::string& bytes)
{
    const std::string value = Base64EncodeBytes(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return WString(value.begin(), value.end()).c_str();
}
} // namespace

// Every way in which a value can end early: a slip in the tail arithmetic breaks exactly one row.
TEST(Base64, DecodingEndsAtTheFirstForeignCharacter)
{
    const std::pair<std::string, std::vector<std::string>> rows[] = {
        {"", {"", "Y", "-_-_"}},
        {"a", {"YQ==", "YQ", "YQ=", "YW Jj", "YW\nJj", "YW=Jj", "YQ\0YQ"s}},
        {"ab", {"YWI=", "YWI"}},
        {"abc", {"YWJj", "YWJjZ", "YWJj=ZZZZ", "YWJj!ZGVm", "YWJj\xE9GV"}},
        {"\0\xFF\xBE"s, {"AP++"}}};
    for (const auto& [bytes, texts] : rows)
        for (const std::string& text : texts)
            EXPECT_EQ(Base64DecodeBytes(text), bytes) << text;
    EXPECT_EQ(DecodeTextValue(TEXT("YWJj\u0159ZGVm")), TEXT("abc"));
    EXPECT_EQ(DecodeTextValue(ValueOf("ab\0cd"s)), TEXT("ab"));
}

// Compared byte by byte, since other programs read these values. Only a unit without a one-byte form adds the UTF-8
// tail.
TEST(Base64, TextsAreStoredInNarrowForm)
{
    EXPECT_EQ(EncodeTextValue(TEXT("abcd")), TEXT("YWJjZA=="));
    const WCHAR* const pNull = nullptr;
    EXPECT_TRUE(EncodeTextValue(pNull).IsEmpty() && DecodeTextValue(pNull).IsEmpty());
    const std::pair<CString, std::string> rows[] = {
        {nullptr, ""},
        {TEXT("a"), "a"},
        {TEXT("M\u00FCller \u0080\u009F\u00FF?"), "M\xFCller \x80\x9F\xFF?"},
        {TEXT("a\u0158\u00FC?"), "a?\xFC?" + s_mark + "a\xC5\x98\xC3\xBC?"},
        {TEXT("\u20AC"), "?" + s_mark + "\xE2\x82\xAC"},
        {TEXT("\xD83D\xDE00"), "??" + s_mark + "\xF0\x9F\x98\x80"},
        {TEXT("\xDE00\xD83D"), "??" + s_mark + "\xED\xB8\x80\xED\xA0\xBD"}};
    for (const auto& [text, bytes] : rows)
        EXPECT_EQ(EncodeTextValue(text), ValueOf(bytes)) << bytes;
}

TEST(Base64, EveryTextComesBack)
{
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit)
    {
        const WCHAR text[] = {static_cast<WCHAR>(unit), 0};
        const CString value = EncodeTextValue(text);
        ASSERT_TRUE(DecodeTextValue(value) == text && (unit > 0xFF || value.GetLength() == 4)) << "unit " << unit;
    }
    std::mt19937 random(20260);
    const std::pair<unsigned, unsigned> ranges[] = {{1, 0x7F}, {0x80, 0xFF}, {0x100, 0xFFFF}, {0xD800, 0xDFFF}};
    for (int i = 0; i < 20'000; ++i)
    {
        WString text(random() % 40, 0);
        const unsigned kinds = 1 + random() % 4; // 1 or 2: one-byte units only
        for (WCHAR& unit : text)
        {
            const auto& [first, last] = ranges[random() % kinds];
            unit = static_cast<WCHAR>(first + random() % (last - first + 1));
        }
        ASSERT_TRUE(DecodeTextValue(EncodeTextValue(text.c_str())) == text.c_str()) << "text " << i;
    }
}

// Tails that the encoder never writes. The text is then the narrow form. In turn: empty, another text of the same
// length, one of another length, a sequence cut off, two broken ones, a NUL, an overlong one, an unused lead byte, an
// encoded surrogate pair, a code point that is too high.
TEST(Base64, ADamagedTailIsLeftOut)
{
    for (const std::string& tail :
         {""s, "ab"s, "\xC5\x98"s, "\xC5\x98\xC5"s, "\xC5\x18\xC5\x98"s, "\xC5\x98\x98"s, "\xC5\x98\0"s,
          "\xC5\x98\xE0\x85\x98"s, "\xFC\x80\x80\x80"s, "\xED\xA0\xBD\xED\xB8\x80"s, "\xF4\x90\x80\x80"s})
        EXPECT_EQ(DecodeTextValue(ValueOf("??" + s_mark + tail)), TEXT("??")) << tail;
    EXPECT_EQ(DecodeTextValue(ValueOf("??\0\xEF\xBB\xC5\x98\xC5\x98"s)), TEXT("??"));
}

// A host may have set a locale. The stand-in ignores it.
TEST(Base64, TextsComeBackInOtherLocales)
{
    for (const char* pLocale : {".1250", ".932"})
    {
        const bool isSet = std::setlocale(LC_ALL, pLocale) != nullptr;
        for (const WCHAR* pText : {TEXT("P\u0159\u00EDpojka?"), TEXT("\u914D\u7BA1\uFF8A"), TEXT("\uF8F0\u0080\u00FC")})
            EXPECT_EQ(DecodeTextValue(EncodeTextValue(pText)), pText) << pLocale;
        const bool isHalf = isSet && pLocale == ".932"s; // 0x81 begins a character of two bytes there
        EXPECT_TRUE(!isHalf || DecodeTextValue(ValueOf("a\x81")) == TEXT("a\uFFFD"));
        std::setlocale(LC_ALL, "C");
    }
}

// ASCII has a path of its own that works in blocks. It must give what the bytes give: for every length around the block
// sizes, with and without a foreign unit, and with that unit in every position.
TEST(Base64, AsciiTextsAreCodedAsTheirBytesAre)
{
    WString foreigners = TEXT("\u0080\u0141\u8041\uFF41");
    for (WCHAR unit = 1; unit < 0x80; ++unit)
        if (s_base64Alphabet.find(static_cast<char>(unit)) == std::string::npos)
            foreigners += unit;
    std::mt19937 random(4711);
    for (size_t length = 0; length < 70; ++length)
    {
        std::string bytes(length, ' ');
        for (char& byte : bytes)
            byte = static_cast<char>(1 + random() % 127);
        const std::string coded = Base64EncodeBytes(bytes.data(), static_cast<uint32_t>(length));
        const WString text(bytes.begin(), bytes.end());
        const WString value(coded.begin(), coded.end());
        EXPECT_TRUE(EncodeTextValue(text.c_str()) == value.c_str()) << bytes;
        EXPECT_TRUE(DecodeTextValue(value.c_str()) == text.c_str()) << coded;
        for (size_t i = 0; i < value.size(); ++i)
            for (const WCHAR foreign : foreigners)
            {
                WString damaged = value;
                damaged[i] = foreign;
                const std::string head = Base64DecodeBytes(coded.substr(0, i));
                EXPECT_TRUE(DecodeTextValue(damaged.c_str()) == WString(head.begin(), head.end()).c_str())
                    << coded << i;
            }
        for (size_t i = 0; i < length; ++i)
        {
            for (const WCHAR foreign : {WCHAR{0xFC}, WCHAR{0x0141}, WCHAR{0x8041}})
            {
                WString other = text;
                other[i] = foreign;
                EXPECT_TRUE(DecodeTextValue(EncodeTextValue(other.c_str())) == other.c_str()) << bytes << i;
            }
            bytes[i] = 0;
            EXPECT_TRUE(DecodeTextValue(ValueOf(bytes)) == text.substr(0, i).c_str()) << bytes << i;
            bytes[i] = static_cast<char>(text[i]);
        }
    }
}
