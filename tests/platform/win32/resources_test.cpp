#include "platform/text.h"
#include "platform/win32/win32.h"
#include "tests/platform/win32/test.h"

#include <gtest/gtest.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace
{
const HINSTANCE s_module = reinterpret_cast<HINSTANCE>(&__ImageBase);

std::string BytesOf(HRSRC resource)
{
    const auto* pBytes = static_cast<const char*>(LockResource(LoadResource(s_module, resource)));
    return {pBytes, SizeofResource(s_module, resource)};
}
} // namespace

// A slip in the walk over a block of 16 texts shows at its ends, and where an empty place lies before the text.
TEST(Resources, LoadStringFindsItsTextInTheBlock)
{
    const struct
    {
        UINT id;
        int size;
        WString text;
    } rows[] = {
        {31, 64, TEXT("last of its block")},
        {32, 64, TEXT("first of its block")},
        {32, 19, TEXT("first of its block")},
        {32, 18, TEXT("first of its bloc")},
        {32, 1, TEXT("")},
        {33, 64, TEXT("")},
        {34, 64, TEXT("%d \u00FC\n(%s)")},
        {47, 64, TEXT("")},
    };
    for (const auto& row : rows)
    {
        WString buffer(64, TEXT('#'));
        const int units = LoadStringW(s_module, row.id, buffer.data(), row.size);
        EXPECT_EQ(units, static_cast<int>(row.text.size())) << row.id << " in " << row.size;
        EXPECT_TRUE(row.text == buffer.c_str() || row.text.empty()) << row.id << " in " << row.size;
        EXPECT_EQ(buffer[static_cast<size_t>(units) + 1], TEXT('#')) << "written behind the NUL of " << row.id;
    }
}

TEST(Resources, LoadStringLeavesTheBufferAloneWithoutABlock)
{
    WCHAR buffer[] = TEXT("#");
    EXPECT_EQ(LoadStringW(s_module, 20001, buffer, 2), 0);
    EXPECT_EQ(buffer[0], TEXT('#'));
}

TEST(Resources, LoadStringGivesTheTextItselfForSizeZero)
{
    LPWSTR pText = nullptr;
    ASSERT_EQ(LoadStringW(s_module, 32, reinterpret_cast<LPWSTR>(&pText), 0), 18);
    EXPECT_TRUE(WString(pText, 18) == TEXT("first of its block"));
}

// The rules by which a program with one language runs on a system of another.
TEST(Resources, LanguageFallsBack)
{
    const struct
    {
        int name;
        WORD language;
        const char* pBytes;
    } rows[] = {
        {1, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_UK), "UK"},
        {1, MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL), "US"},
        {2, MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL), "DE"},
        {3, MAKELANGID(0x07, 3), "neutral German"},
        {3, MAKELANGID(0x0C, 1), "neutral"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(BytesOf(FindResourceExW(s_module, RT_RCDATA, MAKEINTRESOURCEW(row.name), row.language)), row.pBytes)
            << row.name << " in " << row.language;
}

TEST(Resources, NamesTakeAnyCase)
{
    EXPECT_EQ(BytesOf(FindResourceW(s_module, TEXT("nAmEd"), RT_RCDATA)), "by name");
}

TEST(Resources, TellsWhatIsMissing)
{
    const struct
    {
        LPCWSTR pType;
        LPCWSTR pName;
        WORD language;
        DWORD code;
    } rows[] = {
        {TEXT("NO_SUCH_TYPE"), MAKEINTRESOURCEW(1), 0, ERROR_RESOURCE_TYPE_NOT_FOUND},
        {RT_RCDATA, MAKEINTRESOURCEW(77), 0, ERROR_RESOURCE_NAME_NOT_FOUND},
        {RT_RCDATA, TEXT("1"), 0, ERROR_RESOURCE_NAME_NOT_FOUND},
        {RT_RCDATA, MAKEINTRESOURCEW(2), MAKELANGID(0x0C, 1), ERROR_RESOURCE_LANG_NOT_FOUND},
    };
    for (const auto& row : rows)
    {
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(FindResourceExW(s_module, row.pType, row.pName, row.language), nullptr);
        EXPECT_EQ(GetLastError(), row.code);
    }
    EXPECT_EQ(LoadResource(s_module, nullptr), nullptr);
    EXPECT_EQ(SizeofResource(s_module, nullptr), 0u);
}
