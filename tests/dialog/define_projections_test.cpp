#include "projection/DlgDefineProjections.h"

#include "platform/host/HostControl.h"
#include "projection/ProjectionRegistry.h"
#include "resources/resource.h"
#include "tests/support/RecordingHandler.h"
#include "tests/support/TestFiles.h"
#include "uistrings/UIStrings.h"

#include <boost/make_shared.hpp>

namespace
{
using Items = std::vector<std::pair<WString, LRESULT>>; // text and item data

class CTestedDialog : public CDlgDefineProjections
{
public:
    using CDlgDefineProjections::m_bActive;
    using CDlgDefineProjections::m_bShowInCS;
    using CDlgDefineProjections::m_bShowInEditor;
    using CDlgDefineProjections::m_bShowInLS;
    using CDlgDefineProjections::m_listDefinitions;
    using CDlgDefineProjections::m_strName;
    using CDlgDefineProjections::m_strPick;

    /// Opens the dialog as the command does. Showing is slow under Wine; tests that need no visible window only Create.
    void Open()
    {
        ASSERT_TRUE(Create(IDD_DEFINE_PROJECTIONS, nullptr));
        ShowWindow(SW_SHOW);
        ASSERT_TRUE(IsShown());
    }
    HWND Control(int id) const { return ::GetDlgItem(m_hWnd, id); }
    void Click(int id) const { ::SendMessageW(Control(id), BM_CLICK, 0, 0); }
    Items GetItems(int id) const
    {
        Items items(static_cast<size_t>(::SendMessageW(Control(id), CB_GETCOUNT, 0, 0)));
        for (size_t i = 0; i < items.size(); ++i)
        {
            WCHAR text[100] = {};
            ::SendMessageW(Control(id), CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text));
            items[i] = {text, ::SendMessageW(Control(id), CB_GETITEMDATA, i, 0)};
        }
        return items;
    }
    bool IsShown() const { return ::IsWindow(m_hWnd) && ::IsWindowVisible(m_hWnd); }
};

WString GetText(unsigned int number)
{
    const CString text = CUIStrings::Instance()->GetString(number);
    EXPECT_FALSE(text.IsEmpty());
    return text.GetString();
}

const WCHAR* const s_compactText =
    TEXT("<projectionRegistry><projectionDefinition name=\"UGlwZQ==\" showInLS=\"1\" showInCS=\"0\" ")
        TEXT("showInEditor=\"1\" layerName=\"TDE=\" entityId=\"RTc=\" isActive=\"1\" /></projectionRegistry>");
const WCHAR* const s_looseText =
    TEXT("<projectionRegistry>\n  <projectionDefinition isActive='1' name='UGlwZQ==' showInLS=\"01\"\n")
        TEXT("    showInEditor='1' entityId='RTc=' layerName='TDE=' more='x'/>\n</projectionRegistry>\n");

class DefineProjections : public testing::Test
{
protected:
    DefineProjections()
    {
        VLT::CConfigurationStorage::Instance()->RegisterHandler(m_pHandler);
        m_pHandler->m_text = s_looseText;
    }
    ~DefineProjections() override { VLT::CConfigurationStorage::Instance()->RegisterHandler({}); }

    boost::shared_ptr<CRecordingHandler> m_pHandler = boost::make_shared<CRecordingHandler>();
    CTestedDialog m_dialog;
};
} // namespace

// Only the first dialog of a process creates the string table, which sets the host's language. ctest runs this test in
// a process of its own.
TEST_F(DefineProjections, TheFirstDialogOverridesTheHostsLanguage)
{
    if (!CUIStrings::m_currentLanguage.empty())
        GTEST_SKIP() << "another test created the string table";
    HostControl::SetLanguage(TEXT("de"));
    ASSERT_TRUE(m_dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
    EXPECT_TRUE(CUIStrings::m_currentLanguage == TEXT("en"));
    HostControl::Reset();
}

// OK saves what could be read. The dialog is hidden only after the storage is closed.
TEST_F(DefineProjections, OnlyOkWithAStorageSaves)
{
    const Calls loaded{"open", "load"};
    const Calls saved{"open", "load", "save", "close"};
    const WCHAR* const empty = TEXT("<projectionRegistry></projectionRegistry>");
    const struct
    {
        int button;
        int opens; // what opening the storage returns
        const WCHAR* pBefore;
        Calls calls;
        const WCHAR* pAfter;
    } rows[] = {{IDOK, 1, s_looseText, saved, s_compactText},
                {IDCANCEL, 1, s_looseText, loaded, s_looseText},
                {IDOK, 0, s_looseText, {"open"}, s_looseText},
                {IDOK, 1, TEXT(""), saved, empty},
                {IDOK, 1, TEXT("no XML at all"), saved, empty},
                {IDOK, 1, TEXT("<projectionRegistry><projectionDefinition"), saved, empty}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(&row - rows);
        CTestedDialog dialog;
        Calls shown;
        m_pHandler->m_inside = [&](const std::string& call) { dialog.IsShown() ? shown.push_back(call) : void(); };
        m_pHandler->m_calls.clear();
        m_pHandler->m_opens = row.opens;
        m_pHandler->m_text = row.pBefore;
        dialog.Open();
        EXPECT_EQ(dialog.GetItems(IDC_COMBO_PICK).size(), 2u);
        dialog.Click(row.button);
        EXPECT_EQ(m_pHandler->m_calls, row.calls);
        EXPECT_EQ(shown, row.calls == saved ? Calls({"save", "close"}) : Calls());
        EXPECT_TRUE(m_pHandler->m_text == row.pAfter);
        EXPECT_TRUE(::IsWindow(dialog.m_hWnd) && !dialog.IsShown());
    }
}

TEST_F(DefineProjections, ComboBoxesShowTheEnglishTextsAtEveryOpening)
{
    CUIStrings::Instance(); // texts from a Plugins folder next to this program stay
    CUIStrings::LoadFile(TEXT("en"), CTestFile("2 A kind\n3 Zone\n4 Entity\n", TEXT("dialog_test.dat")).GetPath());
    for (int opening = 0; opening < 2; ++opening)
    {
        CUIStrings::m_currentLanguage = TEXT("de");
        CTestedDialog dialog;
        ASSERT_TRUE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
        EXPECT_TRUE(CUIStrings::m_currentLanguage == TEXT("en"));
        EXPECT_EQ(dialog.GetItems(IDC_COMBO_ADD_KIND), (Items{{GetText(2), 0}}));
        EXPECT_EQ(dialog.GetItems(IDC_COMBO_PICK), (Items{{GetText(3), 0}, {GetText(4), 1}}));
        for (const int id : {IDC_COMBO_ADD_KIND, IDC_COMBO_PICK})
            EXPECT_EQ(::SendMessageW(dialog.Control(id), CB_GETCURSEL, 0, 0), 0);
    }
}

TEST_F(DefineProjections, InputReachesTheMembersAndNotTheStoredText)
{
    ASSERT_TRUE(m_dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
    EXPECT_EQ(m_dialog.m_listDefinitions.m_hWnd, m_dialog.Control(IDC_LIST_DEFINITIONS));
    ::SetWindowTextW(m_dialog.Control(IDC_EDIT_NAME), TEXT("Pipe \x4E2D"));
    ::SetWindowTextW(m_dialog.Control(IDC_EDIT_PICK), TEXT("L2"));
    for (const int id : {IDC_SHOW_IN_LS, IDC_SHOW_IN_EDITOR, IDC_SHOW_IN_EDITOR, IDC_ACTIVE, IDC_SAVE, IDC_REMOVE,
                         IDC_ADD, IDC_PICK_ENTITY})
        m_dialog.Click(id);
    ::SendMessageW(m_dialog.Control(IDC_COMBO_PICK), CB_SETCURSEL, 1, 0);
    ::SendMessageW(m_dialog.m_hWnd, WM_COMMAND, MAKEWPARAM(IDC_COMBO_PICK, CBN_SELCHANGE), 0);
    EXPECT_TRUE(m_dialog.m_strName.IsEmpty());

    m_dialog.Click(IDOK);
    EXPECT_TRUE(m_dialog.m_strName == TEXT("Pipe \x4E2D"));
    EXPECT_TRUE(m_dialog.m_strPick == TEXT("L2"));
    EXPECT_TRUE(m_dialog.m_bShowInLS && m_dialog.m_bActive);
    EXPECT_FALSE(m_dialog.m_bShowInCS || m_dialog.m_bShowInEditor);
    EXPECT_TRUE(m_pHandler->m_text == s_compactText);
}
