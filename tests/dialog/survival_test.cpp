// Whatever happens to the dialog, from whichever side: nothing breaks, nothing is left, and the command runs again.
#include "platform/host/HostControl.h"
#include "projection/Cmd_DefineProjectionEntities.h"
#include "projection/DlgDefineProjections.h"
#include "tests/dialog/RecordingHandler.h"

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
protected:
    Survival() { StartAgain(); }
    ~Survival() override
    {
        VLT::CConfigurationStorage::Instance()->RegisterHandler({});
        HostControl::Reset();
    }

    void StartAgain()
    {
        HostControl::Reset();
        m_pHandler = boost::make_shared<CRecordingHandler>();
        VLT::CConfigurationStorage::Instance()->RegisterHandler(m_pHandler);
    }
    static HWND Window() { return s_pDlgDefineProjections == nullptr ? nullptr : s_pDlgDefineProjections->m_hWnd; }
    static void Press(int id) { ::SendMessageW(::GetDlgItem(Window(), id), BM_CLICK, 0, 0); }
    static void DeliverWaitingMessages()
    {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessageW(&message);
    }
    void Run() { m_command.Run(nullptr); }
    void Complete() { m_command.Complete(nullptr); }

    /// The command ends, its dialog is gone, and another run saves.
    void ExpectSound()
    {
        Complete();
        EXPECT_EQ(s_pDlgDefineProjections, nullptr);
        EXPECT_EQ(::FindWindowW(nullptr, TEXT("Define projection/intersection")), nullptr);
        EXPECT_EQ(AfxGetModuleState(), AfxGetStaticModuleState());
        StartAgain();
        Run();
        EXPECT_TRUE(::IsWindowVisible(Window()));
        Press(IDOK);
        EXPECT_FALSE(::IsWindowVisible(Window()));
        EXPECT_EQ(m_pHandler->m_calls, s_saved);
        Complete();
    }

    VLT::CCommand_DefineProjectionEntities m_command;
    boost::shared_ptr<CRecordingHandler> m_pHandler;
};
} // namespace

TEST_F(Survival, OfWhatHappensToAnOpenDialog)
{
    const struct
    {
        const char* pName;
        std::function<void()> happens;
        Calls calls;
    } rows[] = {
        {"the host destroys the window", [] { ::DestroyWindow(Window()); }, s_opened},
        {"the window is destroyed from both sides",
         []
         {
             ::DestroyWindow(Window());
             s_pDlgDefineProjections->DestroyWindow();
         },
         s_opened},
        {"the host closes the window, and later destroys it",
         []
         {
             ::SendMessageW(Window(), WM_CLOSE, 0, 0);
             DeliverWaitingMessages();
             EXPECT_FALSE(::IsWindowVisible(Window()));
             ::DestroyWindow(Window());
         },
         s_opened},
        {"a message waits when the command ends",
         [this]
         {
             ::PostMessageW(Window(), WM_COMMAND, IDOK, 0);
             Complete();
             DeliverWaitingMessages();
         },
         s_opened},
        {"completed twice, messages between",
         [this]
         {
             Complete();
             DeliverWaitingMessages();
             Complete();
         },
         s_opened},
        {"OK, then Cancel, then completed",
         []
         {
             Press(IDOK);
             Press(IDCANCEL);
         },
         s_saved},
        {"run again while open",
         [this]
         {
             const std::unique_ptr<CDlgDefineProjections> pFirst(s_pDlgDefineProjections); // nobody's now
             Run();
             ::SendMessageW(pFirst->m_hWnd, WM_COMMAND, IDOK, 0);
             Press(IDCANCEL);
         },
         {"open", "load", "open", "load", "save", "close"}},
        {"the handler has gone before OK",
         [this]
         {
             VLT::CConfigurationStorage::Instance()->RegisterHandler({});
             EXPECT_EQ(m_pHandler.use_count(), 1);
             Press(IDOK);
             EXPECT_FALSE(::IsWindowVisible(Window()));
         },
         s_opened},
        {"another handler before OK",
         [this]
         {
             VLT::CConfigurationStorage::Instance()->RegisterHandler(m_pHandler =
                                                                         boost::make_shared<CRecordingHandler>());
             Press(IDOK);
         },
         {"save", "close"}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.pName);
        StartAgain();
        Run();
        row.happens();
        EXPECT_EQ(m_pHandler->m_calls, row.calls);
        ExpectSound();
    }
}

// The handler is the plug-in's: it may do anything to the dialog that waits for its answer. So may the host's report.
TEST_F(Survival, OfWhatHappensInsideACall)
{
    const struct
    {
        const char* pName;
        std::function<void()> happens;
        bool throws;
    } rows[] = {
        {"throws", [] { throw std::runtime_error("no storage"); }, true},
        {"throws an MFC exception", [] { throw new CException; }, true},
        {"completes the command", [this] { Complete(); }, false},
        {"destroys the window", [] { ::DestroyWindow(Window()); }, false},
        {"takes the handler away", [] { VLT::CConfigurationStorage::Instance()->RegisterHandler({}); }, false},
        {"presses Cancel", [] { Press(IDCANCEL); }, false},
    };
    for (const std::string call : {"open", "load", "save", "close", "report"})
        for (const auto& row : rows)
        {
            SCOPED_TRACE(call + " " + row.pName);
            StartAgain();
            m_pHandler->m_inside = [&](const std::string& inside) { return inside == call ? row.happens() : void(); };
            HostControl::FailAt(eHostCall::AddObject, eHostFailure::StdException);
            HostControl::SetCallObserver(
                [&](eHostCall inside)
                { return call == "report" && inside == eHostCall::ShowInformation ? row.happens() : void(); });
            std::string thrown;
            try
            {
                Run();
            }
            catch (CException* pException)
            {
                pException->Delete();
                thrown = "thrown";
            }
            catch (const std::runtime_error&)
            {
                thrown = "thrown";
            }
            EXPECT_EQ(thrown, row.throws && call != "save" && call != "close" ? "thrown" : "");
            Press(IDOK);
            ExpectSound();
        }
}
