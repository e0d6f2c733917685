#pragma once
#include "trialhost/windows/Window.h"

#include <functional>

/// A bar between two panes that the mouse drags, or the arrow keys while it has the focus.
class CSplitter : public CTrialWindow
{
public:
    /// onMove gets by how many pixels the bar is to move: to the right, or down if it is horizontal.
    CSplitter(HWND parent, bool isHorizontal, std::function<void(int pixels)> onMove);

protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool OnKey(WPARAM key);

    const bool m_isHorizontal;
    const std::function<void(int)> m_onMove;
    int m_grip = 0; ///< where in the bar the mouse took it, in pixels
};
