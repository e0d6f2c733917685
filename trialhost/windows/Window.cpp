#include "trialhost/windows/Window.h"

#include <stdexcept>

CTrialWindow::~CTrialWindow()
{
    if (m_window == nullptr)
        return;
    ::SetWindowLongPtrW(m_window, GWLP_USERDATA, 0); // the derived part is gone: no more messages
    ::DestroyWindow(m_window);
}

void CTrialWindow::Create(const WCHAR* pClassName, const WCHAR* pCaption, DWORD style, DWORD extendedStyle, HWND parent)
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = pClassName;
    ::RegisterClassW(&windowClass); // fails when it is registered already
    ::CreateWindowExW(extendedStyle, pClassName, pCaption, style, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, parent, nullptr,
                      windowClass.hInstance, this); // WM_NCCREATE stores the handle
    if (m_window == nullptr)
        throw std::runtime_error("a window could not be made: is there a display?");
}

LRESULT CTrialWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::DefWindowProcW(m_window, message, wParam, lParam);
}

LRESULT CALLBACK CTrialWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
    {
        auto* pNew = static_cast<CTrialWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        pNew->m_window = window;
        ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pNew));
    }
    auto* pThis = reinterpret_cast<CTrialWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (pThis == nullptr)
        return ::DefWindowProcW(window, message, wParam, lParam);
    const LRESULT result = pThis->HandleMessage(message, wParam, lParam);
    if (message == WM_NCDESTROY)
    {
        ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        pThis->m_window = nullptr;
    }
    return result;
}

HFONT CreateMessageFont(UINT dpi)
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    metrics.lfMessageFont.lfHeight = -ScaleLength(12, dpi); // nine points
    return ::CreateFontIndirectW(&metrics.lfMessageFont);
}
