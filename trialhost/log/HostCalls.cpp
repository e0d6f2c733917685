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
    default:
        return TEXT("throws an exception of unknown type");
    }
}

/// How the log shows a value: texts in quotation marks, objects by their class.
struct CValueText
{
    WString operator()(std::monostate) const { return WString(); }
    WString operator()(bool value) const { return value ? TEXT("true") : TEXT("false"); }
    WString operator()(double value) const { return Coordinate(value); }
    WString operator()(const WString& value) const { return Quoted(value); }
    WString operator()(const CHostObject& object) const
    {
        return object.className.empty() ? WString(TEXT("null")) : object.className;
    }
};

WString DescribeNewestCall(eHostCall call)
{
    WString arguments;
    for (const CHostValue& argument : HostControl::GetRecord().arguments)
        arguments.append(arguments.empty() ? TEXT("") : TEXT(", ")).append(std::visit(CValueText(), argument));
    return NameOf(call) + (TEXT("(") + arguments + TEXT(")"));
}
} // namespace

CHostCallRecorder::CHostCallRecorder(CCallLog& log) : m_log(log)
{
    HostControl::SetCallObserver(
        [this](eHostCall call) { m_running.push_back(std::make_unique<CCallScope>(m_log, DescribeNewestCall(call))); });
    HostControl::SetFailureObserver(
        [this](eHostCall, eHostFailure failure)
        {
            if (failure != eHostFailure::EmptyResult) // which shows as the call's result
                End(NameOf(failure));
        });
    HostControl::SetEndObserver([this](const CHostValue& result) { End(std::visit(CValueText(), result)); });
}

CHostCallRecorder::~CHostCallRecorder()
{
    HostControl::SetCallObserver({});
    HostControl::SetFailureObserver({});
    HostControl::SetEndObserver({});
}

void CHostCallRecorder::End(const WString& result)
{
    m_running.back()->Return(result);
    m_running.pop_back();
}
