#include "projection/DlgDefineProjections.h"

#include "configuration/ConfigurationStorage.h"
#include "projection/ProjectionRegistry.h"
#include "resources/resource.h"
#include "uistrings/UIStrings.h"
#include <afxdd_.h>

namespace
{
// Numbers in the string files.
constexpr unsigned int AddKindText = 2;
constexpr unsigned int PickLayerText = 3;
constexpr unsigned int PickEntityText = 4;

void AddItem(CComboBox& combo, unsigned int textNumber, DWORD_PTR data)
{
    const int index = combo.AddString(CUIStrings::Instance()->GetString(textNumber));
    combo.SetItemData(index, data);
}

/// Whether the dialog still exists. To be asked after each call of the configuration handler, which may end the command
/// or destroy the window.
bool IsStillThere(const CWnd* pDialog, HWND hWnd)
{
    return CWnd::FromHandlePermanent(hWnd) == pDialog;
}
} // namespace

IMPLEMENT_DYNAMIC(CDlgDefineProjections, CDialog)

BEGIN_MESSAGE_MAP(CDlgDefineProjections, CDialog)
ON_BN_CLICKED(IDOK, &CDlgDefineProjections::OnBnClickedOk)
ON_BN_CLICKED(IDCANCEL, &CDlgDefineProjections::OnBnClickedCancel)
ON_BN_CLICKED(IDC_SAVE, &CDlgDefineProjections::OnBnClickedSave)
ON_BN_CLICKED(IDC_REMOVE, &CDlgDefineProjections::OnBnClickedRemove)
ON_BN_CLICKED(IDC_ADD, &CDlgDefineProjections::OnBnClickedAdd)
ON_CBN_SELCHANGE(IDC_COMBO_PICK, &CDlgDefineProjections::OnCbnSelchangePick)
ON_BN_CLICKED(IDC_PICK_ENTITY, &CDlgDefineProjections::OnBnClickedPickEntity)
ON_BN_CLICKED(IDC_SHOW_IN_LS, &CDlgDefineProjections::OnBnClickedShowInLS)
ON_BN_CLICKED(IDC_SHOW_IN_CS, &CDlgDefineProjections::OnBnClickedShowInCS)
ON_BN_CLICKED(IDC_SHOW_IN_EDITOR, &CDlgDefineProjections::OnBnClickedShowInEditor)
ON_BN_CLICKED(IDC_ACTIVE, &CDlgDefineProjections::OnBnClickedActive)
ON_NOTIFY(NM_CLICK, IDC_LIST_DEFINITIONS, &CDlgDefineProjections::OnNMClickListDefinitions)
END_MESSAGE_MAP()

CDlgDefineProjections::CDlgDefineProjections() : CDialog(IDD_DEFINE_PROJECTIONS, nullptr)
{
}

CDlgDefineProjections::~CDlgDefineProjections() = default;

BOOL CDlgDefineProjections::Create(UINT nIDTemplate, CWnd* pParentWnd)
{
    return CDialog::Create(MAKEINTRESOURCEW(nIDTemplate), pParentWnd);
}

void CDlgDefineProjections::DoDataExchange(CDataExchange* pDX)
{
    DDX_Control(pDX, IDC_LIST_DEFINITIONS, m_listDefinitions);
    DDX_Control(pDX, IDC_COMBO_ADD_KIND, m_comboAddKind);
    DDX_Text(pDX, IDC_EDIT_NAME, m_strName);
    DDX_Check(pDX, IDC_SHOW_IN_LS, m_bShowInLS);
    DDX_Check(pDX, IDC_SHOW_IN_CS, m_bShowInCS);
    DDX_Check(pDX, IDC_SHOW_IN_EDITOR, m_bShowInEditor);
    DDX_Control(pDX, IDC_COMBO_PICK, m_comboPick);
    DDX_Text(pDX, IDC_EDIT_PICK, m_strPick);
    DDX_Check(pDX, IDC_ACTIVE, m_bActive);
}

BOOL CDlgDefineProjections::OnInitDialog()
{
    CDialog::OnInitDialog();

    // Instance first: its first call sets the host's language. The dialog is in English and uses the English texts.
    CUIStrings::Instance();
    CUIStrings::m_currentLanguage = TEXT("en");
    FillAddKindCombo();
    FillPickCombo();

    const HWND hWnd = m_hWnd;
    VLT::CConfigurationStorage* pStorage = VLT::CConfigurationStorage::Instance();
    if (!pStorage->OpenStorage())
        return TRUE;
    const CString text = pStorage->LoadConfigurationById(CProjectionRegistry::GetConfigurationId());
    if (!IsStillThere(this, hWnd))
        return TRUE;
    m_pRegistry.reset(new CProjectionRegistry);
    m_pRegistry->ParseXML(text); // a text that cannot be read gives an empty list
    return TRUE;                 // the storage stays open until OK
}

void CDlgDefineProjections::FillAddKindCombo()
{
    m_comboAddKind.ResetContent();
    AddItem(m_comboAddKind, AddKindText, 0);
    m_comboAddKind.SetCurSel(0);
}

void CDlgDefineProjections::FillPickCombo()
{
    m_comboPick.ResetContent();
    AddItem(m_comboPick, PickLayerText, 0);
    AddItem(m_comboPick, PickEntityText, 1);
    m_comboPick.SetCurSel(0);
}

void CDlgDefineProjections::OnBnClickedOk()
{
    const HWND hWnd = m_hWnd;
    if (m_pRegistry)
    {
        const CString text = m_pRegistry->GetXML();
        VLT::CConfigurationStorage* pStorage = VLT::CConfigurationStorage::Instance();
        pStorage->SaveConfiguration(CProjectionRegistry::GetConfigurationId(), text);
        pStorage->CloseStorage();
    }
    if (IsStillThere(this, hWnd))
        CDialog::OnOK();
}

void CDlgDefineProjections::OnBnClickedCancel()
{
    CDialog::OnCancel();
}

// These controls have no effect yet.
void CDlgDefineProjections::OnBnClickedSave()
{
}

void CDlgDefineProjections::OnBnClickedRemove()
{
}

void CDlgDefineProjections::OnBnClickedAdd()
{
}

void CDlgDefineProjections::OnCbnSelchangePick()
{
}

void CDlgDefineProjections::OnBnClickedPickEntity()
{
}

void CDlgDefineProjections::OnBnClickedShowInLS()
{
}

void CDlgDefineProjections::OnBnClickedShowInCS()
{
}

void CDlgDefineProjections::OnBnClickedShowInEditor()
{
}

void CDlgDefineProjections::OnBnClickedActive()
{
}

void CDlgDefineProjections::OnNMClickListDefinitions(NMHDR*, LRESULT* pResult)
{
    *pResult = 0;
}
