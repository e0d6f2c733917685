#pragma once
/// The implementation of a window. Internal to the stand-in.
#include "platform/win32/native/user.h"

#include <map>
#include <memory>
#include <vector>

/// A window without behaviour of its own; window classes with behaviour derive from it.
class CWindow
{
public:
    CWindow(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id);
    virtual ~CWindow() = default;
    CWindow(const CWindow&) = delete;
    CWindow& operator=(const CWindow&) = delete;

    /// The window procedure; this one is the default of every class.
    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

    bool HasStyle(DWORD style) const { return (m_longs.at(GWL_STYLE) & style) == style; }
    /// Sets or clears one bit of the style. Returns whether it was set.
    bool SetStyle(DWORD bit, bool on);
    /// Sends WM_COMMAND with a notification to the parent.
    void NotifyParent(int notification);

    const WString m_className;
    WString m_text;
    std::map<int, LONG_PTR> m_longs; ///< the values of GetWindowLongPtrW, by index
    RECT m_rect = {};                ///< in dialog units, relative to the parent
    HWND m_handle = nullptr;
    HWND m_parent = nullptr;      ///< or owner
    std::vector<HWND> m_children; ///< in order of creation, owned windows among them
    bool m_isBeingDestroyed = false;
};

/// Returns the window of a handle, or null with ERROR_INVALID_WINDOW_HANDLE. Keep the pointer while the window handles
/// a message: the handler may destroy the window.
std::shared_ptr<CWindow> WindowOf(HWND handle);
/// Assigns the window's handle and makes it the last child of its parent, which may be null.
HWND AddWindow(const std::shared_ptr<CWindow>& pWindow, HWND parent);
/// Copies as many units as fit with a NUL into a buffer of size units. Returns the number of units copied.
int CopyText(const WString& text, LPWSTR pBuffer, size_t size);

/// Creates a control of the named class, in any case; null if there is no such class.
std::shared_ptr<CWindow> MakeControl(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id);
/// Returns the name of a class that a template identifies by number (0x80 to 0x85); empty for another number.
WString ControlClassName(WORD number);
