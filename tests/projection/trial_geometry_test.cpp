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

    /// Back to an empty drawing and an empty list, for the next row of a table.
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

/// The calls behind the last one of that kind.
std::vector<Call> CallsAfter(Call call)
{
    const auto& calls = HostControl::GetRecord().calls;
    return {std::find(calls.rbegin(), calls.rend(), call).base(), calls.end()};
}

/// The text of the one dialog that was shown. It is ASCII here; narrow, a difference can be read.
std::string Report()
{
    const auto& information = HostControl::GetRecord().information;
    if (information.size() != 1)
        return std::to_string(information.size()) + " dialogs";
    const auto& [first, second, text, library] = information[0];
    EXPECT_TRUE(first == TEXT("Error") && second == TEXT("test") && library == TEXT("NemAll_IFW_Controls"));
    return {text.begin(), text.end()};
}

const struct
{
    Failure failure;
    const char* pReport;
} failures[] = {{Failure::AppException, "the host refused"},
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

/// Makes the call at that place of callsOfALine fail in the seventh line.
void FailInTheSeventhLine(size_t place, Failure failure)
{
    const auto first = callsOfALine.begin();
    const Call call = callsOfALine[place];
    const auto inALine = std::count(first, callsOfALine.end(), call);
    const auto before = std::count(first, first + static_cast<std::ptrdiff_t>(place), call);
    HostControl::FailAt(call, failure, static_cast<int>(6 * inALine + before + 1));
}
} // namespace

TEST_F(TrialGeometry, DrawsTenBlueLinesInARow)
{
    MakeTrialLines(m_lines);
    ASSERT_EQ(m_lines.size(), 10u);
    m_lines.clear(); // the drawing has references of its own
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
    EXPECT_FALSE(HostControl::IsDatabaseOpen());
    EXPECT_EQ(Report(), "0 dialogs");
}

TEST_F(TrialGeometry, CallsTheHostInItsOrder)
{
    MakeTrialLines(m_lines);
    std::vector<Call> expected{Call::OpenActiveDatabase};
    for (int i = 0; i < 10; ++i)
        expected.insert(expected.end(), callsOfALine.begin(), callsOfALine.end());
    expected.push_back(Call::CloseDatabase);
    EXPECT_EQ(HostControl::GetRecord().calls, expected);
}

// Every call of the seventh line, with every kind of exception: a handler that is missing or comes too late, an
// exception that nobody deletes, a line that is half in the list each break some rows.
TEST_F(TrialGeometry, ReportsAFailureInTheSeventhLineOnce)
{
    for (const auto& [failure, pReport] : failures)
        for (size_t place = 0; place < callsOfALine.size(); ++place)
        {
            SCOPED_TRACE(testing::Message() << pReport << ", call " << place << " of a line");
            StartAgain();
            FailInTheSeventhLine(place, failure);
            MakeTrialLines(m_lines);
            EXPECT_EQ(Report(), pReport);
            EXPECT_EQ(m_lines.size(), 6u);
            EXPECT_EQ(HostControl::GetLines().size(), 6u);
            EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
            EXPECT_FALSE(HostControl::IsDatabaseOpen());
            EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
        }
}

TEST_F(TrialGeometry, DeletesTheHostsExceptionBeforeTheDialogAndAForeignOneBehindIt)
{
    HostControl::FailAt(Call::AddObject, Failure::AppException, 7);
    MakeTrialLines(m_lines);
    EXPECT_EQ(CallsAfter(Call::CloseDatabase),
              (std::vector{Call::PrintReport, Call::DestroyException, Call::UseResources, Call::CreateInformation,
                           Call::ShowInformation, Call::DestroyInformation, Call::RestoreResources}));
    StartAgain();
    HostControl::FailAt(Call::AddObject, Failure::Unknown, 7);
    MakeTrialLines(m_lines);
    EXPECT_EQ(
        CallsAfter(Call::CloseDatabase),
        (std::vector{Call::SetSource, Call::PrintReport, Call::UseResources, Call::CreateInformation,
                     Call::ShowInformation, Call::DestroyInformation, Call::RestoreResources, Call::DestroyException}));
}

TEST_F(TrialGeometry, ReportsTheClassOfAnEmptyPointer)
{
    const struct
    {
        size_t place;
        const char* pClass;
    } rows[] = {{0, "CNOI_BasisLine2D"},  {1, "CNOI_GeoLine2D"},   {2, "CNOI_GeoPoint2D"}, {4, "CNOI_GeoPoint2D"},
                {7, "CNOI_CommonStyle"},  {9, "CNOI_CommonStyle"}, {10, "CNOI_ColorARGB"}, {12, "CNOI_CommonStyle"},
                {14, "CNOI_CommonStyle"}, {16, "CNOI_CommonStyle"}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.place);
        StartAgain();
        FailInTheSeventhLine(row.place, Failure::EmptyResult);
        MakeTrialLines(m_lines);
        EXPECT_EQ(Report().rfind(std::string("Null reference: ") + row.pClass + "\nSource: NOI_SmartPtr.h(", 0), 0u);
        EXPECT_EQ(m_lines.size(), 6u);
        EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
    }
}

TEST_F(TrialGeometry, ClosesWhatDidNotOpen)
{
    HostControl::FailAt(Call::OpenActiveDatabase, Failure::ComError);
    MakeTrialLines(m_lines);
    EXPECT_EQ(Report(), failures[2].pReport);
    EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
    StartAgain();
    HostControl::FailAt(Call::OpenActiveDatabase, Failure::EmptyResult);
    MakeTrialLines(m_lines);
    EXPECT_EQ(Report().rfind("Null reference: CNOI_IDatabase\n", 0), 0u);
    EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
    EXPECT_TRUE(m_lines.empty());
}

// Closing is tried once, on either path; on the failure path its exception takes the place of the first.
TEST_F(TrialGeometry, ReportsAFailureOfClosing)
{
    for (const auto& [failure, pReport] : failures)
        for (const auto first :
             {Failure::EmptyResult, Failure::AppException, Failure::MfcException, Failure::StdException})
        {
            SCOPED_TRACE(testing::Message() << pReport << " behind failure " << static_cast<int>(first));
            StartAgain();
            HostControl::FailAt(Call::AddObject, first, 7); // EmptyResult: no failure at this call
            HostControl::FailAt(Call::CloseDatabase, failure);
            MakeTrialLines(m_lines);
            EXPECT_EQ(Report(), pReport);
            EXPECT_EQ(m_lines.size(), first == Failure::EmptyResult ? 10u : 6u);
            EXPECT_EQ(CountCalls(Call::CloseDatabase), 1);
            EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
        }
}

TEST_F(TrialGeometry, LetsOutOnlyAFailureOfTheReport)
{
    for (const auto call : {Call::PrintReport, Call::UseResources, Call::CreateInformation, Call::ShowInformation})
        for (const auto& [failure, pReport] : failures)
        {
            StartAgain();
            HostControl::FailAt(Call::AddObject, failure);
            HostControl::FailAt(call, Failure::StdException);
            EXPECT_THROW(MakeTrialLines(m_lines), std::runtime_error) << pReport;
        }
}
