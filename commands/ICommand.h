#pragma once
#include "configuration/Export.h"
#include "platform/text.h"

class CCoordinateInput;
struct CStdPoint2D;
struct strAddMsgInfo;

namespace VLT
{
/// A native command: started by its identifier, fed with the mouse messages of the CAD view, and ended.
///
/// Every call comes on the thread of the host's user interface. pInput belongs to the host and is valid during the
/// call. The interface has no virtual destructor: hold a command only in a boost::shared_ptr<ICommand> that was made
/// from a pointer to the concrete class. The order of the operations is part of the exported interface.
class VLT_API ICommand
{
public:
    ICommand();                          ///< The interface has no data: construction and assignment copy nothing.
    ICommand(const ICommand& other);     ///< Copies nothing.
    ICommand(ICommand&& other) noexcept; ///< Moves nothing.
    ICommand& operator=(const ICommand& other);     ///< Changes nothing.
    ICommand& operator=(ICommand&& other) noexcept; ///< Changes nothing.

    /// Returns the identifier, UTF-16. CCommandManager calls this once for each registration.
    virtual WString GetId() = 0;
    /// Starts the command, which is already the active one.
    virtual void Run(CCoordinateInput* pInput) = 0;
    /// Handles a mouse message of the CAD view. message, point and pInfo are passed on as the host gave them.
    virtual void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                                 CCoordinateInput* pInput) = 0;
    /// Ends the command, which is still the active one.
    virtual void Complete(CCoordinateInput* pInput) = 0;
    /// Returns nonzero if the command wants mouse messages. May be called whether or not the command is active.
    virtual int RequiresProcessMouseMsg() = 0;
};
} // namespace VLT
