#pragma once
#include "trialhost/model/DrawingView.h"
#include "trialhost/windows/Window.h"

#include <functional>

/// Shows the active drawing with a grid and axes, and takes the mouse: the wheel zooms, the middle button pans; +, -,
/// the arrows and Home do the same from the keyboard, where Home fits the drawing into the pane.
class CDrawingPane : public CTrialWindow
{
public:
    /// What the pane tells its owner.
    struct CEvents
    {
        /// A mouse message over the drawing: its number and place, and the line under the mouse or s_noLine.
        std::function<void(UINT message, const CStdPoint2D& point, size_t line)> onMouse;
        /// Whether a click would select the line under the mouse, which is then highlighted.
        std::function<bool()> isSelecting;
    };

    CDrawingPane(HWND parent, CEvents events);
    ~CDrawingPane() override;

    void SetDpi(UINT dpi);
    /// Draws the lines that the database has now.
    void Refresh();
    void Fit();
    void ZoomAtCenter(double factor);
    const CDrawingView& GetView() const { return m_view; }
    /// The line that is highlighted; s_noLine if none is.
    size_t GetHighlightedLine() const { return m_highlighted; }

protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void OnPaint();
    void OnMouse(UINT message, CPixel pixel);
    void OnWheel(int delta, LPARAM screenPosition);
    bool OnKey(WPARAM key);
    void Highlight(size_t line);
    void Draw(HDC dc, const RECT& client) const;
    void DrawGrid(HDC dc, const RECT& client) const;
    void DrawAxis(HDC dc, const RECT& client) const;
    void DrawLines(HDC dc) const;
    int Scale(int length) const { return ScaleLength(length, m_dpi); }

    const CEvents m_events;
    CDrawingView m_view;
    std::vector<CHostLine> m_lines;
    size_t m_highlighted = CDrawingView::s_noLine;
    bool m_isPanning = false;
    CPixel m_lastMouse{0, 0};
    UINT m_dpi = 96;
    HFONT m_font = nullptr;
};
