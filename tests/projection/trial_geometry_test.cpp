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

    /// An empty drawing and an empty list.
    void StartAgain()
    {
        m_lines.clear();
        HostControl::Reset();
    }

    std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>> m_lines;
};

std::ptrdiff_t CountCalls(Call call)
{
    const auto& calls = HostControl::GetRecord().calls;
    return std::count(calls.begin(), calls.end(), call);
}

/// The calls after the last one of that kind.
std::vector<Call> CallsAfter(Call call)
{
    const auto& calls = HostControl::GetRecord().calls;
    return {std::find(calls.rbegin(), calls.rend(), call).base(), calls.end()};
}

/// The text of the only dialog that was shown, which is ASCII.
std::string Report()
{
    const auto& information = HostControl::GetRecord().information;
    if (information.size() != 1)
        return std::to_string(information.size()) + " dialogs";
    const auto& [first, second, text, library] = information[0];
    EXPECT_TRUE(first == TEXT("Error") && second == TEXT("test") && library == TEXT("NemAll_IFW_Controls"));
    return {text.begin(), text.end()};
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
    std::vector<Call> calls = callsOfALine;
    calls.insert(calls.end(), {Call::OpenActiveDatabase, Call::CloseDatabase});
    for (const Call call : calls)
        for (const auto& [failure, report] : failures)
        {
            SCOPED_TRACE(testing::Message() << report << " in call " << static_cast<int>(call));
            StartAgain();
            const bool isOnce = call == Call::OpenActiveDatabase || call == Call::CloseDatabase;
            isOnce ? HostControl::FailAt(call, failure) : FailInTheSeventhLine(call, failure);
            MakeTrialLines(m_lines);
            EXPECT_EQ(Report(), report);
            const size_t lines = call == Call::OpenActiveDatabase ? 0 : call == Call::CloseDatabase ? 10 : SeventhLine;
            EXPECT_EQ(m_lines.size(), lines);
            EXPECT_EQ(HostControl::GetLines().size(), lines);
            EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
            EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
        }
}

TEST_F(TrialGeometry, ReportsTheClassOfAnEmptyPointer)
{
    const std::pair<Call, std::string> rows[] = {
        {Call::CreateLine, "CNOI_BasisLine2D"},      {Call::CreateGeoLine, "CNOI_GeoLine2D"},
        {Call::GetStartPoint, "CNOI_GeoPoint2D"},    {Call::GetEndPoint, "CNOI_GeoPoint2D"},
        {Call::GetCommonStyle, "CNOI_CommonStyle"},  {Call::GetColor, "CNOI_ColorARGB"},
        {Call::OpenActiveDatabase, "CNOI_IDatabase"}};
    for (const auto& [call, className] : rows)
    {
        SCOPED_TRACE(className);
        StartAgain();
        call == Call::OpenActiveDatabase ? HostControl::FailAt(call, Failure::EmptyResult)
                                         : FailInTheSeventhLine(call, Failure::EmptyResult);
        MakeTrialLines(m_lines);
        EXPECT_TRUE(Report().starts_with("Null reference: " + className + "\nSource: NOI_SmartPtr.h("));
        EXPECT_EQ(m_lines.size(), call == Call::OpenActiveDatabase ? 0u : 6u);
        EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
    }
}

// A failure of closing replaces the failure before it, which must be deleted.
TEST_F(TrialGeometry, ReportsAFailureOfClosingInsteadOfTheFirst)
{
    for (const auto& [failure, report] : failures)
        for (const auto first : {Failure::AppException, Failure::MfcException, Failure::StdException})
        {
            SCOPED_TRACE(testing::Message() << report << " after failure " << static_cast<int>(first));
            StartAgain();
            FailInTheSeventhLine(Call::AddObject, first);
            HostControl::FailAt(Call::CloseDatabase, failure);
            MakeTrialLines(m_lines);
            EXPECT_EQ(Report(), report);
            EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
            EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
        }
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
