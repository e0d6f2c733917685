#include "projection/Base64.h"

#include "platform/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <random>

using namespace std::string_literals;

namespace
{
std::string EncodeBytes(const std::string& bytes)
{
    return Base64EncodeBytes(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

CString ValueOf(const std::string& bytes)
{
    const std::string value = EncodeBytes(bytes);
    return WString(value.begin(), value.end()).c_str();
}

/// Whether the text is stored as these bytes, in base64 characters alone, and comes back.
bool IsStoredAs(const CString& text, const std::string& bytes)
{
    const CString value = EncodeTextValue(text);
    return value == ValueOf(bytes) && DecodeTextValue(value) == text;
}
} // namespace

TEST(Base64, GroupsAndPaddingAreThoseOfTheStandard)
{
    const std::pair<std::string, std::string> rows[] = {{"", ""},        {"a", "YQ=="},        {"ab", "YWI="},
                                                        {"abc", "YWJj"}, {"abcd", "YWJjZA=="}, {"\0\xFF\xBE"s, "AP++"}};
    for (const auto& [bytes, text] : rows)
    {
        EXPECT_EQ(EncodeBytes(bytes), text);
        EXPECT_EQ(Base64DecodeBytes(text), bytes) << text;
    }
}

// Every way in which a value can end early: a slip in the tail arithmetic breaks exactly one row.
TEST(Base64, DecodingEndsAtTheFirstForeignCharacter)
{
    const std::pair<std::string, std::string> rows[] = {
        {"Y", ""},      {"YQ", "a"},      {"YQ=", "a"},         {"YWI", "ab"},        {"YWJjZ", "abc"},
        {"YW Jj", "a"}, {"YW\nJj", "a"},  {"YW=Jj", "a"},       {"YWJj=ZZZZ", "abc"}, {"YWJj!ZGVm", "abc"},
        {"-_-_", ""},   {"YQ\0YQ"s, "a"}, {"YWJj\xE9GV", "abc"}};
    for (const auto& [text, bytes] : rows)
        EXPECT_EQ(Base64DecodeBytes(text), bytes) << text;
    EXPECT_TRUE(DecodeTextValue(TEXT("YWJj\u0159ZGVm")) == TEXT("abc"));
    EXPECT_TRUE(DecodeTextValue(ValueOf("ab\0cd"s)) == TEXT("ab"));
}

// Byte for byte, since other programs read these values: only a unit without a one-byte form brings the UTF-8 tail.
TEST(Base64, TextsAreStoredInNarrowForm)
{
    const std::pair<CString, std::string> rows[] = {
        {nullptr, ""},
        {TEXT("M\u00FCller \u0080\u009F\u00FF?"), "M\xFCller \x80\x9F\xFF?"},
        {TEXT("a\u0158b?"), "a?b?\0\xEF\xBB\xBF\x61\xC5\x98\x62?"s},
        {TEXT("\u00FC\u20AC"), "\xFC?\0\xEF\xBB\xBF\xC3\xBC\xE2\x82\xAC"s},
        {TEXT("\xD83D\xDE00"), "??\0\xEF\xBB\xBF\xF0\x9F\x98\x80"s},
        {TEXT("\xDE00\xD83D"), "??\0\xEF\xBB\xBF\xED\xB8\x80\xED\xA0\xBD"s}};
    for (const auto& [text, bytes] : rows)
        EXPECT_TRUE(IsStoredAs(text, bytes)) << bytes;
}

TEST(Base64, EveryUnitComesBack)
{
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit)
    {
        std::string bytes(1, static_cast<char>(unit));
        if (unit > 0x7FF)
            bytes = {'?',
                     0,
                     '\xEF',
                     '\xBB',
                     '\xBF',
                     static_cast<char>(0xE0 | unit >> 12),
                     static_cast<char>(0x80 | (unit >> 6 & 63)),
                     static_cast<char>(0x80 | (unit & 63))};
        else if (unit > 0xFF)
            bytes = {'?',
                     0,
                     '\xEF',
                     '\xBB',
                     '\xBF',
                     static_cast<char>(0xC0 | unit >> 6),
                     static_cast<char>(0x80 | (unit & 63))};
        const WCHAR text[] = {static_cast<WCHAR>(unit), 0};
        ASSERT_TRUE(IsStoredAs(text, bytes)) << "unit " << unit;
    }
}

TEST(Base64, RandomTextsComeBack)
{
    std::mt19937 random(20260);
    const std::pair<unsigned, unsigned> ranges[] = {{1, 0x7F}, {0x80, 0xFF}, {0x100, 0xFFFF}, {0xD800, 0xDFFF}};
    for (int i = 0; i < 20'000; ++i)
    {
        WString text;
        const unsigned kinds = 1 + random() % 4; // texts of one-byte units alone, too
        for (unsigned length = random() % 40; length > 0; --length)
        {
            const auto& [first, last] = ranges[random() % kinds];
            text += static_cast<WCHAR>(first + random() % (last - first + 1));
        }
        ASSERT_TRUE(DecodeTextValue(EncodeTextValue(text.c_str())) == text.c_str()) << "text " << i;
    }
}

// What the encoder would not write: the narrow form stands, as for a reader that knows of no tail.
TEST(Base64, ADamagedTailIsLeftOut)
{
    const std::string mark = "\xEF\xBB\xBF";
    const std::pair<CString, std::string> rows[] = {
        {TEXT("?"), "\xC5\x98"},                         // no mark
        {TEXT("?"), "\xEF\xBB"},                         // half a mark
        {TEXT("?"), mark},                               // no text
        {TEXT("?"), mark + "a"},                         // other narrow forms
        {TEXT("?"), mark + "\xC5\x98\x61"},              //
        {TEXT("\u00FC"), mark + "\xC5\x98"},             //
        {TEXT("?"), mark + "\xC5"},                      // cut off
        {TEXT("?"), mark + "\xC5\xC5"},                  // a lead byte in the place of a continuation
        {TEXT("?"), mark + "\x98"},                      // a continuation in the place of a lead byte
        {TEXT("?"), mark + "\xE0\x85\x98"},              // overlong
        {TEXT("?"), mark + "\xF8\x88\x80\x80\x80"},      // five bytes
        {TEXT("?"), mark + "\0"s},                       // NUL
        {TEXT("??"), mark + "\xED\xA0\xBD\xED\xB8\x80"}, // a pair in twice three bytes
        {TEXT("??"), mark + "\xF4\x90\x80\x80"}};        // above U+10FFFF
    for (const auto& [head, tail] : rows)
    {
        const std::string bytes(head.GetString(), head.GetString() + head.GetLength());
        EXPECT_TRUE(DecodeTextValue(ValueOf(bytes + '\0' + tail)) == head) << EncodeBytes(tail);
    }
}

// A host may have set a locale. Natively the stand-in knows the start-up locale alone, whatever is set.
TEST(Base64, TextsComeBackInOtherLocales)
{
    const CString texts[] = {TEXT("P\u0159\u00EDpojka?"), TEXT("\u914D\u7BA1\uFF8A"), TEXT("\uF8F0\u0080\u00FC")};
    for (const char* pLocale : {".1250", ".932"})
    {
        const bool isSet = std::setlocale(LC_ALL, pLocale) != nullptr;
        for (const CString& text : texts)
            EXPECT_TRUE(DecodeTextValue(EncodeTextValue(text)) == text) << pLocale;
        if (isSet && pLocale == ".932"s)
        {
            EXPECT_TRUE(DecodeTextValue(ValueOf("a\x81")) == TEXT("a\uFFFD")); // the first half of a character
        }
        std::setlocale(LC_ALL, "C");
    }
}
