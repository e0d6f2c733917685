#pragma once
#include "trialhost/log/CallLog.h"
#include "trialhost/windows/Window.h"

/// Shows the log in a list: time, call (indented by its nesting), result, duration. The list follows the newest call
/// while its last row is in sight.
class CLogPane : public CTrialWindow
{
public:
    CLogPane(HWND parent, CCallLog& log);

    void SetDpi(UINT dpi, HFONT font);
    /// Shows what the log holds now. Cheap enough for every message loop.
    void Refresh();
    /// Copies the selected rows as text, or all without a selection.
    void Copy() const;
    void Clear();
    void ShowFirst() const;
    HWND GetList() const { return m_list; }

protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void ShowNewCalls();
    void GiveText(LVITEMW& item) const;

    CCallLog& m_log;
    HWND m_list;
    size_t m_shownCalls = 0;
};
