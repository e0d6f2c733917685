#pragma once
#include "trialhost/model/Faults.h"

#include <vector>

class CTrialSession;
class ITrialView;

struct TrialOptions
{
    WString storagePath;
    WString picturePath;    ///< empty: no picture
    WString picturesFolder; ///< empty: no pictures for the documents
    WString logPath;        ///< empty: no log file
    WString settingsPath;   ///< empty: the user's file
    eFault fault = eFault::None;
    std::vector<WString> plugInPaths;
    bool isScripted = false;
    bool cancels = false; ///< press Cancel instead of OK
};

/// Prints a line: what the step is about, in a column of its own, and what came of it.
void PrintStep(const WString& name, const WString& result);

/// Runs the built-in command from end to end and then each command of the plug-ins, and prints a line for every step.
/// Returns the program's exit code: 0 if every step gave what it should, else 1.
int RunScript(const TrialOptions& options, CTrialSession& session, ITrialView& view);
