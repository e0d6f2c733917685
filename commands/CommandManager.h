#pragma once
#include "commands/ICommand.h"

#include <boost/shared_ptr.hpp>

#include <map>

namespace VLT
{
/// The registry of native commands and the holder of the active one. Everything here is for the thread of the host's
/// user interface. Identifiers are NUL-terminated UTF-16 and compared exactly, unit by unit; null counts as the empty
/// text. Nothing is caught: what a command throws reaches the caller.
class VLT_API CCommandManager
{
public:
    /// The manager of the process, made with the built-in commands on the first call and never freed.
    static CCommandManager* Instance();

    /// A copy shares the commands and the active command with its source; ending it in one leaves it set in the other.
    CCommandManager(const CCommandManager& other);
    CCommandManager& operator=(const CCommandManager& other);

    /// Registers pCommand under what its GetId gives. Where that identifier is taken, the command that has it stays and
    /// pCommand is dropped. An empty pointer is passed over.
    void RegisterCommand(boost::shared_ptr<ICommand> pCommand);
    /// Empty for an unknown identifier.
    boost::shared_ptr<ICommand> GetCommandById(const WCHAR* pId) const;

    /// Makes the command the active one and calls its Run; 1 when Run came back. 0 for an unknown identifier: then
    /// nothing has changed. An active command is not ended: call CompleteCommand first. The command stays active if Run
    /// throws.
    int RunCommand(const WCHAR* pId, CCoordinateInput* pInput);
    /// Hands the message to the active command; without one, nothing happens.
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo, CCoordinateInput* pInput);
    /// Calls Complete of the active command and then has none; without one, nothing happens. The command stays active
    /// if Complete throws.
    void CompleteCommand(CCoordinateInput* pInput);

    /// 1 or 0.
    int IsNativeCommandActive() const;
    /// 1 if the identifier is registered, else 0.
    int IsNativeCommandAvailable(const WCHAR* pId) const;
    /// What the command of that identifier answers, active or not; 0 for an unknown identifier.
    int RequiresProcessMouseMsg(const WCHAR* pId) const;

private:
    CCommandManager();
    ~CCommandManager();

    void RegisterCommands();

    std::map<WString, boost::shared_ptr<ICommand>> m_commands;
    boost::shared_ptr<ICommand> m_pActiveCommand; ///< empty: no command is active

    static CCommandManager* m_pInstance;
};
} // namespace VLT
