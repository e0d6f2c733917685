#pragma once
#include <afxcmn.h>
#include <afxwin.h>

#include <boost/shared_ptr.hpp>

class CProjectionRegistry;

/// The modeless dialog "Define projection/intersection". It loads the list of projection definitions when it opens and
/// stores it on OK as it was loaded: what is typed, ticked or picked reaches the members and goes no further.
/// OK and Cancel take it from the screen; whoever made it destroys it.
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

    // The order of the fields is that of a projection definition's attributes.
    CListCtrl m_listDefinitions;
    CComboBox m_comboAddKind;
    CString m_strName;
    BOOL m_bShowInLS = FALSE;
    BOOL m_bShowInCS = FALSE;
    BOOL m_bShowInEditor = FALSE;
    CComboBox m_comboPick;
    CString m_strPick;
    BOOL m_bActive = FALSE;
    boost::shared_ptr<CProjectionRegistry> m_pRegistry; ///< empty if the storage did not open

private:
    void FillAddKindCombo();
    void FillPickCombo();
};
