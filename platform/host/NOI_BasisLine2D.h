#pragma once
#include "platform/host/NOI_Database.h"

/// A two-dimensional line of the drawing.
class HOST_API CNOI_BasisLine2D : public CNOI_DBObject
{
public:
    static WString GetStaticClassName();

    class HOST_API CNOI_ClassFactory
    {
    public:
        /// Creates a line for that database and assigns it to pLine; AddObject adds it to the database.
        /// Stand-in: ignores the database.
        static void createObject(const CNOI_SmartPtr<CNOI_IDatabase>& pDatabase,
                                 CNOI_SmartPtr<CNOI_BasisLine2D>& pLine);
    };
};
