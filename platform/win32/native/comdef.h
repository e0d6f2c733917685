#pragma once
#include "platform/win32/native/types.h"

/// An HRESULT thrown by value, as the compiler's COM support does it.
class _com_error
{
public:
    explicit _com_error(HRESULT result) noexcept : m_hresult(result) {}
    HRESULT Error() const noexcept { return m_hresult; }

private:
    HRESULT m_hresult;
};
