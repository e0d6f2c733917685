#pragma once
#include "platform/host/NOI_Database.h"

class HOST_API CNOI_RuntimeSystem
{
public:
    /// The active drawing database, open.
    static CNOI_SmartPtr<CNOI_Database> openActiveDatabase();
    /// An empty pointer is passed over.
    static void closeDatabase(CNOI_SmartPtr<CNOI_Database>& pDatabase);
};
