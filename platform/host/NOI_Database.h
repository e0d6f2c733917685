#pragma once
#include "platform/host/NOI_DBObject.h"

#include <vector>

/// A drawing database. AddObject is the fourth virtual operation, as in the host's interface; those before it are the
/// stand-in's own, for HostControl.
class HOST_API CNOI_IDatabase : public CNOI_BaseRefCount
{
public:
    static WString GetStaticClassName();

    virtual bool IsOpen() const = 0;
    virtual size_t GetObjectCount() const = 0;
    virtual CNOI_SmartPtr<CNOI_DBObject> GetObjectAt(size_t index) const = 0;
    /// Adds a new object to the database, which must be open.
    virtual bool AddObject(const CNOI_SmartPtr<CNOI_DBObject>& pObject) = 0;
};

class HOST_API CNOI_Database : public CNOI_IDatabase
{
public:
    bool IsOpen() const override;
    size_t GetObjectCount() const override;
    CNOI_SmartPtr<CNOI_DBObject> GetObjectAt(size_t index) const override;
    bool AddObject(const CNOI_SmartPtr<CNOI_DBObject>& pObject) override;

    bool m_isOpen = false;

private:
    std::vector<CNOI_SmartPtr<CNOI_DBObject>> m_objects; ///< in the order of AddObject
};
