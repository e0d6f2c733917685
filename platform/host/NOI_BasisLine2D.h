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
        /// Makes a line for that database and puts it into pLine; the line is in the database only after AddObject.
        /// Stand-in: does not look at the database.
        static void createObject(const CNOI_SmartPtr<CNOI_IDatabase>& pDatabase,
                                 CNOI_SmartPtr<CNOI_BasisLine2D>& pLine);
    };
};
