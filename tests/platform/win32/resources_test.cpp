#include "platform/text.h"
#include "platform/win32/win32.h"

#include <gtest/gtest.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace
{
const HINSTANCE s_module = reinterpret_cast<HINSTANCE>(&__ImageBase);
}

// Catches an error in the walk over a block of 16 texts: it shows at the ends of a block and after an empty entry.
TEST(Resources, LoadStringFindsItsTextInTheBlock)
{
    const std::tuple<UINT, int, WString> rows[] = {
        // the text of an id in a buffer of that size
        {31, 64, TEXT("last of its block")},
        {32, 64, TEXT("first of its block")},
        {32, 19, TEXT("first of its block")},
        {32, 18, TEXT("first of its bloc")},
        {34, 64, TEXT("%d \u00FC\n(%s)")},
        {32, 2, TEXT("f")},
        {33, 64, TEXT("")},
        {47, 64, TEXT("")},
        {20001, 64, TEXT("")}, // without its block: the buffer stays as it was
    };
    for (const auto& [id, size, text] : rows)
    {
        WString buffer(64, TEXT('#'));
        const int units = LoadStringW(s_module, id, buffer.data(), size);
        EXPECT_EQ(units, static_cast<int>(text.size())) << id << " in " << size;
        EXPECT_TRUE(text == buffer.c_str() || id == 20001) << id << " in " << size;
        EXPECT_EQ(buffer[static_cast<size_t>(units) + 1], TEXT('#')) << "written after the NUL of " << id;
    }
    LPWSTR pText = nullptr;
    ASSERT_EQ(LoadStringW(s_module, 32, reinterpret_cast<LPWSTR>(&pText), 0), 18);
    EXPECT_TRUE(WString(pText, 18) == TEXT("first of its block"));
}

// The rules by which a resource is found in another language than the requested one, and what is not found.
TEST(Resources, FindsByTypeNameAndLanguage)
{
    const std::tuple<LPCWSTR, LPCWSTR, WORD, std::string, DWORD> rows[] = {
        // type, name and language; the bytes that are found, or the error
        {RT_RCDATA, MAKEINTRESOURCEW(1), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_UK), "UK", ERROR_SUCCESS},
        {RT_RCDATA, MAKEINTRESOURCEW(1), LANG_NEUTRAL, "US", ERROR_SUCCESS},
        {RT_RCDATA, MAKEINTRESOURCEW(2), LANG_NEUTRAL, "DE", ERROR_SUCCESS},
        {RT_RCDATA, MAKEINTRESOURCEW(3), MAKELANGID(7, 3), "neutral German", ERROR_SUCCESS},
        {RT_RCDATA, MAKEINTRESOURCEW(3), MAKELANGID(12, 1), "neutral", ERROR_SUCCESS},
        {RT_RCDATA, TEXT("nAmEd"), LANG_NEUTRAL, "by name", ERROR_SUCCESS},
        {TEXT("NO_SUCH_TYPE"), MAKEINTRESOURCEW(1), LANG_NEUTRAL, "", ERROR_RESOURCE_TYPE_NOT_FOUND},
        {RT_RCDATA, MAKEINTRESOURCEW(77), LANG_NEUTRAL, "", ERROR_RESOURCE_NAME_NOT_FOUND},
        {RT_RCDATA, TEXT("1"), LANG_NEUTRAL, "", ERROR_RESOURCE_NAME_NOT_FOUND},
        {RT_RCDATA, MAKEINTRESOURCEW(2), MAKELANGID(12, 1), "", ERROR_RESOURCE_LANG_NOT_FOUND},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(&row - rows);
        const auto& [pType, pName, language, bytes, error] = row;
        SetLastError(ERROR_SUCCESS);
        const HRSRC resource = FindResourceExW(s_module, pType, pName, language);
        EXPECT_EQ(GetLastError(), error);
        const auto* pBytes = static_cast<const char*>(LockResource(LoadResource(s_module, resource)));
        EXPECT_EQ(pBytes == nullptr, bytes.empty());
        EXPECT_EQ(std::string(pBytes == nullptr ? "" : pBytes, SizeofResource(s_module, resource)), bytes);
    }
}
