#pragma once
#include "platform/host/NOI_AppException.h"

#include <memory>
#include <utility>

/// Holds a reference on a CNOI_BaseRefCount. Dereferencing an empty one throws a CNOI_NullReferenceException* that
/// names T::GetStaticClassName().
template <class T>
class CNOI_SmartPtr
{
public:
    CNOI_SmartPtr() noexcept = default;
    explicit CNOI_SmartPtr(T* pObject) : m_pObject(pObject) { AddReference(); }
    CNOI_SmartPtr(const CNOI_SmartPtr& other) : CNOI_SmartPtr(other.m_pObject) {}
    CNOI_SmartPtr(CNOI_SmartPtr&& other) noexcept : m_pObject(std::exchange(other.m_pObject, nullptr)) {}
    /// Converts to a pointer to a base class.
    template <class Derived>
    CNOI_SmartPtr(const CNOI_SmartPtr<Derived>& other) : CNOI_SmartPtr(other.Get())
    {
    }
    ~CNOI_SmartPtr()
    {
        if (m_pObject != nullptr)
            m_pObject->RemoveReference();
    }
    CNOI_SmartPtr& operator=(CNOI_SmartPtr other) noexcept
    {
        std::swap(m_pObject, other.m_pObject);
        return *this;
    }

    T& operator*() const
    {
        if (m_pObject == nullptr)
            ThrowNullReference();
        return *m_pObject;
    }
    T* operator->() const { return &**this; }
    /// Returns null when empty; keeps the reference.
    T* Get() const noexcept { return m_pObject; }

private:
    void AddReference()
    {
        if (m_pObject != nullptr)
            m_pObject->AddReference();
    }
    [[noreturn]] static void ThrowNullReference()
    {
        auto pException = std::make_unique<CNOI_NullReferenceException>(T::GetStaticClassName());
        pException->Source(TEXT("NOI_SmartPtr.h"));
        pException->SourceLine(__LINE__);
        throw pException.release();
    }

    T* m_pObject = nullptr;
};
