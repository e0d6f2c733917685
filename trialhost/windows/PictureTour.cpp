#include "trialhost/windows/PictureTour.h"

#include "trialhost/windows/Picture.h"

namespace
{
/// Lets windows draw: they do so in steps that messages drive.
void Settle(CMainWindow& window)
{
    for (int i = 0; i < 20; ++i)
    {
        window.Refresh();
        ::Sleep(20);
    }
}

/// Moves the mouse over the drawing until a line is highlighted.
void PointAtLine(CDrawingPane& drawing)
{
    const CPixel place = drawing.GetView().ToPixel({130, 110});
    for (int i = 0; i < 2; ++i) // the first message starts the selection
        ::SendMessageW(drawing.GetHandle(), WM_MOUSEMOVE, 0, MAKELPARAM(place.x + i, place.y));
}

/// Takes a picture while a message box is modal, and closes the box.
struct CReportPicture
{
    HWND window;
    WString path;
    bool isSaved = false;
};
CReportPicture s_report;

void CALLBACK TakeReportPicture(HWND, UINT, UINT_PTR timer, DWORD)
{
    const HWND box = ::FindWindowW(TEXT("#32770"), TEXT("Error"));
    if (box == nullptr)
        return;
    ::KillTimer(nullptr, timer);
    s_report.isSaved = SaveWindowPicture(s_report.window, s_report.path.c_str());
    ::SendMessageW(box, WM_COMMAND, IDOK, 0);
}

bool TakeReport(const CMainWindow& window, CTrialSession& session, const WString& path)
{
    s_report = {window.GetHandle(), path};
    ::SetTimer(nullptr, 0, 1000, TakeReportPicture);
    session.SetFault(eFault::SeventhLineRefused);
    session.Run(CTrialHost::s_pCommandId);
    session.SetFault(eFault::None);
    session.Complete();
    return s_report.isSaved;
}
} // namespace

bool TakePictures(CMainWindow& window, CTrialSession& session, CCallLog& log, const WString& folder)
{
    const auto save = [&](HWND pictured, const WCHAR* pName)
    {
        Settle(window);
        return SaveWindowPicture(pictured, (folder + TEXT("\\") + pName).c_str());
    };
    const std::vector<CTrialCommand> commands = session.GetHost().GetCommands();
    log.Clear();
    session.Run(CTrialHost::s_pCommandId);
    window.Refresh();
    PointAtLine(window.GetDrawing());
    bool areSaved = save(window.GetHandle(), TEXT("trialhost.png"));
    if (session.GetHost().FindDialog() != nullptr)
        session.GetHost().PressButton(IDOK);
    session.Complete();
    areSaved &= save(window.GetStorage().GetHandle(), TEXT("definitions.png"));
    window.SetShares(395, 250);
    window.GetLogPane().ShowFirst();
    areSaved &= save(window.GetLogPane().GetHandle(), TEXT("log.png"));
    window.SetShares(395, 640);
    log.Clear();
    if (commands.size() > 1)
    {
        session.Run(commands[1].id);
        session.Complete();
        areSaved &= save(window.GetHandle(), TEXT("plugin.png"));
    }
    log.Clear();
    return TakeReport(window, session, folder + TEXT("\\failure-report.png")) && areSaved;
}
