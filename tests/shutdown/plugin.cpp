#include "tests/shutdown/Plugin.h"

#include "commands/CommandManager.h"
#include "configuration/Storage.h"
#include <CoordinateInput.h>

namespace
{
class CPlugin final : public IPlugin
{
public:
    void RegisterHandler(boost::shared_ptr<VLT::IConfigurationHandler> pHandler) override
    {
        VLT::CConfigurationStorage::Instance()->RegisterHandler(pHandler);
    }
    void Run() override { VLT::CCommandManager::Instance()->RunCommand(TEXT("CMD_DEFINE_PROJ_ENTITIES"), &m_input); }
    void StartSelection() override { VLT::CCommandManager::Instance()->ProcessMouseMsg(0, {}, nullptr, &m_input); }
    void Complete() override { VLT::CCommandManager::Instance()->CompleteCommand(&m_input); }
    CString GetText() override { return VLT::CStorage().GetXML(); }

private:
    CCoordinateInput m_input;
};
} // namespace

extern "C" IPlugin* GetPlugin()
{
    static CPlugin s_plugin;
    return &s_plugin;
}
