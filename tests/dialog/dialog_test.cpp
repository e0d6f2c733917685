#include "platform/mfc/afxcmn.h"
#include "platform/mfc/afxdd_.h"
#include "resources/resource.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace
{
/// Counts what reaches it; some controls of the module's template.
class CTestDialog : public CDialog
{
    DECLARE_DYNAMIC(CTestDialog)
public:
    void DoDataExchange(CDataExchange* pDX) override
    {
        DDX_Control(pDX, IDC_LIST_DEFINITIONS, m_list);
        DDX_Text(pDX, IDC_EDIT_NAME, m_name);
        DDX_Check(pDX, IDC_ACTIVE, m_active);
        if (m_bAskForMissing)
            DDX_Check(pDX, 999, m_active);
    }
    BOOL OnInitDialog() override
    {
        if (m_bThrow)
            throw std::runtime_error("no storage");
        m_bInitialised = CDialog::OnInitDialog();
        return TRUE;
    }
    void OnOK() override
    {
        ++m_oks;
        CDialog::OnOK();
    }
    void OnAdd()
    {
        ++m_adds;
        if (m_bThrow)
            throw std::runtime_error("no handler");
    }
    void OnListClick(NMHDR*, LRESULT* pResult) { *pResult = 7; }

    CListCtrl m_list;
    CString m_name = TEXT("Pipe");
    BOOL m_active = TRUE;
    BOOL m_bInitialised = FALSE;
    bool m_bAskForMissing = false;
    bool m_bThrow = false;
    int m_oks = 0;
    int m_adds = 0;

protected:
    DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNAMIC(CTestDialog, CDialog)

BEGIN_MESSAGE_MAP(CTestDialog, CDialog)
ON_BN_CLICKED(IDC_ADD, &CTestDialog::OnAdd)
ON_NOTIFY(NM_CLICK, IDC_LIST_DEFINITIONS, &CTestDialog::OnListClick)
END_MESSAGE_MAP()

HWND Control(const CWnd& dialog, int id)
{
    return ::GetDlgItem(dialog.m_hWnd, id);
}

void Click(const CWnd& dialog, int id)
{
    ::SendMessageW(Control(dialog, id), BM_CLICK, 0, 0);
}
} // namespace

TEST(Mfc, DialogLivesThroughAllOrdersOfDestruction)
{
    CTestDialog dialog;
    EXPECT_FALSE(dialog.ShowWindow(SW_SHOW));
    EXPECT_FALSE(dialog.DestroyWindow());
    EXPECT_FALSE(dialog.UpdateData(TRUE));
    dialog.EndDialog(IDOK);
    EXPECT_FALSE(dialog.Create(4711, nullptr)) << "no such template";

    for (int round = 0; round < 2; ++round) // one object can have one window after the other
    {
        ASSERT_TRUE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
        EXPECT_FALSE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr)) << "it has a window";
        EXPECT_EQ(dialog.m_list.m_hWnd, Control(dialog, IDC_LIST_DEFINITIONS));
        EXPECT_FALSE(dialog.ShowWindow(SW_SHOW)) << "it was hidden";
        EXPECT_TRUE(dialog.ShowWindow(SW_HIDE)) << "it was visible";
        ::DestroyWindow(dialog.m_hWnd); // as a host does that closes everything
        EXPECT_EQ(dialog.m_hWnd, nullptr);
        EXPECT_EQ(dialog.m_list.m_hWnd, nullptr);
        EXPECT_FALSE(dialog.DestroyWindow());
    }

    HWND hWnd = nullptr;
    {
        CTestDialog living;
        ASSERT_TRUE(living.Create(IDD_DEFINE_PROJECTIONS, nullptr));
        hWnd = living.m_hWnd;
    }
    EXPECT_FALSE(::IsWindow(hWnd));
}

TEST(Mfc, MessagesPassByAWindowWithoutObject)
{
    CTestDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
    const HWND hWnd = dialog.Detach();
    ::SendMessageW(::GetDlgItem(hWnd, IDC_ADD), BM_CLICK, 0, 0);
    EXPECT_EQ(dialog.m_adds, 0);
    EXPECT_EQ(CWnd::FromHandlePermanent(hWnd), nullptr);
    EXPECT_TRUE(::DestroyWindow(hWnd));
}

TEST(Mfc, MessageMapServesItsOwnEntriesThenTheBase)
{
    CTestDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
    dialog.ShowWindow(SW_SHOW);
    Click(dialog, IDC_ADD);
    Click(dialog, IDC_REMOVE); // no entry
    EXPECT_EQ(dialog.m_adds, 1);

    NMHDR click = {Control(dialog, IDC_LIST_DEFINITIONS), IDC_LIST_DEFINITIONS, static_cast<UINT>(NM_CLICK)};
    EXPECT_EQ(::SendMessageW(dialog.m_hWnd, WM_NOTIFY, click.idFrom, reinterpret_cast<LPARAM>(&click)), 7);

    ::SetWindowTextW(Control(dialog, IDC_EDIT_NAME), TEXT("Wall"));
    Click(dialog, IDC_ACTIVE);
    Click(dialog, IDOK); // the entry of CDialog leads to the overriding operation
    EXPECT_EQ(dialog.m_oks, 1);
    EXPECT_TRUE(dialog.m_name == TEXT("Wall"));
    EXPECT_FALSE(dialog.m_active);
    EXPECT_TRUE(::IsWindow(dialog.m_hWnd));
    EXPECT_FALSE(::IsWindowVisible(dialog.m_hWnd));
}

TEST(Mfc, ExchangeStopsAtAMissingControl)
{
    CTestDialog dialog;
    dialog.m_bAskForMissing = true;
    ASSERT_TRUE(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr));
    EXPECT_FALSE(dialog.m_bInitialised);
    EXPECT_FALSE(dialog.UpdateData(TRUE));
}

// What a handler throws must not unwind the system's frames: the creator gets it from Create, others get nothing.
TEST(Mfc, ExceptionsStayOnThisSideOfTheSystem)
{
    CTestDialog dialog;
    dialog.m_bThrow = true;
    EXPECT_THROW(dialog.Create(IDD_DEFINE_PROJECTIONS, nullptr), std::runtime_error);
    EXPECT_TRUE(::IsWindow(dialog.m_hWnd)) << "its creator destroys it";
    Click(dialog, IDC_ADD);
    EXPECT_EQ(dialog.m_adds, 1);
    EXPECT_TRUE(dialog.DestroyWindow());
}

TEST(Mfc, ModuleStateIsSwitchedInScopes)
{
    AFX_MODULE_STATE* pOwn = AfxGetStaticModuleState();
    EXPECT_EQ(AfxGetModuleState(), pOwn);
    {
        AFX_MODULE_STATE other;
        other.m_hCurrentResourceHandle = nullptr;
        AFX_MAINTAIN_STATE2 outer(&other);
        EXPECT_EQ(AfxGetResourceHandle(), nullptr);
        AFX_MAINTAIN_STATE2 inner(pOwn);
        EXPECT_EQ(AfxGetResourceHandle(), pOwn->m_hCurrentResourceHandle);
    }
    EXPECT_EQ(AfxGetModuleState(), pOwn);
}
