// Posts keys to the dialog and dispatches them as a host's message loop does, with IsDialogMessageW.
#include "platform/host/HostControl.h"
#include "projection/Cmd_DefineProjectionEntities.h"
#include "projection/DlgDefineProjections.h"
#include "resources/resource.h"
#include "tests/support/RecordingHandler.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

namespace
{
class Keyboard : public testing::Test
{
protected:
    Keyboard()
    {
        VLT::CConfigurationStorage::Instance()->RegisterHandler(m_pHandler);
        m_command.Run(nullptr);
        m_window = s_pDlgDefineProjections->m_hWnd;
    }
    ~Keyboard() override
    {
        m_command.Complete(nullptr);
        EXPECT_FALSE(::IsWindow(m_window));
        VLT::CConfigurationStorage::Instance()->RegisterHandler({});
        HostControl::Reset();
    }

    void Press(WPARAM key) const
    {
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
        ::PostMessageW(::GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            if (!::IsDialogMessageW(m_window, &message))
            {
                ::TranslateMessage(&message);
                ::DispatchMessageW(&message);
            }
    }
    /// The control with the focus; in a combo box its edit field has it.
    int Focus() const
    {
        HWND control = ::GetFocus();
        while (control != nullptr && ::GetParent(control) != m_window)
            control = ::GetParent(control);
        return ::GetDlgCtrlID(control);
    }

    boost::shared_ptr<CRecordingHandler> m_pHandler = boost::make_shared<CRecordingHandler>();
    VLT::CCommand_DefineProjectionEntities m_command;
    HWND m_window = nullptr;
};
} // namespace

TEST_F(Keyboard, TabGoesAroundInTheOrderOfTheTemplate)
{
    const int order[] = {IDOK,
                         IDCANCEL,
                         IDC_LIST_DEFINITIONS,
                         IDC_COMBO_ADD_KIND,
                         IDC_ADD,
                         IDC_REMOVE,
                         IDC_SHOW_IN_LS,
                         IDC_SHOW_IN_CS,
                         IDC_SHOW_IN_EDITOR,
                         IDC_PICK_ENTITY,
                         IDC_COMBO_PICK,
                         IDC_EDIT_PICK,
                         IDC_SAVE,
                         IDC_EDIT_NAME,
                         IDC_ACTIVE};
    for (int round = 0; round < 2; ++round)
        for (const int id : order)
        {
            EXPECT_EQ(Focus(), id);
            Press(VK_TAB);
        }
    BYTE keys[256] = {};
    keys[VK_SHIFT] = 0x80;
    ::SetKeyboardState(keys);
    Press(VK_TAB);
    EXPECT_EQ(Focus(), IDC_ACTIVE);
    keys[VK_SHIFT] = 0;
    ::SetKeyboardState(keys);
    Press(VK_SPACE);
    EXPECT_EQ(::SendDlgItemMessageW(m_window, IDC_ACTIVE, BM_GETCHECK, 0, 0), BST_CHECKED);

    m_command.Complete(nullptr);
    m_pHandler->m_opens = 0;
    m_command.Run(nullptr);
    m_window = s_pDlgDefineProjections->m_hWnd;
    EXPECT_EQ(Focus(), IDOK) << "without a storage";
}

TEST_F(Keyboard, EnterAndEscapeEndTheDialogAtEachControl)
{
    const Calls opened{"open", "load"};
    const Calls saved{"save", "close"};
    const struct
    {
        WPARAM key;
        int focus;
        Calls calls; // of the handler
        bool ends;
    } rows[] = {
        {VK_RETURN, IDOK, saved, true},           {VK_RETURN, IDC_EDIT_NAME, saved, true},
        {VK_RETURN, IDC_SHOW_IN_LS, saved, true}, {VK_RETURN, IDCANCEL, {}, true},
        {VK_RETURN, IDC_SAVE, {}, false},         {VK_ESCAPE, IDOK, {}, true},
        {VK_ESCAPE, IDC_EDIT_PICK, {}, true},     {VK_ESCAPE, IDC_LIST_DEFINITIONS, {}, true},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(testing::Message() << "key " << row.key << " at " << row.focus);
        ::ShowWindow(m_window, SW_SHOW);
        ::SendMessageW(m_window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(m_window, row.focus)), TRUE);
        ASSERT_EQ(Focus(), row.focus);
        m_pHandler->m_calls.clear();
        Press(row.key);
        EXPECT_EQ(m_pHandler->m_calls, row.calls);
        EXPECT_EQ(::IsWindowVisible(m_window), !row.ends);
        if (row.ends)
            Press(row.key); // once more, after the dialog has ended
        EXPECT_TRUE(::IsWindow(m_window));
    }
}

// A hook of the host ends the command while its window is being destroyed.
TEST_F(Keyboard, SurvivesCompleteWhileItsWindowIsDestroyed)
{
    static VLT::CCommand_DefineProjectionEntities* s_pCommand;
    s_pCommand = &m_command;
    const HHOOK hook = ::SetWindowsHookExW(
        WH_CBT,
        [](int code, WPARAM, LPARAM) -> LRESULT
        {
            if (code == HCBT_DESTROYWND)
                s_pCommand->Complete(nullptr);
            return 0;
        },
        nullptr, ::GetCurrentThreadId());
    m_command.Complete(nullptr);
    ::UnhookWindowsHookEx(hook);
    EXPECT_FALSE(::IsWindow(m_window));
}
