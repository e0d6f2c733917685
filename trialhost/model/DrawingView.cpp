#include "trialhost/model/DrawingView.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double s_smallestScale = 1e-4;
constexpr double s_largestScale = 1e4;
constexpr double s_emptySize = 100; // units shown of an empty drawing
constexpr double s_filled = 0.8;    // of the pane by what Fit shows

/// Whole pixels that every drawing call can take, also for places far outside the pane.
int Rounded(double pixels)
{
    return static_cast<int>(std::lround(std::clamp(pixels, -1e6, 1e6)));
}

double DistanceToLine(CPixel start, CPixel end, CPixel pixel)
{
    const double dx = end.x - start.x;
    const double dy = end.y - start.y;
    const double square = dx * dx + dy * dy;
    const double along = square == 0 ? 0 : ((pixel.x - start.x) * dx + (pixel.y - start.y) * dy) / square;
    const double inside = std::clamp(along, 0.0, 1.0);
    return std::hypot(start.x + inside * dx - pixel.x, start.y + inside * dy - pixel.y);
}
} // namespace

void CDrawingView::SetSize(int width, int height)
{
    m_width = std::max(width, 1);
    m_height = std::max(height, 1);
}

void CDrawingView::Fit(const std::vector<CHostLine>& lines)
{
    CStdPoint2D low{0, 0};
    CStdPoint2D high{s_emptySize, s_emptySize};
    if (!lines.empty())
        low = high = {lines[0].startX, lines[0].startY};
    for (const CHostLine& line : lines)
    {
        low = {std::min({low.x, line.startX, line.endX}), std::min({low.y, line.startY, line.endY})};
        high = {std::max({high.x, line.startX, line.endX}), std::max({high.y, line.startY, line.endY})};
    }
    m_center = {(low.x + high.x) / 2, (low.y + high.y) / 2};
    const double width = std::max(high.x - low.x, 1e-6);
    const double height = std::max(high.y - low.y, 1e-6);
    m_scale = std::clamp(s_filled * std::min(m_width / width, m_height / height), s_smallestScale, s_largestScale);
}

void CDrawingView::Zoom(double factor, CPixel pixel)
{
    const CStdPoint2D before = ToDrawing(pixel);
    m_scale = std::clamp(m_scale * factor, s_smallestScale, s_largestScale);
    const CStdPoint2D after = ToDrawing(pixel);
    m_center.x += before.x - after.x;
    m_center.y += before.y - after.y;
}

void CDrawingView::Pan(int dx, int dy)
{
    m_center.x -= dx / m_scale;
    m_center.y += dy / m_scale;
}

CPixel CDrawingView::ToPixel(const CStdPoint2D& point) const
{
    return {Rounded(m_width / 2.0 + (point.x - m_center.x) * m_scale),
            Rounded(m_height / 2.0 - (point.y - m_center.y) * m_scale)};
}

CStdPoint2D CDrawingView::ToDrawing(CPixel pixel) const
{
    return {m_center.x + (pixel.x - m_width / 2.0) / m_scale, m_center.y - (pixel.y - m_height / 2.0) / m_scale};
}

double CDrawingView::GetGridSpacing(int minimumPixels) const
{
    const double units = minimumPixels / m_scale;
    const double power = std::pow(10.0, std::floor(std::log10(units)));
    for (const double step : {1.0, 2.0, 5.0})
        if (step * power >= units)
            return step * power;
    return 10 * power;
}

size_t CDrawingView::FindLine(const std::vector<CHostLine>& lines, CPixel pixel, double tolerance) const
{
    size_t nearest = s_noLine;
    for (size_t i = 0; i < lines.size(); ++i)
    {
        const CHostLine& line = lines[i];
        const double distance =
            DistanceToLine(ToPixel({line.startX, line.startY}), ToPixel({line.endX, line.endY}), pixel);
        if (distance > tolerance)
            continue;
        tolerance = distance;
        nearest = i;
    }
    return nearest;
}
