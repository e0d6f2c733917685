#pragma once
#include "trialhost/TrialSession.h"
#include "trialhost/model/RecentFiles.h"
#include "trialhost/windows/Window.h"

/// Numbers of the menu items and tool bar buttons. Those that number things in a list count up from First….
enum eCommand : int
{
    CommandOpen = 100,
    CommandReload,
    CommandExit,
    CommandRunAgain,
    CommandComplete,
    CommandFit,
    CommandZoomIn,
    CommandZoomOut,
    CommandCopyLog,
    CommandClearLog,
    CommandLoadPlugIn,
    CommandLoadAnew,
    FirstCommandRun = 1000,
    FirstCommandRecent = 2000,
    FirstCommandPlugIn = 3000,
    FirstCommandFault = 4000
};

/// A plug-in that was named in this session, loaded or not.
struct CKnownPlugIn
{
    WString path;
    bool isLoaded;
};

/// The menu bar of the main window, with empty menus. The caller gives it to the window, which owns it then.
HMENU CreateTrialMenu();
/// Replaces the items of all menus. The bar itself stays, so that nothing is drawn again.
void FillTrialMenu(HMENU bar, const std::vector<CTrialCommand>& commands, eFault fault, const CRecentFiles& recent,
                   const std::vector<CKnownPlugIn>& plugIns);
/// The keys of the menu's items. The caller destroys the table.
HACCEL CreateTrialKeys();
/// An empty tool bar as a child of parent.
HWND CreateTrialToolBar(HWND parent, int id);
/// Replaces its buttons: one for each command, and those for ending, running again and fitting the drawing.
void FillToolBar(HWND toolBar, const std::vector<CTrialCommand>& commands);
