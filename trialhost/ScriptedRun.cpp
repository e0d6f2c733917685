#include "trialhost/ScriptedRun.h"

#include "platform/console/console.h"
#include "platform/host/HostControl.h"
#include "resources/resource.h"
#include "trialhost/Format.h"
#include "trialhost/ITrialView.h"
#include "trialhost/TrialSession.h"
#include "trialhost/log/RecordingHandler.h"

namespace
{
/// Prints steps as they end and remembers whether one of them failed.
class CStepPrinter
{
public:
    void Check(const WCHAR* pName, bool done, const WString& result, const WCHAR* pFailure)
    {
        m_failed = m_failed || !done;
        PrintStep(pName, done ? result : WString(TEXT("FAILED: ")) + pFailure);
    }
    bool HasFailed() const { return m_failed; }

private:
    bool m_failed = false;
};

WString Joined(const std::vector<CString>& items)
{
    WString text;
    for (const CString& item : items)
        text += (text.empty() ? TEXT("") : TEXT(", ")) + Quoted(item.GetString());
    return text;
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

void CheckDialog(CStepPrinter& printer, const CTrialHost& host, const CRecordingHandler& handler)
{
    const HWND dialog = host.FindDialog();
    printer.Check(TEXT("dialog"), dialog != nullptr && ::IsWindowVisible(dialog),
                  TEXT("\"Define projection/intersection\" is open"), TEXT("it is not on the screen"));
    if (dialog == nullptr)
        return;
    PrintStep(TEXT("combo box"), TEXT("next to Add: ") + Joined(host.GetComboItems(IDC_COMBO_ADD_KIND)));
    PrintStep(TEXT("combo box"), TEXT("next to Pick an entity: ") + Joined(host.GetComboItems(IDC_COMBO_PICK)));
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
        PrintStep(TEXT("line"), Point(line.startX, line.startY) + TEXT(" to ") + Point(line.endX, line.endY));
    for (const CHostInformation& report : HostControl::GetRecord().information)
        printer.Check(TEXT("report"), false, TEXT(""), report.text.c_str());
}

void SendMouse(CStepPrinter& printer, CTrialSession& session)
{
    constexpr int mouseMove = 0x200;
    for (int i = 0; i < 3; ++i)
        session.SendMouse(mouseMove, {100.0 + i, 100.0});
    const auto& record = HostControl::GetRecord();
    printer.Check(TEXT("prompt"), !HostControl::GetPrompt().empty(),
                  WString(TEXT("\"")) + HostControl::GetPrompt() + TEXT("\" started, selections: ") +
                      Number(static_cast<long long>(record.selections.size())) + TEXT(", input modes set: ") +
                      Number(static_cast<long long>(record.inputModes.size())),
                  TEXT("no selection was started"));
}

void CloseDialog(CStepPrinter& printer, const TrialOptions& options, CTrialHost& host, const CRecordingHandler& handler)
{
    host.PressButton(options.cancels ? IDCANCEL : IDOK);
    PrintStep(TEXT("button"), options.cancels ? TEXT("Cancel pressed") : TEXT("OK pressed"));
    if (options.cancels)
    {
        printer.Check(TEXT("text"), !handler.HasSaved(), TEXT("not saved, as Cancel asks"), TEXT("saved by Cancel"));
        return;
    }
    printer.Check(TEXT("text"), handler.HasSaved(), TEXT("saved: ") + RegistrySize(handler.GetSavedText()),
                  TEXT("not saved"));
    printer.Check(TEXT("storage"), !handler.IsOpen(), TEXT("closed"), TEXT("still open"));
}
void RunBuiltInCommand(CStepPrinter& printer, const TrialOptions& options, CTrialSession& session, ITrialView& view)
{
    CTrialHost& host = session.GetHost();
    const CRecordingHandler& handler = *session.GetHandler();
    const WString id = CTrialHost::s_pCommandId;
    printer.Check(TEXT("command"), host.IsCommandAvailable(id), id + TEXT(" is available"),
                  TEXT("the module does not know it"));
    printer.Check(TEXT("command"), session.Run(id), TEXT("runs"), TEXT("not started"));
    CheckDialog(printer, host, handler);
    CheckDrawing(printer);
    SendMouse(printer, session);
    view.Refresh();
    if (!options.picturePath.empty())
        printer.Check(TEXT("picture"), view.SavePicture(options.picturePath), options.picturePath,
                      TEXT("it could not be saved; is there a window, and can the folder be written?"));
    if (host.FindDialog() != nullptr)
        CloseDialog(printer, options, host, handler);
    session.Complete();
    printer.Check(TEXT("command"), !host.IsCommandActive() && host.FindDialog() == nullptr,
                  TEXT("completed, the dialog is gone"), TEXT("its dialog is still there"));
}

void RunPlugInCommand(CStepPrinter& printer, CTrialSession& session, const WString& id)
{
    printer.Check(TEXT("command"), session.Run(id), id + TEXT(" has run"), TEXT("not started"));
    session.Complete();
    printer.Check(TEXT("command"), !session.GetHost().IsCommandActive(), TEXT("completed"), TEXT("still active"));
}
} // namespace

void PrintStep(const WString& name, const WString& result)
{
    WString line = name;
    line.resize(line.size() < 14 ? 14 : line.size() + 1, TEXT(' '));
    PrintText(stdout, line + result + TEXT("\n"));
    std::fflush(stdout);
}

int RunScript(const TrialOptions& options, CTrialSession& session, ITrialView& view)
{
    CStepPrinter printer;
    PrintStep(TEXT("file"), session.GetHandler()->GetPath());
    RunBuiltInCommand(printer, options, session, view);
    const std::vector<CTrialCommand> commands = session.GetHost().GetCommands();
    for (size_t i = 1; i < commands.size(); ++i) // the first is the built-in one
        RunPlugInCommand(printer, session, commands[i].id);
    return printer.HasFailed() ? 1 : 0;
}
