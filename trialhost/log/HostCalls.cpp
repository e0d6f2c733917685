#include "trialhost/log/HostCalls.h"

#include "platform/host/HostControl.h"
#include "trialhost/Format.h"

namespace
{
const WCHAR* NameOf(eHostCall call)
{
    switch (call)
    {
    case eHostCall::GetLanguage:
        return TEXT("CNOI_Service_AllplanLocalisation::GetLanguage");
    case eHostCall::SetInputMode:
        return TEXT("BaseInputMode::SetInputMode");
    case eHostCall::CreateObjectSelect:
        return TEXT("CObjectSelectGeneral::CObjectSelectGeneral");
    case eHostCall::SendInteractorMessage:
        return TEXT("SendInteractorMessage");
    case eHostCall::OpenActiveDatabase:
        return TEXT("CNOI_RuntimeSystem::openActiveDatabase");
    case eHostCall::CloseDatabase:
        return TEXT("CNOI_RuntimeSystem::closeDatabase");
    case eHostCall::CreateLine:
        return TEXT("CNOI_BasisLine2D::CNOI_ClassFactory::createObject");
    case eHostCall::CreateGeoLine:
        return TEXT("CNOI_GeoLine2D::CreateObj");
    case eHostCall::GetStartPoint:
        return TEXT("CNOI_GeoLine2D::GetStartPoint");
    case eHostCall::GetEndPoint:
        return TEXT("CNOI_GeoLine2D::GetEndPoint");
    case eHostCall::SetPoint:
        return TEXT("CNOI_GeoPoint2D::Set");
    case eHostCall::SetGeometry:
        return TEXT("CNOI_DBObject::SetGeometry");
    case eHostCall::GetCommonStyle:
        return TEXT("CNOI_DBObject::GetCommonStyle");
    case eHostCall::InitStyle:
        return TEXT("CNOI_CommonStyle::Init");
    case eHostCall::GetColor:
        return TEXT("CNOI_CommonStyle::Color");
    case eHostCall::SetARGB:
        return TEXT("CNOI_ColorARGB::SetARGB");
    case eHostCall::SetStroke:
        return TEXT("CNOI_CommonStyle::Stroke");
    case eHostCall::SetPen:
        return TEXT("CNOI_CommonStyle::Pen");
    case eHostCall::SetLayer:
        return TEXT("CNOI_CommonStyle::Layer");
    case eHostCall::AddObject:
        return TEXT("CNOI_IDatabase::AddObject");
    case eHostCall::SetSource:
        return TEXT("CNOI_AppException::Source");
    case eHostCall::PrintReport:
        return TEXT("CNOI_AppException::PrintReport");
    case eHostCall::UseResources:
        return TEXT("ResourceHandleHelper::ResourceHandleHelper");
    case eHostCall::CreateInformation:
        return TEXT("CXMLTreeInfoDlg::CXMLTreeInfoDlg");
    case eHostCall::ShowInformation:
        return TEXT("CXMLTreeInfoDlg::DoModal");
    default:
        return TEXT("end of an object of the host"); // not observed
    }
}

const WCHAR* NameOf(eHostFailure failure)
{
    switch (failure)
    {
    case eHostFailure::AppException:
        return TEXT("throws CNOI_AppException*");
    case eHostFailure::MfcException:
        return TEXT("throws CException*");
    case eHostFailure::ComError:
        return TEXT("throws _com_error");
    case eHostFailure::BoostException:
        return TEXT("throws boost::exception");
    case eHostFailure::StdException:
        return TEXT("throws std::runtime_error");
    case eHostFailure::EmptyResult:
        return TEXT("returns an empty pointer");
    default:
        return TEXT("throws an exception of unknown type");
    }
}

/// The arguments that the record holds of the call, which is its newest.
WString ArgumentsOf(eHostCall call)
{
    const CHostRecord& record = HostControl::GetRecord();
    switch (call)
    {
    case eHostCall::SetInputMode:
        return Number(record.inputModes.back().mode);
    case eHostCall::CreateObjectSelect:
        return Quoted(record.selections.back().prompt) + TEXT(", ") + Number(record.selections.back().type) +
               (record.selections.back().first ? TEXT(", true") : TEXT(", false")) +
               (record.selections.back().second ? TEXT(", true") : TEXT(", false"));
    case eHostCall::SendInteractorMessage:
        return Number(record.messages.back().message) + TEXT(", selection");
    case eHostCall::ShowInformation:
        return Quoted(record.information.back().first) + TEXT(", ") + Quoted(record.information.back().second) +
               TEXT(", ") + Quoted(record.information.back().text);
    default:
        break;
    }
    WString text;
    for (const double number : record.arguments)
        text += (text.empty() ? TEXT("") : TEXT(", ")) + Coordinate(number);
    return text;
}
} // namespace

CHostCallRecorder::CHostCallRecorder(CCallLog& log)
{
    HostControl::SetCallObserver([&log](eHostCall call)
                                 { log.AddRemark(WString(NameOf(call)) + TEXT("(") + ArgumentsOf(call) + TEXT(")")); });
    HostControl::SetFailureObserver([&log](eHostCall call, eHostFailure failure)
                                    { log.AddRemark(WString(NameOf(call)) + TEXT(" ") + NameOf(failure)); });
}

CHostCallRecorder::~CHostCallRecorder()
{
    HostControl::SetCallObserver({});
    HostControl::SetFailureObserver({});
}
