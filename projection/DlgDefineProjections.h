#pragma once
#include <afxcmn.h>
#include <afxwin.h>

#include <boost/shared_ptr.hpp>

class CProjectionRegistry;

/// The modeless dialog "Define projection/intersection". It loads the list of projection definitions when it opens and
/// saves it unchanged on OK. Input in the controls reaches the members below and has no further effect yet.
/// OK and Cancel hide the dialog; its owner destroys it.
class CDlgDefineProjections : public CDialog
{
    DECLARE_DYNAMIC(CDlgDefineProjections)
public:
    CDlgDefineProjections();
    /// Saves nothing.
    ~CDlgDefineProjections() override;

    using CDialog::Create;
    BOOL Create(UINT nIDTemplate, CWnd* pParentWnd) override;

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    void OnBnClickedOk();
    void OnBnClickedCancel();
    void OnBnClickedSave();
    void OnBnClickedRemove();
    void OnBnClickedAdd();
    void OnCbnSelchangePick();
    void OnBnClickedPickEntity();
    void OnBnClickedShowInLS();
    void OnBnClickedShowInCS();
    void OnBnClickedShowInEditor();
    void OnBnClickedActive();
    void OnNMClickListDefinitions(NMHDR* pNMHDR, LRESULT* pResult);

    DECLARE_MESSAGE_MAP()

    // In the order of the attributes of a projection definition.
    CListCtrl m_listDefinitions;
    CComboBox m_comboAddKind;
    CString m_strName;
    BOOL m_bShowInLS = FALSE;
    BOOL m_bShowInCS = FALSE;
    BOOL m_bShowInEditor = FALSE;
    CComboBox m_comboPick;
    CString m_strPick;
    BOOL m_bActive = FALSE;
    boost::shared_ptr<CProjectionRegistry> m_pRegistry; ///< empty if OpenStorage failed

private:
    void FillAddKindCombo();
    void FillPickCombo();
};
