#pragma once
#include "platform/text.h"

class CTrialHandler;
class CTrialHost;
class ITrialView;

struct TrialOptions
{
    WString storagePath;
    WString picturePath; ///< empty: no picture
    bool isScripted = false;
    bool cancels = false; ///< press Cancel in the place of OK
};

/// Runs the command once from end to end and prints a line for every step. Returns the program's exit code: 0 if every
/// step gave what it should, else 1.
int RunScript(const TrialOptions& options, CTrialHost& host, CTrialHandler& handler, ITrialView& view);
