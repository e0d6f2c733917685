#include <afx.h>

const CRuntimeClass CObject::classCObject = {"CObject", sizeof(CObject), 0xFFFF, nullptr, nullptr};

CRuntimeClass* CObject::GetRuntimeClass() const
{
    return RUNTIME_CLASS(CObject);
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const
{
    for (const CRuntimeClass* pClass = this; pClass != nullptr; pClass = pClass->m_pBaseClass)
        if (pClass == pBaseClass)
            return TRUE;
    return FALSE;
}

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CNotSupportedException, CException)
