#pragma once
/// The root of the framework's classes: what is known of a class at run time, and the exceptions that are thrown by
/// pointer. Only what the module uses, under the original names.
#include <afxstr.h>

class CObject;

/// The record of one class: constant, one for each class, linked to the record of its base.
struct CRuntimeClass
{
    const char* m_lpszClassName;
    int m_nObjectSize;               ///< in bytes
    UINT m_wSchema;                  ///< 0xFFFF: objects of the class are not stored
    CObject* (*m_pfnCreateObject)(); ///< null: objects are not made by class name
    CRuntimeClass* m_pBaseClass;     ///< null for CObject

    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

class CObject
{
public:
    CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject() = default;

    BOOL IsKindOf(const CRuntimeClass* pClass) const { return GetRuntimeClass()->IsDerivedFrom(pClass); }

    static const CRuntimeClass classCObject;
};

#define RUNTIME_CLASS(class_name) (const_cast<CRuntimeClass*>(&class_name::class##class_name))

#define DECLARE_DYNAMIC(class_name)                                                                                    \
public:                                                                                                                \
    static const CRuntimeClass class##class_name;                                                                      \
    CRuntimeClass* GetRuntimeClass() const override;

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                                                 \
    const CRuntimeClass class_name::class##class_name = {#class_name, sizeof(class_name), 0xFFFF, nullptr,             \
                                                         RUNTIME_CLASS(base_class_name)};                              \
    CRuntimeClass* class_name::GetRuntimeClass() const                                                                 \
    {                                                                                                                  \
        return RUNTIME_CLASS(class_name);                                                                              \
    }

/// Thrown by pointer. Who catches one and does not throw it on calls Delete.
class CException : public CObject
{
    DECLARE_DYNAMIC(CException)
public:
    CException() = default;
    /// bAutoDelete FALSE: the object belongs to whoever throws it, and Delete leaves it alone.
    explicit CException(BOOL bAutoDelete) : m_bAutoDelete(bAutoDelete) {}

    void Delete()
    {
        if (m_bAutoDelete)
            delete this;
    }

private:
    BOOL m_bAutoDelete = TRUE;
};

/// Lists the files that match a wildcard pattern. After FindFile the object stands before the first match; each
/// FindNextFileW steps to the next one.
class CFileFind
{
public:
    CFileFind() = default;
    ~CFileFind() { Close(); }
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;

    /// Whether anything matches. The wildcards stand in the last part of the path.
    BOOL FindFile(LPCTSTR pstrName);
    /// Whether another match follows the one that this call steps to.
    BOOL FindNextFileW();
    /// The full path of the match, also where FindFile got a relative one. Not before the first FindNextFileW.
    CString GetFilePath() const { return m_strRoot + m_current.cFileName; }
    void Close();

private:
    HANDLE m_hContext = INVALID_HANDLE_VALUE;
    CString m_strRoot;
    WIN32_FIND_DATAW m_current{};
    WIN32_FIND_DATAW m_next{};
};
