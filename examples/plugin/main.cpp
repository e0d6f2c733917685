// A plug-in in small: a command of its own next to the built-in one, over the same storage file.
#include "configuration/ConfigurationStorage.h"
#include "sdk/PlugIn.h"

namespace
{
/// Counts its own runs, in the storage that the built-in command uses too.
class CCountRuns final : public VLT::ICommand
{
public:
    explicit CCountRuns(VLT::IPlugInHost& host) : m_host(host) {}

    WString GetId() override { return TEXT("CMD_COUNT_RUNS"); }
    void Run(CCoordinateInput*) override
    {
        auto* pStorage = VLT::CConfigurationStorage::Instance();
        if (pStorage->OpenStorage() == 0)
            return; // the handler's report has told why
        CString runs;
        runs.Format(TEXT("%d"), ::_wtoi(pStorage->LoadConfigurationById(TEXT("RUNS"))) + 1);
        if (pStorage->SaveConfiguration(TEXT("RUNS"), runs) != 0)
            m_host.Report(TEXT("this was run ") + runs);
        pStorage->CloseStorage();
    }
    void ProcessMouseMsg(int, const CStdPoint2D&, strAddMsgInfo*, CCoordinateInput*) override {}
    void Complete(CCoordinateInput*) override { m_host.Report(TEXT("the count is complete")); }
    int RequiresProcessMouseMsg() override { return 0; }

private:
    VLT::IPlugInHost& m_host;
};

void Load(VLT::IPlugInHost& host)
{
    host.RegisterCommand(boost::shared_ptr<VLT::ICommand>(new CCountRuns(host)), TEXT("&Count runs"));
}
} // namespace

VELTRANO_PLUG_IN(Load)
