#include "platform/win32/win32.h"
#include "platform/win32/wine.h"

#include <gtest/gtest.h>

#include <string>

// One U+FFFD for each maximal ill-formed part: any other rule shifts what follows.
TEST(Kernel, IllFormedUtf8IsReplaced)
{
    const struct
    {
        std::string bytes;
        WString text;
        size_t unitsUnderWine = WString::npos; // for these, in place of the text's own
    } rows[] = {
        {"a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", TEXT("a\u00FC\u20AC\xD83D\xDE00")},
        {"\x80z", TEXT("\uFFFDz")},
        {"\xC3", TEXT("\uFFFD")},
        {"\xC3z", TEXT("\uFFFDz")},
        {"\xE2\x82z", TEXT("\uFFFDz")},
        {"\xE2\x82\xE2\x82\xAC", TEXT("\uFFFD\u20AC")},
        {"\xF0\x9F\x98", TEXT("\uFFFD")},
        {"\xF0\x9F\x98z", TEXT("\uFFFDz")},
        {"\xC0\xAF", TEXT("\uFFFD\uFFFD")},
        {"\xE0\x80\xAF", TEXT("\uFFFD\uFFFD\uFFFD"), 2},
        {"\xED\xA0\x80", TEXT("\uFFFD\uFFFD\uFFFD"), 2},
        {"\xF4\x90\x80\x80", TEXT("\uFFFD\uFFFD\uFFFD\uFFFD"), 3},
        {"\xFF\xFE", TEXT("\uFFFD\uFFFD")},
        {std::string("\0b", 2), WString(TEXT("\0b"), 2)},
    };
    for (const auto& row : rows)
    {
        // Wine takes a second byte that the first one rules out into the same part.
        const WString expected = IsWine() ? row.text.substr(0, row.unitsUnderWine) : row.text;
        const int length = static_cast<int>(row.bytes.size());
        const int needed = MultiByteToWideChar(CP_UTF8, 0, row.bytes.data(), length, nullptr, 0);
        EXPECT_EQ(needed, static_cast<int>(expected.size())) << &row - rows;
        WString text(16, TEXT('#'));
        text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, row.bytes.data(), length, text.data(), 16)));
        EXPECT_TRUE(text == expected) << &row - rows;
    }
}

TEST(Kernel, LoneSurrogatesBecomeTheReplacementInUtf8)
{
    const WString text = TEXT("\xDE00z\xD83D\xD83D\xDE00\u00FC\u20AC\xD83D");
    const std::string expected = "\xEF\xBF\xBDz\xEF\xBF\xBD\xF0\x9F\x98\x80\xC3\xBC\xE2\x82\xAC\xEF\xBF\xBD";
    const int length = static_cast<int>(text.size());
    const int size = static_cast<int>(expected.size());
    std::string bytes(expected.size(), '#');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr), size);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr), size);
    EXPECT_EQ(bytes, expected);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size - 1, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

// ASCII is taken in blocks, up to the first other unit and as far as there is room.
TEST(Kernel, Utf8BehindAnyAmountOfAscii)
{
    for (int length = 2; length < 70; ++length)
        for (int at = 0; at <= length; ++at) // of a unit of two bytes; none in the last turn
        {
            WString text(static_cast<size_t>(length), TEXT('a'));
            if (at < length)
                text[static_cast<size_t>(at)] = 0xFC;
            std::string bytes(200, '#');
            const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), 200, nullptr, nullptr);
            ASSERT_EQ(size, at < length ? length + 1 : length);
            WString back(static_cast<size_t>(length), 0);
            ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, nullptr, 0), length);
            ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, back.data(), length), length);
            ASSERT_TRUE(back == text) << length << ' ' << at;
            ASSERT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size - 1, nullptr, nullptr),
                      0);
        }
}
