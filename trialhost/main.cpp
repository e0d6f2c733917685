// The trial host: a program that is to the module what the CAD host and its plug-in are.
#include "platform/console/console.h"
#include "platform/host/HostControl.h"
#include "trialhost/ITrialView.h"
#include "trialhost/ScriptedRun.h"
#include "trialhost/TrialHost.h"
#include "trialhost/log/LogFile.h"

#include <exception>

namespace
{
const WCHAR s_usage[] = TEXT(
    "usage: trialhost [--script] [--cancel] [--plugin FILE]... [--log FILE] [--picture FILE.png] STORAGE-FILE\n")
    TEXT("Runs the commands of VeltranoCommands over the definitions in STORAGE-FILE: in a window, or as a script.\n")
        TEXT("  --script        from end to end, with a line printed for every step; without it a window opens\n")
            TEXT("  --cancel        the script presses Cancel instead of OK\n")
                TEXT("  --plugin FILE   loads a plug-in library, whose commands come after the built-in one; any "
                     "number of them\n") TEXT("  --log FILE      writes every call between host, plug-ins and module, "
                                              "with its result and time, to FILE\n")
                    TEXT("  --picture FILE  the script saves a picture of the window with the dialog (Windows only)\n")
                        TEXT("Exit code: 0 all steps done, 1 a step failed or a file cannot be used, 2 wrong use.\n");

int WrongUse(const WString& reason)
{
    PrintText(stderr, TEXT("trialhost: ") + reason + TEXT("\n") + s_usage);
    return 2;
}

/// Fills options; returns the fault in words, empty if there is none.
WString ReadArguments(const std::vector<WString>& arguments, TrialOptions& options)
{
    for (size_t i = 0; i < arguments.size(); ++i)
    {
        const WString& argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (argument == TEXT("--script"))
            options.isScripted = true;
        else if (argument == TEXT("--cancel"))
            options.cancels = true;
        else if (argument == TEXT("--plugin") && hasValue)
            options.plugInPaths.push_back(arguments[++i]);
        else if (argument == TEXT("--log") && hasValue)
            options.logPath = arguments[++i];
        else if (argument == TEXT("--picture") && hasValue)
            options.picturePath = arguments[++i];
        else if (argument.starts_with(TEXT("--")))
            return TEXT("unknown or incomplete option ") + argument;
        else if (options.storagePath.empty())
            options.storagePath = argument;
        else
            return TEXT("more than one storage file: ") + argument;
    }
    return options.storagePath.empty() ? TEXT("no storage file named") : WString();
}

int Fail(const WString& text)
{
    PrintText(stderr, TEXT("trialhost: ") + text + TEXT("\n"));
    return 1;
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

int Run(const TrialOptions& options)
{
    CCallLog log;
    const CLogFile logFile(options.logPath, log);
    if (!options.logPath.empty() && !logFile.IsOpen())
        return Fail(options.logPath + TEXT(": cannot be written"));
    if (::GetFileAttributesW(options.storagePath.c_str()) == INVALID_FILE_ATTRIBUTES)
        return Fail(options.storagePath + TEXT(": no such file"));
    const boost::shared_ptr<CRecordingHandler> pHandler(
        new CRecordingHandler(log, options.storagePath, [](const CString& text) { Fail(text.GetString()); }));
    if (pHandler->OpenStorage() == 0)
        return 1; // the report has told why
    pHandler->CloseStorage();

    HostControl::SetInformationViewer([](const CHostInformation& report) { Fail(report.text); });
    CTrialHost host(log, [](const WString& text) { PrintStep(TEXT("report"), text); });
    host.UseHandler(pHandler);
    if (!LoadPlugIns(options, host))
        return 1;
    const std::unique_ptr<ITrialView> pView = CreateTrialView(host);
    if (options.isScripted)
        return RunScript(options, host, *pHandler, *pView);
    host.RunCommand(CTrialHost::s_pCommandId);
    pView->Refresh();
    if (!pView->RunUntilClosed())
        return WrongUse(TEXT("this build has no window; use --script"));
    host.CompleteCommand();
    return 0;
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
    TrialOptions options;
    const WString fault = ReadArguments(arguments, options);
    if (!fault.empty())
        return WrongUse(fault);
    try
    {
        return Run(options);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "trialhost: %s\n", error.what());
        return 1;
    }
}
