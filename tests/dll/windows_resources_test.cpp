// The resources as they stand in the file of the DLL, read as data: whoever looks at the file sees them so.
#include "platform/text.h"
#include "platform/win32/win32.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace
{
std::string NameOf(LPCWSTR pName)
{
    if (IS_INTRESOURCE(pName))
        return std::to_string(reinterpret_cast<ULONG_PTR>(pName));
    return std::filesystem::path(pName).string();
}

BOOL CALLBACK NoteLanguage(HMODULE, LPCWSTR pType, LPCWSTR pName, WORD language, LONG_PTR pNames)
{
    reinterpret_cast<std::set<std::string>*>(pNames)->insert(NameOf(pType) + "/" + NameOf(pName) + "/" +
                                                             std::to_string(language));
    return TRUE;
}

BOOL CALLBACK NoteName(HMODULE module, LPCWSTR pType, LPWSTR pName, LONG_PTR pNames)
{
    return ::EnumResourceLanguagesW(module, pType, pName, NoteLanguage, pNames);
}

BOOL CALLBACK NoteType(HMODULE module, LPWSTR pType, LONG_PTR pNames)
{
    return ::EnumResourceNamesW(module, pType, NoteName, pNames);
}

} // namespace

// What the resources hold, tests/dialog/resources_test.cpp reads; here is which of them got into the file, and that a
// system's own reader takes the version's blocks for what they are.
TEST(DllFile, HoldsTheResourcesAndTheirVersion)
{
    WCHAR own[MAX_PATH];
    ::GetModuleFileNameW(nullptr, own, MAX_PATH);
    const auto path = std::filesystem::path(own).parent_path() / "VeltranoCommands.dll";
    const HMODULE module = ::LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(module, nullptr);
    std::set<std::string> names;
    ::EnumResourceTypesW(module, NoteType, reinterpret_cast<LONG_PTR>(&names));
    // 5: dialog, 6: strings in blocks of 16, 16: version, 24: manifest
    EXPECT_EQ(names, (std::set<std::string>{"5/1000/1033", "AFX_DIALOG_LAYOUT/1000/1033", "6/1251/2057", "16/1/1033",
                                            "24/2/1033"}));

    std::string version(::GetFileVersionInfoSizeW(path.c_str(), nullptr), '\0');
    ASSERT_TRUE(::GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(version.size()), version.data()));
    void* pFound = nullptr;
    UINT size = 0;
    ASSERT_TRUE(::VerQueryValueW(version.data(), TEXT("\\"), &pFound, &size));
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(pFound);
    EXPECT_EQ(fixed.dwFileVersionMS, 0x00010000u);
    EXPECT_EQ(fixed.dwFileVersionLS, 0x00000001u);
    EXPECT_EQ(fixed.dwProductVersionMS, 0x00010000u);
    EXPECT_EQ(fixed.dwProductVersionLS, 0x00000001u);
    for (const WCHAR* pKey : {TEXT("FileVersion"), TEXT("ProductVersion")})
    {
        ASSERT_TRUE(::VerQueryValueW(version.data(), (TEXT("\\StringFileInfo\\040904b0\\") + WString(pKey)).c_str(),
                                     &pFound, &size));
        EXPECT_STREQ(static_cast<const WCHAR*>(pFound), TEXT("1.0.0.1"));
    }
    ::FreeLibrary(module);
}
