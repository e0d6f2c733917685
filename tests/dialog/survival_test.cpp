// The host, the plug-in and the user end the dialog in every way. Nothing crashes, no window is left, and the command
// runs again.
#include "platform/host/HostControl.h"
#include "projection/Cmd_DefineProjectionEntities.h"
#include "projection/DlgDefineProjections.h"
#include "tests/support/RecordingHandler.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <memory>
#include <stdexcept>

namespace
{
const Calls s_opened{"open", "load"};
const Calls s_saved{"open", "load", "save", "close"};

class Survival : public testing::Test
{
public:
    Survival() { StartAgain(); }
    ~Survival() override
    {
        TakeHandlerAway();
        HostControl::Reset();
    }

    void StartAgain()
    {
        HostControl::Reset();
        ReplaceHandler();
    }
    void Run() { m_command.Run(nullptr); }
    void RunAgain()
    {
        const std::unique_ptr<CDlgDefineProjections> pFirst(s_pDlgDefineProjections); // the command forgets it
        Run();
        ::SendMessageW(pFirst->m_hWnd, WM_COMMAND, IDOK, 0);
    }
    void PressOk() { ::SendDlgItemMessageW(Window(), IDOK, BM_CLICK, 0, 0); }
    void PressCancel() { ::SendDlgItemMessageW(Window(), IDCANCEL, BM_CLICK, 0, 0); }
    void PostOk() { ::PostMessageW(Window(), WM_COMMAND, IDOK, 0); }
    void CloseWindow() { ::SendMessageW(Window(), WM_CLOSE, 0, 0); }
    void DestroyWindow() { ::DestroyWindow(Window()); }
    void DestroyByObject() { EXPECT_FALSE(s_pDlgDefineProjections->DestroyWindow()); }
    void DeliverMessages()
    {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessageW(&message);
    }
    void ExpectHidden() { EXPECT_TRUE(::IsWindow(Window()) && !::IsWindowVisible(Window())); }
    void Complete() { m_command.Complete(nullptr); }
    void TakeHandlerAway() { VLT::CConfigurationStorage::Instance()->RegisterHandler({}); }
    void ReplaceHandler()
    {
        m_pHandler = boost::make_shared<CRecordingHandler>();
        VLT::CConfigurationStorage::Instance()->RegisterHandler(m_pHandler);
    }
    void Throw() { throw std::runtime_error("no storage"); }
    void ThrowMfcException() { throw new CException; }

    /// Completes the command, expects that its dialog is gone, and that another run saves.
    void ExpectSound()
    {
        Complete();
        EXPECT_EQ(s_pDlgDefineProjections, nullptr);
        EXPECT_EQ(::FindWindowW(nullptr, TEXT("Define projection/intersection")), nullptr);
        EXPECT_EQ(AfxGetModuleState(), AfxGetStaticModuleState());
        StartAgain();
        Run();
        EXPECT_TRUE(::IsWindowVisible(Window()));
        PressOk();
        ExpectHidden();
        EXPECT_EQ(m_pHandler->m_calls, s_saved);
        Complete();
    }
    static HWND Window() { return s_pDlgDefineProjections == nullptr ? nullptr : s_pDlgDefineProjections->m_hWnd; }

    VLT::CCommand_DefineProjectionEntities m_command;
    boost::shared_ptr<CRecordingHandler> m_pHandler;
};

using S = Survival;
using Step = void (Survival::*)();
} // namespace

TEST_F(Survival, OfWhatHappensToAnOpenDialog)
{
    const struct
    {
        const char* pName;
        std::vector<Step> steps; // after Run
        Calls calls;             // of the handler
    } rows[] = {
        {"the host destroys the window", {&S::DestroyWindow}, s_opened},
        {"destroyed from both sides", {&S::DestroyWindow, &S::DestroyByObject}, s_opened},
        {"the host closes it, and later destroys it",
         {&S::CloseWindow, &S::DeliverMessages, &S::ExpectHidden, &S::DestroyWindow},
         s_opened},
        {"a message waits when the command ends", {&S::PostOk, &S::Complete, &S::DeliverMessages}, s_opened},
        {"completed twice", {&S::Complete, &S::DeliverMessages, &S::Complete}, s_opened},
        {"OK, then Cancel", {&S::PressOk, &S::PressCancel, &S::ExpectHidden}, s_saved},
        {"run again while open", {&S::RunAgain, &S::PressCancel}, {"open", "load", "open", "load", "save", "close"}},
        {"the handler has gone before OK", {&S::TakeHandlerAway, &S::PressOk, &S::ExpectHidden}, s_opened},
        {"another handler before OK", {&S::ReplaceHandler, &S::PressOk, &S::ExpectHidden}, {"save", "close"}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.pName);
        StartAgain();
        Run();
        for (const Step step : row.steps)
            (this->*step)();
        EXPECT_EQ(m_pHandler->m_calls, row.calls);
        ExpectSound();
    }
}

// The plug-in's handler may do anything during a call of the dialog; so may the host while it shows the report.
TEST_F(Survival, OfWhatHappensInsideACall)
{
    const std::pair<const char*, Step> rows[] = {
        {"throws", &S::Throw},
        {"throws an MFC exception", &S::ThrowMfcException},
        {"completes the command", &S::Complete},
        {"destroys the window", &S::DestroyWindow},
        {"takes the handler away", &S::TakeHandlerAway},
        {"presses Cancel", &S::PressCancel},
    };
    for (const std::string call : {"open", "load", "save", "close", "report"})
        for (const auto& [pName, step] : rows)
        {
            SCOPED_TRACE(call + " " + pName);
            StartAgain();
            m_pHandler->m_inside = [&, step = step](const std::string& inside)
            { return inside == call ? (this->*step)() : void(); };
            HostControl::FailAt(eHostCall::AddObject, eHostFailure::StdException);
            HostControl::SetCallObserver(
                [&, step = step](eHostCall inside)
                { return call == "report" && inside == eHostCall::ShowInformation ? (this->*step)() : void(); });
            bool hasThrown = true;
            try
            {
                Run();
                hasThrown = false;
            }
            catch (CException* pException)
            {
                pException->Delete();
            }
            catch (const std::runtime_error&)
            {
            }
            // An exception inside a window message does not reach the sender.
            const bool throws = step == &S::Throw || step == &S::ThrowMfcException;
            EXPECT_EQ(hasThrown, throws && call != "save" && call != "close");
            PressOk();
            ExpectSound();
        }
}
