// The trial host's window, worked by the messages that mouse and keyboard send.
#include "platform/host/HostControl.h"
#include "sdk/StorageFile.h"
#include "tests/support/TestFolder.h"
#include "trialhost/log/HostCalls.h"
#include "trialhost/windows/MainWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <process.h>

namespace
{
/// Closes the message boxes of the program as they come, and keeps their texts.
class CBoxCloser
{
public:
    CBoxCloser()
    {
        s_texts.clear();
        m_timer = ::SetTimer(nullptr, 0, 50, Close);
    }
    ~CBoxCloser() { ::KillTimer(nullptr, m_timer); }

    static std::vector<WString> s_texts; ///< oldest first

private:
    static void CALLBACK Close(HWND, UINT, UINT_PTR, DWORD)
    {
        for (const WCHAR* pCaption : {TEXT("Error"), TEXT("Trial host")})
        {
            const HWND box = ::FindWindowW(TEXT("#32770"), pCaption);
            if (box == nullptr)
                continue;
            HWND label = nullptr; // the icon is one too, without a text
            WCHAR text[1000] = {};
            while (text[0] == 0 && (label = ::FindWindowExW(box, label, WC_STATICW, nullptr)) != nullptr)
                ::GetWindowTextW(label, text, 1000);
            s_texts.emplace_back(text);
            ::SendMessageW(box, WM_COMMAND, IDOK, 0);
        }
    }

    UINT_PTR m_timer;
};
std::vector<WString> CBoxCloser::s_texts;

/// Kernel handles of the process, and the places that new objects get in the tables of windows and drawing objects: the
/// first free ones, so that they grow by what was not released.
struct CHandles
{
    DWORD kernel;
    WORD menu;
    WORD pen;
};

CHandles CountHandles()
{
    const HMENU menu = ::CreateMenu();
    const HPEN pen = ::CreatePen(PS_SOLID, 1, 0);
    CHandles handles{0, LOWORD(menu), LOWORD(pen)};
    ::GetProcessHandleCount(::GetCurrentProcess(), &handles.kernel);
    ::DestroyMenu(menu);
    ::DeleteObject(pen);
    return handles;
}

/// The resolution of the screen as programs find it when they start, in dots per inch.
class CResolution
{
public:
    explicit CResolution(DWORD dpi)
    {
        ::RegSetKeyValueW(HKEY_CURRENT_USER, s_pKey, s_pName, REG_DWORD, &dpi, sizeof dpi);
    }
    ~CResolution() { ::RegDeleteKeyValueW(HKEY_CURRENT_USER, s_pKey, s_pName); }
    static UINT Get()
    {
        DWORD dpi = 96;
        DWORD size = sizeof dpi;
        ::RegGetValueW(HKEY_CURRENT_USER, s_pKey, s_pName, RRF_RT_REG_DWORD, nullptr, &dpi, &size);
        return dpi;
    }

private:
    static constexpr const WCHAR* s_pKey = TEXT("Control Panel\\Desktop");
    static constexpr const WCHAR* s_pName = TEXT("LogPixels");
};

class TrialWindow : public testing::Test
{
protected:
    TrialWindow()
    {
        std::filesystem::copy_file(SAMPLE_FILE, m_file);
        m_session.Open(m_file);
        Open();
    }
    ~TrialWindow() override
    {
        m_session.Complete();
        m_pWindow.reset();
        HostControl::Reset();
    }

    void Open()
    {
        m_pWindow = std::make_unique<CMainWindow>(m_session, m_log, CSettings(m_settings));
        m_pWindow->Refresh();
    }
    void Choose(int command)
    {
        ::SendMessageW(m_pWindow->GetHandle(), WM_COMMAND, static_cast<WPARAM>(command), 0);
        m_pWindow->DispatchWaiting();
    }
    HWND Drawing() { return m_pWindow->GetDrawing().GetHandle(); }
    const CDrawingView& View() { return m_pWindow->GetDrawing().GetView(); }
    void Mouse(UINT message, CPixel pixel) { ::SendMessageW(Drawing(), message, 0, MAKELPARAM(pixel.x, pixel.y)); }
    void PressKey(HWND window, WPARAM key)
    {
        ::PostMessageW(window, WM_KEYDOWN, key, 1);
        m_pWindow->DispatchWaiting();
    }
    /// Handles messages until done gives true or the seconds are over; what done gives then.
    template <typename Condition>
    bool WaitFor(int seconds, Condition done)
    {
        for (int i = 0; i < seconds * 20 && !done(); ++i)
        {
            m_pWindow->Refresh();
            ::Sleep(50);
        }
        return done();
    }
    int CountButtons() { return static_cast<int>(::SendMessageW(m_pWindow->GetToolBar(), TB_BUTTONCOUNT, 0, 0)); }
    WString Status(int part)
    {
        WCHAR text[1000] = {};
        ::SendMessageW(m_pWindow->GetStatusBar(), SB_GETTEXTW, static_cast<WPARAM>(part),
                       reinterpret_cast<LPARAM>(text));
        return text;
    }
    /// The panes have the font and the places for the resolution, and no text that a control shows is cut off.
    void ExpectFit(UINT dpi)
    {
        m_dpi = dpi;
        SCOPED_TRACE(dpi);
        const HWND toolBar = m_pWindow->GetToolBar();
        const HWND statusBar = m_pWindow->GetStatusBar();
        LOGFONTW font{};
        ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(statusBar, WM_GETFONT, 0, 0)), sizeof font, &font);
        EXPECT_EQ(font.lfHeight, -Scaled(12));
        RECT identifiers;
        ::GetClientRect(m_pWindow->GetStorage().GetIdentifierList(), &identifiers);
        EXPECT_NEAR(identifiers.right, Scaled(135), 4) << "without its frame";
        ExpectPanesTogether(
            {toolBar, Drawing(), m_pWindow->GetStorage().GetHandle(), m_pWindow->GetLogPane().GetHandle(), statusBar});
        WCHAR text[1000] = {};
        RECT place;
        for (int i = 0; i < CountButtons(); ++i)
        {
            TBBUTTON button{};
            ::SendMessageW(toolBar, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&button));
            ::SendMessageW(toolBar, TB_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&place));
            text[0] = 0; // separators have no text
            ::SendMessageW(toolBar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(button.idCommand),
                           reinterpret_cast<LPARAM>(text));
            ExpectShown(toolBar, text, place);
        }
        for (int i = 0; i < 3; ++i) // the last part is a path, as long as it likes
        {
            ::SendMessageW(statusBar, SB_GETRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&place));
            ExpectShown(statusBar, Status(i), place);
        }
        for (const HWND list : {m_pWindow->GetStorage().GetIdentifierList(),
                                m_pWindow->GetStorage().GetDefinitionList(), m_pWindow->GetLogPane().GetList()})
        {
            const HWND header = ListView_GetHeader(list);
            for (int i = 0; i < Header_GetItemCount(header); ++i)
            {
                HDITEMW item{};
                item.mask = HDI_TEXT;
                item.pszText = text;
                item.cchTextMax = 1000;
                ::SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
                ::SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&place));
                ExpectShown(header, text, place);
            }
        }
    }
    void ExpectPanesTogether(const std::vector<HWND>& panes)
    {
        RECT client;
        ::GetClientRect(m_pWindow->GetHandle(), &client);
        ::MapWindowPoints(m_pWindow->GetHandle(), nullptr, reinterpret_cast<POINT*>(&client), 2);
        std::vector<RECT> places;
        for (const HWND pane : panes)
        {
            RECT place;
            RECT common;
            ::GetWindowRect(pane, &place);
            ::UnionRect(&common, &place, &client);
            EXPECT_TRUE(::EqualRect(&common, &client)) << "pane " << places.size() << " leaves the window";
            EXPECT_GT(place.bottom - place.top, Scaled(15)) << "pane " << places.size();
            for (const RECT& other : places)
                EXPECT_FALSE(::IntersectRect(&common, &place, &other)) << "pane " << places.size() << " covers another";
            places.push_back(place);
        }
    }
    void ExpectShown(HWND control, const WString& text, const RECT& place) const
    {
        const HDC context = ::GetDC(control);
        ::SelectObject(context, reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
        SIZE size{};
        ::GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
        ::ReleaseDC(control, context);
        const std::string readable(text.begin(), text.end());
        EXPECT_GE(place.right - place.left, size.cx) << readable;
        EXPECT_GE(place.bottom - place.top, size.cy) << readable;
        if (!text.empty())
        {
            EXPECT_GE(size.cy, Scaled(12)) << readable;
        }
    }
    LONG Scaled(LONG length) const { return length * static_cast<LONG>(m_dpi) / 96; }
    static WString PlugInPath(const char* pName)
    {
        return std::filesystem::absolute(std::string(PLUGIN_FOLDER) + "/" + pName + ".dll").wstring();
    }

    const CTestFolder m_folder; // goes last
    const WString m_file = m_folder.Path(TEXT("storage.xml"));
    const WString m_settings = m_folder.Path(TEXT("settings.ini"));
    UINT m_dpi = 96; ///< that ExpectFit was last called with
    CCallLog m_log;
    const CHostCallRecorder m_recorder{m_log};
    std::vector<WString> m_reports;
    CTrialHost m_host{m_log, [this](const WString& text) { m_reports.push_back(text); }};
    CTrialSession m_session{m_log, m_host, [](const WString&) {}};
    std::unique_ptr<CMainWindow> m_pWindow;
};
} // namespace

TEST_F(TrialWindow, ViewZoomsPansAndFits)
{
    const CPixel place{100, 80};
    const CStdPoint2D before = View().ToDrawing(place);
    const double spacing = View().GetGridSpacing(40);
    POINT screen{place.x, place.y};
    ::ClientToScreen(Drawing(), &screen);
    for (int i = 0; i < 10; ++i) // to the window with the focus, as the system does, wherever the mouse is
        ::PostMessageW(m_pWindow->GetLogPane().GetList(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA),
                       MAKELPARAM(screen.x, screen.y));
    m_pWindow->DispatchWaiting();
    EXPECT_LT(View().GetGridSpacing(40), spacing);
    EXPECT_NEAR(View().ToDrawing(place).x, before.x, 1e-6);

    Mouse(WM_MBUTTONDOWN, place);
    Mouse(WM_MOUSEMOVE, {place.x + 50, place.y + 10});
    Mouse(WM_MBUTTONUP, {place.x + 50, place.y + 10});
    Mouse(WM_MOUSEMOVE, {0, 0}); // pans no more
    EXPECT_NEAR(View().ToDrawing({place.x + 50, place.y + 10}).x, before.x, 1e-6);

    PressKey(Drawing(), VK_HOME);
    EXPECT_EQ(View().GetGridSpacing(40), spacing);
    PressKey(Drawing(), VK_RIGHT);
    EXPECT_GT(View().ToDrawing(place).x, before.x);
}

TEST_F(TrialWindow, CommandsRunFromToolBarMenuAndKeys)
{
    RECT button;
    ::SendMessageW(m_pWindow->GetToolBar(), TB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&button));
    EXPECT_GT(button.right - button.left, 100) << "the caption is cut off";
    const LPARAM place = MAKELPARAM(button.left + 5, button.top + 5);
    ::SendMessageW(m_pWindow->GetToolBar(), WM_LBUTTONDOWN, MK_LBUTTON, place);
    ::SendMessageW(m_pWindow->GetToolBar(), WM_LBUTTONUP, 0, place);
    EXPECT_NE(m_host.FindDialog(), nullptr);
    EXPECT_EQ(HostControl::GetLines().size(), 10u);
    Choose(CommandRunAgain);
    EXPECT_EQ(HostControl::GetLines().size(), 20u);
    Choose(CommandComplete);
    EXPECT_EQ(m_host.FindDialog(), nullptr);
    EXPECT_FALSE(m_host.IsCommandActive());
    PressKey(Drawing(), VK_F7); // only the view changes
    EXPECT_EQ(HostControl::GetLines().size(), 20u);
}

TEST_F(TrialWindow, SelectionLightsUpAndReportsTheLine)
{
    Choose(FirstCommandRun);
    const CPixel line = View().ToPixel({130, 110});
    Mouse(WM_MOUSEMOVE, line);
    EXPECT_EQ(m_pWindow->GetDrawing().GetHighlightedLine(), CDrawingView::s_noLine) << "before the prompt";
    Mouse(WM_MOUSEMOVE, line);
    EXPECT_EQ(m_pWindow->GetDrawing().GetHighlightedLine(), 3u);
    EXPECT_EQ(Status(0), TEXT("Select an entity"));
    EXPECT_EQ(Status(1), TEXT("input mode 2"));
    Mouse(WM_LBUTTONDOWN, {line.x, line.y - 200}); // no line there
    Mouse(WM_LBUTTONDOWN, line);
    EXPECT_EQ(HostControl::GetRecord().selectedLines, std::vector<size_t>{3});
    EXPECT_EQ(m_log.GetCalls().back().call, TEXT("HostControl::SelectLine(3)"));
}

TEST_F(TrialWindow, StoragePaneFollowsTheFile)
{
    const CStoragePane& pane = m_pWindow->GetStorage();
    EXPECT_EQ(ListView_GetItemCount(pane.GetIdentifierList()), 2);
    EXPECT_EQ(ListView_GetItemCount(pane.GetDefinitionList()), 3);
    ListView_SetItemState(pane.GetIdentifierList(), 1, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(::GetWindowTextLengthW(pane.GetTextField()), 14) << "Sample drawing";
    EXPECT_TRUE(::IsWindowVisible(pane.GetTextField()));
    const auto change = [](VLT::CStorage& storage)
    {
        storage.GetConfigurationById(TEXT("TRIAL_HOST_TITLE"))->SetCfg(TEXT("changed elsewhere"));
        return true;
    };
    VLT::CStorageFile file(m_file.c_str());
    ASSERT_TRUE(file.Update(change)) << std::filesystem::path(file.GetErrorText().GetString()).string();
    EXPECT_TRUE(WaitFor(10, [&pane] { return ::GetWindowTextLengthW(pane.GetTextField()) == 17; }));
}

TEST_F(TrialWindow, LogShowsTheRunAndIsCopied)
{
    Choose(CommandClearLog);
    EXPECT_EQ(ListView_GetItemCount(m_pWindow->GetLogPane().GetList()), 0);
    Choose(FirstCommandRun);
    m_pWindow->Refresh();
    EXPECT_EQ(ListView_GetItemCount(m_pWindow->GetLogPane().GetList()), static_cast<int>(m_log.GetCalls().size()));
    Choose(CommandCopyLog);
    ASSERT_TRUE(::OpenClipboard(m_pWindow->GetHandle()));
    const auto* pText = static_cast<const WCHAR*>(::GlobalLock(::GetClipboardData(CF_UNICODETEXT)));
    const WString copied = pText == nullptr ? WString() : WString(pText);
    ::CloseClipboard();
    for (const WCHAR* pPart :
         {TEXT("RunCommand(\"CMD_DEFINE_PROJ_ENTITIES\") = 1"), TEXT("    IConfigurationHandler::Open"),
          TEXT("    CNOI_IDatabase::AddObject(CNOI_DBObject) = true")})
        EXPECT_NE(copied.find(pPart), WString::npos);
}

TEST_F(TrialWindow, FaultsShowTheirMessages)
{
    const CBoxCloser closer;
    Choose(FirstCommandFault + static_cast<int>(eFault::SeventhLineRefused));
    Choose(FirstCommandRun);
    Choose(FirstCommandFault + static_cast<int>(eFault::HandlerThrows));
    Choose(FirstCommandRun);
    ASSERT_EQ(CBoxCloser::s_texts.size(), 2u);
    EXPECT_TRUE(CBoxCloser::s_texts[0].starts_with(TEXT("test\n\n"))) << "the failure report";
    EXPECT_TRUE(CBoxCloser::s_texts[1].starts_with(TEXT("RunCommand was left by an exception")));
    EXPECT_EQ(HostControl::GetLines().size(), 6u);
}

// The counts of the first rounds are no measure: the system keeps what it made for them.
TEST_F(TrialWindow, PlugInsComeAndGoWithoutLosingHandles)
{
    const int buttons = CountButtons();
    m_pWindow->AddPlugIn(PlugInPath("plugin_good"));
    EXPECT_EQ(CountButtons(), buttons + 1);
    CHandles early{};
    for (int i = 0; i < 50; ++i) // the library comes and goes twice in a round
    {
        for (const int command : {FirstCommandRun + 1, int{CommandLoadAnew}, int{FirstCommandPlugIn}}) // while it runs
            ::SendMessageW(m_pWindow->GetHandle(), WM_COMMAND, static_cast<WPARAM>(command), 0);
        ASSERT_EQ(CountButtons(), buttons) << i;
        Choose(FirstCommandPlugIn);
        ASSERT_EQ(CountButtons(), buttons + 1) << i;
        if (i == 9)
            early = CountHandles();
    }
    const CHandles late = CountHandles();
    EXPECT_LE(late.kernel, early.kernel + 10); // one lost in each round would be forty
    EXPECT_LE(late.menu, early.menu + 10);
    EXPECT_LE(late.pen, early.pen + 10);
    EXPECT_EQ(std::count(m_reports.begin(), m_reports.end(), TEXT("run")), 50);
    EXPECT_EQ(std::count(m_reports.begin(), m_reports.end(), TEXT("completed")), 50);

    const CBoxCloser closer;
    m_pWindow->AddPlugIn(PlugInPath("plugin_throws"));
    ASSERT_EQ(CBoxCloser::s_texts.size(), 1u);
    EXPECT_EQ(CountButtons(), buttons + 1);
}

TEST_F(TrialWindow, FitsEveryResolutionThatItMovesTo)
{
    for (const UINT dpi : {96u, 144u, 192u})
    {
        RECT frame{0, 0, static_cast<LONG>(1100 * dpi / 96), static_cast<LONG>(800 * dpi / 96)};
        ::SendMessageW(m_pWindow->GetHandle(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&frame));
        ExpectFit(dpi);
    }
}

TEST_F(TrialWindow, FitsTheScreenAtTheStart)
{
    ExpectFit(CResolution::Get());
    RECT frame;
    RECT screen;
    ::GetWindowRect(m_pWindow->GetHandle(), &frame);
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    EXPECT_EQ(frame.right, std::min(screen.right, Scaled(20 + 1180)));
    EXPECT_EQ(frame.bottom, std::min(screen.bottom, Scaled(20 + 860)));
}

// A program learns the screen's resolution when it starts, so that each needs a process of its own.
TEST(TrialStart, FitsScreensOfEveryResolution)
{
    for (const DWORD dpi : {144u, 192u})
    {
        const CResolution resolution(dpi);
        WCHAR program[MAX_PATH] = {};
        ::GetModuleFileNameW(nullptr, program, MAX_PATH);
        EXPECT_EQ(::_wspawnl(_P_WAIT, program, TEXT("trialhost_test"), TEXT("--gtest_output="),
                             TEXT("--gtest_filter=TrialWindow.FitsTheScreenAtTheStart"), nullptr),
                  0)
            << dpi;
    }
}

TEST_F(TrialWindow, TabGoesFromPaneToPane)
{
    std::vector<HWND> visited;
    for (int i = 0; i < 6; ++i)
    {
        visited.push_back(::GetFocus());
        PressKey(::GetFocus(), VK_TAB);
    }
    EXPECT_EQ(::GetFocus(), Drawing()) << "all round";
    for (const HWND pane : {Drawing(), m_pWindow->GetStorage().GetIdentifierList(),
                            m_pWindow->GetStorage().GetDefinitionList(), m_pWindow->GetLogPane().GetList()})
        EXPECT_EQ(std::count(visited.begin(), visited.end(), pane), 1);
}

TEST_F(TrialWindow, PlacesAndFilesAreKeptBetweenRuns)
{
    ::MoveWindow(m_pWindow->GetHandle(), 40, 50, 900, 700, TRUE);
    ::SendMessageW(m_pWindow->GetHandle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(m_pWindow->GetHandle(), nullptr);
    m_pWindow.reset();
    MSG message;
    ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    Open();
    RECT frame;
    ::GetWindowRect(m_pWindow->GetHandle(), &frame);
    EXPECT_EQ(frame.left, 40);
    EXPECT_EQ(frame.top, 50);
    EXPECT_EQ(frame.right, 940);
    EXPECT_EQ(frame.bottom, 750);
    EXPECT_EQ(CSettings(m_settings).GetRecentFiles(), std::vector<WString>{m_file});
}
