#pragma once
#include "platform/text.h"
#include "trialhost/log/RecordingHandler.h"

#include <vector>

class CTrialHost;

/// What can go wrong around the module, to see what its user then sees.
enum class eFault
{
    None,
    NoHandler,
    HandlerRefuses,
    HandlerThrows,
    SeventhLineRefused,
    ClosingThrows,
    OtherLanguage,
    NoStringFiles
};

struct CFaultChoice
{
    eFault fault;
    const WCHAR* pName;    ///< of the option --fault
    const WCHAR* pCaption; ///< in the menu
};

/// All choices, in the order of eFault.
const std::vector<CFaultChoice>& GetFaultChoices();
/// The choice of that name; null if there is none.
const CFaultChoice* FindFault(const WString& name);
/// The module reads language and string files once in a process: such a fault has an effect on the first run alone.
bool IsForFirstRun(eFault fault);

/// Sets the fault up for the next run of a command, and takes it back when destroyed. Host and handler are made
/// faultless again then; a failure that the run did not come to stays switched on in the host.
class CArmedFault
{
public:
    CArmedFault(eFault fault, CTrialHost& host, const boost::shared_ptr<CRecordingHandler>& pHandler);
    ~CArmedFault();
    CArmedFault(const CArmedFault&) = delete;
    CArmedFault& operator=(const CArmedFault&) = delete;

private:
    const eFault m_fault;
};
