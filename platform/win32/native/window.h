#pragma once
/// A window from the inside. For the stand-in's own use.
#include "platform/win32/native/user.h"

#include <map>
#include <memory>
#include <vector>

/// A window of a class with no behaviour of its own; the classes that have some derive from it.
class CWindow
{
public:
    CWindow(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id);
    virtual ~CWindow() = default;
    CWindow(const CWindow&) = delete;
    CWindow& operator=(const CWindow&) = delete;

    /// The window procedure; here the one that stands behind every class.
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

/// The window with a handle, or null with ERROR_INVALID_WINDOW_HANDLE. Whoever lets a window handle a message keeps
/// the pointer as long: the handler may destroy the window.
std::shared_ptr<CWindow> WindowOf(HWND handle);
/// Gives the window its handle and makes it the last child of its parent (null for none).
HWND AddWindow(const std::shared_ptr<CWindow>& pWindow, HWND parent);
/// Copies as much as fits with a NUL into a buffer of size WCHARs. Returns the units copied.
int CopyText(const WString& text, LPWSTR pBuffer, size_t size);

/// A control of the named class (any case), or null if there is no such class.
std::shared_ptr<CWindow> MakeControl(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id);
/// The name of one of the classes that a template names by number (0x80 to 0x85); empty for another number.
WString ControlClassName(WORD number);
