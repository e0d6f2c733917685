#pragma once
#include "platform/text.h"

#include <memory>

class CTrialHost;

/// Where the trial host shows its drawing.
class ITrialView
{
public:
    virtual ~ITrialView() = default;
    /// Shows drawing and prompt as they are now, and handles the messages that wait.
    virtual void Refresh() = 0;
    /// Writes a picture of the view, with the dialog before it, as a PNG file. False if that fails.
    virtual bool SavePicture(const WString& path) = 0;
    /// Hands the user's mouse messages and menu choices to the host until he closes the view. False without a window.
    virtual bool RunUntilClosed() = 0;
};

/// One view for the build: a window on Windows, nothing to see elsewhere. host outlives the view.
std::unique_ptr<ITrialView> CreateTrialView(CTrialHost& host);
