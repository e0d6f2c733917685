#include "projection/Cmd_DefineProjectionEntities.h"

#include "platform/host/HostControl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace
{
using Call = eHostCall;
using Failure = eHostFailure;

constexpr int ObjectsOfAnEmptyDrawing = 1; // the database
constexpr int SeventhLine = 6;

class TrialGeometry : public testing::Test
{
protected:
    TrialGeometry() { HostControl::Reset(); }
    ~TrialGeometry() override
    {
        StartAgain();
        EXPECT_EQ(HostControl::CountLiveObjects(), ObjectsOfAnEmptyDrawing);
        EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
    }

    /// Empties the drawing and the list.
    void StartAgain()
    {
        m_lines.clear();
        HostControl::Reset();
    }

    void ExpectOneReport(const std::string& report, size_t lines);

    std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>> m_lines;
};

/// The calls after the last one of that kind.
std::vector<Call> CallsAfter(Call call)
{
    const auto& calls = HostControl::GetRecord().calls;
    return {std::find(calls.rbegin(), calls.rend(), call).base(), calls.end()};
}

/// The text of the one dialog that was shown, which is ASCII, up to the line number in the host's own source.
std::string Report()
{
    const auto& information = HostControl::GetRecord().information;
    if (information.size() != 1)
        return std::to_string(information.size()) + " dialogs";
    const auto& [first, second, text, library] = information[0];
    EXPECT_TRUE(first == TEXT("Error") && second == TEXT("test") && library == TEXT("NemAll_IFW_Controls"));
    const std::string report(text.begin(), text.end());
    return report.substr(0, report.find("NOI_SmartPtr.h("));
}

/// Draws while the host fails. Expects one report, and the lines before the failure in the list and in the drawing.
void TrialGeometry::ExpectOneReport(const std::string& report, size_t lines)
{
    MakeTrialLines(m_lines);
    EXPECT_EQ(Report(), report);
    EXPECT_EQ(m_lines.size(), lines);
    EXPECT_EQ(HostControl::GetLines().size(), lines);
    const auto& calls = HostControl::GetRecord().calls;
    EXPECT_EQ(std::count(calls.begin(), calls.end(), Call::CloseDatabase), 1);
    EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
    StartAgain();
}

const std::pair<Failure, std::string> failures[] = {
    {Failure::AppException, "the host refused"},
    {Failure::MfcException, "CException\nSource: Cmd_DefineProjectionEntities(89)"},
    {Failure::ComError, "_com_error 0x80004005\nSource: Cmd_DefineProjectionEntities(89)"},
    {Failure::BoostException, "boost::exception\nSource: Cmd_DefineProjectionEntities(89)"},
    {Failure::StdException, "std::exception: the host refused\nSource: Cmd_DefineProjectionEntities(89)"},
    {Failure::Unknown, "Unknown exception\nSource: Cmd_DefineProjectionEntities(89)"}};

const std::vector<Call> callsOfALine{
    Call::CreateLine, Call::CreateGeoLine,  Call::GetStartPoint,  Call::SetPoint,  Call::GetEndPoint,
    Call::SetPoint,   Call::SetGeometry,    Call::GetCommonStyle, Call::InitStyle, Call::GetCommonStyle,
    Call::GetColor,   Call::SetARGB,        Call::GetCommonStyle, Call::SetStroke, Call::GetCommonStyle,
    Call::SetPen,     Call::GetCommonStyle, Call::SetLayer,       Call::AddObject};

void FailInTheSeventhLine(Call call, Failure failure)
{
    const auto inALine = static_cast<int>(std::count(callsOfALine.begin(), callsOfALine.end(), call));
    HostControl::FailAt(call, failure, SeventhLine * inALine + 1);
}
} // namespace

TEST_F(TrialGeometry, DrawsTenBlueLinesInARow)
{
    MakeTrialLines(m_lines);
    ASSERT_EQ(m_lines.size(), 10u);
    m_lines.clear(); // the drawing has its own references
    const auto lines = HostControl::GetLines();
    ASSERT_EQ(lines.size(), 10u);
    for (size_t i = 0; i < lines.size(); ++i)
    {
        const CHostLine& line = lines[i];
        const double x = 100.0 + 10.0 * static_cast<double>(i);
        EXPECT_TRUE(line.startX == x && line.endX == x && line.startY == 100.0 && line.endY == 120.0) << i;
        EXPECT_TRUE(line.alpha == 0 && line.red == 0 && line.green == 128 && line.blue == 255) << i;
        EXPECT_TRUE(line.stroke == 1 && line.pen == 1 && line.layer == 0) << i;
    }
    EXPECT_EQ(Report(), "0 dialogs");
    std::vector<Call> expected{Call::OpenActiveDatabase};
    for (int i = 0; i < 10; ++i)
        expected.insert(expected.end(), callsOfALine.begin(), callsOfALine.end());
    expected.push_back(Call::CloseDatabase);
    EXPECT_EQ(HostControl::GetRecord().calls, expected);
}

// Catches a missing handler, a handler that comes too late, an exception that nobody deletes, a half-added line.
TEST_F(TrialGeometry, ReportsEachFailureOnceAndKeepsTheLinesBeforeIt)
{
    for (const auto& [failure, report] : failures)
    {
        SCOPED_TRACE(report);
        for (const Call call : callsOfALine)
        {
            SCOPED_TRACE(static_cast<int>(call));
            FailInTheSeventhLine(call, failure);
            ExpectOneReport(report, SeventhLine);
        }
        HostControl::FailAt(Call::OpenActiveDatabase, failure);
        ExpectOneReport(report, 0);
        HostControl::FailAt(Call::CloseDatabase, failure);
        ExpectOneReport(report, 10);
        // A failure of closing replaces the failure before it.
        for (const auto first : {Failure::AppException, Failure::MfcException, Failure::StdException})
        {
            FailInTheSeventhLine(Call::AddObject, first);
            HostControl::FailAt(Call::CloseDatabase, failure);
            ExpectOneReport(report, SeventhLine);
        }
    }
    const std::pair<Call, std::string> classes[] = {
        {Call::CreateLine, "CNOI_BasisLine2D"},     {Call::CreateGeoLine, "CNOI_GeoLine2D"},
        {Call::GetStartPoint, "CNOI_GeoPoint2D"},   {Call::GetEndPoint, "CNOI_GeoPoint2D"},
        {Call::GetCommonStyle, "CNOI_CommonStyle"}, {Call::GetColor, "CNOI_ColorARGB"}};
    for (const auto& [call, className] : classes) // the pointer that the call returns is empty
    {
        FailInTheSeventhLine(call, Failure::EmptyResult);
        ExpectOneReport("Null reference: " + className + "\nSource: ", SeventhLine);
    }
    HostControl::FailAt(Call::OpenActiveDatabase, Failure::EmptyResult);
    ExpectOneReport("Null reference: CNOI_IDatabase\nSource: ", 0);
}

TEST_F(TrialGeometry, DeletesTheHostsExceptionBeforeTheDialogAndAForeignOneAfterIt)
{
    HostControl::FailAt(Call::AddObject, Failure::AppException);
    MakeTrialLines(m_lines);
    EXPECT_EQ(CallsAfter(Call::CloseDatabase),
              (std::vector{Call::PrintReport, Call::DestroyException, Call::UseResources, Call::CreateInformation,
                           Call::ShowInformation, Call::DestroyInformation, Call::RestoreResources}));
    StartAgain();
    HostControl::FailAt(Call::AddObject, Failure::Unknown);
    MakeTrialLines(m_lines);
    EXPECT_EQ(
        CallsAfter(Call::CloseDatabase),
        (std::vector{Call::SetSource, Call::PrintReport, Call::UseResources, Call::CreateInformation,
                     Call::ShowInformation, Call::DestroyInformation, Call::RestoreResources, Call::DestroyException}));
}

TEST_F(TrialGeometry, ThrowsOnlyAFailureOfTheReport)
{
    for (const auto call : {Call::PrintReport, Call::UseResources, Call::CreateInformation, Call::ShowInformation})
        for (const auto& [failure, report] : failures)
        {
            StartAgain();
            HostControl::FailAt(Call::AddObject, failure);
            HostControl::FailAt(call, Failure::StdException);
            EXPECT_THROW(MakeTrialLines(m_lines), std::runtime_error) << report;
        }
}
