// The code of docs/plugin-guide.md, block for block: documents_test.cpp compares the two.
#include "commands/CommandManager.h"
#include "configuration/ConfigurationStorage.h"
#include "configuration/Storage.h"
#include "platform/host/CoordinateInput.h"
#include "platform/host/HostControl.h"
#include "sdk/FileConfigurationHandler.h"

#include <gtest/gtest.h>

namespace
{
void KeepConfigurationIn(const WCHAR* pPath, const VLT::CFileConfigurationHandler::Report& report)
{
    const boost::shared_ptr<VLT::IConfigurationHandler> pHandler(new VLT::CFileConfigurationHandler(pPath, report));
    VLT::CConfigurationStorage::Instance()->RegisterHandler(pHandler);
}

bool StartDefinitions(CCoordinateInput* pInput)
{
    VLT::CCommandManager* pManager = VLT::CCommandManager::Instance();
    if (pManager->IsNativeCommandActive())
        pManager->CompleteCommand(pInput);
    return pManager->RunCommand(TEXT("CMD_DEFINE_PROJ_ENTITIES"), pInput) != 0;
}

void ForwardMouse(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo, CCoordinateInput* pInput)
{
    VLT::CCommandManager* pManager = VLT::CCommandManager::Instance();
    if (pManager->IsNativeCommandActive())
        pManager->ProcessMouseMsg(message, point, pInfo, pInput);
}

void EndDefinitions(CCoordinateInput* pInput)
{
    VLT::CCommandManager::Instance()->CompleteCommand(pInput);
}

class CHelloCommand : public VLT::ICommand
{
public:
    WString GetId() override { return TEXT("CMD_HELLO"); }
    void Run(CCoordinateInput*) override { ++m_runs; }
    void ProcessMouseMsg(int, const CStdPoint2D&, strAddMsgInfo*, CCoordinateInput*) override {}
    void Complete(CCoordinateInput*) override {}
    int RequiresProcessMouseMsg() override { return 0; }

    int m_runs = 0;
};

boost::shared_ptr<CHelloCommand> RegisterHello()
{
    const boost::shared_ptr<CHelloCommand> pCommand(new CHelloCommand);
    VLT::CCommandManager::Instance()->RegisterCommand(pCommand);
    return pCommand;
}

CString TextOf(const WCHAR* pPath, const WCHAR* pId)
{
    VLT::CStorage storage;
    if (storage.Load(pPath) == 0)
        return CString(); // missing, unreadable or faulty: vltconfig check tells
    const boost::shared_ptr<VLT::CConfiguration> pRecord = storage.GetConfigurationById(pId);
    return pRecord ? pRecord->GetCfg() : CString();
}

} // namespace

TEST(PluginGuide, ItsCodeWorks)
{
    CCoordinateInput input;
    CString reported;
    KeepConfigurationIn(TEXT("docs-test-storage.xml"), [&](const CString& text) { reported = text; });
    const auto pHello = RegisterHello();
    EXPECT_EQ(VLT::CCommandManager::Instance()->RunCommand(TEXT("CMD_HELLO"), &input), 1);
    EXPECT_EQ(pHello->m_runs, 1);

    EXPECT_TRUE(StartDefinitions(&input));
    EXPECT_EQ(HostControl::GetLines().size(), 10u);
    strAddMsgInfo info;
    ForwardMouse(0, CStdPoint2D{1, 2}, &info, &input);
    EXPECT_TRUE(HostControl::GetPrompt() == TEXT("Select an entity"));
    EndDefinitions(&input);
    EXPECT_EQ(VLT::CCommandManager::Instance()->IsNativeCommandActive(), 0);
    EXPECT_TRUE(reported.IsEmpty());
    EXPECT_TRUE(TextOf(TEXT("no such file"), TEXT("PRJ_REGISTRY")).IsEmpty());
    HostControl::Reset();
}
