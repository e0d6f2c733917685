// The trial host without its window: view, storage contents, log, recent files, faults.
#include "platform/host/HostControl.h"
#include "sdk/StorageFile.h"
#include "tests/support/TestFolder.h"
#include "trialhost/Format.h"
#include "trialhost/TrialSession.h"
#include "trialhost/log/HostCalls.h"
#include "trialhost/log/LogFile.h"
#include "trialhost/model/DrawingView.h"
#include "trialhost/model/RecentFiles.h"
#include "trialhost/model/StorageContents.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{
CHostLine Line(double x, double y0, double y1)
{
    return {x, y0, x, y1, 0, 0, 128, 255, 1, 1, 0};
}

std::string Narrow(const WString& text)
{
    return std::string(text.begin(), text.end());
}

/// A copy of the sample in a folder of its own: saving leaves further files next to it.
struct CSampleCopy
{
    CSampleCopy() { std::filesystem::copy_file(SAMPLE_FILE, file); }

    const CTestFolder folder;
    const std::filesystem::path file = folder.m_path / "storage.xml";
    const WString path = file.string<WCHAR>();
};
} // namespace

TEST(TrialDrawing, PlacesStayWhereTheyAreUnderTheMouse)
{
    CDrawingView view;
    view.SetSize(400, 300);
    view.Fit({Line(100, 100, 120), Line(190, 100, 120)});
    EXPECT_EQ(view.ToPixel({145, 110}).x, 200);
    EXPECT_EQ(view.ToPixel({145, 110}).y, 150);
    EXPECT_GT(view.ToPixel({145, 100}).y, 150) << "y points up";

    const CStdPoint2D place = view.ToDrawing({40, 60});
    view.Zoom(3, {40, 60});
    EXPECT_NEAR(view.ToDrawing({40, 60}).x, place.x, 1e-9);
    EXPECT_NEAR(view.ToDrawing({40, 60}).y, place.y, 1e-9);
    view.Pan(7, -9);
    EXPECT_NEAR(view.ToDrawing({47, 51}).x, place.x, 1e-9);
    EXPECT_NEAR(view.ToDrawing({47, 51}).y, place.y, 1e-9);

    for (int i = 0; i < 1000; ++i)
        view.Zoom(i < 500 ? 1.5 : 0.1, {0, 0}); // far beyond both limits
    const CPixel distant = view.ToPixel({1e300, -1e300});
    EXPECT_EQ(distant.x, 1000000);
    EXPECT_EQ(distant.y, 1000000);
    view.Fit({Line(5, 5, 5)}); // no extent in any direction
    EXPECT_EQ(view.ToPixel({5, 5}).x, 200);
}

TEST(TrialDrawing, GridStepsAreRoundNumbers)
{
    CDrawingView view;
    view.SetSize(1000, 1000);
    view.Fit({}); // 100 units are 800 pixels
    for (const auto& [pixels, spacing] : {std::pair(8, 1.0), {9, 2.0}, {40, 5.0}, {41, 10.0}, {4, 0.5}})
        EXPECT_DOUBLE_EQ(view.GetGridSpacing(pixels), spacing) << pixels;
}

TEST(TrialDrawing, NearestLineIsFoundWithinTheTolerance)
{
    CDrawingView view;
    view.SetSize(1000, 1000);
    view.Fit({});
    const std::vector<CHostLine> lines = {Line(10, 0, 50), Line(11, 0, 50), Line(50, 50, 50)};
    const CPixel first = view.ToPixel({10, 20});
    EXPECT_EQ(view.FindLine(lines, {first.x + 3, first.y}, 6), 0u);
    EXPECT_EQ(view.FindLine(lines, {first.x + 5, first.y}, 6), 1u) << "both are within 6 pixels";
    EXPECT_EQ(view.FindLine(lines, {first.x - 7, first.y}, 6), CDrawingView::s_noLine);
    const CPixel end = view.ToPixel({10, 50});
    EXPECT_EQ(view.FindLine(lines, {end.x, end.y - 7}, 6), CDrawingView::s_noLine) << "beyond the end";
    EXPECT_EQ(view.FindLine(lines, view.ToPixel({50, 50}), 6), 2u) << "a point";
}

TEST(TrialStorage, ContentsFollowTheFile)
{
    const CSampleCopy sample;
    CStorageContents contents(sample.path);
    ASSERT_TRUE(contents.Update());
    EXPECT_FALSE(contents.Update());
    ASSERT_EQ(contents.GetRecords().size(), 2u);
    EXPECT_EQ(contents.GetRecords()[1].text, TEXT("Sample drawing"));
    const auto rows = ReadDefinitions(contents.GetRecords()[0].text);
    ASSERT_EQ(rows.size(), 3u);
    const CDefinitionRow expected = {TEXT("Kanal M\u00fcllerstra\u00dfe"),
                                     TEXT("yes"),
                                     TEXT("no"),
                                     TEXT("yes"),
                                     TEXT("Drainage"),
                                     TEXT("E-2210"),
                                     TEXT("yes")};
    EXPECT_TRUE(rows[1] == expected);
    EXPECT_TRUE(rows[2][0] == TEXT("Bridge \"North\" <axis>"));
    EXPECT_TRUE(ReadDefinitions(TEXT("<projectionDefinition name=")).size() <= 1) << "cut off";

    VLT::CStorageFile(sample.path.c_str())
        .Update(
            [](VLT::CStorage& storage)
            {
                storage.AddConfiguration(boost::shared_ptr<VLT::CConfiguration>(new VLT::CConfiguration));
                return true;
            });
    EXPECT_TRUE(contents.Update());
    EXPECT_EQ(contents.GetRecords().size(), 3u);
    std::filesystem::remove(sample.file);
    EXPECT_TRUE(contents.Update());
    EXPECT_NE(Narrow(contents.GetErrorText()).find("no such file"), std::string::npos);
    EXPECT_TRUE(contents.GetRecords().empty());
}

TEST(TrialLog, LinesShowNestingResultsAndExceptions)
{
    const CTestFolder folder;
    {
        CCallLog log;
        const CLogFile file(folder.Path(TEXT("run.log")), log);
        CCallScope outer(log, TEXT("Outer(1)"));
        {
            CCallScope inner(log, TEXT("Inner()"));
            inner.Return(TEXT("2"));
        }
        log.AddRemark(TEXT("remark"));
        try
        {
            const CCallScope throwing(log, TEXT("Throws()"));
            throw 1;
        }
        catch (int)
        {
        }
        EXPECT_EQ(log.GetCalls().size(), 4u);
        EXPECT_EQ(log.GetCalls()[1].depth, 1);
        log.Clear(); // while a call runs
        log.AddRemark(TEXT("after"));
        outer.Return(TEXT("3"));
    }
    const std::string written = BytesOf(folder.m_path / "run.log");
    size_t at = 0;
    for (const char* pPart : {"  Outer(1)\n", "    Inner() = 2  (", "ms)\n", "    remark\n",
                              "    Throws() = left by an exception  (", "    after\n"})
    {
        at = written.find(pPart, at);
        ASSERT_NE(at, std::string::npos) << pPart << "\n" << written;
    }
}

TEST(TrialLog, TextsAreCutAndEscaped)
{
    EXPECT_EQ(Quoted(TEXT("a\n\x01"), 9), TEXT("\"a\\n\\u0001\""));
    EXPECT_EQ(Quoted(TEXT("abcdef"), 3), TEXT("\"abc...\""));
    EXPECT_EQ(Quoted(TEXT("ab\U0001F600c"), 3), TEXT("\"ab...\"")) << "no half character";
    EXPECT_EQ(Point(1, -2.456), TEXT("(1, -2.46)"));
    EXPECT_EQ(Point(0.5, -0.0), TEXT("(0.5, 0)"));
}

TEST(RecentFiles, NewestStandsFirstAndOnce)
{
    CRecentFiles files;
    for (int i = 0; i < 10; ++i)
        files.Add(Number(i));
    files.Add(TEXT("C:\\A.xml"));
    files.Add(TEXT("9"));
    files.Add(TEXT("c:\\a.XML"));
    ASSERT_EQ(files.GetPaths().size(), CRecentFiles::s_maximum);
    EXPECT_EQ(files.GetPaths()[0], TEXT("c:\\a.XML"));
    EXPECT_EQ(files.GetPaths()[1], TEXT("9"));
    EXPECT_EQ(files.GetPaths()[2], TEXT("8"));
}

// For each fault: whether the command starts, what is reported, and how many lines the drawing then has.
TEST(TrialFaults, EachShowsWhatAUserSees)
{
    const CSampleCopy sample;
    const struct
    {
        eFault fault;
        bool starts;
        size_t lines;
        const char* pReport; ///< part of the one report; null: there is none
        bool hasLoaded;
    } rows[] = {{eFault::None, true, 10, nullptr, true},
                {eFault::NoHandler, true, 10, nullptr, false},
                {eFault::HandlerRefuses, true, 10, nullptr, false},
                {eFault::HandlerThrows, false, 0, "RunCommand was left by an exception: the configuration", false},
                {eFault::SeventhLineRefused, true, 6, "the host refused", true},
                {eFault::ClosingThrows, true, 10, "the host refused", true},
                {eFault::None, true, 10, nullptr, true}}; // all is well again
    for (const auto& row : rows)
    {
        HostControl::Reset();
        CCallLog log;
        const CHostCallRecorder recorder(log);
        std::vector<WString> reports;
        const auto report = [&reports](const WString& text) { reports.push_back(text); };
        HostControl::SetInformationViewer([&](const CHostInformation& shown) { report(shown.text); });
        CTrialHost host(log, report);
        CTrialSession session(log, host, report);
        ASSERT_EQ(session.Open(sample.path), TEXT(""));
        session.SetFault(row.fault);
        const WCHAR* const pName = GetFaultChoices()[static_cast<size_t>(row.fault)].pName;
        EXPECT_EQ(session.Run(CTrialHost::s_pCommandId), row.starts) << Narrow(pName);
        EXPECT_EQ(HostControl::GetLines().size(), row.lines) << Narrow(pName);
        EXPECT_EQ(session.GetHandler()->HasLoaded(), row.hasLoaded) << Narrow(pName);
        ASSERT_EQ(reports.size(), row.pReport == nullptr ? 0u : 1u) << Narrow(pName);
        if (row.pReport != nullptr)
        {
            EXPECT_NE(Narrow(reports[0]).find(row.pReport), std::string::npos) << Narrow(reports[0]);
        }
        session.Complete();
        EXPECT_EQ(host.FindDialog(), nullptr) << Narrow(pName);
    }
    HostControl::SetInformationViewer({});
    HostControl::Reset();
}
