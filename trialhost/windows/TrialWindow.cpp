// The trial host's window: the drawing, a status line with the prompt of the selection, and a menu.
#include "platform/host/HostControl.h"
#include "trialhost/ITrialView.h"
#include "trialhost/TrialHost.h"
#include "trialhost/windows/Picture.h"

#include <stdexcept>
#include <windowsx.h>

namespace
{
constexpr WCHAR s_className[] = TEXT("TrialHostView");
constexpr int s_statusId = 1;
constexpr int s_width = 1080; // pixels, frame included
constexpr int s_height = 720;
constexpr int s_dialogX = 320; // where in the window the dialog is put, so that the drawing stays in sight
constexpr int s_dialogY = 70;
constexpr double s_scale = 1.5; // pixels for a database unit

enum
{
    MenuRun = 100,
    MenuComplete,
    MenuClose
};

class CTrialWindow : public ITrialView
{
public:
    explicit CTrialWindow(CTrialHost& host);
    ~CTrialWindow() override;

    void Refresh() override;
    bool SavePicture(const WString& path) override;
    bool RunUntilClosed() override;

private:
    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnMenu(int item);
    void OnMouse(UINT message, int x, int y);
    void Paint();
    void PlaceDialog();
    void DispatchWaiting();
    void Dispatch(MSG& message);

    CTrialHost& m_host;
    HWND m_window = nullptr;
    HWND m_status = nullptr;
    HWND m_placedDialog = nullptr;
};

HMENU CreateCommandMenu()
{
    const HMENU command = ::CreatePopupMenu();
    ::AppendMenuW(command, MF_STRING, MenuRun, TEXT("&Define projection/intersection"));
    ::AppendMenuW(command, MF_STRING, MenuComplete, TEXT("&Complete command"));
    ::AppendMenuW(command, MF_SEPARATOR, 0, nullptr);
    ::AppendMenuW(command, MF_STRING, MenuClose, TEXT("C&lose"));
    const HMENU menu = ::CreateMenu();
    ::AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(command), TEXT("&Command"));
    return menu;
}

CTrialWindow::CTrialWindow(CTrialHost& host) : m_host(host)
{
    const HINSTANCE instance = ::GetModuleHandleW(nullptr);
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = WindowProcedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32515)); // the cross hair
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = s_className;
    ::RegisterClassW(&windowClass);
    ::CreateWindowExW(0, s_className, TEXT("Trial host - drawing view"), WS_OVERLAPPEDWINDOW, 20, 20, s_width, s_height,
                      nullptr, CreateCommandMenu(), instance, this); // WM_NCCREATE stores the handle
    if (m_window == nullptr)
        throw std::runtime_error("the view's window could not be made: is there a display?");
    m_status = ::CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, m_window,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(s_statusId)), instance, nullptr);
    ::ShowWindow(m_window, SW_SHOW);
    Refresh();
}

CTrialWindow::~CTrialWindow()
{
    if (m_window != nullptr)
        ::DestroyWindow(m_window);
}

void CTrialWindow::Refresh()
{
    if (m_window == nullptr)
        return;
    PlaceDialog();
    const WString prompt = HostControl::GetPrompt();
    ::SetWindowTextW(m_status, prompt.empty() ? TEXT("Ready") : prompt.c_str());
    ::InvalidateRect(m_window, nullptr, TRUE);
    ::UpdateWindow(m_window);
    DispatchWaiting();
}

bool CTrialWindow::SavePicture(const WString& path)
{
    // Windows draw in steps that messages drive; a short while lets the last one settle.
    for (int i = 0; i < 20; ++i)
    {
        Refresh();
        ::Sleep(20);
    }
    return m_window != nullptr && SaveWindowPicture(m_window, path.c_str());
}

bool CTrialWindow::RunUntilClosed()
{
    MSG message;
    while (m_window != nullptr && ::GetMessageW(&message, nullptr, 0, 0) > 0)
        Dispatch(message);
    return true;
}

LRESULT CALLBACK CTrialWindow::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        auto* pThis = static_cast<CTrialWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        pThis->m_window = window;
        ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pThis));
    }
    auto* pThis = reinterpret_cast<CTrialWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    return pThis == nullptr ? ::DefWindowProcW(window, message, wParam, lParam)
                            : pThis->HandleMessage(message, wParam, lParam);
}

LRESULT CTrialWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND window = m_window;
    switch (message)
    {
    case WM_PAINT:
        Paint();
        return 0;
    case WM_SIZE:
        ::SendMessageW(m_status, message, wParam, lParam); // the status line places itself
        break;
    case WM_COMMAND:
        OnMenu(LOWORD(wParam));
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_MOUSEMOVE:
        OnMouse(message, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_NCDESTROY:
        ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        m_window = nullptr;
        ::PostQuitMessage(0);
        break;
    default:
        break;
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

void CTrialWindow::OnMenu(int item)
{
    if (item == MenuClose)
    {
        ::DestroyWindow(m_window);
        return;
    }
    if (item == MenuComplete)
        m_host.CompleteCommand();
    if (item == MenuRun)
        m_host.RunCommand(CTrialHost::s_pCommandId);
    Refresh();
}

void CTrialWindow::OnMouse(UINT message, int x, int y)
{
    const WString before = HostControl::GetPrompt();
    m_host.SendMouseMessage(static_cast<int>(message), x / s_scale, y / s_scale);
    if (HostControl::GetPrompt() != before)
        Refresh();
}

void CTrialWindow::Paint()
{
    PAINTSTRUCT paint;
    const HDC dc = ::BeginPaint(m_window, &paint);
    RECT client;
    ::GetClientRect(m_window, &client);
    RECT status;
    ::GetWindowRect(m_status, &status);
    const int bottom = client.bottom - (status.bottom - status.top); // drawings count y from the bottom up
    for (const CHostLine& line : HostControl::GetLines())
    {
        const HPEN pen = ::CreatePen(PS_SOLID, 2, RGB(line.red, line.green, line.blue));
        const HGDIOBJ previous = ::SelectObject(dc, pen);
        ::MoveToEx(dc, static_cast<int>(line.startX * s_scale), bottom - static_cast<int>(line.startY * s_scale),
                   nullptr);
        ::LineTo(dc, static_cast<int>(line.endX * s_scale), bottom - static_cast<int>(line.endY * s_scale));
        ::SelectObject(dc, previous);
        ::DeleteObject(pen);
    }
    ::EndPaint(m_window, &paint);
}

/// Once for each dialog: where the user moves it, it stays.
void CTrialWindow::PlaceDialog()
{
    const HWND dialog = m_host.FindDialog();
    if (dialog == m_placedDialog)
        return;
    m_placedDialog = dialog;
    RECT frame;
    if (dialog != nullptr && ::GetWindowRect(m_window, &frame))
        ::SetWindowPos(dialog, nullptr, frame.left + s_dialogX, frame.top + s_dialogY, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void CTrialWindow::DispatchWaiting()
{
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        Dispatch(message);
}

void CTrialWindow::Dispatch(MSG& message)
{
    const HWND dialog = m_host.FindDialog();
    if (dialog != nullptr && ::IsDialogMessageW(dialog, &message))
        return; // Tab, Enter and Esc work in a modeless dialog only through this call
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
}
} // namespace

std::unique_ptr<ITrialView> CreateTrialView(CTrialHost& host)
{
    return std::make_unique<CTrialWindow>(host);
}
