#include "platform/win32/native/user.h"

#include "platform/win32/native/kernel.h"
#include "platform/win32/native/window.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace
{
// At namespace level: constructed before the objects of the libraries that use this one, and destroyed after them.
std::map<HWND, std::shared_ptr<CWindow>> s_windows;
std::deque<MSG> s_messages;
UINT_PTR s_lastHandle = 0x10000;
HWND s_focus = nullptr;

void SendDestroy(CWindow& window)
{
    window.m_isBeingDestroyed = true;
    SendMessageW(window.m_handle, WM_DESTROY, 0, 0);
    const std::vector<HWND> children = window.m_children; // a copy, since a handler may destroy one of them
    for (const HWND child : children)
        if (const auto pChild = WindowOf(child))
            SendDestroy(*pChild);
}

void Remove(CWindow& window)
{
    while (!window.m_children.empty())
    {
        const auto pChild = WindowOf(window.m_children.front());
        Remove(*pChild);
    }
    SendMessageW(window.m_handle, WM_NCDESTROY, 0, 0);
    if (const auto pParent = WindowOf(window.m_parent))
        std::erase(pParent->m_children, window.m_handle);
    s_windows.erase(window.m_handle);
}

/// Returns the upper left corner in screen coordinates.
POINT OriginOf(HWND window)
{
    POINT origin = {};
    for (auto pWindow = WindowOf(window); pWindow; pWindow = WindowOf(pWindow->m_parent))
    {
        origin.x += pWindow->m_rect.left;
        origin.y += pWindow->m_rect.top;
        if (!pWindow->HasStyle(WS_CHILD))
            break;
    }
    return origin;
}
} // namespace

CWindow::CWindow(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id)
    : m_className(className),
      m_longs{{GWL_STYLE, style}, {GWL_EXSTYLE, exStyle}, {GWLP_ID, static_cast<LONG_PTR>(id)}, {GWLP_USERDATA, 0}}
{
}

LRESULT CWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_SETTEXT:
        m_text = lParam == 0 ? WString() : WString(reinterpret_cast<LPCWSTR>(lParam));
        return TRUE;
    case WM_GETTEXT:
        return CopyText(m_text, reinterpret_cast<LPWSTR>(lParam), wParam);
    case WM_GETTEXTLENGTH:
        return static_cast<LRESULT>(m_text.size());
    case WM_CLOSE:
        DestroyWindow(m_handle);
        return 0;
    default:
        return 0;
    }
}

bool CWindow::SetStyle(DWORD bit, bool on)
{
    const bool before = HasStyle(bit);
    LONG_PTR& style = m_longs[GWL_STYLE];
    style = on ? style | bit : style & ~static_cast<LONG_PTR>(bit);
    return before;
}

void CWindow::NotifyParent(int notification)
{
    SendMessageW(m_parent, WM_COMMAND, MAKEWPARAM(m_longs[GWLP_ID], notification), reinterpret_cast<LPARAM>(m_handle));
}

std::shared_ptr<CWindow> WindowOf(HWND handle)
{
    const auto found = s_windows.find(handle);
    if (found != s_windows.end())
        return found->second;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
}

HWND AddWindow(const std::shared_ptr<CWindow>& pWindow, HWND parent)
{
    pWindow->m_handle = reinterpret_cast<HWND>(++s_lastHandle);
    pWindow->m_parent = parent;
    s_windows[pWindow->m_handle] = pWindow;
    if (const auto pParent = WindowOf(parent))
        pParent->m_children.push_back(pWindow->m_handle);
    return pWindow->m_handle;
}

int CopyText(const WString& text, LPWSTR pBuffer, size_t size)
{
    if (size == 0)
        return 0;
    const size_t copied = std::min(text.size(), size - 1);
    std::copy_n(text.data(), copied, pBuffer);
    pBuffer[copied] = 0;
    return static_cast<int>(copied);
}

BOOL DestroyWindow(HWND window)
{
    const auto pWindow = WindowOf(window);
    if (!pWindow)
        return FALSE;
    if (pWindow->m_isBeingDestroyed)
        return TRUE; // called from a handler of WM_DESTROY or WM_NCDESTROY
    const std::vector<HWND> children = pWindow->m_children;
    for (const HWND child : children)
        if (const auto pChild = WindowOf(child); pChild && !pChild->HasStyle(WS_CHILD))
            DestroyWindow(child); // owned windows are destroyed first
    pWindow->SetStyle(WS_VISIBLE, false);
    SendDestroy(*pWindow);
    Remove(*pWindow);
    return TRUE;
}

BOOL IsWindow(HWND window)
{
    return s_windows.contains(window);
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto pWindow = WindowOf(window);
    return pWindow ? pWindow->HandleMessage(message, wParam, lParam) : 0;
}

LRESULT SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam)
{
    return SendMessageW(GetDlgItem(dialog, id), message, wParam, lParam);
}

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!WindowOf(window))
        return FALSE;
    s_messages.push_back({window, message, wParam, lParam});
    return TRUE;
}

BOOL PeekMessageW(MSG* pMessage, HWND, UINT, UINT, UINT)
{
    std::erase_if(s_messages, [](const MSG& message) { return !IsWindow(message.hwnd); });
    if (s_messages.empty())
        return FALSE;
    *pMessage = s_messages.front();
    s_messages.pop_front();
    return TRUE;
}

LRESULT DispatchMessageW(const MSG* pMessage)
{
    return SendMessageW(pMessage->hwnd, pMessage->message, pMessage->wParam, pMessage->lParam);
}

BOOL ShowWindow(HWND window, int command)
{
    const auto pWindow = WindowOf(window);
    return pWindow && pWindow->SetStyle(WS_VISIBLE, command != SW_HIDE);
}

BOOL IsWindowVisible(HWND window)
{
    const auto pWindow = WindowOf(window);
    if (!pWindow || !pWindow->HasStyle(WS_VISIBLE))
        return FALSE;
    return !pWindow->HasStyle(WS_CHILD) || IsWindowVisible(pWindow->m_parent);
}

HWND SetFocus(HWND window)
{
    const HWND before = GetFocus();
    if (window == nullptr || WindowOf(window))
        s_focus = window;
    return before;
}

HWND GetFocus()
{
    return IsWindow(s_focus) ? s_focus : nullptr;
}

HWND GetDlgItem(HWND dialog, int id)
{
    HWND item = GetWindow(dialog, GW_CHILD);
    while (item != nullptr && GetDlgCtrlID(item) != id)
        item = GetWindow(item, GW_HWNDNEXT);
    return item;
}

int GetDlgCtrlID(HWND window)
{
    return static_cast<int>(GetWindowLongPtrW(window, GWLP_ID));
}

HWND GetWindow(HWND window, UINT relation)
{
    const auto pWindow = WindowOf(window);
    const auto pParent = pWindow && relation == GW_HWNDNEXT ? WindowOf(pWindow->m_parent) : pWindow;
    if (!pParent)
        return nullptr;
    auto next = pParent->m_children.begin();
    if (relation == GW_HWNDNEXT)
        next = std::find(pParent->m_children.begin(), pParent->m_children.end(), window) + 1;
    next =
        std::find_if(next, pParent->m_children.end(), [](HWND child) { return WindowOf(child)->HasStyle(WS_CHILD); });
    return next == pParent->m_children.end() ? nullptr : *next;
}

HWND FindWindowW(LPCWSTR pClassName, LPCWSTR pText)
{
    for (const auto& [handle, pWindow] : s_windows)
        if (!pWindow->HasStyle(WS_CHILD) && (pClassName == nullptr || pWindow->m_className == pClassName) &&
            (pText == nullptr || pWindow->m_text == pText))
            return handle;
    return nullptr;
}

BOOL SetWindowTextW(HWND window, LPCWSTR pText)
{
    return SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pText)) > 0;
}

int GetWindowTextW(HWND window, LPWSTR pBuffer, int size)
{
    if (size <= 0)
        return 0;
    pBuffer[0] = 0; // for an invalid handle, too
    return static_cast<int>(
        SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(pBuffer)));
}

int GetWindowTextLengthW(HWND window)
{
    return static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
}

LONG_PTR GetWindowLongPtrW(HWND window, int index)
{
    const auto pWindow = WindowOf(window);
    if (!pWindow)
        return 0;
    const auto found = pWindow->m_longs.find(index);
    if (found != pWindow->m_longs.end())
        return found->second;
    SetLastError(ERROR_INVALID_INDEX);
    return 0;
}

LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value)
{
    const auto pWindow = WindowOf(window);
    if (!pWindow)
        return 0;
    const auto found = pWindow->m_longs.find(index);
    if (found != pWindow->m_longs.end())
        return std::exchange(found->second, value);
    SetLastError(ERROR_INVALID_INDEX);
    return 0;
}

BOOL GetWindowRect(HWND window, RECT* pRect)
{
    const auto pWindow = WindowOf(window);
    if (!pWindow)
        return FALSE;
    const POINT origin = OriginOf(window);
    const RECT& rect = pWindow->m_rect;
    *pRect = {origin.x, origin.y, origin.x + rect.right - rect.left, origin.y + rect.bottom - rect.top};
    return TRUE;
}
