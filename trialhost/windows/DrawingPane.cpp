#include "trialhost/windows/DrawingPane.h"

#include "trialhost/Format.h"

#include <cmath>
#include <windowsx.h>

namespace
{
constexpr double s_wheelStep = 1.2; // zoom for one notch
constexpr int s_keyStep = 40;       // pan for an arrow key, in pixels at 96 dpi
constexpr int s_gridPixels = 40;    // least distance of two grid lines at 96 dpi
constexpr COLORREF s_gridColor = RGB(232, 232, 232);
constexpr COLORREF s_axisColor = RGB(150, 150, 150);
constexpr COLORREF s_highlightColor = RGB(255, 128, 0);

/// Selects an object into a device context and puts the previous one back.
class CSelection
{
public:
    CSelection(HDC dc, HGDIOBJ object) : m_dc(dc), m_previous(::SelectObject(dc, object)) {}
    ~CSelection() { ::SelectObject(m_dc, m_previous); }
    CSelection(const CSelection&) = delete;
    CSelection& operator=(const CSelection&) = delete;

private:
    const HDC m_dc;
    const HGDIOBJ m_previous;
};

void DrawLine(HDC dc, CPixel from, CPixel to, int width, COLORREF color)
{
    const HPEN pen = ::CreatePen(PS_SOLID, width, color);
    {
        const CSelection selection(dc, pen);
        ::MoveToEx(dc, from.x, from.y, nullptr);
        ::LineTo(dc, to.x, to.y);
    }
    ::DeleteObject(pen);
}

/// The multiples of spacing from low to high; few, as grid lines keep their distance on the screen.
std::vector<double> Multiples(double spacing, double low, double high)
{
    std::vector<double> values;
    for (double i = std::ceil(low / spacing); i * spacing <= high; ++i)
        values.push_back(i * spacing);
    return values;
}
} // namespace

CDrawingPane::CDrawingPane(HWND parent, CEvents events) : m_events(std::move(events))
{
    Create(TEXT("TrialHostDrawing"), TEXT("Drawing"), WS_CHILD | WS_VISIBLE | WS_TABSTOP, WS_EX_CLIENTEDGE, parent);
    ::SetClassLongPtrW(GetHandle(), GCLP_HCURSOR, reinterpret_cast<LONG_PTR>(::LoadCursorW(nullptr, IDC_CROSS)));
    SetDpi(m_dpi);
}

CDrawingPane::~CDrawingPane()
{
    ::DeleteObject(m_font);
}

void CDrawingPane::SetDpi(UINT dpi)
{
    m_dpi = dpi;
    ::DeleteObject(m_font);
    m_font = CreateMessageFont(dpi);
}

void CDrawingPane::Refresh()
{
    m_lines = HostControl::GetLines();
    if (m_highlighted >= m_lines.size())
        m_highlighted = CDrawingView::s_noLine;
    ::InvalidateRect(GetHandle(), nullptr, FALSE);
}

void CDrawingPane::Fit()
{
    m_lines = HostControl::GetLines();
    m_view.Fit(m_lines);
    ::InvalidateRect(GetHandle(), nullptr, FALSE);
}

void CDrawingPane::ZoomAtCenter(double factor)
{
    RECT client;
    ::GetClientRect(GetHandle(), &client);
    m_view.Zoom(factor, {client.right / 2, client.bottom / 2});
    ::InvalidateRect(GetHandle(), nullptr, FALSE);
}

LRESULT CDrawingPane::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_ERASEBKGND:
        return 1; // WM_PAINT covers everything
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SIZE:
        m_view.SetSize(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        ::InvalidateRect(GetHandle(), nullptr, FALSE);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_KEYDOWN:
        return OnKey(wParam) ? 0 : CTrialWindow::HandleMessage(message, wParam, lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        ::InvalidateRect(GetHandle(), nullptr, FALSE);
        return 0;
    case WM_MOUSEWHEEL:
        OnWheel(GET_WHEEL_DELTA_WPARAM(wParam), lParam);
        return 0;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
        OnMouse(message, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return 0;
    default:
        return CTrialWindow::HandleMessage(message, wParam, lParam);
    }
}

// Drawn in memory first, so that nothing flickers.
void CDrawingPane::OnPaint()
{
    PAINTSTRUCT paint;
    const HDC dc = ::BeginPaint(GetHandle(), &paint);
    RECT client;
    ::GetClientRect(GetHandle(), &client);
    const HDC memory = ::CreateCompatibleDC(dc);
    const HBITMAP bitmap = ::CreateCompatibleBitmap(dc, client.right, client.bottom);
    {
        const CSelection selection(memory, bitmap);
        Draw(memory, client);
        ::BitBlt(dc, 0, 0, client.right, client.bottom, memory, 0, 0, SRCCOPY);
    }
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::EndPaint(GetHandle(), &paint);
}

void CDrawingPane::OnMouse(UINT message, CPixel pixel)
{
    if (message == WM_MBUTTONDOWN)
        ::SetCapture(GetHandle());
    if (message == WM_MBUTTONUP)
        ::ReleaseCapture();
    if (m_isPanning)
    {
        m_view.Pan(pixel.x - m_lastMouse.x, pixel.y - m_lastMouse.y);
        ::InvalidateRect(GetHandle(), nullptr, FALSE);
    }
    m_isPanning = message == WM_MBUTTONDOWN || (m_isPanning && message != WM_MBUTTONUP);
    m_lastMouse = pixel;
    if (message == WM_MBUTTONDOWN || message == WM_MBUTTONUP || m_isPanning)
        return; // the pane's own
    if (message == WM_LBUTTONDOWN)
        ::SetFocus(GetHandle());
    const size_t line = m_view.FindLine(m_lines, pixel, Scale(6));
    Highlight(m_events.isSelecting() ? line : CDrawingView::s_noLine);
    m_events.onMouse(message, m_view.ToDrawing(pixel), line);
}

void CDrawingPane::OnWheel(int delta, LPARAM screenPosition)
{
    POINT point{GET_X_LPARAM(screenPosition), GET_Y_LPARAM(screenPosition)};
    ::ScreenToClient(GetHandle(), &point);
    m_view.Zoom(std::pow(s_wheelStep, static_cast<double>(delta) / WHEEL_DELTA), {point.x, point.y});
    ::InvalidateRect(GetHandle(), nullptr, FALSE);
}

bool CDrawingPane::OnKey(WPARAM key)
{
    const int step = Scale(s_keyStep);
    switch (key)
    {
    case VK_LEFT:
        m_view.Pan(step, 0);
        break;
    case VK_RIGHT:
        m_view.Pan(-step, 0);
        break;
    case VK_UP:
        m_view.Pan(0, step);
        break;
    case VK_DOWN:
        m_view.Pan(0, -step);
        break;
    case VK_ADD:
    case VK_OEM_PLUS:
        ZoomAtCenter(s_wheelStep);
        break;
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        ZoomAtCenter(1 / s_wheelStep);
        break;
    case VK_HOME:
        Fit();
        break;
    default:
        return false;
    }
    ::InvalidateRect(GetHandle(), nullptr, FALSE);
    return true;
}

void CDrawingPane::Highlight(size_t line)
{
    if (line == m_highlighted)
        return;
    m_highlighted = line;
    ::InvalidateRect(GetHandle(), nullptr, FALSE);
}

void CDrawingPane::Draw(HDC dc, const RECT& client) const
{
    ::FillRect(dc, &client, ::GetSysColorBrush(COLOR_WINDOW));
    const CSelection font(dc, m_font);
    ::SetBkMode(dc, TRANSPARENT);
    DrawGrid(dc, client);
    DrawLines(dc);
    DrawAxis(dc, client);
    if (::GetFocus() == GetHandle())
        ::DrawFocusRect(dc, &client);
}

void CDrawingPane::DrawGrid(HDC dc, const RECT& client) const
{
    const double spacing = m_view.GetGridSpacing(Scale(s_gridPixels));
    const CStdPoint2D low = m_view.ToDrawing({0, client.bottom});
    const CStdPoint2D high = m_view.ToDrawing({client.right, 0});
    for (const double x : Multiples(spacing, low.x, high.x))
    {
        const int at = m_view.ToPixel({x, 0}).x;
        DrawLine(dc, {at, 0}, {at, client.bottom}, 1, x == 0 ? s_axisColor : s_gridColor);
    }
    for (const double y : Multiples(spacing, low.y, high.y))
    {
        const int at = m_view.ToPixel({0, y}).y;
        DrawLine(dc, {0, at}, {client.right, at}, 1, y == 0 ? s_axisColor : s_gridColor);
    }
}

// The coordinates stand at the lower and left edge of the pane, also where the origin is out of sight.
void CDrawingPane::DrawAxis(HDC dc, const RECT& client) const
{
    const double spacing = m_view.GetGridSpacing(2 * Scale(s_gridPixels));
    const CStdPoint2D low = m_view.ToDrawing({0, client.bottom});
    const CStdPoint2D high = m_view.ToDrawing({client.right, 0});
    const int digits = spacing >= 1 ? 0 : static_cast<int>(std::ceil(-std::log10(spacing)));
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(dc, &metrics);
    const int margin = Scale(3);
    ::SetTextColor(dc, ::GetSysColor(COLOR_WINDOWTEXT));
    ::SetTextAlign(dc, TA_CENTER | TA_TOP);
    for (const double x : Multiples(spacing, low.x, high.x))
    {
        const WString text = Fixed(x, digits);
        const int at = m_view.ToPixel({x, 0}).x;
        if (at > Scale(40) && at < client.right - Scale(20)) // the corner belongs to the y axis; no cut numbers
            ::TextOutW(dc, at, client.bottom - metrics.tmHeight - margin, text.c_str(), static_cast<int>(text.size()));
    }
    ::SetTextAlign(dc, TA_LEFT | TA_TOP);
    for (const double y : Multiples(spacing, low.y, high.y))
    {
        const WString text = Fixed(y, digits);
        const int at = m_view.ToPixel({0, y}).y - metrics.tmHeight / 2;
        if (at >= 0 && at < client.bottom - 2 * metrics.tmHeight)
            ::TextOutW(dc, margin, at, text.c_str(), static_cast<int>(text.size()));
    }
}

void CDrawingPane::DrawLines(HDC dc) const
{
    const auto draw = [this, dc](const CHostLine& line, int width, COLORREF color)
    {
        DrawLine(dc, m_view.ToPixel({line.startX, line.startY}), m_view.ToPixel({line.endX, line.endY}), Scale(width),
                 color);
    };
    for (const CHostLine& line : m_lines)
        draw(line, line.pen + 1, RGB(line.red, line.green, line.blue));
    if (m_highlighted != CDrawingView::s_noLine) // last: other lines may lie on it
        draw(m_lines[m_highlighted], m_lines[m_highlighted].pen + 3, s_highlightColor);
}
