#pragma once
#include "platform/host/Export.h"
#include <afxstr.h>

class CDialog;

/// The host's extension of dialogs. There it derives from DialogBase; the stand-in only needs the name.
template <class DialogBase>
class CBasisDlgPropFkt
{
public:
    virtual INT_PTR DoModal() = 0;

protected:
    ~CBasisDlgPropFkt() = default;
};

/// The host's information dialog. Stand-in: DoModal records the texts, passes them to the viewer of HostControl, if
/// there is one, and returns 1.
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
