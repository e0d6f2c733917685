#pragma once
#include "trialhost/windows/MainWindow.h"

/// Leads through a session and writes the pictures of the documents into folder: the window with the dialog, the
/// storage pane, the log of a run, the report of a failure, and a plug-in's command if there is a plug-in. False if one
/// could not be written.
bool TakePictures(CMainWindow& window, CTrialSession& session, CCallLog& log, const WString& folder);
