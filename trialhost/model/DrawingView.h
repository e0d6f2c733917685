#pragma once
#include "platform/host/CoordinateInput.h"
#include "platform/host/HostControl.h"

#include <vector>

/// A place in a pane: pixels from its top left corner.
struct CPixel
{
    int x;
    int y;
};

/// Which part of the drawing a pane shows. The drawing's y axis points up, the pane's points down.
class CDrawingView
{
public:
    static constexpr size_t s_noLine = static_cast<size_t>(-1);

    /// Size of the pane in pixels; what is in its middle stays there.
    void SetSize(int width, int height);
    /// Shows all lines with a margin; without lines a square of 100 units around the origin's first quadrant.
    void Fit(const std::vector<CHostLine>& lines);
    /// The place under pixel stays there. factor > 1 enlarges; the scale stays between 1e-4 and 1e4 pixels for a unit.
    void Zoom(double factor, CPixel pixel);
    void Pan(int dx, int dy);

    CPixel ToPixel(const CStdPoint2D& point) const;
    CStdPoint2D ToDrawing(CPixel pixel) const;

    /// Units between two lines of the grid: 1, 2 or 5 times a power of ten, at least minimumPixels apart.
    double GetGridSpacing(int minimumPixels) const;
    /// The line nearest to pixel, if one is at most tolerance pixels away; else s_noLine.
    size_t FindLine(const std::vector<CHostLine>& lines, CPixel pixel, double tolerance) const;

private:
    int m_width = 1;
    int m_height = 1;
    double m_scale = 1; ///< pixels for a unit
    CStdPoint2D m_center{50, 50};
};
