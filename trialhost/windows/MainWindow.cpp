#include "trialhost/windows/MainWindow.h"

#include "platform/host/HostControl.h"
#include "trialhost/Format.h"
#include "trialhost/windows/Picture.h"
#include "trialhost/windows/PictureTour.h"

#include <algorithm>
#include <commdlg.h>
#include <filesystem>
#include <windowsx.h>

namespace
{
constexpr int s_toolBarId = 1;
constexpr int s_statusBarId = 2;
constexpr UINT s_updateMessage = WM_APP; // the log has grown
constexpr int s_width = 1180;            // pixels at 96 dpi, frame included
constexpr int s_height = 860;
constexpr int s_splitterWidth = 5;
constexpr int s_modeWidth = 90; // least width of the status bar's parts
constexpr int s_mouseWidth = 140;
constexpr int s_smallestShare = 100; // of a pane, in thousandths
constexpr int s_largestShare = 900;
constexpr double s_zoomStep = 1.2;

int HeightOf(HWND window)
{
    RECT frame;
    ::GetWindowRect(window, &frame);
    return frame.bottom - frame.top;
}

/// Asks for the name of a file; empty if the user gives none.
WString AskForFile(HWND owner, const WCHAR* pTitle, const WCHAR* pFilter)
{
    WCHAR path[4096] = {};
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = pFilter;
    dialog.lpstrFile = path;
    dialog.nMaxFile = 4096;
    dialog.lpstrTitle = pTitle;
    dialog.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return ::GetOpenFileNameW(&dialog) ? WString(path) : WString();
}

/// Dots per inch of the screen that shows the window.
UINT DpiOf(HWND window)
{
    // Before Windows 10 all screens have the same.
    if (const FARPROC pFunction = ::GetProcAddress(::GetModuleHandleW(TEXT("user32.dll")), "GetDpiForWindow"))
        return reinterpret_cast<UINT(WINAPI*)(HWND)>(reinterpret_cast<void*>(pFunction))(window);
    const HDC screen = ::GetDC(nullptr);
    const auto dpi = static_cast<UINT>(::GetDeviceCaps(screen, LOGPIXELSY));
    ::ReleaseDC(nullptr, screen);
    return dpi;
}

void SetShare(int& share, int pixels, int length)
{
    share = std::clamp(share + ::MulDiv(1000, pixels, std::max(length, 1)), s_smallestShare, s_largestShare);
}
} // namespace

CMainWindow::CMainWindow(CTrialSession& session, CCallLog& log, const CSettings& settings)
    : m_session(session),
      m_log(log),
      m_settings(settings),
      m_recent(settings.GetRecentFiles()),
      m_keys(CreateTrialKeys())
{
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
    ::InitCommonControlsEx(&controls);
    Create(TEXT("TrialHostView"), TEXT("Trial host"), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
           nullptr);
    const HWND frame = GetHandle();
    ::SetMenu(frame, CreateTrialMenu());
    m_toolBar = CreateTrialToolBar(frame, s_toolBarId);
    m_pDrawing = std::make_unique<CDrawingPane>(
        frame, CDrawingPane::CEvents{[this](UINT message, const CStdPoint2D& point, size_t line)
                                     { OnMouse(message, point, line); },
                                     [] { return !HostControl::GetPrompt().empty(); }});
    m_pVerticalSplitter = std::make_unique<CSplitter>(frame, false,
                                                      [this](int pixels)
                                                      {
                                                          RECT client;
                                                          ::GetClientRect(GetHandle(), &client);
                                                          SetShare(m_drawingWidth, pixels, client.right);
                                                          Arrange();
                                                      });
    m_pStorage = std::make_unique<CStoragePane>(frame, session.GetHandler()->GetPath());
    m_pHorizontalSplitter = std::make_unique<CSplitter>(frame, true,
                                                        [this](int pixels)
                                                        {
                                                            RECT client;
                                                            ::GetClientRect(GetHandle(), &client);
                                                            SetShare(m_upperHeight, pixels, client.bottom);
                                                            Arrange();
                                                        });
    m_pLogPane = std::make_unique<CLogPane>(frame, log);
    m_statusBar = ::CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                                    frame, reinterpret_cast<HMENU>(static_cast<INT_PTR>(s_statusBarId)),
                                    ::GetModuleHandleW(nullptr), nullptr);
    m_session.SetReporter([this](const WString& text) { ShowText(text, MB_ICONWARNING); });
    HostControl::SetInformationViewer(
        [this](const CHostInformation& report)
        {
            Refresh();
            ::MessageBoxW(GetHandle(), (report.second + TEXT("\n\n") + report.text).c_str(), report.first.c_str(),
                          MB_OK | MB_ICONERROR);
        });
    m_log.AddObserver(this);
    m_recent.Add(session.GetHandler()->GetPath());
    UpdateCommands();
    SetDpi(DpiOf(frame));
    RestorePlaces();
    m_pDrawing->Fit();
    ::SetFocus(m_pDrawing->GetHandle());
    UpdateAll();
}

CMainWindow::~CMainWindow()
{
    m_log.RemoveObserver(this);
    m_session.SetReporter([](const WString&) {});
    HostControl::SetInformationViewer({});
    ::DestroyAcceleratorTable(m_keys);
    ::DeleteObject(m_font);
}

void CMainWindow::Refresh()
{
    if (GetHandle() == nullptr)
        return;
    UpdateAll();
    ::UpdateWindow(GetHandle());
    DispatchWaiting();
}

bool CMainWindow::SavePicture(const WString& path)
{
    // Windows draw in steps that messages drive; a short while lets the last one settle.
    for (int i = 0; i < 20; ++i)
    {
        Refresh();
        ::Sleep(20);
    }
    return GetHandle() != nullptr && SaveWindowPicture(GetHandle(), path.c_str());
}

bool CMainWindow::RunUntilClosed()
{
    MSG message;
    while (GetHandle() != nullptr && ::GetMessageW(&message, nullptr, 0, 0) > 0)
        Dispatch(message);
    return true;
}

bool CMainWindow::SavePictures(const WString& folder)
{
    return TakePictures(*this, m_session, m_log, folder);
}

void CMainWindow::SetShares(int drawingWidth, int upperHeight)
{
    m_drawingWidth = drawingWidth;
    m_upperHeight = upperHeight;
    Arrange();
}

void CMainWindow::AddPlugIn(const WString& path)
{
    m_plugIns.push_back({path, false});
    LoadPlugIn(m_plugIns.back());
    UpdateCommands();
}

LRESULT CMainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!m_pLogPane) // while the window is being made
        return CTrialWindow::HandleMessage(message, wParam, lParam);
    switch (message)
    {
    case WM_SIZE:
        Arrange();
        return 0;
    case WM_COMMAND:
        OnCommand(LOWORD(wParam));
        return 0;
    case s_updateMessage:
        UpdateAll();
        return 0;
    case WM_DPICHANGED:
    {
        const auto* pFrame = reinterpret_cast<const RECT*>(lParam);
        SetDpi(LOWORD(wParam));
        ::SetWindowPos(GetHandle(), nullptr, pFrame->left, pFrame->top, pFrame->right - pFrame->left,
                       pFrame->bottom - pFrame->top, SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    }
    case WM_CLOSE:
        SavePlaces();
        m_session.Complete(); // its dialog goes with the window
        break;
    case WM_DESTROY:
        ::PostQuitMessage(0);
        break;
    default:
        break;
    }
    return CTrialWindow::HandleMessage(message, wParam, lParam);
}

void CMainWindow::OnCall(size_t)
{
    PostUpdate();
}

// Calls may come by the hundred between two messages: the window catches up once.
void CMainWindow::PostUpdate()
{
    if (m_isUpdatePosted || GetHandle() == nullptr)
        return;
    m_isUpdatePosted = ::PostMessageW(GetHandle(), s_updateMessage, 0, 0) != 0;
}

void CMainWindow::OnCommand(int command)
{
    switch (command)
    {
    case CommandOpen:
        ChooseFile();
        break;
    case CommandReload:
        m_pStorage->Reload();
        break;
    case CommandExit:
        ::PostMessageW(GetHandle(), WM_CLOSE, 0, 0);
        break;
    case CommandRunAgain:
        m_session.RunAgain();
        break;
    case CommandComplete:
        m_session.Complete();
        break;
    case CommandFit:
        m_pDrawing->Fit();
        break;
    case CommandZoomIn:
        m_pDrawing->ZoomAtCenter(s_zoomStep);
        break;
    case CommandZoomOut:
        m_pDrawing->ZoomAtCenter(1 / s_zoomStep);
        break;
    case CommandCopyLog:
        m_pLogPane->Copy();
        break;
    case CommandClearLog:
        m_pLogPane->Clear();
        break;
    case CommandLoadPlugIn:
        ChoosePlugIn();
        break;
    case CommandLoadAnew:
        LoadPlugInsAnew();
        break;
    default:
        OnListedCommand(command);
        break;
    }
    PostUpdate();
}

void CMainWindow::OnListedCommand(int command)
{
    const auto isIn = [command](int first, size_t count)
    { return command >= first && command < first + static_cast<int>(count); };
    if (isIn(FirstCommandRun, m_commands.size()))
        m_session.Run(WString(m_commands[static_cast<size_t>(command - FirstCommandRun)].id));
    else if (isIn(FirstCommandRecent, m_recent.GetPaths().size()))
        OpenFile(WString(m_recent.GetPaths()[static_cast<size_t>(command - FirstCommandRecent)]));
    else if (isIn(FirstCommandPlugIn, m_plugIns.size()))
        TogglePlugIn(static_cast<size_t>(command - FirstCommandPlugIn));
    else if (isIn(FirstCommandFault, GetFaultChoices().size()))
        ChooseFault(static_cast<eFault>(command - FirstCommandFault));
}

void CMainWindow::OnMouse(UINT message, const CStdPoint2D& point, size_t line)
{
    m_mouse = point;
    const bool isSelecting = !HostControl::GetPrompt().empty();
    m_session.SendMouse(static_cast<int>(message), point);
    if (message == WM_LBUTTONDOWN && isSelecting && line != CDrawingView::s_noLine)
    {
        HostControl::SelectLine(line);
        m_log.AddRemark(TEXT("HostControl::SelectLine(") + Number(static_cast<long long>(line)) + TEXT(")"));
    }
    UpdateStatus();
}

void CMainWindow::SetDpi(UINT dpi)
{
    m_dpi = dpi;
    const HFONT previous = m_font;
    m_font = CreateMessageFont(dpi);
    for (const HWND bar : {m_toolBar, m_statusBar})
        ::SendMessageW(bar, WM_SETFONT, reinterpret_cast<WPARAM>(m_font), TRUE);
    FillToolBar(m_toolBar, m_commands);
    m_pDrawing->SetDpi(dpi);
    m_pStorage->SetDpi(dpi, m_font);
    m_pLogPane->SetDpi(dpi, m_font);
    ::DeleteObject(previous);
    Arrange();
}

void CMainWindow::Arrange()
{
    ::SendMessageW(m_toolBar, TB_AUTOSIZE, 0, 0);
    ::SendMessageW(m_statusBar, WM_SIZE, 0, 0); // places itself
    RECT client;
    ::GetClientRect(GetHandle(), &client);
    const int modeStart = ::MulDiv(client.right, 40, 100);
    const int mouseStart = modeStart + std::max(::MulDiv(client.right, 12, 100), Scale(s_modeWidth));
    const int pathStart = mouseStart + std::max(::MulDiv(client.right, 14, 100), Scale(s_mouseWidth));
    const int partEnds[] = {modeStart, mouseStart, pathStart, -1};
    ::SendMessageW(m_statusBar, SB_SETPARTS, std::size(partEnds), reinterpret_cast<LPARAM>(partEnds));
    const int top = HeightOf(m_toolBar);
    const int bottom = std::max(top, static_cast<int>(client.bottom) - HeightOf(m_statusBar));
    const int bar = Scale(s_splitterWidth);
    const int upper = ::MulDiv(bottom - top, m_upperHeight, 1000);
    const int left = ::MulDiv(client.right, m_drawingWidth, 1000);
    const auto place = [](HWND window, int x, int y, int width, int height)
    { ::MoveWindow(window, x, y, std::max(width, 0), std::max(height, 0), TRUE); };
    place(m_pDrawing->GetHandle(), 0, top, left, upper);
    place(m_pVerticalSplitter->GetHandle(), left, top, bar, upper);
    place(m_pStorage->GetHandle(), left + bar, top, client.right - left - bar, upper);
    place(m_pHorizontalSplitter->GetHandle(), 0, top + upper, client.right, bar);
    place(m_pLogPane->GetHandle(), 0, top + upper + bar, client.right, bottom - top - upper - bar);
}

void CMainWindow::RestorePlaces()
{
    m_drawingWidth =
        std::clamp(m_settings.GetNumber(TEXT("DrawingWidth"), m_drawingWidth), s_smallestShare, s_largestShare);
    m_upperHeight =
        std::clamp(m_settings.GetNumber(TEXT("UpperHeight"), m_upperHeight), s_smallestShare, s_largestShare);
    const int left = m_settings.GetNumber(TEXT("Left"), Scale(20));
    const int top = m_settings.GetNumber(TEXT("Top"), Scale(20));
    RECT screen{}; // without the task bar
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    const int width = std::min(Scale(s_width), static_cast<int>(screen.right) - Scale(20));
    const int height = std::min(Scale(s_height), static_cast<int>(screen.bottom) - Scale(20));
    RECT frame{left, top, left + m_settings.GetNumber(TEXT("Width"), width),
               top + m_settings.GetNumber(TEXT("Height"), height)};
    RECT visible;
    if (!::IntersectRect(&visible, &frame, &screen)) // kept on a screen that is gone
        frame = {screen.left, screen.top, screen.left + width, screen.top + height};
    for (int i = 0; i < 2; ++i) // the first move may lead to a screen of other resolution, which changes the size
        ::MoveWindow(GetHandle(), frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top, FALSE);
    ::ShowWindow(GetHandle(), m_settings.GetNumber(TEXT("Maximized"), 0) != 0 ? SW_SHOWMAXIMIZED : SW_SHOW);
}

void CMainWindow::SavePlaces()
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    ::GetWindowPlacement(GetHandle(), &placement);
    const RECT& frame = placement.rcNormalPosition;
    m_settings.SetNumber(TEXT("Left"), frame.left);
    m_settings.SetNumber(TEXT("Top"), frame.top);
    m_settings.SetNumber(TEXT("Width"), frame.right - frame.left);
    m_settings.SetNumber(TEXT("Height"), frame.bottom - frame.top);
    m_settings.SetNumber(TEXT("Maximized"), placement.showCmd == SW_SHOWMAXIMIZED ? 1 : 0);
    m_settings.SetNumber(TEXT("DrawingWidth"), m_drawingWidth);
    m_settings.SetNumber(TEXT("UpperHeight"), m_upperHeight);
    m_settings.SetRecentFiles(m_recent.GetPaths());
}

void CMainWindow::ChooseFile()
{
    const WString path = AskForFile(GetHandle(), TEXT("Open storage file"),
                                    TEXT("Storage files (*.xml)\0*.xml\0All files (*.*)\0*.*\0"));
    if (!path.empty())
        OpenFile(path);
}

void CMainWindow::OpenFile(const WString& path)
{
    const WString fault = m_session.Open(path);
    if (!fault.empty())
    {
        ShowText(fault, MB_ICONWARNING);
        return;
    }
    m_recent.Add(path);
    m_pStorage->Open(path);
    UpdateMenu();
}

void CMainWindow::ChoosePlugIn()
{
    const WString path =
        AskForFile(GetHandle(), TEXT("Load plug-in"), TEXT("Plug-ins (*.dll)\0*.dll\0All files (*.*)\0*.*\0"));
    if (!path.empty())
        AddPlugIn(path);
}

bool CMainWindow::LoadPlugIn(CKnownPlugIn& plugIn)
{
    const WString fault = m_session.GetHost().LoadPlugIn(plugIn.path);
    plugIn.isLoaded = fault.empty();
    if (!fault.empty())
        ShowText(fault, MB_ICONWARNING);
    return plugIn.isLoaded;
}

void CMainWindow::TogglePlugIn(size_t index)
{
    CKnownPlugIn& plugIn = m_plugIns[index];
    if (plugIn.isLoaded)
    {
        m_session.GetHost().UnloadPlugIn(plugIn.path);
        plugIn.isLoaded = false;
    }
    else
        LoadPlugIn(plugIn);
    UpdateCommands();
}

void CMainWindow::LoadPlugInsAnew()
{
    for (CKnownPlugIn& plugIn : m_plugIns)
    {
        m_session.GetHost().UnloadPlugIn(plugIn.path);
        LoadPlugIn(plugIn);
    }
    UpdateCommands();
}

void CMainWindow::ChooseFault(eFault fault)
{
    const bool isNewHost = IsForFirstRun(fault) && m_session.GetFault() != fault;
    if (isNewHost)
    {
        StartWithFault(GetFaultChoices()[static_cast<size_t>(fault)]);
        return;
    }
    m_session.SetFault(fault);
    UpdateMenu();
}

// The module reads language and string files once in a process, so such a fault needs a process of its own.
void CMainWindow::StartWithFault(const CFaultChoice& choice)
{
    WCHAR program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    WString line = TEXT("\"") + WString(program) + TEXT("\" --fault ") + choice.pName;
    for (const CKnownPlugIn& plugIn : m_plugIns)
        line += TEXT(" --plugin \"") + plugIn.path + TEXT("\"");
    line += TEXT(" \"") + m_session.GetHandler()->GetPath() + TEXT("\"");
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
    {
        ShowText(TEXT("A second trial host could not be started."), MB_ICONWARNING);
        return;
    }
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
}

void CMainWindow::UpdateCommands()
{
    const CTrialHost& host = m_session.GetHost();
    m_commands = host.GetCommands();
    std::erase_if(m_commands, [&host](const CTrialCommand& command) { return !host.IsCommandAvailable(command.id); });
    FillToolBar(m_toolBar, m_commands);
    UpdateMenu();
}

void CMainWindow::UpdateMenu()
{
    FillTrialMenu(::GetMenu(GetHandle()), m_commands, m_session.GetFault(), m_recent, m_plugIns);
}

void CMainWindow::UpdateStatus()
{
    const WString prompt = HostControl::GetPrompt();
    const auto& modes = HostControl::GetRecord().inputModes;
    const WString mode = modes.empty() ? TEXT("no input mode") : TEXT("input mode ") + Number(modes.back().mode);
    const WString texts[] = {prompt.empty() ? TEXT("Ready") : prompt, mode, Point(m_mouse.x, m_mouse.y),
                             m_session.GetHandler()->GetPath()};
    for (size_t i = 0; i < std::size(texts); ++i)
        ::SendMessageW(m_statusBar, SB_SETTEXTW, i, reinterpret_cast<LPARAM>(texts[i].c_str()));
}

void CMainWindow::UpdateAll()
{
    m_isUpdatePosted = false;
    PlaceDialog();
    m_pDrawing->Refresh();
    m_pLogPane->Refresh();
    UpdateStatus();
}

/// Once for each dialog: where the user moves it, it stays.
void CMainWindow::PlaceDialog()
{
    const HWND dialog = m_session.GetHost().FindDialog();
    if (dialog == m_placedDialog)
        return;
    m_placedDialog = dialog;
    RECT frame;
    RECT dialogFrame;
    if (dialog == nullptr || !::GetWindowRect(GetHandle(), &frame) || !::GetWindowRect(dialog, &dialogFrame))
        return;
    const LONG x = frame.right - (dialogFrame.right - dialogFrame.left) - Scale(24);
    const LONG y = frame.bottom - (dialogFrame.bottom - dialogFrame.top) - Scale(60);
    ::SetWindowPos(dialog, nullptr, std::max(frame.left, x), std::max(frame.top, y), 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    m_pDrawing->Fit(); // the run has added lines
}

void CMainWindow::ShowText(const WString& text, UINT icon) const
{
    ::MessageBoxW(GetHandle(), text.c_str(), TEXT("Trial host"), MB_OK | icon);
}

void CMainWindow::DispatchWaiting()
{
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        Dispatch(message);
}

// Windows sends the wheel to the window that has the focus.
void CMainWindow::SendToPaneUnderMouse(MSG& message) const
{
    const HWND pane = ::WindowFromPoint({GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)});
    if (::IsChild(GetHandle(), pane))
        message.hwnd = pane;
}

void CMainWindow::Dispatch(MSG& message)
{
    if (message.message == WM_MOUSEWHEEL)
        SendToPaneUnderMouse(message);
    const HWND dialog = m_session.GetHost().FindDialog();
    if (dialog != nullptr && ::IsDialogMessageW(dialog, &message))
        return; // Tab, Enter and Esc work in a modeless dialog only through this call
    const bool isOwn = message.hwnd == GetHandle() || ::IsChild(GetHandle(), message.hwnd);
    if (isOwn && ::TranslateAcceleratorW(GetHandle(), m_keys, &message) != 0)
        return;
    if (isOwn && ::IsDialogMessageW(GetHandle(), &message))
        return; // Tab goes from pane to pane
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
}

std::unique_ptr<ITrialView> CreateTrialView(CTrialSession& session, CCallLog& log, const WString& settingsPath)
{
    return std::make_unique<CMainWindow>(session, log, CSettings(settingsPath));
}
