#pragma once
#include "trialhost/ITrialView.h"
#include "trialhost/windows/CommandBar.h"
#include "trialhost/windows/DrawingPane.h"
#include "trialhost/windows/LogPane.h"
#include "trialhost/windows/Settings.h"
#include "trialhost/windows/Splitter.h"
#include "trialhost/windows/StoragePane.h"

#include <memory>

/// The window of the trial host: menu, tool bar, the drawing next to the storage file, the log below them, a status
/// bar.
class CMainWindow final : public CTrialWindow, public ITrialView, private ILogObserver
{
public:
    /// session and log outlive the window. settings: where places and recent files are kept.
    CMainWindow(CTrialSession& session, CCallLog& log, const CSettings& settings);
    ~CMainWindow() override;

    void Refresh() override;
    bool SavePicture(const WString& path) override;
    bool SavePictures(const WString& folder) override;
    bool RunUntilClosed() override;
    void AddPlugIn(const WString& path) override;

    /// Handles the messages that wait.
    void DispatchWaiting();
    /// Divides the window: widths and heights in thousandths.
    void SetShares(int drawingWidth, int upperHeight);
    CDrawingPane& GetDrawing() { return *m_pDrawing; }
    CStoragePane& GetStorage() { return *m_pStorage; }
    CLogPane& GetLogPane() { return *m_pLogPane; }
    HWND GetToolBar() const { return m_toolBar; }
    HWND GetStatusBar() const { return m_statusBar; }

protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void OnCall(size_t index) override;
    void PostUpdate();
    void OnCommand(int command);
    void OnListedCommand(int command);
    void OnMouse(UINT message, const CStdPoint2D& point, size_t line);
    void SetDpi(UINT dpi);
    void Arrange();
    void RestorePlaces();
    void SavePlaces();

    void ChooseFile();
    void ChoosePlugIn();
    void OpenFile(const WString& path);
    void TogglePlugIn(size_t index);
    void LoadPlugInsAnew();
    bool LoadPlugIn(CKnownPlugIn& plugIn);
    void ChooseFault(eFault fault);
    void StartWithFault(const CFaultChoice& choice);

    void UpdateCommands();
    void UpdateMenu();
    void UpdateStatus();
    void UpdateAll();
    void PlaceDialog();
    void ShowText(const WString& text, UINT icon) const;
    void SendToPaneUnderMouse(MSG& message) const;
    void Dispatch(MSG& message);
    int Scale(int length) const { return ScaleLength(length, m_dpi); }

    CTrialSession& m_session;
    std::vector<CTrialCommand> m_commands; ///< in the menu and on the tool bar
    CCallLog& m_log;
    const CSettings m_settings;
    CRecentFiles m_recent;
    std::vector<CKnownPlugIn> m_plugIns;

    // Made in this order, which is the tab order.
    HWND m_toolBar = nullptr;
    std::unique_ptr<CDrawingPane> m_pDrawing;
    std::unique_ptr<CSplitter> m_pVerticalSplitter;
    std::unique_ptr<CStoragePane> m_pStorage;
    std::unique_ptr<CSplitter> m_pHorizontalSplitter;
    std::unique_ptr<CLogPane> m_pLogPane; ///< the last pane: where it is, all are
    HWND m_statusBar = nullptr;

    HACCEL m_keys;
    HFONT m_font = nullptr;
    UINT m_dpi = 96;          ///< dots per inch that sizes and fonts are made for
    int m_drawingWidth = 395; ///< of the drawing, in thousandths of the window's width
    int m_upperHeight = 640;  ///< of drawing and storage, in thousandths of the height between the bars
    CStdPoint2D m_mouse{0, 0};
    HWND m_placedDialog = nullptr;
    bool m_isUpdatePosted = false;
};
