#pragma once
#include "platform/host/Export.h"

/// Base of the host's objects. The count starts at 0; the last RemoveReference deletes the object. One thread.
class HOST_API CNOI_BaseRefCount
{
public:
    CNOI_BaseRefCount(const CNOI_BaseRefCount&) = delete;
    CNOI_BaseRefCount& operator=(const CNOI_BaseRefCount&) = delete;

    void AddReference();
    void RemoveReference();

protected:
    CNOI_BaseRefCount();
    virtual ~CNOI_BaseRefCount();

private:
    int m_references = 0;
};
