#pragma once
#include "commands/ICommand.h"
#include "trialhost/log/CallLog.h"

#include <boost/shared_ptr.hpp>

namespace VLT
{
class CCommandManager;
}

/// The module's command manager, with every call recorded in the log. Operations and results are the manager's.
class CRecordingManager
{
public:
    explicit CRecordingManager(CCallLog& log);

    void RegisterCommand(boost::shared_ptr<VLT::ICommand> pCommand);
    int RunCommand(const WString& id, CCoordinateInput* pInput);
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo, CCoordinateInput* pInput);
    void CompleteCommand(CCoordinateInput* pInput);
    int IsNativeCommandActive() const;
    int IsNativeCommandAvailable(const WString& id) const;
    int RequiresProcessMouseMsg(const WString& id) const;

    /// Removes all commands but those that were registered when the first object of this class was made. None is active
    /// then, and none is completed by this.
    void RestoreCommands();

private:
    CCallLog& m_log;
    const VLT::CCommandManager* m_pInitial; ///< lives to the end of the process
};
