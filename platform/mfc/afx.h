#pragma once
/// The root of the framework's classes, with run-time class information; exceptions thrown by pointer; file search.
/// Different from MFC's: no serialisation, no creation of objects by class name, no error texts of exceptions.
/// CFileFind tells the path of a match and nothing else about it.
#include <afxstr.h>
#ifdef AFX_AFTER_WINDOWS
#error <windows.h> is included before the framework. Include the framework first.
#endif

class CObject;

/// Run-time information about a class: one constant record per class, linked to the record of its base class.
struct CRuntimeClass
{
    const char* m_lpszClassName;
    int m_nObjectSize;               ///< in bytes
    UINT m_wSchema;                  ///< 0xFFFF: objects of the class cannot be stored
    CObject* (*m_pfnCreateObject)(); ///< null: objects cannot be created by class name
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

/// Thrown by pointer. Whoever catches one must Delete or rethrow it.
class CException : public CObject
{
    DECLARE_DYNAMIC(CException)
public:
    void Delete() { delete this; }
};

/// A dialog has no control of the requested identifier.
class CNotSupportedException : public CException
{
    DECLARE_DYNAMIC(CNotSupportedException)
};

/// Lists the files that match a wildcard pattern. Call FindFile once, then FindNextFileW for each match, the first one
/// included.
class CFileFind
{
public:
    CFileFind() = default;
    ~CFileFind() { Close(); }
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;

    /// Returns whether anything matches. Only the last part of the path may contain wildcards.
    BOOL FindFile(LPCTSTR pstrName);
    /// Moves to the next match. Returns whether another one follows it.
    BOOL FindNextFileW();
    /// Returns the full path of the current match, also if FindFile was given a relative one. Valid after the first
    /// FindNextFileW.
    CString GetFilePath() const { return m_strRoot + m_current.cFileName; }
    void Close();

private:
    HANDLE m_hContext = INVALID_HANDLE_VALUE;
    CString m_strRoot;
    WIN32_FIND_DATAW m_current{};
    WIN32_FIND_DATAW m_next{};
};
