// The dialog on screens of other densities. A program takes the system's at its start, so each is tried by a child.
#include "projection/DlgDefineProjections.h"
#include "resources/resource.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <process.h>
#include <string>
#include <vector>

namespace
{
constexpr const char* s_variable = "VELTRANO_DENSITY"; // tells the child what it is to find
constexpr const WCHAR* s_key = TEXT("Control Panel\\Desktop");

/// The density for programs that start from now on, in dots per inch; without it the system's own again.
void SetDensity(DWORD density)
{
    _putenv_s(s_variable, std::to_string(density).c_str());
    ::RegSetKeyValueW(HKEY_CURRENT_USER, s_key, TEXT("LogPixels"), REG_DWORD, &density, sizeof density);
}

struct CDensityReset
{
    ~CDensityReset() { ::RegDeleteKeyValueW(HKEY_CURRENT_USER, s_key, TEXT("LogPixels")); }
};

RECT PlaceOf(HWND control)
{
    RECT place;
    ::GetWindowRect(control, &place);
    ::MapWindowPoints(nullptr, ::GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

/// The pixels that the control's text takes in its font.
SIZE TextSizeOf(HWND control)
{
    WCHAR text[100];
    const int length = ::GetWindowTextW(control, text, 100);
    const HDC dc = ::GetDC(control);
    const HGDIOBJ previous = ::SelectObject(dc, reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
    SIZE size{};
    ::GetTextExtentPoint32W(dc, text, length, &size);
    ::SelectObject(dc, previous);
    ::ReleaseDC(control, dc);
    return size;
}
} // namespace

TEST(Scale, FitsAtTheDensityInForce)
{
    ::SetProcessDPIAware();
    CDlgDefineProjections dialog;
    ASSERT_TRUE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
    dialog.ShowWindow(SW_SHOW);
    RECT client;
    ::GetClientRect(dialog.m_hWnd, &client);
    const HDC dc = ::GetDC(dialog.m_hWnd);
    const int density = ::GetDeviceCaps(dc, LOGPIXELSX);
    ::ReleaseDC(dialog.m_hWnd, dc);
    const char* pExpected = std::getenv(s_variable);
    EXPECT_TRUE(pExpected == nullptr || std::to_string(density) == pExpected) << density;
    // The font grows with the density, and with it the dialog: 477 by 235 units, at 96 of about 1.5 pixels.
    EXPECT_NEAR(client.right * 96.0 / density, 716, 72);
    EXPECT_NEAR(client.bottom * 96.0 / density, 382, 39);

    std::vector<HWND> controls;
    for (HWND child = ::GetWindow(dialog.m_hWnd, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT))
        controls.push_back(child);
    ASSERT_EQ(controls.size(), 17u);
    for (const HWND control : controls)
    {
        SCOPED_TRACE(::GetDlgCtrlID(control));
        const RECT place = PlaceOf(control);
        EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= client.right && place.bottom <= client.bottom);
        const SIZE text = TextSizeOf(control);
        const bool isCheckBox = (::GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX;
        const LONG mark = isCheckBox ? ::GetSystemMetrics(SM_CXMENUCHECK) + 4 : 0;
        EXPECT_LE(text.cx + mark, place.right - place.left);
        EXPECT_LE(text.cy, place.bottom - place.top);
        for (const HWND other : controls)
        {
            const RECT otherPlace = PlaceOf(other);
            RECT common;
            const bool isFrame = ::GetDlgCtrlID(control) == IDC_GROUP_DEFINITION ||
                                 ::GetDlgCtrlID(other) == IDC_GROUP_DEFINITION; // stands around others
            EXPECT_TRUE(control == other || isFrame || !::IntersectRect(&common, &place, &otherPlace))
                << "covers part of " << ::GetDlgCtrlID(other);
        }
    }
}

TEST(Scale, FitsAtOtherDensities)
{
    const CDensityReset reset;
    for (const DWORD density : {96, 144, 192})
    {
        SetDensity(density);
        const auto code = _wspawnl(_P_WAIT, _wpgmptr, TEXT("child"), TEXT("--gtest_output="), TEXT("--gtest_brief=1"),
                                   TEXT("--gtest_filter=Scale.FitsAtTheDensityInForce"), nullptr);
        EXPECT_EQ(code, 0) << density << " dots per inch";
    }
}
