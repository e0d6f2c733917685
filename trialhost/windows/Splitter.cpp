#include "trialhost/windows/Splitter.h"

#include <windowsx.h>

namespace
{
constexpr int s_arrowStep = 10; // pixels
}

CSplitter::CSplitter(HWND parent, bool isHorizontal, std::function<void(int)> onMove)
    : m_isHorizontal(isHorizontal), m_onMove(std::move(onMove))
{
    Create(TEXT("TrialHostSplitter"), nullptr, WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, parent);
}

LRESULT CSplitter::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    const int position = m_isHorizontal ? GET_Y_LPARAM(lParam) : GET_X_LPARAM(lParam);
    switch (message)
    {
    case WM_SETCURSOR:
        ::SetCursor(::LoadCursorW(nullptr, m_isHorizontal ? IDC_SIZENS : IDC_SIZEWE));
        return TRUE;
    case WM_LBUTTONDOWN:
        m_grip = position;
        ::SetCapture(GetHandle());
        return 0;
    case WM_MOUSEMOVE:
        if (::GetCapture() == GetHandle() && position != m_grip)
            m_onMove(position - m_grip);
        return 0;
    case WM_LBUTTONUP:
        ::ReleaseCapture();
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_KEYDOWN:
        return OnKey(wParam) ? 0 : CTrialWindow::HandleMessage(message, wParam, lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        ::InvalidateRect(GetHandle(), nullptr, TRUE);
        return 0;
    case WM_ERASEBKGND:
    {
        RECT client;
        ::GetClientRect(GetHandle(), &client);
        const bool hasFocus = ::GetFocus() == GetHandle();
        ::FillRect(reinterpret_cast<HDC>(wParam), &client,
                   ::GetSysColorBrush(hasFocus ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
        return 1;
    }
    default:
        return CTrialWindow::HandleMessage(message, wParam, lParam);
    }
}

bool CSplitter::OnKey(WPARAM key)
{
    const WPARAM back = m_isHorizontal ? VK_UP : VK_LEFT;
    const WPARAM forth = m_isHorizontal ? VK_DOWN : VK_RIGHT;
    if (key != back && key != forth)
        return false;
    m_onMove(key == forth ? s_arrowStep : -s_arrowStep);
    return true;
}
