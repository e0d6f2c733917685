// Runs the code of docs/plugin-guide.md, which the build takes from there.
#include "commands/CommandManager.h"
#include "configuration/ConfigurationStorage.h"
#include "configuration/Storage.h"
#include "platform/host/HostControl.h"
#include "sdk/FileConfigurationHandler.h"
#include <CoordinateInput.h>

#include <gtest/gtest.h>

namespace
{
#include "guide_code.h"
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
