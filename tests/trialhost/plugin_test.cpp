// Plug-ins in the trial host: loading, running, unloading, and what a user is told about one that does not work.
#include "platform/host/HostControl.h"
#include "trialhost/TrialHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace
{
/// The plug-in of that kind, next to this program.
WString PlugInPath(const char* pName)
{
    return std::filesystem::absolute(std::string(PLUGIN_FOLDER) + "/" + pName + PLUGIN_SUFFIX).string<WCHAR>();
}

struct CTrial
{
    CCallLog log;
    std::vector<WString> reports;
    CTrialHost host{log, [this](const WString& text) { reports.push_back(text); }};
};

std::vector<WString> Texts(std::initializer_list<const WCHAR*> texts)
{
    return {texts.begin(), texts.end()};
}
} // namespace

TEST(PlugIn, ItsCommandRunsNextToTheBuiltInOne)
{
    CTrial trial;
    ASSERT_EQ(trial.host.LoadPlugIn(PlugInPath("plugin_good")), TEXT(""));
    EXPECT_FALSE(trial.host.LoadPlugIn(PlugInPath("plugin_good")).empty()) << "loaded twice";
    ASSERT_EQ(trial.host.GetCommands().size(), 2u);
    EXPECT_EQ(trial.host.GetCommands()[1].caption, TEXT("&Try"));

    EXPECT_TRUE(trial.host.RunCommand(TEXT("CMD_TRY")));
    trial.host.SendMouseMessage(0x200, 1, 2);
    EXPECT_TRUE(trial.host.RunCommand(CTrialHost::s_pCommandId)); // completes the one that runs
    EXPECT_EQ(trial.reports, Texts({TEXT("registered once"), TEXT("run"), TEXT("mouse"), TEXT("completed")}));
    trial.host.CompleteCommand();
    HostControl::Reset();
}

// A library that stays in memory, or a command whose code is gone, shows here (and to the sanitizers).
TEST(PlugIn, IsUnloadedAndLoadedAnewAsOftenAsOneLikes)
{
    CTrial trial;
    ASSERT_EQ(trial.host.LoadPlugIn(PlugInPath("plugin_other")), TEXT(""));
    for (int i = 0; i < 100; ++i)
    {
        ASSERT_EQ(trial.host.LoadPlugIn(PlugInPath("plugin_good")), TEXT("")) << i;
        ASSERT_TRUE(trial.host.RunCommand(TEXT("CMD_TRY"))) << i;
        trial.host.UnloadPlugIn(PlugInPath("plugin_good"));
        ASSERT_FALSE(trial.host.IsCommandActive()) << i;
        ASSERT_FALSE(trial.host.IsCommandAvailable(TEXT("CMD_TRY"))) << i;
        ASSERT_TRUE(trial.host.RunCommand(TEXT("CMD_OTHER"))) << i;
    }
    EXPECT_TRUE(trial.host.IsCommandAvailable(CTrialHost::s_pCommandId));
}

TEST(PlugIn, OneThatDoesNotWorkIsRefusedWithTheReason)
{
    const std::filesystem::path text = "plugin_text.dll";
    std::ofstream(text) << "no library";
    const struct
    {
        WString path;
        const WCHAR* pReason;
    } rows[] = {{TEXT("no such plug-in"), TEXT("no such file")},
                {text.string<WCHAR>(), TEXT("cannot be loaded")},
                {PlugInPath("plugin_empty"), TEXT("exports no VeltranoPlugIn")},
                {PlugInPath("plugin_old"), TEXT("built for plug-in version 2, this host has version 1")},
                {PlugInPath("plugin_throws"), TEXT("threw an exception: no licence")}};
    for (const auto& row : rows)
    {
        CTrial trial;
        const WString fault = trial.host.LoadPlugIn(row.path);
        const std::string shown(fault.begin(), fault.end());
        EXPECT_TRUE(fault.starts_with(row.path)) << shown;
        EXPECT_NE(fault.find(row.pReason), WString::npos) << shown;
        EXPECT_TRUE(trial.host.GetPlugIns().empty()) << shown;
        EXPECT_FALSE(trial.host.IsCommandAvailable(TEXT("CMD_TRY"))) << shown;
    }
    std::filesystem::remove(text);
}
