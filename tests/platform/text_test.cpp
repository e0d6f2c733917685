// Operations of strings and text calls that the module needs, but that none of its tests covers.
#include <afxstr.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>

TEST(CString, ChangesOnlyItself)
{
    const CString original = TEXT("Pipe");
    CString text = original;
    text.GetBuffer(4)[0] = TEXT('W');
    text.ReleaseBuffer();
    EXPECT_TRUE(original == TEXT("Pipe") && text == TEXT("Wipe"));
    text += text;
    text += text.GetString() + 6; // part of its own text
    EXPECT_TRUE(text == TEXT("WipeWipepe"));
    text = "M\xFCller"; // narrow
    EXPECT_TRUE(text == TEXT("M\u00FCller"));
    text = static_cast<const char*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    text.Format(TEXT("%d %%: %s, %s|%x%c"), INT_MIN, static_cast<const WCHAR*>(nullptr), TEXT("x"), 0xBEEFu, 'A');
    EXPECT_TRUE(text == TEXT("-2147483648 %: (null), x|beefA"));
}

// wcslen reads in blocks. A text may begin and end anywhere in a block, and a unit may contain a zero byte.
TEST(Calls, LengthWhereverATextStands)
{
    for (size_t first = 0; first < 40; ++first)
        for (size_t last = first; last < 140; ++last)
        {
            const WString text = WString(first, 0) + WString(last - first, WCHAR{0x0100}) + WString(40, 0);
            ASSERT_EQ(wcslen(text.data() + first), last - first);
        }
}

// ASCII is converted in blocks, up to the first other unit and as far as the buffer has room.
TEST(Calls, Utf8AfterAnyAmountOfAscii)
{
    for (int length = 2; length < 70; ++length)
        for (int at = 0; at <= length; ++at) // position of a unit with two bytes in UTF-8; none in the last round
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
