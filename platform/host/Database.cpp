#include "platform/host/HostState.h"
#include "platform/host/NOI_BasisLine2D.h"
#include "platform/host/NOI_RuntimeSystem.h"

CNOI_BaseRefCount::CNOI_BaseRefCount()
{
    ++s_liveObjects;
}

CNOI_BaseRefCount::~CNOI_BaseRefCount()
{
    --s_liveObjects;
}

void CNOI_BaseRefCount::AddReference()
{
    ++m_references;
}

void CNOI_BaseRefCount::RemoveReference()
{
    if (--m_references == 0)
        delete this;
}

WString CNOI_GeoPoint2D::GetStaticClassName()
{
    return TEXT("CNOI_GeoPoint2D");
}

void CNOI_GeoPoint2D::Set(double x, double y)
{
    EnterHostCall(eHostCall::SetPoint, {x, y});
    m_x = x;
    m_y = y;
}

WString CNOI_GeoLine2D::GetStaticClassName()
{
    return TEXT("CNOI_GeoLine2D");
}

CNOI_SmartPtr<CNOI_GeoLine2D> CNOI_GeoLine2D::CreateObj()
{
    if (!EnterHostCall(eHostCall::CreateGeoLine))
        return {};
    return CNOI_SmartPtr<CNOI_GeoLine2D>(new CNOI_GeoLine2D);
}

CNOI_SmartPtr<CNOI_GeoPoint2D> CNOI_GeoLine2D::GetStartPoint()
{
    return EnterHostCall(eHostCall::GetStartPoint) ? m_pStart : CNOI_SmartPtr<CNOI_GeoPoint2D>();
}

CNOI_SmartPtr<CNOI_GeoPoint2D> CNOI_GeoLine2D::GetEndPoint()
{
    return EnterHostCall(eHostCall::GetEndPoint) ? m_pEnd : CNOI_SmartPtr<CNOI_GeoPoint2D>();
}

WString CNOI_ColorARGB::GetStaticClassName()
{
    return TEXT("CNOI_ColorARGB");
}

void CNOI_ColorARGB::SetARGB(const BYTE& alpha, const BYTE& red, const BYTE& green, const BYTE& blue)
{
    EnterHostCall(eHostCall::SetARGB, {double(alpha), double(red), double(green), double(blue)});
    m_alpha = alpha;
    m_red = red;
    m_green = green;
    m_blue = blue;
}

WString CNOI_CommonStyle::GetStaticClassName()
{
    return TEXT("CNOI_CommonStyle");
}

void CNOI_CommonStyle::Init()
{
    EnterHostCall(eHostCall::InitStyle);
    m_pColor->m_alpha = m_pColor->m_red = m_pColor->m_green = m_pColor->m_blue = 0;
    m_stroke = m_pen = m_layer = 0;
}

CNOI_SmartPtr<CNOI_ColorARGB> CNOI_CommonStyle::Color()
{
    return EnterHostCall(eHostCall::GetColor) ? m_pColor : CNOI_SmartPtr<CNOI_ColorARGB>();
}

void CNOI_CommonStyle::Stroke(const int& stroke)
{
    EnterHostCall(eHostCall::SetStroke, {double(stroke)});
    m_stroke = stroke;
}

void CNOI_CommonStyle::Pen(const int& pen)
{
    EnterHostCall(eHostCall::SetPen, {double(pen)});
    m_pen = pen;
}

void CNOI_CommonStyle::Layer(const int& layer)
{
    EnterHostCall(eHostCall::SetLayer, {double(layer)});
    m_layer = layer;
}

WString CNOI_DBObject::GetStaticClassName()
{
    return TEXT("CNOI_DBObject");
}

void CNOI_DBObject::SetGeometry(const CNOI_SmartPtr<CNOI_Geometry>& pGeometry)
{
    EnterHostCall(eHostCall::SetGeometry);
    m_pGeometry = pGeometry;
}

CNOI_SmartPtr<CNOI_CommonStyle> CNOI_DBObject::GetCommonStyle()
{
    return EnterHostCall(eHostCall::GetCommonStyle) ? m_pStyle : CNOI_SmartPtr<CNOI_CommonStyle>();
}

WString CNOI_BasisLine2D::GetStaticClassName()
{
    return TEXT("CNOI_BasisLine2D");
}

void CNOI_BasisLine2D::CNOI_ClassFactory::createObject(const CNOI_SmartPtr<CNOI_IDatabase>&,
                                                       CNOI_SmartPtr<CNOI_BasisLine2D>& pLine)
{
    pLine = {};
    if (EnterHostCall(eHostCall::CreateLine))
        pLine = CNOI_SmartPtr<CNOI_BasisLine2D>(new CNOI_BasisLine2D);
}

WString CNOI_IDatabase::GetStaticClassName()
{
    return TEXT("CNOI_IDatabase");
}

bool CNOI_Database::IsOpen() const
{
    return m_isOpen;
}

size_t CNOI_Database::GetObjectCount() const
{
    return m_objects.size();
}

CNOI_SmartPtr<CNOI_DBObject> CNOI_Database::GetObjectAt(size_t index) const
{
    return m_objects.at(index);
}

bool CNOI_Database::AddObject(const CNOI_SmartPtr<CNOI_DBObject>& pObject)
{
    EnterHostCall(eHostCall::AddObject);
    if (!m_isOpen)
        throw new CNOI_AppException(TEXT("the database is not open"));
    if (pObject.Get() == nullptr)
        throw new CNOI_NullReferenceException(CNOI_DBObject::GetStaticClassName());
    m_objects.push_back(pObject);
    return true;
}

CNOI_SmartPtr<CNOI_Database> CNOI_RuntimeSystem::openActiveDatabase()
{
    if (!EnterHostCall(eHostCall::OpenActiveDatabase))
        return {};
    const CNOI_SmartPtr<CNOI_Database>& pDatabase = GetHostState().m_pDatabase;
    pDatabase->m_isOpen = true;
    return pDatabase;
}

void CNOI_RuntimeSystem::closeDatabase(CNOI_SmartPtr<CNOI_Database>& pDatabase)
{
    EnterHostCall(eHostCall::CloseDatabase);
    if (pDatabase.Get() != nullptr)
        pDatabase->m_isOpen = false;
}
