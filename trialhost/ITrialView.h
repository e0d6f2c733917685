#pragma once
#include "platform/text.h"

#include <memory>

class CCallLog;
class CTrialSession;

/// Where the trial host shows its drawing.
class ITrialView
{
public:
    virtual ~ITrialView() = default;
    /// Shows drawing and prompt as they are now, and handles the messages that wait.
    virtual void Refresh() = 0;
    /// Loads a plug-in; shows why if that fails.
    virtual void AddPlugIn(const WString& path) = 0;
    /// Writes a picture of the view, with the dialog in front of it, as a PNG file. False if that fails.
    virtual bool SavePicture(const WString& path) = 0;
    /// Writes the pictures of the documents into folder. False if one fails.
    virtual bool SavePictures(const WString& folder) = 0;
    /// Hands the user's mouse messages and menu choices to the host until he closes the view. False without a window.
    virtual bool RunUntilClosed() = 0;
};

/// A window on Windows; elsewhere an object that shows nothing. session and log outlive the view. settingsPath: the
/// file that keeps window places and recent files; empty for the user's.
std::unique_ptr<ITrialView> CreateTrialView(CTrialSession& session, CCallLog& log, const WString& settingsPath);
