#pragma once
#include "platform/host/Export.h"
#include <afxstr.h>

class CDialog;

/// What the host adds to its dialogs. DialogBase is a base class there; the stand-in needs only its name.
template <class DialogBase>
class CBasisDlgPropFkt
{
public:
    virtual INT_PTR DoModal() = 0;

protected:
    ~CBasisDlgPropFkt() = default;
};

/// The host's information dialog. Stand-in: DoModal records the texts, shows them where the program has said how
/// (HostControl), and returns 1.
class HOST_API CXMLTreeInfoDlg : public CBasisDlgPropFkt<CDialog>
{
public:
    CXMLTreeInfoDlg(const CString& first, const CString& second, const CString& text);
    CXMLTreeInfoDlg(const CXMLTreeInfoDlg&) = delete;
    CXMLTreeInfoDlg& operator=(const CXMLTreeInfoDlg&) = delete;
    ~CXMLTreeInfoDlg();

    INT_PTR DoModal() override;

private:
    CString m_first;
    CString m_second;
    CString m_text;
};
