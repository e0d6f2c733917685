#pragma once
#include "platform/host/CoordinateInput.h"
#include "platform/win32/win32.h"
#include <afxstr.h>

#include <vector>

/// What CAD host and plug-in are to the module: runs its command, forwards mouse messages, works its dialog.
class CTrialHost
{
public:
    static const WCHAR* const s_pCommandId;

    bool IsCommandAvailable() const;
    bool IsCommandActive() const;
    /// False if the module does not know the command.
    bool RunCommand();
    void CompleteCommand();
    /// Hands the message to the active command, if it asks for mouse messages. Position in database units.
    void SendMouseMessage(int message, double x, double y);

    /// The dialog of the running command, null when there is none.
    HWND FindDialog() const;
    /// Presses a push button of the dialog, as a click does. The dialog must be there.
    void PressButton(int id);
    /// The entries of a combo box of the dialog, first to last.
    std::vector<CString> GetComboItems(int id) const;

private:
    CCoordinateInput m_input;
};
