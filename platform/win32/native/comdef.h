#pragma once
#include "platform/win32/native/types.h"

/// An HRESULT as an exception, thrown by value.
class _com_error
{
public:
    explicit _com_error(HRESULT result) noexcept : m_hresult(result) {}
    HRESULT Error() const noexcept { return m_hresult; }

private:
    HRESULT m_hresult;
};
