#pragma once
#include "platform/mfc/atlstr.h"
#include "platform/text.h"

namespace VLT
{
/// Where configuration texts live: implemented by the module's user and given to
/// CConfigurationStorage::RegisterHandler. Called on the host's user-interface thread.
/// Identifiers and texts are NUL-terminated UTF-16, borrowed for the call. What an operation throws reaches the caller.
class IConfigurationHandler
{
public:
    /// Makes the storage ready; 0 says that it cannot be used. Comes again without a CloseStorage in between: a dialog
    /// that is cancelled closes nothing, and the next one opens.
    virtual int OpenStorage() = 0;
    /// Ends the use that OpenStorage began.
    virtual void CloseStorage() = 0;
    /// The text stored under the identifier, unchanged; empty if there is none.
    virtual CString LoadConfigurationById(const WCHAR* pId) = 0;
    /// Stores the text under the identifier; nonzero says that it was done. The module looks at no result here, so a
    /// handler reports its failure by itself.
    virtual int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) = 0;

    // Behind the four, so that their places do not depend on it. The module leaves destruction to the shared pointer.
    virtual ~IConfigurationHandler() = default;
};
} // namespace VLT
