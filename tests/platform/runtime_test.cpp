#include "platform/win32/win32.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace
{
int Format(WCHAR* pBuffer, size_t size, size_t count, const WCHAR* pFormat, ...)
{
    va_list arguments;
    va_start(arguments, pFormat);
    const int written = _vsnwprintf_s(pBuffer, size, count, pFormat, arguments);
    va_end(arguments);
    return written;
}
} // namespace

// Where a number ends and how it is limited: identifiers and character references are read with these calls.
TEST(Runtime, NumbersInText)
{
    const struct
    {
        const WCHAR* pText;
        int base;
        long value;
        int end; // units taken
    } rows[] = {
        {TEXT("65;"), 10, 65, 2},
        {TEXT("\t\n\v\f\r -7x"), 10, -7, 8},
        {TEXT("+8"), 10, 8, 2},
        {TEXT(""), 10, 0, 0},
        {TEXT(" x"), 10, 0, 0},
        {TEXT("-"), 10, 0, 0},
        {TEXT("--1"), 10, 0, 0},
        {TEXT("2147483648"), 10, INT_MAX, 10},
        {TEXT("-2147483649"), 10, INT_MIN, 11},
        {TEXT("99999999999999999999"), 10, INT_MAX, 20},
        {TEXT("0x41"), 10, 0, 1},
        {TEXT("0x41"), 16, 0x41, 4},
        {TEXT("-0Xfg"), 16, -0xF, 4},
        {TEXT("aFg"), 16, 0xAF, 2},
    };
    for (const auto& row : rows)
    {
        WCHAR* pEnd = nullptr;
        EXPECT_EQ(wcstol(row.pText, &pEnd, row.base), row.value) << &row - rows;
        EXPECT_EQ(pEnd - row.pText, row.end) << &row - rows;
        const long whole = row.base == 10 ? _wtoi(row.pText) : row.value;
        EXPECT_EQ(whole, row.value) << &row - rows;
    }
}

// Texts are read in blocks: one may begin and end anywhere in them, and a unit may hold a byte of zero.
TEST(Runtime, LengthWhereverATextStands)
{
    for (size_t first = 0; first < 40; ++first)
        for (size_t last = first; last < 140; ++last)
        {
            const WString text = WString(first, 0) + WString(last - first, WCHAR{0x0100}) + WString(40, 0);
            ASSERT_EQ(wcslen(text.data() + first), last - first);
        }
}

TEST(Runtime, FormattingIsCutToTheBuffer)
{
    const WString whole = TEXT("-2147483648 %: (null), x|beefA");
    const struct
    {
        size_t size;
        size_t count;
        int result;
        size_t written;
    } rows[] = {
        {31, _TRUNCATE, 30, 30}, {30, _TRUNCATE, -1, 29}, {1, _TRUNCATE, -1, 0}, {31, 30, 30, 30}, {31, 3, -1, 3}};
    for (const auto& row : rows)
    {
        WString buffer(40, TEXT('#'));
        EXPECT_EQ(Format(buffer.data(), row.size, row.count, TEXT("%d %%: %s, %s|%x%c"), INT_MIN, nullptr, TEXT("x"),
                         0xBEEFu, 'A'),
                  row.result)
            << &row - rows;
        EXPECT_TRUE(whole.substr(0, row.written) == buffer.c_str()) << &row - rows;
        EXPECT_EQ(buffer[row.size], TEXT('#')) << &row - rows;
    }
}
