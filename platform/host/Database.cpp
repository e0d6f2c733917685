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

WString CNOI_Geometry::GetStaticClassName()
{
    return TEXT("CNOI_Geometry");
}

WString CNOI_GeoPoint2D::GetStaticClassName()
{
    return TEXT("CNOI_GeoPoint2D");
}

void CNOI_GeoPoint2D::Set(double x, double y)
{
    const CHostCall call(eHostCall::SetPoint, {x, y});
    m_x = x;
    m_y = y;
}

WString CNOI_GeoLine2D::GetStaticClassName()
{
    return TEXT("CNOI_GeoLine2D");
}

CNOI_SmartPtr<CNOI_GeoLine2D> CNOI_GeoLine2D::CreateObj()
{
    CHostCall call(eHostCall::CreateGeoLine);
    return call.Return(CNOI_SmartPtr<CNOI_GeoLine2D>(call.IsEmpty() ? nullptr : new CNOI_GeoLine2D));
}

CNOI_SmartPtr<CNOI_GeoPoint2D> CNOI_GeoLine2D::GetStartPoint()
{
    CHostCall call(eHostCall::GetStartPoint);
    return call.Return(call.IsEmpty() ? CNOI_SmartPtr<CNOI_GeoPoint2D>() : m_pStart);
}

CNOI_SmartPtr<CNOI_GeoPoint2D> CNOI_GeoLine2D::GetEndPoint()
{
    CHostCall call(eHostCall::GetEndPoint);
    return call.Return(call.IsEmpty() ? CNOI_SmartPtr<CNOI_GeoPoint2D>() : m_pEnd);
}

WString CNOI_ColorARGB::GetStaticClassName()
{
    return TEXT("CNOI_ColorARGB");
}

void CNOI_ColorARGB::SetARGB(const BYTE& alpha, const BYTE& red, const BYTE& green, const BYTE& blue)
{
    const CHostCall call(eHostCall::SetARGB, {double(alpha), double(red), double(green), double(blue)});
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
    const CHostCall call(eHostCall::InitStyle);
    m_pColor->m_alpha = m_pColor->m_red = m_pColor->m_green = m_pColor->m_blue = 0;
    m_stroke = m_pen = m_layer = 0;
}

CNOI_SmartPtr<CNOI_ColorARGB> CNOI_CommonStyle::Color()
{
    CHostCall call(eHostCall::GetColor);
    return call.Return(call.IsEmpty() ? CNOI_SmartPtr<CNOI_ColorARGB>() : m_pColor);
}

void CNOI_CommonStyle::Stroke(const int& stroke)
{
    const CHostCall call(eHostCall::SetStroke, {double(stroke)});
    m_stroke = stroke;
}

void CNOI_CommonStyle::Pen(const int& pen)
{
    const CHostCall call(eHostCall::SetPen, {double(pen)});
    m_pen = pen;
}

void CNOI_CommonStyle::Layer(const int& layer)
{
    const CHostCall call(eHostCall::SetLayer, {double(layer)});
    m_layer = layer;
}

WString CNOI_DBObject::GetStaticClassName()
{
    return TEXT("CNOI_DBObject");
}

void CNOI_DBObject::SetGeometry(const CNOI_SmartPtr<CNOI_Geometry>& pGeometry)
{
    const CHostCall call(eHostCall::SetGeometry, {CHostCall::Describe(pGeometry)});
    m_pGeometry = pGeometry;
}

CNOI_SmartPtr<CNOI_CommonStyle> CNOI_DBObject::GetCommonStyle()
{
    CHostCall call(eHostCall::GetCommonStyle);
    return call.Return(call.IsEmpty() ? CNOI_SmartPtr<CNOI_CommonStyle>() : m_pStyle);
}

WString CNOI_BasisLine2D::GetStaticClassName()
{
    return TEXT("CNOI_BasisLine2D");
}

void CNOI_BasisLine2D::CNOI_ClassFactory::createObject(const CNOI_SmartPtr<CNOI_IDatabase>& pDatabase,
                                                       CNOI_SmartPtr<CNOI_BasisLine2D>& pLine)
{
    pLine = {};
    CHostCall call(eHostCall::CreateLine, {CHostCall::Describe(pDatabase)});
    pLine = call.Return(CNOI_SmartPtr<CNOI_BasisLine2D>(call.IsEmpty() ? nullptr : new CNOI_BasisLine2D));
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
    CHostCall call(eHostCall::AddObject, {CHostCall::Describe(pObject)});
    if (!m_isOpen)
        throw new CNOI_AppException(TEXT("the database is not open"));
    if (pObject.Get() == nullptr)
        throw new CNOI_NullReferenceException(CNOI_DBObject::GetStaticClassName());
    m_objects.push_back(pObject);
    return call.Return(true);
}

CNOI_SmartPtr<CNOI_Database> CNOI_RuntimeSystem::openActiveDatabase()
{
    CHostCall call(eHostCall::OpenActiveDatabase);
    if (call.IsEmpty())
        return call.Return(CNOI_SmartPtr<CNOI_Database>());
    const CNOI_SmartPtr<CNOI_Database>& pDatabase = GetHostState().m_pDatabase;
    pDatabase->m_isOpen = true;
    return call.Return(pDatabase);
}

void CNOI_RuntimeSystem::closeDatabase(CNOI_SmartPtr<CNOI_Database>& pDatabase)
{
    const CHostCall call(eHostCall::CloseDatabase, {CHostCall::Describe(pDatabase)});
    if (pDatabase.Get() != nullptr)
        pDatabase->m_isOpen = false;
}
