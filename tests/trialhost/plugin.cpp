// The plug-ins of plugin_test.cpp, one for each KIND.
#include "sdk/PlugIn.h"
#include <CoordinateInput.h>

#include <stdexcept>

namespace
{
class CCommand final : public VLT::ICommand
{
public:
    explicit CCommand(VLT::IPlugInHost& host) : m_host(host) {}

    WString GetId() override { return TEXT(COMMAND_ID); }
    void Run(CCoordinateInput*) override { m_host.Report(TEXT("run")); }
    void ProcessMouseMsg(int, const CStdPoint2D&, strAddMsgInfo*, CCoordinateInput*) override
    {
        m_host.Report(TEXT("mouse"));
    }
    void Complete(CCoordinateInput*) override { m_host.Report(TEXT("completed")); }
    int RequiresProcessMouseMsg() override { return 1; }

private:
    VLT::IPlugInHost& m_host;
};

/// The type of the exception is known to this library alone.
class CPlugInFailure : public std::exception
{
public:
    const char* what() const noexcept override { return "no licence"; }
};

[[maybe_unused]] void Load(VLT::IPlugInHost& host)
{
    const boost::shared_ptr<VLT::ICommand> pCommand(new CCommand(host));
    const int first = host.RegisterCommand(pCommand, TEXT("&Try"));
    const int second = host.RegisterCommand(pCommand, TEXT("Again"));
    host.Report(first == 1 && second == 0 ? TEXT("registered once") : TEXT("wrong result of RegisterCommand"));
    if (KIND == KIND_THROWS)
        throw CPlugInFailure();
}
} // namespace

#if KIND == KIND_OLD
extern "C" AFX_CLASS_EXPORT unsigned int VeltranoPlugIn(VLT::IPlugInHost* pHost)
{
    return pHost == nullptr ? VLT::PlugInVersion + 1 : throw std::logic_error("called with the wrong version");
}
#elif KIND != KIND_EMPTY
VELTRANO_PLUG_IN(Load)
#endif
