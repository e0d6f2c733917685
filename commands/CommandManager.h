#pragma once
#include "commands/ICommand.h"

#include <boost/shared_ptr.hpp>

#include <map>

namespace VLT
{
/// Registers native commands and holds the active one.
///
/// Call it on the thread of the host's user interface only. Identifiers are NUL-terminated UTF-16, compared exactly,
/// code unit by code unit; null counts as the empty text. The manager catches nothing: an exception of a command
/// reaches the caller.
class VLT_API CCommandManager
{
public:
    /// Returns the manager of the process. The first call creates it with the built-in commands; it is never freed.
    static CCommandManager* Instance();

    /// Shares the commands and the active command with other. Ending the command in one leaves it active in the other.
    CCommandManager(const CCommandManager& other);
    /// Replaces the commands and the active command by those of other, which are then shared.
    CCommandManager& operator=(const CCommandManager& other);

    /// Registers pCommand under the identifier that its GetId returns. If that identifier is taken, the registered
    /// command stays and pCommand is dropped without a message. An empty pointer is ignored.
    void RegisterCommand(boost::shared_ptr<ICommand> pCommand);
    /// Returns the command registered under pId, or an empty pointer.
    boost::shared_ptr<ICommand> GetCommandById(const WCHAR* pId) const;

    /// Makes the command registered under pId the active one and calls its Run. Returns 1 when Run returned, 0 for an
    /// unknown identifier; then nothing has changed. Does not end a command that is still active: call CompleteCommand
    /// first. If Run throws, the command stays active.
    int RunCommand(const WCHAR* pId, CCoordinateInput* pInput);
    /// Passes the message to the active command. Without an active command nothing happens.
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo, CCoordinateInput* pInput);
    /// Calls Complete of the active command; afterwards no command is active. Without an active command nothing
    /// happens. If Complete throws, the command stays active.
    void CompleteCommand(CCoordinateInput* pInput);

    /// Returns 1 if a command is active, else 0.
    int IsNativeCommandActive() const;
    /// Returns 1 if pId is registered, else 0.
    int IsNativeCommandAvailable(const WCHAR* pId) const;
    /// Returns what RequiresProcessMouseMsg of the command registered under pId returns, active or not. Returns 0 for
    /// an unknown identifier.
    int RequiresProcessMouseMsg(const WCHAR* pId) const;

private:
    CCommandManager();
    ~CCommandManager();

    void RegisterCommands();

    std::map<WString, boost::shared_ptr<ICommand>> m_commands;
    boost::shared_ptr<ICommand> m_pActiveCommand; ///< empty while no command is active

    static CCommandManager* m_pInstance;
};
} // namespace VLT
