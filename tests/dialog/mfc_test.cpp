#include "resources/resource.h"
#include <afxcmn.h>
#include <afxdd_.h>

#include <gtest/gtest.h>

namespace
{
/// A dialog over the module's template that counts calls of its handlers.
class CTestDialog : public CDialog
{
public:
    void DoDataExchange(CDataExchange* pDX) override
    {
        DDX_Control(pDX, IDC_LIST_DEFINITIONS, m_list);
        if (m_bAskForMissing)
            DDX_Check(pDX, 999, m_value);
    }
    BOOL OnInitDialog() override { return m_bInitialised = CDialog::OnInitDialog(); }
    void OnOK() override { ++m_oks; }
    void OnAdd() { ++m_adds; }
    void OnListClick(NMHDR*, LRESULT* pResult) { *pResult = 7; }

    void Click(int id) { ::SendMessageW(::GetDlgItem(m_hWnd, id), BM_CLICK, 0, 0); }
    BOOL Create() { return CDialog::Create(IDD_DEFINE_PROJECTIONS); }

    CListCtrl m_list;
    int m_value = 0;
    BOOL m_bInitialised = FALSE;
    bool m_bAskForMissing = false;
    int m_oks = 0;
    int m_adds = 0;

protected:
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CTestDialog, CDialog)
ON_BN_CLICKED(IDC_ADD, &CTestDialog::OnAdd)
ON_NOTIFY(NM_CLICK, IDC_LIST_DEFINITIONS, &CTestDialog::OnListClick)
END_MESSAGE_MAP()
} // namespace

TEST(Mfc, WindowAndObjectGoInAnyOrder)
{
    CTestDialog dialog;
    EXPECT_FALSE(dialog.ShowWindow(SW_SHOW) || dialog.DestroyWindow() || dialog.UpdateData(TRUE));
    EXPECT_FALSE(dialog.CDialog::Create(4711)) << "no such template";

    for (int round = 0; round < 2; ++round) // an object can have several windows in turn
    {
        ASSERT_TRUE(dialog.Create());
        EXPECT_FALSE(dialog.Create()) << "it has a window";
        EXPECT_EQ(dialog.m_list.m_hWnd, ::GetDlgItem(dialog.m_hWnd, IDC_LIST_DEFINITIONS));
        EXPECT_FALSE(dialog.ShowWindow(SW_SHOW)) << "it was hidden";
        EXPECT_TRUE(dialog.ShowWindow(SW_HIDE)) << "it was visible";
        ::DestroyWindow(dialog.m_hWnd); // as a host that closes all windows
        EXPECT_TRUE(dialog.m_hWnd == nullptr && dialog.m_list.m_hWnd == nullptr);
        EXPECT_FALSE(dialog.DestroyWindow());
    }

    HWND hWnd = nullptr;
    {
        CTestDialog living;
        ASSERT_TRUE(living.Create());
        hWnd = living.m_hWnd;
    }
    EXPECT_FALSE(::IsWindow(hWnd));
}

TEST(Mfc, MessageMapServesItsOwnEntriesThenTheBase)
{
    CTestDialog dialog;
    ASSERT_TRUE(dialog.Create());
    for (const int id : {IDC_ADD, IDC_REMOVE, IDOK}) // the second has no entry
        dialog.Click(id);
    EXPECT_EQ(dialog.m_adds, 1);
    EXPECT_EQ(dialog.m_oks, 1) << "the entry of CDialog leads to the overriding operation";
    NMHDR click = {dialog.m_list.m_hWnd, IDC_LIST_DEFINITIONS, static_cast<UINT>(NM_CLICK)};
    EXPECT_EQ(::SendMessageW(dialog.m_hWnd, WM_NOTIFY, click.idFrom, reinterpret_cast<LPARAM>(&click)), 7);
}

TEST(Mfc, ExchangeStopsAtAMissingControl)
{
    CTestDialog dialog;
    dialog.m_bAskForMissing = true;
    ASSERT_TRUE(dialog.Create());
    EXPECT_FALSE(dialog.m_bInitialised);
}
