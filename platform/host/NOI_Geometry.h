#pragma once
#include "platform/host/NOI_BaseRefCount.h"
#include "platform/host/NOI_SmartPtr.h"

class HOST_API CNOI_GeoPoint2D : public CNOI_BaseRefCount
{
public:
    static WString GetStaticClassName();

    void Set(double x, double y);

    double m_x = 0;
    double m_y = 0;
};

/// The shape of a database object.
class HOST_API CNOI_Geometry : public CNOI_BaseRefCount
{
public:
    static WString GetStaticClassName();
};

class HOST_API CNOI_GeoLine2D : public CNOI_Geometry
{
public:
    static WString GetStaticClassName();
    /// Creates a line from (0, 0) to (0, 0) that belongs to no object.
    static CNOI_SmartPtr<CNOI_GeoLine2D> CreateObj();

    /// Return the line's own points: a change through them changes the line.
    CNOI_SmartPtr<CNOI_GeoPoint2D> GetStartPoint();
    CNOI_SmartPtr<CNOI_GeoPoint2D> GetEndPoint();

    const CNOI_SmartPtr<CNOI_GeoPoint2D> m_pStart{new CNOI_GeoPoint2D};
    const CNOI_SmartPtr<CNOI_GeoPoint2D> m_pEnd{new CNOI_GeoPoint2D};
};
