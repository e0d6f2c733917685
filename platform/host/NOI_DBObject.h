#pragma once
#include "platform/host/NOI_CommonStyle.h"
#include "platform/host/NOI_Geometry.h"

/// An object of a drawing database: a geometry with a style.
class HOST_API CNOI_DBObject : public CNOI_BaseRefCount
{
public:
    static WString GetStaticClassName();

    void SetGeometry(const CNOI_SmartPtr<CNOI_Geometry>& pGeometry);
    /// Returns the object's own style: a change through it changes the object.
    CNOI_SmartPtr<CNOI_CommonStyle> GetCommonStyle();

    CNOI_SmartPtr<CNOI_Geometry> m_pGeometry; ///< empty until SetGeometry
    const CNOI_SmartPtr<CNOI_CommonStyle> m_pStyle{new CNOI_CommonStyle};
};
