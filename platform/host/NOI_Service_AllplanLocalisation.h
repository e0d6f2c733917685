#pragma once
#include "platform/host/Export.h"
#include "platform/text.h"

class HOST_API CNOI_Service_AllplanLocalisation
{
public:
    /// Returns the code of the host's language.
    static WString GetLanguage();
};
