#include "platform/host/HostState.h"
#include "platform/host/NOI_Service_AllplanLocalisation.h"
#include "platform/host/ResourceHandleHelper.h"
#include "platform/host/XMLTreeInfoDlg.h"

WString CNOI_Service_AllplanLocalisation::GetLanguage()
{
    CHostCall call(eHostCall::GetLanguage);
    return call.Return(GetHostState().m_language);
}

Allplan::IFW::Resources::ResourceHandleHelper::ResourceHandleHelper(const WCHAR* pLibrary)
{
    const CHostCall call(eHostCall::UseResources, {pLibrary});
    m_previousLibrary = std::exchange(GetHostState().m_resourceLibrary, pLibrary);
}

Allplan::IFW::Resources::ResourceHandleHelper::~ResourceHandleHelper()
{
    RecordHostCall(eHostCall::RestoreResources);
    GetHostState().m_resourceLibrary = m_previousLibrary;
}

CXMLTreeInfoDlg::CXMLTreeInfoDlg(const CString& first, const CString& second, const CString& text)
    : m_first(first), m_second(second), m_text(text)
{
    const CHostCall call(eHostCall::CreateInformation, {first.GetString(), second.GetString(), text.GetString()});
}

CXMLTreeInfoDlg::~CXMLTreeInfoDlg()
{
    RecordHostCall(eHostCall::DestroyInformation);
}

INT_PTR CXMLTreeInfoDlg::DoModal()
{
    CHostState& state = GetHostState();
    const CHostInformation information{m_first.GetString(), m_second.GetString(), m_text.GetString(),
                                       state.m_resourceLibrary};
    state.m_record.information.push_back(information);
    CHostCall call(eHostCall::ShowInformation);
    if (state.m_viewer)
        state.m_viewer(information);
    call.Return(1.0);
    return 1;
}
