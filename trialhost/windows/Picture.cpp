#include "trialhost/windows/Picture.h"

#include <algorithm>
#include <objidl.h>
namespace Gdiplus
{
using std::max; // the header uses the macros of these names, which are switched off here
using std::min;
} // namespace Gdiplus
#include <gdiplus.h>

namespace
{
// The encoder that every Windows has under this class identifier.
constexpr CLSID s_pngEncoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

HBITMAP CopyScreen(const RECT& frame)
{
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ previous = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, width, height, screen, frame.left, frame.top, SRCCOPY | CAPTUREBLT);
    ::SelectObject(memory, previous);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return bitmap;
}
} // namespace

bool SaveWindowPicture(HWND window, const WCHAR* pPath)
{
    RECT frame;
    if (!::GetWindowRect(window, &frame))
        return false;
    const Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok)
        return false;
    const HBITMAP bitmap = CopyScreen(frame);
    bool saved = false;
    {
        Gdiplus::Bitmap picture(bitmap, nullptr); // gone before the library is shut down
        saved = picture.Save(pPath, &s_pngEncoder, nullptr) == Gdiplus::Ok;
    }
    ::DeleteObject(bitmap);
    Gdiplus::GdiplusShutdown(token);
    return saved;
}
