#pragma once
#include "configuration/Export.h"
#include "platform/text.h"

class CCoordinateInput;
struct CStdPoint2D;
struct strAddMsgInfo;

namespace VLT
{
/// A native command: started by its identifier, fed with the mouse messages of the CAD view, and ended.
/// The order of the operations is part of the exported interface. There is no virtual destructor: own a command only
/// through a boost::shared_ptr<ICommand> that was made from a pointer to the command's own class.
/// Every call comes on the thread of the host's user interface; pInput is the host's and borrowed for the call.
class VLT_API ICommand
{
public:
    ICommand();
    ICommand(const ICommand& other);
    ICommand(ICommand&& other) noexcept;
    ICommand& operator=(const ICommand& other);
    ICommand& operator=(ICommand&& other) noexcept;

    /// The identifier, UTF-16. CCommandManager asks once for each registration.
    virtual WString GetId() = 0;
    /// Starts the command; it is already the active one.
    virtual void Run(CCoordinateInput* pInput) = 0;
    /// A mouse message of the host, with what the host says about it.
    virtual void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                                 CCoordinateInput* pInput) = 0;
    /// Ends the command; it is still the active one.
    virtual void Complete(CCoordinateInput* pInput) = 0;
    /// Not 0: the command wants mouse messages. Asked at any time, whether the command is active or not.
    virtual int RequiresProcessMouseMsg() = 0;
};
} // namespace VLT
