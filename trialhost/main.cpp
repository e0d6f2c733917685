// The trial host: a program that is to the module what the CAD host and its plug-in are.
#include "configuration/ConfigurationStorage.h"
#include "platform/console/console.h"
#include "platform/host/HostControl.h"
#include "trialhost/ITrialView.h"
#include "trialhost/ScriptedRun.h"
#include "trialhost/TrialHandler.h"
#include "trialhost/TrialHost.h"

#include <exception>

namespace
{
const WCHAR s_usage[] = TEXT("usage: trialhost [--script] [--cancel] [--picture FILE.png] STORAGE-FILE\n")
    TEXT("Runs CMD_DEFINE_PROJ_ENTITIES of VeltranoCommands over the definitions in STORAGE-FILE.\n")
        TEXT("  --script        from end to end, with a line printed for every step; without it a window opens\n")
            TEXT("  --cancel        the script presses Cancel in the place of OK\n")
                TEXT("  --picture FILE  the script saves a picture of the window with the dialog (Windows only)\n")
                    TEXT("Exit code: 0 all steps done, 1 a step failed or the file cannot be used, 2 wrong use.\n");

int WrongUse(const WString& reason)
{
    PrintText(stderr, TEXT("trialhost: ") + reason + TEXT("\n") + s_usage);
    return 2;
}

/// Fills options; gives the fault in words, empty if there is none.
WString ReadArguments(const std::vector<WString>& arguments, TrialOptions& options)
{
    for (size_t i = 0; i < arguments.size(); ++i)
    {
        const WString& argument = arguments[i];
        if (argument == TEXT("--script"))
            options.isScripted = true;
        else if (argument == TEXT("--cancel"))
            options.cancels = true;
        else if (argument == TEXT("--picture") && i + 1 < arguments.size())
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

void ShowReport(const CString& text)
{
    PrintText(stderr, TEXT("trialhost: ") + WString(text.GetString()) + TEXT("\n"));
}

int Run(const TrialOptions& options)
{
    const boost::shared_ptr<CTrialHandler> pHandler(new CTrialHandler(options.storagePath.c_str(), ShowReport));
    if (::GetFileAttributesW(options.storagePath.c_str()) == INVALID_FILE_ATTRIBUTES)
    {
        ShowReport(CString(options.storagePath.c_str()) + TEXT(": no such file"));
        return 1;
    }
    if (pHandler->OpenStorage() == 0)
        return 1; // the report has told why
    pHandler->CloseStorage();
    VLT::CConfigurationStorage::Instance()->RegisterHandler(pHandler);

    HostControl::SetInformationViewer([](const CHostInformation& report) { ShowReport(report.text.c_str()); });
    CTrialHost host;
    const std::unique_ptr<ITrialView> pView = CreateTrialView(host);
    if (options.isScripted)
        return RunScript(options, host, *pHandler, *pView);
    host.RunCommand();
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
