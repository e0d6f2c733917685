#include "trialhost/ScriptedRun.h"

#include "platform/console/console.h"
#include "platform/host/HostControl.h"
#include "trialhost/ITrialView.h"
#include "trialhost/TrialHandler.h"
#include "trialhost/TrialHost.h"

namespace
{
constexpr int s_addCombo = 1002;
constexpr int s_pickCombo = 1013;

/// Prints steps as they end and remembers whether one of them failed.
class CStepPrinter
{
public:
    void Step(const WCHAR* pName, const WString& result)
    {
        WString line = pName;
        line.resize(line.size() < 14 ? 14 : line.size() + 1, TEXT(' '));
        PrintText(stdout, line + result + TEXT("\n"));
        std::fflush(stdout);
    }
    void Check(const WCHAR* pName, bool done, const WString& result, const WCHAR* pFailure)
    {
        m_failed = m_failed || !done;
        Step(pName, done ? result : WString(TEXT("FAILED: ")) + pFailure);
    }
    bool HasFailed() const { return m_failed; }

private:
    bool m_failed = false;
};

WString Number(long long number)
{
    const std::string digits = std::to_string(number);
    return WString(digits.begin(), digits.end());
}

WString Quoted(const CString& text)
{
    return TEXT("\"") + WString(text.GetString()) + TEXT("\"");
}

WString Joined(const std::vector<CString>& items)
{
    WString text;
    for (const CString& item : items)
        text += (text.empty() ? TEXT("") : TEXT(", ")) + Quoted(item);
    return text;
}

WString Point(double x, double y)
{
    return TEXT("(") + Number(static_cast<long long>(x)) + TEXT(", ") + Number(static_cast<long long>(y)) + TEXT(")");
}

long long CountDefinitions(const CString& registryText)
{
    const WString text = registryText.GetString();
    const WString element = TEXT("<projectionDefinition ");
    long long count = 0;
    for (size_t at = text.find(element); at != WString::npos; at = text.find(element, at + element.size()))
        ++count;
    return count;
}

WString RegistrySize(const CString& text)
{
    return Number(CountDefinitions(text)) + TEXT(" definitions, ") + Number(text.GetLength()) + TEXT(" characters");
}

void CheckDialog(CStepPrinter& printer, const CTrialHost& host, const CTrialHandler& handler)
{
    const HWND dialog = host.FindDialog();
    printer.Check(TEXT("dialog"), dialog != nullptr && ::IsWindowVisible(dialog),
                  TEXT("\"Define projection/intersection\" is open"), TEXT("it is not on the screen"));
    if (dialog == nullptr)
        return;
    printer.Step(TEXT("combo box"), TEXT("beside Add: ") + Joined(host.GetComboItems(s_addCombo)));
    printer.Step(TEXT("combo box"), TEXT("beside Pick an entity: ") + Joined(host.GetComboItems(s_pickCombo)));
    printer.Check(TEXT("definitions"), handler.HasLoaded(), TEXT("loaded: ") + RegistrySize(handler.GetLoadedText()),
                  TEXT("the storage was not read"));
}

void CheckDrawing(CStepPrinter& printer)
{
    const std::vector<CHostLine> lines = HostControl::GetLines();
    printer.Check(TEXT("lines"), lines.size() == 10,
                  Number(static_cast<long long>(lines.size())) + TEXT(" in the drawing"),
                  TEXT("not ten of them are in the drawing"));
    for (const CHostLine& line : lines)
        printer.Step(TEXT("line"), Point(line.startX, line.startY) + TEXT(" to ") + Point(line.endX, line.endY));
    for (const CHostInformation& report : HostControl::GetRecord().information)
        printer.Check(TEXT("report"), false, TEXT(""), report.text.c_str());
}

void SendMouse(CStepPrinter& printer, CTrialHost& host)
{
    constexpr int mouseMove = 0x200;
    for (int i = 0; i < 3; ++i)
        host.SendMouseMessage(mouseMove, 100.0 + i, 100.0);
    const auto& record = HostControl::GetRecord();
    printer.Check(TEXT("prompt"), !HostControl::GetPrompt().empty(),
                  TEXT("\"") + HostControl::GetPrompt() + TEXT("\" started, selections: ") +
                      Number(static_cast<long long>(record.selections.size())) + TEXT(", input modes set: ") +
                      Number(static_cast<long long>(record.inputModes.size())),
                  TEXT("no selection was started"));
}

void CloseDialog(CStepPrinter& printer, const TrialOptions& options, CTrialHost& host, const CTrialHandler& handler)
{
    host.PressButton(options.cancels ? IDCANCEL : IDOK);
    printer.Step(TEXT("button"), options.cancels ? TEXT("Cancel pressed") : TEXT("OK pressed"));
    if (options.cancels)
    {
        printer.Check(TEXT("text"), !handler.HasSaved(), TEXT("not saved, as Cancel asks"), TEXT("saved by Cancel"));
        return;
    }
    printer.Check(TEXT("text"), handler.HasSaved(), TEXT("saved: ") + RegistrySize(handler.GetSavedText()),
                  TEXT("not saved"));
    printer.Check(TEXT("storage"), !handler.IsOpen(), TEXT("closed"), TEXT("still open"));
}
} // namespace

int RunScript(const TrialOptions& options, CTrialHost& host, CTrialHandler& handler, ITrialView& view)
{
    CStepPrinter printer;
    printer.Step(TEXT("file"), options.storagePath);
    printer.Check(TEXT("command"), host.IsCommandAvailable(), WString(CTrialHost::s_pCommandId) + TEXT(" is available"),
                  TEXT("the module does not know it"));
    printer.Check(TEXT("command"), host.RunCommand(), TEXT("runs"), TEXT("not started"));
    CheckDialog(printer, host, handler);
    CheckDrawing(printer);
    SendMouse(printer, host);
    view.Refresh();
    if (!options.picturePath.empty())
        printer.Check(TEXT("picture"), view.SavePicture(options.picturePath), options.picturePath,
                      TEXT("it could not be saved; is there a window, and can the folder be written?"));
    if (host.FindDialog() != nullptr)
        CloseDialog(printer, options, host, handler);
    host.CompleteCommand();
    printer.Check(TEXT("command"), !host.IsCommandActive() && host.FindDialog() == nullptr,
                  TEXT("completed, the dialog is gone"), TEXT("its dialog is still there"));
    return printer.HasFailed() ? 1 : 0;
}
