// The resources as they stand in the file of the DLL, read as data: whoever looks at the file sees them so.
#include "platform/text.h"
#include "platform/win32/win32.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

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

class DllFile : public testing::Test
{
protected:
    static HMODULE Load()
    {
        WCHAR own[MAX_PATH];
        ::GetModuleFileNameW(nullptr, own, MAX_PATH);
        const auto path = std::filesystem::path(own).parent_path() / "VeltranoCommands.dll";
        return ::LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    }
    std::string BytesOf(LPCWSTR pType, int number, WORD language) const
    {
        const HRSRC resource = ::FindResourceExW(m_module, pType, MAKEINTRESOURCEW(number), language);
        if (resource == nullptr)
            return "none";
        const auto* pBytes = static_cast<const char*>(::LockResource(::LoadResource(m_module, resource)));
        return {pBytes, ::SizeofResource(m_module, resource)};
    }

    const HMODULE m_module = Load();
};
} // namespace

TEST_F(DllFile, HoldsTheseResourcesAndNoOthers)
{
    ASSERT_NE(m_module, nullptr);
    std::set<std::string> names;
    ::EnumResourceTypesW(m_module, NoteType, reinterpret_cast<LONG_PTR>(&names));
    // 5: dialog, 6: strings in blocks of 16, 16: version, 24: manifest
    EXPECT_EQ(names, (std::set<std::string>{"5/1000/1033", "AFX_DIALOG_LAYOUT/1000/1033", "6/1251/2057", "16/1/1033",
                                            "24/2/1033"}));
    EXPECT_EQ(BytesOf(TEXT("AFX_DIALOG_LAYOUT"), 1000, 1033), std::string(2, '\0'));
}

TEST_F(DllFile, HoldsTheDialogTemplate)
{
    // Extended template of version 1; style, 17 controls, 477 x 235 dialog units; no menu, the ordinary class, a title.
    const std::string bytes = BytesOf(RT_DIALOG, 1000, 1033);
    std::vector<WORD> words(bytes.size() / 2);
    std::memcpy(words.data(), bytes.data(), words.size() * 2);
    ASSERT_GT(words.size(), 46u);
    EXPECT_EQ(words[0], 1);
    EXPECT_EQ(words[1], 0xFFFF);
    EXPECT_EQ(words[8], 17);
    EXPECT_EQ(words[11], 477);
    EXPECT_EQ(words[12], 235);
    EXPECT_EQ(WString(words.begin() + 15, words.begin() + 46), WString(TEXT("Define projection/intersection"), 31));
}

TEST_F(DllFile, HoldsTheFileErrorFormats)
{
    const std::string bytes = BytesOf(RT_STRING, 20001 / 16 + 1, 2057);
    WString expected(20001 % 16, 0); // an unused number is a length of 0
    for (const WCHAR* pText :
         {TEXT("Error %d reading file:\n\n%s\n\n(%s)"), TEXT("Error %d writing to file:\n\n%s\n\n(%s)"),
          TEXT("Cannot open file:\n\n%s\n\nerror %d (%s)"),
          TEXT("Cannot open file for writing:\n\n%s\n\nerror %d (%s)")})
        (expected += static_cast<WCHAR>(std::wcslen(pText))) += pText;
    expected.append(16 - 20001 % 16 - 4, 0);
    EXPECT_EQ(WString(reinterpret_cast<const WCHAR*>(bytes.data()), bytes.size() / 2), expected);
}

TEST_F(DllFile, HoldsVersionAndManifest)
{
    const std::string version = BytesOf(RT_VERSION, 1, 1033);
    const VS_FIXEDFILEINFO* pFixed = nullptr;
    UINT size = 0;
    ASSERT_TRUE(::VerQueryValueW(version.data(), TEXT("\\"),
                                 const_cast<void**>(reinterpret_cast<const void**>(&pFixed)), &size));
    for (const DWORD half : {pFixed->dwFileVersionMS, pFixed->dwProductVersionMS})
        EXPECT_EQ(half, 0x00010000u);
    for (const DWORD half : {pFixed->dwFileVersionLS, pFixed->dwProductVersionLS})
        EXPECT_EQ(half, 0x00000001u);
    const WCHAR* const rows[][2] = {{TEXT("FileVersion"), TEXT("1.0.0.1")},
                                    {TEXT("ProductVersion"), TEXT("1.0.0.1")},
                                    {TEXT("InternalName"), TEXT("VeltranoCommands.dll")},
                                    {TEXT("OriginalFilename"), TEXT("VeltranoCommands.dll")}};
    for (const auto& [pName, pExpected] : rows)
    {
        void* pText = nullptr;
        const WString key = WString(TEXT("\\StringFileInfo\\040904b0\\")) + pName;
        ASSERT_TRUE(::VerQueryValueW(version.data(), key.c_str(), &pText, &size)) << pName;
        EXPECT_STREQ(static_cast<const WCHAR*>(pText), pExpected);
    }

    const std::string manifest = BytesOf(RT_MANIFEST, 2, 1033);
    for (const char* pPart : {"level=\"asInvoker\"", "uiAccess=\"false\"", "<dpiAware ", ">true</dpiAware>"})
        EXPECT_NE(manifest.find(pPart), std::string::npos) << pPart;
}
