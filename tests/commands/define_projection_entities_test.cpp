#include "projection/Cmd_DefineProjectionEntities.h"

#include "platform/host/HostControl.h"
#include "projection/DlgDefineProjections.h"
#include <CoordinateInput.h>
#include <ObjectSelectGeneral.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{
using Call = eHostCall;
using Failure = eHostFailure;

class DefineProjectionEntities : public testing::Test
{
protected:
    DefineProjectionEntities()
    {
        HostControl::Reset();
        m_command.GetId();
    }
    ~DefineProjectionEntities() override
    {
        m_command.Complete(nullptr);
        HostControl::Reset();
        EXPECT_EQ(HostControl::CountLiveObjects(), 1); // the empty drawing
        EXPECT_EQ(HostControl::CountLiveExceptions(), 0);
        EXPECT_EQ(HostControl::CountLiveInputFunctions(), 0);
    }

    void SendMouse(int message, CCoordinateInput& input) { m_command.ProcessMouseMsg(message, {}, nullptr, &input); }

    VLT::CCommand_DefineProjectionEntities m_command;
    CCoordinateInput m_input{eInputMode(7), eInputMode(8)};
};
} // namespace

TEST_F(DefineProjectionEntities, StartsTheSelectionWithTheFirstMessageOnly)
{
    CCoordinateInput other{eInputMode(9), eInputMode(10)};
    for (const int message : {512, 513, 0})
        SendMouse(message, message == 513 ? other : m_input);
    const CHostRecord& record = HostControl::GetRecord();
    EXPECT_EQ(record.calls, (std::vector{Call::SetInputMode, Call::CreateObjectSelect, Call::SendInteractorMessage,
                                         Call::SetInputMode, Call::SetInputMode}));
    ASSERT_EQ(record.inputModes.size(), 3u);
    EXPECT_TRUE(record.inputModes[0].pInput == &m_input && record.inputModes[0].mode == 7);
    EXPECT_TRUE(record.inputModes[1].pInput == &other && record.inputModes[1].mode == 10); // the message's own object
    EXPECT_TRUE(record.inputModes[2].pInput == &m_input && record.inputModes[2].mode == 8);
    ASSERT_EQ(record.selections.size(), 1u);
    const CHostSelection& selection = record.selections[0];
    EXPECT_TRUE(selection.prompt == TEXT("Select an entity"));
    EXPECT_TRUE(selection.type == 0 && selection.first && !selection.second);
    ASSERT_EQ(record.messages.size(), 1u);
    EXPECT_EQ(record.messages[0].message, 21);
    EXPECT_TRUE(HostControl::GetPrompt() == TEXT("Select an entity"));

    // Only GetId makes the next message a first one again; the host drops the earlier selection.
    EXPECT_TRUE(m_command.GetId() == TEXT("CMD_DEFINE_PROJ_ENTITIES"));
    SendMouse(512, m_input);
    EXPECT_EQ(record.selections.size(), 2u);
    EXPECT_EQ(HostControl::CountLiveInputFunctions(), 1);
}

TEST_F(DefineProjectionEntities, TreatsAMessageDuringTheStartAsAFirstOne)
{
    HostControl::SetCallObserver(
        [this](Call call)
        {
            if (call != Call::SendInteractorMessage)
                return;
            HostControl::SetCallObserver(nullptr);
            SendMouse(512, m_input);
        });
    SendMouse(512, m_input);
    EXPECT_EQ(HostControl::GetRecord().selections.size(), 2u);
    EXPECT_EQ(s_bFirstInputPending, 0);
}

TEST_F(DefineProjectionEntities, StillExpectsTheFirstMessageAfterAHostFailure)
{
    for (const auto call : {Call::SetInputMode, Call::CreateObjectSelect, Call::SendInteractorMessage})
    {
        HostControl::FailAt(call, Failure::StdException);
        EXPECT_THROW(SendMouse(512, m_input), std::runtime_error);
        EXPECT_EQ(s_bFirstInputPending, 1);
    }
    SendMouse(512, m_input);
    EXPECT_EQ(s_bFirstInputPending, 0);
    EXPECT_EQ(HostControl::CountLiveInputFunctions(), 1);
}

TEST_F(DefineProjectionEntities, ShowsTheDialogBeforeItDraws)
{
    bool wasShown = false;
    HostControl::SetCallObserver(
        [&](Call call)
        {
            if (call == Call::OpenActiveDatabase)
                wasShown = s_pDlgDefineProjections != nullptr && ::IsWindowVisible(s_pDlgDefineProjections->m_hWnd);
        });
    for (int run = 1; run <= 2; ++run)
    {
        wasShown = false;
        m_command.Run(nullptr);
        EXPECT_TRUE(wasShown);
        EXPECT_EQ(HostControl::GetLines().size(), 10u * static_cast<size_t>(run));
        EXPECT_EQ(s_bFirstInputPending, run == 1 ? 1 : 0); // neither Run nor Complete touches it
        SendMouse(512, m_input);
        const HWND hWnd = s_pDlgDefineProjections->m_hWnd;
        m_command.Complete(nullptr);
        EXPECT_FALSE(::IsWindow(hWnd));
        EXPECT_EQ(s_pDlgDefineProjections, nullptr);
    }
    EXPECT_EQ(HostControl::GetRecord().selections.size(), 1u);
}

// The report is modal inside Run. Whatever happens, the caller's module state is restored.
TEST_F(DefineProjectionEntities, KeepsTheModuleStateThroughTheReport)
{
    AFX_MODULE_STATE hostState;
    hostState.m_hCurrentResourceHandle = nullptr;
    const AFX_MAINTAIN_STATE2 hostCode(&hostState);
    HostControl::FailAt(Call::AddObject, Failure::AppException, 7);
    HostControl::SetCallObserver(
        [](Call call)
        {
            if (call != Call::ShowInformation)
                return;
            EXPECT_EQ(AfxGetModuleState(), AfxGetStaticModuleState());
            EXPECT_NE(AfxGetResourceHandle(), nullptr);
            EXPECT_NE(s_pDlgDefineProjections, nullptr);
        });
    m_command.Run(nullptr);
    EXPECT_EQ(HostControl::GetRecord().information.size(), 1u);
    EXPECT_EQ(AfxGetModuleState(), &hostState);
    m_command.Complete(nullptr);

    HostControl::FailAt(Call::AddObject, Failure::AppException);
    HostControl::FailAt(Call::ShowInformation, Failure::StdException);
    EXPECT_THROW(m_command.Run(nullptr), std::runtime_error);
    EXPECT_EQ(AfxGetModuleState(), &hostState);
    EXPECT_NE(s_pDlgDefineProjections, nullptr); // until Complete
}
