// A plug-in in small: a storage file for the module, and a command of its own beside the built-in one.
#include "commands/CommandManager.h"
#include "configuration/ConfigurationStorage.h"
#include "platform/host/CoordinateInput.h"
#include "sdk/FileConfigurationHandler.h"

#include <cstdio>
#include <filesystem>

static void Print(const CString& text)
{
    std::printf("%s\n", reinterpret_cast<const char*>(std::filesystem::path(text.GetString()).u8string().c_str()));
}

/// Counts its own runs, in the same storage that the built-in command uses.
class CCountRuns final : public VLT::ICommand
{
public:
    WString GetId() override { return TEXT("CMD_COUNT_RUNS"); }
    void Run(CCoordinateInput*) override
    {
        auto* pStorage = VLT::CConfigurationStorage::Instance();
        if (pStorage->OpenStorage() == 0)
            return; // the handler's report has told why
        CString runs;
        runs.Format(TEXT("%d"), ::_wtoi(pStorage->LoadConfigurationById(TEXT("RUNS"))) + 1);
        if (pStorage->SaveConfiguration(TEXT("RUNS"), runs) != 0)
            Print(TEXT("  this was run ") + runs);
        pStorage->CloseStorage();
    }
    void ProcessMouseMsg(int, const CStdPoint2D&, strAddMsgInfo*, CCoordinateInput*) override {}
    void Complete(CCoordinateInput*) override { Print(TEXT("  completed")); }
    int RequiresProcessMouseMsg() override { return 0; }
};

int main(int count, char** ppArguments)
{
    const WString path = std::filesystem::path(count > 1 ? ppArguments[1] : "plugin.xml").string<WCHAR>();
    VLT::CConfigurationStorage::Instance()->RegisterHandler(
        boost::shared_ptr<VLT::IConfigurationHandler>(new VLT::CFileConfigurationHandler(path.c_str(), Print)));
    auto* pManager = VLT::CCommandManager::Instance();
    pManager->RegisterCommand(boost::shared_ptr<VLT::ICommand>(new CCountRuns));
    CCoordinateInput input; // a real plug-in is given the host's
    for (const WCHAR* pId : {TEXT("CMD_COUNT_RUNS"), TEXT("CMD_DEFINE_PROJ_ENTITIES")})
    {
        const bool hasRun = pManager->RunCommand(pId, &input) != 0;
        Print(pId + CString(hasRun ? TEXT(": has run") : TEXT(": unknown")));
        pManager->CompleteCommand(&input);
    }
}
