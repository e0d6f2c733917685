#include "platform/text.h"
#include <afxwin.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{
/// The bytes of a resource in exactly that language; empty if there is none.
std::string Bytes(LPCWSTR pType, WORD number, WORD language)
{
    const HINSTANCE module = AfxGetResourceHandle();
    const HRSRC resource = ::FindResourceExW(module, pType, MAKEINTRESOURCEW(number), language);
    if (resource == nullptr)
        return {};
    const auto* pBytes = static_cast<const char*>(::LockResource(::LoadResource(module, resource)));
    return {pBytes, ::SizeofResource(module, resource)};
}

constexpr WORD EnglishUS = 1033;
constexpr WORD EnglishUK = 2057;

/// Reads a dialog template field by field; zeros behind its end.
struct CTemplateReader
{
    template <class Number>
    Number Get()
    {
        Number value = 0;
        if (position + sizeof value <= bytes.size())
            std::memcpy(&value, bytes.data() + position, sizeof value);
        position += sizeof value;
        return value;
    }
    /// A text, or the sign # and the number that stands for one.
    WString GetName()
    {
        WString text;
        for (WCHAR unit = Get<WORD>(); unit != 0; unit = Get<WORD>())
        {
            if (unit == 0xFFFF)
                return {'#', static_cast<WCHAR>(Get<WORD>())};
            text += unit;
        }
        return text;
    }

    const std::string bytes;
    size_t position = 0;
};
} // namespace

TEST(Resources, DialogTemplate)
{
    const WString button = {'#', 0x80}, edit = {'#', 0x81}, text = {'#', 0x82}, combo = {'#', 0x85};
    const WString list = TEXT("SYSLISTVIEW32"); // the resource compiler's spelling; window classes know no case
    constexpr DWORD Tab = WS_TABSTOP;
    constexpr DWORD Check = Tab | BS_AUTOCHECKBOX;
    constexpr DWORD Edit = Tab | WS_BORDER | ES_AUTOHSCROLL;
    const struct
    {
        WORD id;
        const WString& className;
        const WCHAR* pCaption;
        WORD place[4];
        DWORD style;
    } rows[] = {
        {1, button, TEXT("OK"), {366, 214, 50, 14}, Tab | BS_DEFPUSHBUTTON},
        {2, button, TEXT("Cancel"), {420, 214, 50, 14}, Tab},
        {1001, list, TEXT(""), {7, 17, 183, 194}, Tab | WS_BORDER | LVS_REPORT | LVS_ALIGNLEFT | LVS_NOSORTHEADER},
        {1002, combo, TEXT(""), {215, 17, 205, 30}, Tab | WS_VSCROLL | CBS_DROPDOWN | CBS_SORT},
        {1003, button, TEXT("Add"), {424, 17, 45, 14}, Tab},
        {1004, button, TEXT("-"), {193, 17, 17, 14}, Tab},
        {1005, text, TEXT("Static"), {7, 7, 182, 8}, SS_LEFT | WS_GROUP},
        {1011, button, TEXT(""), {215, 39, 253, 169}, BS_GROUPBOX},
        {1008, button, TEXT("Show in longitudinal section"), {223, 74, 232, 10}, Check},
        {1009, button, TEXT("Show in cross sections"), {223, 90, 244, 10}, Check},
        {1010, button, TEXT("Show in editor"), {223, 106, 242, 10}, Check},
        {1007, button, TEXT("Pick an entity"), {393, 121, 67, 14}, Tab},
        {1013, combo, TEXT(""), {223, 121, 167, 30}, Tab | WS_VSCROLL | CBS_DROPDOWNLIST},
        {1014, edit, TEXT(""), {223, 140, 237, 14}, Edit},
        {1015, button, TEXT("Save"), {223, 180, 50, 14}, Tab},
        {1016, edit, TEXT(""), {223, 51, 236, 14}, Edit},
        {1012, button, TEXT("Active"), {223, 164, 242, 10}, Check},
    };

    CTemplateReader reader{Bytes(RT_DIALOG, 1000, EnglishUS)};
    EXPECT_EQ(reader.Get<DWORD>(), 0xFFFF0001) << "not an extended template";
    reader.Get<uint64_t>(); // help and extended style
    EXPECT_EQ(reader.Get<DWORD>(), WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT | DS_FIXEDSYS);
    ASSERT_EQ(reader.Get<WORD>(), std::size(rows));
    reader.Get<DWORD>(); // where it opens
    EXPECT_EQ(reader.Get<DWORD>(), 477u | 235u << 16);
    EXPECT_EQ(reader.Get<DWORD>(), 0u) << "neither menu nor class";
    EXPECT_TRUE(reader.GetName() == TEXT("Define projection/intersection"));
    EXPECT_EQ(reader.Get<DWORD>(), 8u | 400u << 16);
    reader.Get<WORD>(); // italic and character set
    EXPECT_TRUE(reader.GetName() == TEXT("MS Shell Dlg"));
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.id);
        reader.position = (reader.position + 3) & ~size_t(3);
        reader.Get<uint64_t>(); // help and extended style
        EXPECT_EQ(reader.Get<DWORD>(), static_cast<DWORD>(WS_CHILD) | WS_VISIBLE | row.style);
        for (const WORD expected : row.place)
            EXPECT_EQ(reader.Get<WORD>(), expected);
        EXPECT_EQ(reader.Get<DWORD>(), row.id);
        EXPECT_TRUE(reader.GetName() == row.className);
        EXPECT_TRUE(reader.GetName() == row.pCaption);
        EXPECT_EQ(reader.Get<WORD>(), 0) << "creation data";
    }
}

TEST(Resources, LayoutVersionManifestAndTexts)
{
    EXPECT_EQ(Bytes(TEXT("AFX_DIALOG_LAYOUT"), 1000, EnglishUS), std::string(2, '\0'));

    std::string version = Bytes(RT_VERSION, 1, EnglishUS);
    EXPECT_NE(version.find(std::string("\0\0\1\0\1\0\0\0\0\0\1\0\1\0\0\0", 16)), std::string::npos) << "twice 1.0.0.1";
    std::erase(version, '\0'); // leaves each name with its value behind it
    for (const char* pField : {"FileVersion1.0.0.1", "ProductVersion1.0.0.1", "InternalNameVeltranoCommands.dll",
                               "OriginalFilenameVeltranoCommands.dll"})
        EXPECT_NE(version.find(pField), std::string::npos) << pField;

    const std::string manifest = Bytes(RT_MANIFEST, 2, EnglishUS);
    EXPECT_NE(manifest.find("level=\"asInvoker\" uiAccess=\"false\""), std::string::npos);
    EXPECT_NE(manifest.find(">true</dpiAware>"), std::string::npos);

    EXPECT_FALSE(Bytes(RT_STRING, 20001 / 16 + 1, EnglishUK).empty());
    const WCHAR* const texts[] = {
        TEXT("Error %d reading file:\n\n%s\n\n(%s)"), TEXT("Error %d writing to file:\n\n%s\n\n(%s)"),
        TEXT("Cannot open file:\n\n%s\n\nerror %d (%s)"), TEXT("Cannot open file for writing:\n\n%s\n\nerror %d (%s)")};
    for (UINT i = 0; i < std::size(texts); ++i)
    {
        WCHAR buffer[100] = {};
        ::LoadStringW(AfxGetResourceHandle(), 20001 + i, buffer, 100);
        EXPECT_TRUE(WString(buffer) == texts[i]) << 20001 + i;
    }
}
