#pragma once
#include "platform/text.h"
#include <afxstr.h>

namespace VLT
{
/// Loads and saves configuration texts. The plug-in implements it and gives it to
/// CConfigurationStorage::RegisterHandler.
///
/// Called on the host's user-interface thread. Identifiers and texts are NUL-terminated UTF-16, valid during the call.
/// An exception of an operation reaches whoever called the module.
class IConfigurationHandler
{
public:
    /// Makes the storage ready. Returns 0 if it cannot be used. May be called again without a CloseStorage in between:
    /// a cancelled dialog does not close the storage, and the next dialog opens it.
    virtual int OpenStorage() = 0;
    /// Ends the use that OpenStorage started.
    virtual void CloseStorage() = 0;
    /// Returns the text stored under pId, unchanged, or the empty text.
    virtual CString LoadConfigurationById(const WCHAR* pId) = 0;
    /// Stores pCfg under pId. Returns nonzero on success. The dialog ignores the result, so the handler has to report a
    /// failure itself.
    virtual int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) = 0;

    // Declared last, so that the four operations keep their places in the table of virtual operations.
    virtual ~IConfigurationHandler() = default;
};
} // namespace VLT
