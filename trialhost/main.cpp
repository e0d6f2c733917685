// The trial host: a program that is to the module what the CAD host and its plug-in are.
#include "platform/console/console.h"
#include "platform/host/HostControl.h"
#include "trialhost/Exceptions.h"
#include "trialhost/ITrialView.h"
#include "trialhost/ScriptedRun.h"
#include "trialhost/TrialSession.h"
#include "trialhost/log/HostCalls.h"
#include "trialhost/log/LogFile.h"

namespace
{
const WCHAR s_usage[] = TEXT(R"(usage: trialhost [OPTION]... STORAGE-FILE
Runs the commands of VeltranoCommands over the definitions in STORAGE-FILE: in a window, or as a script.
  --script           from end to end, with a line printed for every step; without it a window opens
  --cancel           the script presses Cancel instead of OK
  --plugin FILE      loads a plug-in library, whose commands come after the built-in one; any number of them
  --fault NAME       lets something go wrong around the module; --fault help lists the names
  --log FILE         writes every call between host, plug-ins and module, with result and time, to FILE
  --picture FILE     the script saves a picture of the window with the dialog (Windows only)
  --pictures FOLDER  saves the pictures of the documents and ends (Windows only)
  --settings FILE    keeps window places and recent files there, not in trialhost.ini of the user
Exit code: 0 all steps done, 1 a step failed or a file cannot be used, 2 wrong use.
)");

int WrongUse(const WString& reason)
{
    PrintText(stderr, TEXT("trialhost: ") + reason + TEXT("\n") + s_usage);
    return 2;
}

int Fail(const WString& text)
{
    PrintText(stderr, TEXT("trialhost: ") + text + TEXT("\n"));
    return 1;
}

int ListFaults()
{
    for (const CFaultChoice& choice : GetFaultChoices())
    {
        WString caption = choice.pCaption;
        std::erase(caption, TEXT('&'));
        PrintStep(choice.pName, TEXT("  ") + caption);
    }
    return 0;
}

/// Stores the value of an option that takes one. False if there is no such option.
bool StoreValue(const WString& option, const WString& value, TrialOptions& options, WString& fault)
{
    if (option == TEXT("--plugin"))
        options.plugInPaths.push_back(value);
    else if (option == TEXT("--log"))
        options.logPath = value;
    else if (option == TEXT("--picture"))
        options.picturePath = value;
    else if (option == TEXT("--pictures"))
        options.picturesFolder = value;
    else if (option == TEXT("--settings"))
        options.settingsPath = value;
    else if (option != TEXT("--fault"))
        return false;
    else if (const CFaultChoice* pChoice = FindFault(value))
        options.fault = pChoice->fault;
    else
        fault = TEXT("unknown fault ") + value + TEXT("; --fault help lists the names");
    return true;
}

/// Fills options; returns the fault in words, empty if there is none.
WString ReadArguments(const std::vector<WString>& arguments, TrialOptions& options)
{
    WString fault;
    for (size_t i = 0; i < arguments.size() && fault.empty(); ++i)
    {
        const WString& argument = arguments[i];
        if (argument == TEXT("--script"))
            options.isScripted = true;
        else if (argument == TEXT("--cancel"))
            options.cancels = true;
        else if (i + 1 < arguments.size() && StoreValue(argument, arguments[i + 1], options, fault))
            ++i;
        else if (argument.starts_with(TEXT("--")))
            return TEXT("unknown or incomplete option ") + argument;
        else if (options.storagePath.empty())
            options.storagePath = argument;
        else
            return TEXT("more than one storage file: ") + argument;
    }
    return fault.empty() && options.storagePath.empty() ? TEXT("no storage file named") : fault;
}

bool LoadPlugIns(const TrialOptions& options, CTrialHost& host)
{
    for (const WString& path : options.plugInPaths)
    {
        const WString fault = host.LoadPlugIn(path);
        if (!fault.empty())
            return Fail(fault) == 0;
        PrintStep(TEXT("plug-in"), path + TEXT(" is loaded"));
    }
    return true;
}

int RunWindow(const TrialOptions& options, CTrialSession& session, ITrialView& view)
{
    for (const WString& path : options.plugInPaths)
        view.AddPlugIn(path);
    if (!options.picturesFolder.empty())
        return view.SavePictures(options.picturesFolder)
                   ? 0
                   : Fail(options.picturesFolder + TEXT(": pictures could not be saved; is there a window?"));
    if (options.fault != eFault::None)
        session.RunAgain(); // the first run shows it
    view.Refresh();
    if (!view.RunUntilClosed())
        return WrongUse(TEXT("this build has no window; use --script"));
    session.Complete();
    return 0;
}

int Run(const TrialOptions& options)
{
    CCallLog log;
    const CLogFile logFile(options.logPath, log);
    if (!options.logPath.empty() && !logFile.IsOpen())
        return Fail(options.logPath + TEXT(": cannot be written"));
    const CHostCallRecorder recorder(log);
    CTrialHost host(log, [](const WString& text) { PrintStep(TEXT("report"), text); });
    CTrialSession session(log, host, Fail);
    const WString reason = session.Open(options.storagePath);
    if (!reason.empty())
        return Fail(reason);
    session.SetFault(options.fault);
    if (options.isScripted && !LoadPlugIns(options, host))
        return 1;
    const std::unique_ptr<ITrialView> pView = CreateTrialView(session, log, options.settingsPath);
    if (!options.isScripted)
        return RunWindow(options, session, *pView);
    // The view would show reports in boxes, which nobody closes in a script.
    session.SetReporter(Fail);
    HostControl::SetInformationViewer([](const CHostInformation& report) { Fail(report.text); });
    return RunScript(options, session, *pView);
}
} // namespace

int main()
{
    const std::vector<WString> arguments = GetProgramArguments();
    if (!arguments.empty() && (arguments[0] == TEXT("--help") || arguments[0] == TEXT("-h")))
    {
        PrintText(stdout, s_usage);
        return 0;
    }
    if (arguments.size() == 2 && arguments[0] == TEXT("--fault") && arguments[1] == TEXT("help"))
        return ListFaults();
    TrialOptions options;
    const WString fault = ReadArguments(arguments, options);
    if (!fault.empty())
        return WrongUse(fault);
    try
    {
        return Run(options);
    }
    catch (...)
    {
        return Fail(DescribeCurrentException());
    }
}
