#pragma once
#include "platform/host/NOI_Database.h"

class HOST_API CNOI_RuntimeSystem
{
public:
    /// Opens the active drawing database.
    static CNOI_SmartPtr<CNOI_Database> openActiveDatabase();
    /// Ignores an empty pointer.
    static void closeDatabase(CNOI_SmartPtr<CNOI_Database>& pDatabase);
};
