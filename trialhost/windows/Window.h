#pragma once
#include "platform/win32/win32.h"

/// A window of the trial host's own: class, handle and the way of messages to the object. The object outlives the
/// window or destroys it.
class CTrialWindow
{
public:
    CTrialWindow(const CTrialWindow&) = delete;
    CTrialWindow& operator=(const CTrialWindow&) = delete;
    virtual ~CTrialWindow();

    HWND GetHandle() const { return m_window; }

protected:
    CTrialWindow() = default;

    /// Makes the window, hidden or as style says. Throws std::runtime_error if the system refuses.
    void Create(const WCHAR* pClassName, const WCHAR* pCaption, DWORD style, DWORD extendedStyle, HWND parent);
    /// Results as for a window procedure; the base hands the message to the system.
    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr;
};

/// Pixels for a length that is that long at 96 dots per inch.
inline int ScaleLength(int length, UINT dpi)
{
    return ::MulDiv(length, static_cast<int>(dpi), 96);
}

/// The system's message font in the size for that resolution. The caller deletes it.
HFONT CreateMessageFont(UINT dpi);
